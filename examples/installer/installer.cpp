// Creates the uninstall entry of a language pack, as the pack's installer would. The default product counts a
// language as installed if it has this entry and a folder next to the program.
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

/// Deletes the language's uninstall entry. Returns true if the entry does not exist afterwards.
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

/// Checks that every language is known and, if needFolders is true, has a DLL in its folder next to this
/// program. Prints an error for the first name that fails the check, and returns false.
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
            std::cerr << " has no folder with a DLL next to this program: put it there first\n";
            return false;
        }
        std::cerr << " is not a language: use one of";
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
                << ": the machine's registry is not writable: run this as administrator or, on Linux, check\n"
                   "the free space and the permissions of ~/.local/share\n";
            return 1;
        }
    }
    return 0;
}
