// A module that is linked with the library like the program that loads it.
#include "module.h"

namespace {

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

const ModuleCalls calls = {velaConfig, share, fill, throwConfigException, throwStatus};

} // namespace

extern "C" const ModuleCalls* moduleCalls();

extern "C" const ModuleCalls* moduleCalls()
{
    return &calls;
}
