// Compares each library operation with the same registry calls made directly, on both targets.
#include "settings.h"

#include <cstdlib>

namespace {

using bench::require;

#ifdef _WIN32
constexpr double strictLimit = 1.02; // under Wine each call sends a message to another process
constexpr double limit = 1.05;
#else
constexpr double strictLimit = 1.25;
constexpr double limit = 1.25;
#endif

DWORD queryNumber(HKEY key, const wchar_t* name)
{
    DWORD type = REG_NONE;
    DWORD size = 0;
    DWORD number = 0;
    require(RegQueryValueExW(key, name, nullptr, &type, nullptr, &size) == ERROR_SUCCESS, "RegQueryValueExW");
    size = sizeof number;
    require(RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&number), &size) ==
                ERROR_SUCCESS,
            "RegQueryValueExW");
    return number;
}

void set(HKEY key, const wchar_t* name, DWORD type, const void* data, DWORD size)
{
    require(RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size) == ERROR_SUCCESS,
            "RegSetValueExW");
}

void setAt(const wchar_t* path, const wchar_t* name, DWORD type, const void* data, DWORD size)
{
    HKEY key = bench::openKey(path, KEY_WRITE);
    set(key, name, type, data, size);
    RegCloseKey(key);
}

bench::Pair reading(TarvoConfig& config)
{
    return {"getValue by path", "open, query, query, close", strictLimit,
            [&config, value = VelaVariant(), settings = bench::Rotation()]() mutable {
                require(config.getValue(TarvoConfig::eSettings, settings.next().text, value) ==
                            TarvoConfig::eOk,
                        "getValue");
            },
            [settings = bench::Rotation()]() mutable {
                HKEY key = bench::openKey(bench::displayKey, KEY_READ);
                bench::use(queryNumber(key, settings.next().name()));
                RegCloseKey(key);
            }};
}

bench::Pair readingOne(TarvoConfig& config)
{
    return {"getValue of one setting alone", "open, query, query, close", strictLimit,
            [&config, value = VelaVariant()]() mutable {
                require(config.getValue(TarvoConfig::eSettings, bench::framesPath, value) == TarvoConfig::eOk,
                        "getValue");
            },
            [] {
                HKEY key = bench::openKey(bench::displayKey, KEY_READ);
                bench::use(queryNumber(key, bench::framesName));
                RegCloseKey(key);
            }};
}

bench::Pair writing(TarvoConfig& config)
{
    return {"setValue by path", "open, set, close", strictLimit,
            [&config, number = 0, value = VelaVariant()]() mutable {
                value.setInt(++number);
                require(config.setValue(TarvoConfig::eSettings, bench::framesPath, value) == TarvoConfig::eOk,
                        "setValue");
            },
            [number = 0]() mutable {
                ++number;
                setAt(bench::displayKey, bench::framesName, REG_DWORD, &number, sizeof number);
            }};
}

void walk(TarvoConfig& config)
{
    TarvoConfig::ValueIterator it;
    require(config.findItem(TarvoConfig::eSettings, L"Display", it) == TarvoConfig::eOk, "findItem");
    wchar_t name[64];
    VelaVariant value;
    int count = 0;
    for (long length = 64; it.key(name, length) == TarvoConfig::eOk; length = 64, ++count) {
        require(it.value(value) == TarvoConfig::eOk && it.step() == TarvoConfig::eOk, "value and step");
    }
    require(count == bench::entryCount, "walk");
}

/// Makes the same registry calls as walk(): for each value, RegEnumValueW twice and a query.
void walkBare()
{
    HKEY key = bench::openKey(bench::displayKey, KEY_ALL_ACCESS);
    wchar_t keyClass[MAX_PATH];
    DWORD classLength = MAX_PATH;
    DWORD subKeys = 0;
    DWORD values = 0;
    DWORD longest[4] = {};
    require(RegQueryInfoKeyW(key, keyClass, &classLength, nullptr, &subKeys, &longest[0], &longest[1],
                             &values, &longest[2], &longest[3], nullptr, nullptr) == ERROR_SUCCESS,
            "RegQueryInfoKeyW");
    wchar_t name[1024];
    const auto enumerate = [&](DWORD index) {
        DWORD length = 1024;
        return RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
    };
    DWORD count = 0;
    for (; enumerate(count); ++count) {
        require(enumerate(count), "RegEnumValueW");
        bench::use(queryNumber(key, name));
    }
    require(count == bench::entryCount && count == values, "bare walk");
    RegCloseKey(key);
}

/// Makes the registry calls that CreateConfigReg makes if the tree exists.
void createBare()
{
    RegCloseKey(bench::openKey(bench::productKey, KEY_READ));
    setAt(bench::productKey, L"CurVer", REG_SZ, L"2018", sizeof L"2018");
    RegCloseKey(bench::openKey(bench::productKey, KEY_READ));
    setAt(bench::versionKey, L"CurVer", REG_SZ, L"en-US", sizeof L"en-US");
    HKEY key = bench::openKey(bench::profilesKey, KEY_READ);
    DWORD type = REG_NONE;
    DWORD size = 0;
    wchar_t profile[64];
    RegQueryValueExW(key, nullptr, nullptr, &type, nullptr, &size);
    size = sizeof profile;
    require(RegQueryValueExW(key, nullptr, nullptr, &type, reinterpret_cast<BYTE*>(profile), &size) ==
                ERROR_SUCCESS,
            "RegQueryValueExW");
    RegCloseKey(key);
    setAt(bench::profilesKey, nullptr, REG_SZ, profile, size);
}

} // namespace

/// Arguments: the file for the results, and optionally a string that selects the rows whose names contain it.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): it then terminates
{
    TarvoConfig& config = bench::startWithSettings();
    const std::vector<bench::Pair> pairs = {
        reading(config),
        readingOne(config),
        writing(config),
        {"walk of 1,000 values", "enumeration and reads", limit, [&config] { walk(config); }, walkBare},
        {"CreateConfigReg", "its registry calls", limit, [] { CreateConfigReg(); }, createBare},
    };
    std::FILE* const out = argc > 1 ? std::fopen(argv[1], "w") : stdout;
    require(out != nullptr, "opening the file of results");
    bench::run(pairs, out, argc > 2 ? argv[2] : "");
    std::fclose(out);
    return 0;
}
