#include "model/installation.h"

#include "model/system.h"
#include "model/value.h"
#include "text/print.h"

#include <windows.h>

#include <io.h>

#include <algorithm>
#include <array>
#include <memory>

namespace {

using rkuinfo::Argument;

constexpr int readAccess = 4;
constexpr int firstLocalName = 1001; // string id of the language with index 0
constexpr long languageCount = 15;
constexpr std::size_t longestName = 254;
constexpr std::size_t longestProfile = 126; // what is longer, start-up reads as none

/// By their indexes.
constexpr std::array preference = {2, 13, 14, 7, 8, 9, 0, 1, 3, 4, 5, 6, 10, 11, 12};

struct FreeModule
{
    void operator()(HINSTANCE module) const { FreeLibrary(module); }
};

bool holdsLibrary(const Text& folder)
{
    WIN32_FIND_DATAW found = {};
    HANDLE const search = FindFirstFileW(Argument(folder + utf16("\\*.dll")), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return true;
}

void readResources(LanguageState& state)
{
    const std::unique_ptr<HINSTANCE__, FreeModule> module(LoadLibraryExW(
        Argument(state.folder + utf16("\\RkUInfoRes.dll")), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t name[64] = {};
    const auto id = static_cast<UINT>(firstLocalName + state.language.language());
    state.hasResources = module != nullptr;
    if (module && LoadStringW(module.get(), id, name, 63) > 0) {
        state.localName = rkuinfo::text(name);
    }
}

LanguageState examineLanguage(const Text& program, const TarvoLanguage& language, bool needsEntries)
{
    LanguageState state = {language, program + rkuinfo::text(language.shortName())};
    if (_waccess(Argument(state.folder), readAccess) == 0) {
        state.folderState = holdsLibrary(state.folder) ? FolderState::filled : FolderState::empty;
        readResources(state);
    }
    state.hasEntry = machineValueExists(utf16("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"
                                              "{5C3D71E0-B00F-" +
                                              std::to_string(language.velaLanguage()) + "-C10E-9E40B6D2F815}"),
                                        L"UninstallString");
    state.installed = state.folderState == FolderState::filled && (state.hasEntry || !needsEntries);
    return state;
}

/// A REG_SZ of at most so many characters, as start-up reads it.
Text storedText(const Text& path, const char* name, std::size_t longest)
{
    const std::optional<Key> key = Key::find(path);
    const std::optional<Value> value = key ? key->value(utf16(name)) : std::nullopt;
    const bool isRead = value && value->type == REG_SZ && value->data.size() <= longest * sizeof(wchar_t);
    return isRead ? textOf(*value) : Text();
}

} // namespace

bool exists(const Text& path)
{
    return !path.empty() && _waccess(Argument(path), 0) == 0;
}

std::string LanguageState::name() const
{
    return utf8(rkuinfo::text(language.shortName()));
}

std::string LanguageState::whyNot() const
{
    switch (folderState) {
    case FolderState::missing:
        return "no folder";
    case FolderState::empty:
        return "empty folder";
    case FolderState::filled:
        break;
    }
    return installed ? "" : "no uninstall entry";
}

Installation::Installation(const Session& session) : m_profile(utf16(session.profile))
{
    if (utf16(session.company).size() > longestName || utf16(session.product).size() > longestName) {
        throw Failure("--company and --product take at most 254 characters", exitUsage);
    }
    folder = session.program.empty() ? rkuinfo::text(GetVelaProgramPath) : fullFolder(session.program);
    if (folder.empty()) {
        throw Failure("--program: '" + shown(utf16(session.program)) + "' is no folder", exitUsage);
    }
    if (const std::optional<Trouble> trouble = registryTrouble()) {
        throw Failure(trouble->problem + (trouble->remedy.empty() ? "" : "; " + trouble->remedy));
    }
    const auto firstOf = [](std::initializer_list<Text> texts) {
        return *std::ranges::find_if(texts, [](const Text& text) { return !text.empty(); });
    };
    company = firstOf({utf16(session.company), iniText("TARVO.ini", L"Product", utf16("CompanyName"), 255),
                       utf16("Norvik")});
    product = firstOf({utf16(session.product),
                       storedText(utf16("Software\\") + company, "CurProduct", longestName + 1),
                       iniText("TARVO.ini", L"Product", utf16("ProductName"), 255), utf16("TARVO")});
    needsEntries =
        equalIgnoringCase(company, utf16("NORVIK")) && equalIgnoringCase(product, utf16("TARVO"));
    for (long index = 0; index < languageCount; ++index) {
        languages.push_back(examineLanguage(folder, TarvoLanguage(index), needsEntries));
    }
    const auto* const found = std::ranges::find_if(
        preference, [this](int index) { return languages[static_cast<std::size_t>(index)].installed; });
    preferred = found == preference.end() ? -1 : *found;
    findLanguage(session);
}

/// From the first of the places that names one: a refused name does not lead to the next.
void Installation::findLanguage(const Session& session)
{
    constexpr std::size_t longestStored = 7;
    constexpr unsigned long iniCapacity = 7;
    if (!session.language.empty()) {
        wanted = utf16(session.language);
        source = "the command line";
    } else if (Text text = storedText(versionRoot(), "CurVer", longestStored); !text.empty()) {
        wanted = std::move(text);
        source = "the registry (CurVer)";
    } else {
        const Text localeId = iniText("TARVO.ini", L"Product", utf16("LocaleId"), iniCapacity);
        wanted = iniText("TARVO.ini", L"LocaleIdLangName", localeId, iniCapacity);
        source = "TARVO.ini";
    }
}

std::string Installation::whyNotWanted() const
{
    if (wanted.empty()) {
        return {};
    }
    const TarvoLanguage language{Argument(wanted)};
    if (language.language() < 0) {
        return '\'' + shown(wanted) + "', which " + source + " names, is none of the fifteen languages";
    }
    const LanguageState& state = languages[static_cast<std::size_t>(language.language())];
    return state.installed ? ""
                           : state.name() + ", which " + source + " names, is not installed: " + state.whyNot();
}

Text Installation::language() const
{
    if (preferred < 0) {
        throw Failure("no language is installed in " + shown(folder));
    }
    if (const std::string why = whyNotWanted(); !why.empty()) {
        throw Failure(why + "; name an installed language with --language");
    }
    return rkuinfo::text(
        (wanted.empty() ? TarvoLanguage(preferred) : TarvoLanguage(Argument(wanted))).shortName());
}

Text Installation::versionRoot() const
{
    return utf16("Software\\") + company + utf16("\\") + product + utf16("\\2018");
}

Text Installation::path(TarvoConfig::Path subtree) const
{
    const auto below = [this](const char* name) {
        return joinedKey(joinedKey(versionRoot(), language()), utf16(name));
    };
    switch (subtree) {
    case TarvoConfig::eProductRoot:
        return utf16("Software\\") + company + utf16("\\") + product;
    case TarvoConfig::eVersionRoot:
        return versionRoot();
    case TarvoConfig::eLanguageRoot:
        return joinedKey(versionRoot(), language());
    case TarvoConfig::eProfilesRoot:
        return below("Profiles");
    case TarvoConfig::eCurrentProfile:
        return joinedKey(below("Profiles"), profile());
    case TarvoConfig::eApplications:
        return below("Applications");
    case TarvoConfig::eRecentFileList:
        return below("Recent File List");
    case TarvoConfig::eSettings:
        break;
    case TarvoConfig::eUserConfig:
        return below("Settings\\UserConfig");
    }
    return below("Settings");
}

Text Installation::storedProfile() const
{
    return storedText(path(TarvoConfig::eProfilesRoot), "", longestProfile + 1);
}

Text Installation::profile() const
{
    if (!m_profile.empty()) {
        return m_profile;
    }
    const Text stored = storedProfile();
    return stored.empty() ? utf16("Default") : stored;
}

Text Installation::iniFile(const char* file) const
{
    return folder + utf16(file);
}

Text Installation::iniText(const char* file, const wchar_t* section, const Text& key,
                           unsigned long capacity) const
{
    const Text path = iniFile(file);
    wchar_t out[1024] = {};
    const bool isRead =
        !key.empty() && _waccess(Argument(path), readAccess) == 0 &&
        GetPrivateProfileStringW(section, Argument(key), L"", out, static_cast<DWORD>(capacity - 1), Argument(path)) > 0;
    return isRead ? rkuinfo::text(out) : Text();
}
