// The product object and the library's entry point.
#include "config/language_resources.h"
#include "product/product.h"

#include <windows.h>

#include <optional>

namespace {

/// Uses the static configuration object. DllMain therefore creates the product object after all static
/// objects exist, and destroys it before any of them.
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
        // The result is ignored, because DisableThreadLibraryCalls fails if the C runtime uses thread-local
        // storage, as MinGW's does.
        DisableThreadLibraryCalls(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        uinfo::releaseLanguageResources();
        product.reset();
    }
    return TRUE;
}
