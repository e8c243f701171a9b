// What a language pack's installer records: the uninstall entry by which the default product knows that a
// language is installed. The pack's folder beside the program is the other half.
#include "installation/installed.h"
#include "installation/program_files.h"
#include "platform/registry_key.h"

#include <iostream>
#include <span>
#include <string_view>

namespace {

bool record(const uinfo::Language& language)
{
    uinfo::PathBuffer path;
    if (!uinfo::appendUninstallKey(path, language)) {
        return false;
    }
    const uinfo::RegistryKey key = uinfo::RegistryKey::openOrCreate(HKEY_LOCAL_MACHINE, path.text());
    return key && key.setString(L"UninstallString", L"uninstall.exe");
}

/// One that was never recorded is removed too.
bool remove(const uinfo::Language& language)
{
    uinfo::PathBuffer path;
    if (!uinfo::appendUninstallKey(path, language)) {
        return false;
    }
    const LSTATUS status = RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.text());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

void printName(std::ostream& out, const wchar_t* name)
{
    for (; *name != L'\0'; ++name) {
        out << (*name < 0x80 ? static_cast<char>(*name) : '?');
    }
}

/// Whether each is a language and, where it needs one, has its folder beside this program, saying which has
/// not.
bool areLanguages(std::span<wchar_t* const> names, bool needFolders)
{
    for (const wchar_t* const name : names) {
        const bool known = uinfo::findLanguage(name) != uinfo::unknownLanguage;
        if (known &&
            (!needFolders || uinfo::languageFolder(uinfo::programFolder(), name) == uinfo::Installed::yes)) {
            continue;
        }
        std::cerr << "installer: ";
        printName(std::cerr, name);
        if (known) {
            std::cerr << " has no folder with its library beside this program: put it there first\n";
            return false;
        }
        std::cerr << " is no language; there are";
        for (const uinfo::Language& language : uinfo::languages) {
            std::cerr << ' ';
            printName(std::cerr, language.shortName);
        }
        std::cerr << '\n';
        return false;
    }
    return true;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    std::span<wchar_t* const> names(argv, static_cast<std::size_t>(argc));
    names = names.subspan(names.empty() ? 0 : 1);
    const bool removes = !names.empty() && uinfo::equalIgnoringCase(names.front(), L"--remove");
    names = names.subspan(removes ? 1 : 0);
    if (names.empty()) {
        std::cerr << "usage: installer [--remove] xx-XX...\n";
        return 2;
    }
    if (!areLanguages(names, !removes)) {
        return 1;
    }
    for (const wchar_t* const name : names) {
        const uinfo::Language& language = uinfo::languages[uinfo::findLanguage(name)];
        if (!(removes ? remove(language) : record(language))) {
            std::cerr << "installer: ";
            printName(std::cerr, name);
            std::cerr
                << " cannot be " << (removes ? "removed" : "recorded")
                << ": the registry of the machine cannot be written: start this as its administrator or,\n"
                   "on Linux, look for room in ~/.local/share and for the rights to it\n";
            return 1;
        }
    }
    return 0;
}
