// A C++14 module that is linked with the library.
#include "consumer.h"

const ModuleCalls* moduleCalls()
{
    static const ModuleCalls calls = {
        velaConfig,
        [] {
            return GetCurrentLanguageLocalName() == nullptr &&
                   InitVelaConfig(L"Consumer", L"Sample", L"en-US", nullptr) == TarvoConfig::eOk &&
                   GetCurrentLanguageLocalName()[0] == L'E';
        },
        [](VelaVariant& value) { value.setString(L"from the module"); },
        [] { throw new TarvoConfigException(L"message", 1, L"context", 7); },
        [] { VelaVariant().setBinary("", -1); }, // thrown by an inline function in the header
    };
    return &calls;
}
