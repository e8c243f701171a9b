// The product object, and what the library does when it is loaded and unloaded.
#include "config/language_resources.h"
#include "product/product.h"

#include <windows.h>

#include <optional>

namespace {

/// Made and destroyed by the entry point. Every toolchain calls that when the static objects are made and
/// before they are destroyed, so the singleton is there first and goes last.
constinit std::optional<uinfo::TarvoProduct> product;

} // namespace

uinfo::TarvoProduct& uinfo::theProduct()
{
    return *product;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* /*reserved*/)
{
    if (reason == DLL_PROCESS_ATTACH) {
        product.emplace();
        // Refused where the runtime keeps thread-local storage: MinGW's does.
        DisableThreadLibraryCalls(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        uinfo::releaseLanguageResources();
        product.reset();
    }
    return TRUE;
}
