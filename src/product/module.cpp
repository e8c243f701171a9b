// The library's two static objects, in the order in which they are made, and its entry point.
#include "config/language_resources.h"
#include "product/product.h"

#include <RkUInfo.h>

#include <windows.h>

TarvoConfig TarvoConfig::_sg_tarvo_config;

namespace {

uinfo::TarvoProduct theProduct;

} // namespace

TarvoConfig* velaConfig()
{
    return &TarvoConfig::_sg_tarvo_config;
}

ITarvoProduct* velaGetProduct()
{
    return &theProduct;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* /*reserved*/)
{
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        uinfo::releaseLanguageResources();
    }
    return TRUE;
}
