// Starts the library for the benchmarks, and creates a group of settings.
#pragma once

#include "pairs.h"

#include <RkUInfo.h>

#include <windows.h>

namespace bench {

inline constexpr wchar_t productKey[] = L"Software\\Acme\\Widget";
inline constexpr wchar_t versionKey[] = L"Software\\Acme\\Widget\\2018";
inline constexpr wchar_t profilesKey[] = L"Software\\Acme\\Widget\\2018\\en-US\\Profiles";
inline constexpr wchar_t displayKey[] = L"Software\\Acme\\Widget\\2018\\en-US\\Settings\\Display";
inline constexpr wchar_t framesPath[] = L"Display/Frames";
inline constexpr wchar_t framesName[] = L"Frames";
inline constexpr int entryCount = 1000; // number of values in Display, including Frames

/// Starts up as a product other than the default; such a product needs no uninstall entry.
inline TarvoConfig& start()
{
    require(InitVelaConfig(L"Acme", L"Widget", L"en-US", nullptr) == TarvoConfig::eOk, "InitVelaConfig");
    return *velaConfig();
}

/// The value path "Display/Setting" followed by a six-digit number.
struct SettingPath
{
    explicit SettingPath(int number)
    {
        for (int digit = 20; digit > 14; --digit, number /= 10) {
            text[digit] = static_cast<wchar_t>(L'0' + number % 10);
        }
    }
    const wchar_t* name() const { return text + 8; }

    wchar_t text[22] = L"Display/Setting000000";
};

/// Cycles through the settings.
class Rotation
{
public:
    Rotation()
    {
        for (int i = 1; i < entryCount; ++i) {
            m_paths.emplace_back(i);
        }
    }
    const SettingPath& next() { return m_paths[m_next++ % m_paths.size()]; }

private:
    std::vector<SettingPath> m_paths;
    std::size_t m_next = 0;
};

/// Starts up, and fills Display unless an earlier run has filled it.
inline TarvoConfig& startWithSettings()
{
    TarvoConfig& config = start();
    require(CreateConfigReg() == TarvoConfig::eOk, "CreateConfigReg");
    VelaVariant value;
    if (config.getValue(TarvoConfig::eSettings, framesPath, value) == TarvoConfig::eOk) {
        return config;
    }
    for (int i = 1; i < entryCount; ++i) {
        value.setInt(i);
        require(config.setValue(TarvoConfig::eSettings, SettingPath(i).text, value) == TarvoConfig::eOk,
                "setValue");
    }
    value.setInt(60);
    require(config.setValue(TarvoConfig::eSettings, framesPath, value) == TarvoConfig::eOk, "setValue");
    return config;
}

inline HKEY openKey(const wchar_t* path, REGSAM access)
{
    HKEY key = nullptr;
    require(RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, &key) == ERROR_SUCCESS, "RegOpenKeyExW");
    return key;
}

} // namespace bench
