#include "model/installation.h"

#include "model/program.h"
#include "model/system.h"
#include "model/value.h"
#include "program/ini_files.h"
#include "text/print.h"

#include <windows.h>

#include <io.h>

#include <algorithm>
#include <memory>

namespace {

using rkuinfo::Argument;

constexpr std::size_t longestName = 254;
constexpr std::size_t longestProfile = 126; // what is longer, start-up reads as none

struct FreeModule
{
    void operator()(HINSTANCE module) const { FreeLibrary(module); }
};

void readResources(LanguageState& state, const uinfo::Language& record)
{
    const std::unique_ptr<HINSTANCE__, FreeModule> module(LoadLibraryExW(
        Argument(state.folder + utf16("\\RkUInfoRes.dll")), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t name[64] = {};
    state.hasResources = module != nullptr;
    if (module && LoadStringW(module.get(), record.localNameId, name, 63) > 0) {
        state.localName = rkuinfo::text(name);
    }
}

LanguageState examineLanguage(const Text& program, const uinfo::Language& record, bool needsEntries)
{
    LanguageState state = {record, program + rkuinfo::text(record.shortName)};
    state.installed = uinfo::installed(record, needsEntries);
    state.hasEntry = uinfo::hasUninstallEntry(record);
    if (state.installed != uinfo::Installed::noFolder) {
        readResources(state, record);
    }
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
    return utf8(rkuinfo::text(record.shortName));
}

std::string LanguageState::whyNot() const
{
    switch (installed) {
    case uinfo::Installed::yes:
        break;
    case uinfo::Installed::noFolder:
        return "no folder";
    case uinfo::Installed::emptyFolder:
        return "empty folder";
    case uinfo::Installed::noEntry:
        return "no uninstall entry";
    }
    return "";
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
    if (!session.program.empty()) {
        lookAt(folder);
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
    needsEntries = equalIgnoringCase(company, utf16("NORVIK")) && equalIgnoringCase(product, utf16("TARVO"));
    for (const uinfo::Language& record : uinfo::languages) {
        languages.push_back(examineLanguage(folder, record, needsEntries));
    }
    preferred = uinfo::preferredLanguage(needsEntries);
    findLanguage(session);
}

void Installation::findLanguage(const Session& session)
{
    using Source = uinfo::LanguageChoice::Source;
    const Argument language(utf16(session.language));
    const Argument root(versionRoot());
    const uinfo::LanguageChoice choice(language, root, needsEntries);
    wanted = rkuinfo::text(choice.name());
    source = choice.source() == Source::argument   ? "the command line"
             : choice.source() == Source::registry ? "the registry (CurVer)"
                                                   : "TARVO.ini";
}

std::string Installation::whyNotWanted() const
{
    if (wanted.empty()) {
        return {};
    }
    const std::int32_t index = uinfo::findLanguage(Argument(wanted));
    if (index == uinfo::unknownLanguage) {
        return '\'' + shown(wanted) + "', which " + source + " names, is none of the fifteen languages";
    }
    const LanguageState& state = languages[static_cast<std::size_t>(index)];
    return state.isInstalled()
               ? ""
               : state.name() + ", which " + source + " names, is not installed: " + state.whyNot();
}

const LanguageState& Installation::chosenLanguage() const
{
    if (preferred == uinfo::unknownLanguage) {
        throw Failure("no language is installed in " + shown(folder));
    }
    if (const std::string why = whyNotWanted(); !why.empty()) {
        throw Failure(why + "; name an installed language with --language");
    }
    return languages[static_cast<std::size_t>(wanted.empty() ? preferred
                                                             : uinfo::findLanguage(Argument(wanted)))];
}

Text Installation::language() const
{
    return rkuinfo::text(chosenLanguage().record.shortName);
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
    wchar_t out[1024] = {};
    const Argument name(key);
    const bool isRead =
        uinfo::readIniText(section, name, out, capacity, Argument(utf16(file))) == uinfo::IniResult::found;
    return isRead ? rkuinfo::text(out) : Text();
}
