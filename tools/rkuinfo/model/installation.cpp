#include "model/installation.h"

#include "model/system.h"
#include "program/ini_files.h"
#include "program/names.h"
#include "store/codec.h"
#include "text/print.h"

#include <windows.h>

#include <io.h>

#include <memory>

namespace {

using rkuinfo::Argument;

struct FreeModule
{
    void operator()(HINSTANCE module) const { FreeLibrary(module); }
};

void readResources(LanguageState& state, const uinfo::Language& record)
{
    const Text library = joinedKey(state.folder, rkuinfo::text(uinfo::languageLibrary));
    const std::unique_ptr<HINSTANCE__, FreeModule> module(
        LoadLibraryExW(Argument(library), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t name[64] = {};
    state.hasResources = module != nullptr;
    if (module && LoadStringW(module.get(), record.localNameId, name, 63) > 0) {
        state.localName = rkuinfo::text(name);
    }
}

LanguageState examineLanguage(const Text& program, const uinfo::Language& record, bool needsEntries)
{
    LanguageState state = {record, program + rkuinfo::text(record.shortName)};
    state.installed = uinfo::installed(Argument(program), record, needsEntries);
    state.hasEntry = uinfo::hasUninstallEntry(record);
    if (state.installed != uinfo::Installed::noFolder) {
        readResources(state, record);
    }
    return state;
}

Text readableFolder(const Session& session)
{
    Text folder = session.program.empty() ? rkuinfo::text(GetVelaProgramPath) : fullFolder(session.program);
    if (folder.empty()) {
        throw Failure("--program: '" + shown(utf16(session.program)) + "' is no folder", exitUsage);
    }
    if (const std::optional<Trouble> trouble = registryTrouble()) {
        throw Failure(trouble->problem + (trouble->remedy.empty() ? "" : "; " + trouble->remedy));
    }
    return folder;
}

Text checkedName(const uinfo::Choice& choice)
{
    if (!choice.isMade()) {
        throw Failure("--company and --product take at most 254 characters", exitUsage);
    }
    return rkuinfo::text(choice.value());
}

std::string sourceName(const uinfo::Finding& finding)
{
    switch (finding.source) {
    case uinfo::Source::argument:
        return "the command line";
    case uinfo::Source::registry:
        return "the registry (" + utf8(finding.name) + ')';
    case uinfo::Source::iniFile:
        return utf8(uinfo::tarvoIni);
    case uinfo::Source::builtIn:
        break;
    }
    return "the default";
}

} // namespace

bool exists(const Text& path)
{
    return !path.empty() && _waccess(Argument(path), 0) == 0;
}

std::string LanguageState::name() const
{
    return utf8(record.shortName);
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

Installation::Installation(const Session& session)
    : folder(readableFolder(session)),
      m_folder(folder),
      m_names{utf16(session.company), utf16(session.product), utf16(session.language),
              utf16(session.profile)},
      companyChoice(uinfo::chooseCompany(m_names.company, m_folder)),
      company(checkedName(companyChoice)),
      productChoice(uinfo::chooseProduct(m_names.product, Argument(companyRoot()), m_folder)),
      product(checkedName(productChoice)),
      needsEntries(uinfo::isDefaultProduct(companyChoice.value(), productChoice.value())),
      languageChoice(
          uinfo::chooseLanguage(m_names.language, Argument(versionRoot()), m_folder, needsEntries)),
      preferred(uinfo::preferredLanguage(m_folder, needsEntries))
{
    for (const uinfo::Language& record : uinfo::languages) {
        languages.push_back(examineLanguage(folder, record, needsEntries));
    }
}

std::string Installation::whyNotWanted() const
{
    const uinfo::Finding& decision = languageChoice.decision();
    const std::string names = ", which " + sourceName(decision) + " names, is ";
    switch (decision.answer) {
    case uinfo::Answer::notALanguage:
        return '\'' + shown(wanted()) + '\'' + names + "none of the fifteen languages";
    case uinfo::Answer::notInstalled: {
        const LanguageState& state = languages[static_cast<std::size_t>(languageChoice.language)];
        return state.name() + names + "not installed: " + state.whyNot();
    }
    default:
        return "";
    }
}

const LanguageState& Installation::chosenLanguage() const
{
    if (preferred == uinfo::unknownLanguage) {
        throw Failure("no language is installed in " + shown(folder));
    }
    if (const std::string why = whyNotWanted(); !why.empty()) {
        throw Failure(why + "; name an installed language with --language");
    }
    return languages[static_cast<std::size_t>(languageChoice.isMade() ? languageChoice.language : preferred)];
}

Text Installation::language() const
{
    return rkuinfo::text(chosenLanguage().record.shortName);
}

void Installation::throwTooLong()
{
    throw Failure("name too long: the names make a path of more than 1023 characters", exitUsage);
}

Text Installation::companyRoot() const
{
    return composed([this](auto& key) { return uinfo::appendCompanyRoot(key, companyChoice.value()); });
}

Text Installation::productRoot() const
{
    return composed([this](auto& key) {
        return uinfo::appendProductRoot(key, Argument(companyRoot()), productChoice.value());
    });
}

Text Installation::versionRoot() const
{
    return composed([this](auto& key) { return uinfo::appendVersionRoot(key, Argument(productRoot())); });
}

Text Installation::path(TarvoConfig::Path subtree) const
{
    const Argument root(productRoot()), version(versionRoot());
    if (subtree == TarvoConfig::eCurrentProfile) {
        return composed([this](auto& key) {
            return key.append(Argument(path(TarvoConfig::eProfilesRoot))) &&
                   uinfo::appendProfile(key, profileChoice().value());
        });
    }
    const Argument name(subtree > TarvoConfig::eVersionRoot ? language() : Text());
    return composed([&](auto& key) { return uinfo::appendSubtree(key, subtree, {root, version, name}); });
}

uinfo::Choice Installation::profileChoice() const
{
    return uinfo::chooseProfile(m_names.profile, Argument(path(TarvoConfig::eProfilesRoot)));
}

uinfo::Choice Installation::storedProfile() const
{
    return uinfo::chooseProfile(nullptr, Argument(path(TarvoConfig::eProfilesRoot)));
}

std::optional<Text> Installation::storedPath(TarvoConfig::Path subtree, const wchar_t* valuePath) const
{
    const Text whole = joinedKey(path(subtree), rkuinfo::text(valuePath));
    const std::size_t end = whole.rfind(Text::value_type('\\'));
    const auto key = uinfo::RegistryKey::open(HKEY_CURRENT_USER, Argument(whole.substr(0, end)), KEY_READ);
    VelaVariant value;
    const auto read = key ? uinfo::readValueFromKey(key.get(), Argument(whole.substr(end + 1)), value)
                          : TarvoConfig::eNotFound;
    uinfo::PathBuffer stored;
    return uinfo::assignStoredPath(stored, read, value) ? std::optional(rkuinfo::text(stored.text()))
                                                        : std::nullopt;
}

Text Installation::iniFile(const wchar_t* file) const
{
    return folder + rkuinfo::text(file);
}

Text Installation::iniText(const wchar_t* file, const wchar_t* section, const wchar_t* key,
                           unsigned long capacity) const
{
    wchar_t out[1024] = {};
    const bool isRead = uinfo::readIniText(m_folder, section, key, out, capacity, file) == TarvoConfig::eOk;
    return isRead ? rkuinfo::text(out) : Text();
}

Text Installation::commandPrefix() const
{
    uinfo::PathBuffer prefix;
    return uinfo::readCommandPrefix(m_folder, prefix) ? rkuinfo::text(prefix.text()) : Text();
}
