#include <RkUInfo.hpp>

#include <iostream>

int main()
{
    if (InitVelaConfig(L"Acme", L"Hello", L"en-US", nullptr) != TarvoConfig::eOk) {
        return 1;
    }
    CreateConfigReg(); // creates the user's registry tree
    const auto starts = rkuinfo::get<std::int32_t>(TarvoConfig::eSettings, L"Starts").value_or(0) + 1;
    std::cout << "start " << starts << '\n';
    return rkuinfo::set(TarvoConfig::eSettings, L"Starts", starts) ? 1 : 0;
}
