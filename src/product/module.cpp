// The product object's instance, and what runs when the library is loaded and unloaded.
#include "config/language_resources.h"
#include "product/product.h"

#include <windows.h>

#include <optional>

namespace {

/// Created and destroyed by DllMain, which every toolchain calls after the static objects are constructed and
/// before they are destroyed: so the configuration object outlives this one.
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
        // Fails if the runtime uses thread-local storage, as MinGW's does.
        DisableThreadLibraryCalls(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        uinfo::releaseLanguageResources();
        product.reset();
    }
    return TRUE;
}
