// A module in C++14 that is linked with the library like the program that loads it.
#include "module.h"

namespace {

bool start()
{
    return InitVelaConfig(L"Consumer", L"Sample", L"en-US", nullptr) == TarvoConfig::eOk &&
           GetCurrentLanguageLocalName()[0] == L'E';
}

void share(long value)
{
    velaGetProduct()->setSharedValueB(value);
}

void fill(VelaVariant& value)
{
    value.setString(L"from the module");
}

void throwConfigException()
{
    throw new TarvoConfigException(L"message", 1, L"context", 7);
}

/// By way of the inline code of the header.
void throwStatus()
{
    VelaVariant().setBinary("", -1);
}

const ModuleCalls calls = {velaConfig, start, share, fill, throwConfigException, throwStatus};

} // namespace

#ifdef _WIN32
#define MODULE_EXPORT __declspec(dllexport)
#else
#define MODULE_EXPORT
#endif

extern "C" MODULE_EXPORT const ModuleCalls* moduleCalls();

extern "C" const ModuleCalls* moduleCalls()
{
    return &calls;
}
