// What a language pack's installer records: the uninstall entry by which the default product knows that a
// language is installed. The pack's folder beside the program is the other half.
#include <RkUInfo.h>

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <iostream>
#include <iterator>

namespace {

constexpr wchar_t uninstallKey[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{5C3D71E0-B00F-0000-C10E-9E40B6D2F815}";
constexpr std::size_t lcidStart = sizeof uninstallKey / sizeof(wchar_t) - sizeof "0000-C10E-9E40B6D2F815}";
constexpr wchar_t uninstallString[] = L"uninstall.exe";

bool recordLanguage(const TarvoLanguage& language)
{
    wchar_t path[sizeof uninstallKey / sizeof(wchar_t)];
    std::copy(std::begin(uninstallKey), std::end(uninstallKey), path);
    char digits[8] = {};
    std::to_chars(digits, digits + 4, language.velaLanguage()); // every LCID has four digits
    std::copy_n(digits, 4, path + lcidStart);

    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr,
                        &key, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    const bool written =
        RegSetValueExW(key, L"UninstallString", 0, REG_SZ, reinterpret_cast<const BYTE*>(uninstallString),
                       sizeof uninstallString) == ERROR_SUCCESS;
    RegCloseKey(key);
    return written;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    if (argc < 2) {
        std::cerr << "usage: installer xx-XX...\n";
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        const TarvoLanguage language(argv[i]);
        if (language.language() < 0 || !recordLanguage(language)) {
            std::cerr << "installer: language " << i << " is unknown or cannot be recorded\n";
            return 1;
        }
    }
    return 0;
}
