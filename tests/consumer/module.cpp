// A module in C++14 that is linked with the library like the program that uses it.
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
        [] { VelaVariant().setBinary("", -1); }, // thrown by inline code of the header
    };
    return &calls;
}
