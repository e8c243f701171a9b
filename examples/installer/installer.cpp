// What a language pack's installer records: the uninstall entry by which the default product knows that a
// language is installed. The pack's folder beside the program is the other half.
#include "platform/registry_key.h"
#include "program/language_choice.h"

#include <iostream>

namespace {

bool recordLanguage(const uinfo::Language& language)
{
    uinfo::PathBuffer path;
    HKEY key = nullptr;
    if (!uinfo::appendUninstallKey(path, language) ||
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.text(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                        nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    return uinfo::RegistryKey(key).setString(L"UninstallString", L"uninstall.exe");
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    if (argc < 2) {
        std::cerr << "usage: installer xx-XX...\n";
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        const std::int32_t language = uinfo::findLanguage(argv[i]);
        if (language == uinfo::unknownLanguage || !recordLanguage(uinfo::languages[language])) {
            std::cerr << "installer: language " << i << " is unknown or cannot be recorded\n";
            return 1;
        }
    }
    return 0;
}
