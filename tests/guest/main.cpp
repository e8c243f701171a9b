// Starts the library with the files in the program's folder, stores a setting and reads it back.
#include <RkUInfo.hpp>

#include <cstdio>

int main()
{
    const bool works = InitVelaConfig(nullptr, nullptr, L"de-DE", nullptr) == TarvoConfig::eOk &&
                       CreateConfigReg() == TarvoConfig::eOk && GetCurrentVelaLanguageId() == 1031 &&
                       rkuinfo::utf8(velaConfig()->companyName()) == "Acme & S\xc3\xb6hne GmbH" &&
                       !rkuinfo::set(TarvoConfig::eSettings, L"Pen", 3);
    std::printf("%d\n", works ? rkuinfo::get<std::int32_t>(TarvoConfig::eSettings, L"Pen").value_or(0) : 0);
}
