#include "model/installation.h"

#include "installation/ini_files.h"
#include "installation/names.h"
#include "model/system.h"
#include "store/codec.h"
#include "transfer/transfer.h"

#include <io.h>

#include <cstdlib>
#include <memory>

namespace {

using rkuinfo::Argument;
using uinfo::Source;

constexpr const wchar_t* nowhere = L"Software\\\x1"; // a key that does not exist

struct FreeModule
{
    void operator()(HINSTANCE module) const { FreeLibrary(module); }
};

/// Returns whether the bytes of a library contain a resource directory entry for the language.
bool hasLanguage(const std::string& library, const uinfo::Language& language)
{
    return library.find(std::string("\0\0\1\0", 4) + bytesOf(language.lcid)) != std::string::npos;
}

void readResources(LanguageState& state)
{
    const Text library = joinedKey(state.folder, rkuinfo::text(uinfo::languageLibrary));
    const std::string bytes = readSmallFile(nativePath(library)).value_or("");
    if (bytes.empty()) {
        return;
    }
    const std::unique_ptr<HINSTANCE__, FreeModule> module(
        LoadLibraryExW(Argument(library), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t name[64] = {};
    if (module && LoadStringW(module.get(), state.record.localNameId, name, 63) > 0) {
        state.hasResources = true;
        state.localName = rkuinfo::text(name);
    }
    for (const uinfo::Language& language : uinfo::languages) {
        if (!hasLanguage(bytes, state.record) && hasLanguage(bytes, language)) {
            state.other = utf8(language.shortName);
        }
    }
}

std::string sourceName(const uinfo::Finding& finding)
{
    const std::string value = uinfo::isEmpty(finding.name) ? "default value" : utf8(finding.name);
    return finding.source == Source::argument   ? "the command line"
           : finding.source == Source::registry ? "the registry (" + value + ')'
           : finding.source == Source::iniFile  ? utf8(uinfo::tarvoIni) + " (" + value + ')'
                                                : "the default";
}

/// Returns why start-up rejects a name, or an empty string if it accepts the name. If a key cannot be opened,
/// the library treats the value as absent; this function reports it as unreadable.
std::string problemOf(const uinfo::Finding& finding, const Text& key)
{
    constexpr const char* words[] = {
        "",           "absent",         "empty",        "too long", "of another type",
        "unreadable", "not a language", "not installed"};
    uinfo::Answer answer = finding.answer;
    Losses losses;
    guard(&losses, [&] { keyExists(key); });
    if (finding.source == Source::registry && !losses.empty()) {
        answer = uinfo::Answer::unreadable;
    }
    return words[static_cast<std::size_t>(answer)];
}

} // namespace

std::string Session::commandLine(const std::string& words) const
{
    std::string line = "rkuinfo ";
    for (const char* const option : {"--program", "--company", "--product", "--language", "--profile"}) {
        line += has(option) ? std::string(option) + ' ' + shown(shellWord((*this)[option])) + ' ' : "";
    }
    return line + words;
}

Text Session::programFolder() const
{
    const std::string named = (*this)["--program"];
    Text folder = named.empty() ? rkuinfo::text(GetVelaProgramPath) : fullFolder(named);
    if (folder.empty()) {
        throw Failure("'" + named + "' is not a folder", {}, exitUsage);
    }
    return folder;
}

Layout Session::layout() const
{
    const std::optional<std::size_t> terminal = terminalColumns();
    const char* const off = std::getenv("NO_COLOR");
    const char* const kind = std::getenv("TERM");
    const bool isPlain =
        (off != nullptr && *off != 0) || (kind != nullptr && std::string_view(kind) == "dumb");
    const std::string when = (*this)["--color"];
    return {has("--columns") ? std::optional<std::size_t>(std::stoul((*this)["--columns"], nullptr, 0))
                             : terminal,
            when == "always" || (when != "never" && terminal && !isPlain)};
}

bool exists(const Text& path)
{
    return !path.empty() && _waccess(Argument(path), 0) == 0;
}

std::string LanguageState::whyNot() const
{
    constexpr const char* words[] = {"", "no folder", "empty folder", "no uninstall entry"};
    return words[static_cast<std::size_t>(installed)];
}

Installation::Installation(const Session& session)
    : m_folder(session.programFolder()),
      m_companyName(utf16(session["--company"])),
      m_productName(utf16(session["--product"])),
      m_languageName(utf16(session["--language"])),
      m_profileName(utf16(session["--profile"])),
      folder(rkuinfo::text(m_folder)),
      company(uinfo::chooseCompany(m_companyName, m_folder)),
      companyRoot(composed([this](auto& key) { return uinfo::appendCompanyRoot(key, company.value()); })),
      product(uinfo::chooseProduct(m_productName, Argument(companyRoot), m_folder)),
      needsEntries(uinfo::isDefaultProduct(company.value(), product.value())),
      wanted(uinfo::chooseLanguage(m_languageName, Argument(path(TarvoConfig::eVersionRoot)), m_folder,
                                   needsEntries)),
      preferred(uinfo::preferredLanguage(m_folder, needsEntries))
{
    keyExists(rkuinfo::text(L"Software")); // throws if the registry cannot be read
    if (!company.isMade() || !product.isMade()) {
        throw Failure("--company and --product may have at most 254 characters", {}, exitUsage);
    }
    for (const uinfo::Language& record : uinfo::languages) {
        LanguageState state = {record, folder + rkuinfo::text(record.shortName),
                               uinfo::installed(m_folder, record, needsEntries)};
        state.hasEntry = uinfo::hasUninstallEntry(record);
        readResources(state);
        languages.push_back(std::move(state));
    }
}

std::string Installation::whyNotWanted() const
{
    const std::string which =
        utf8(wanted.value()) + ", which " + sourceName(wanted.decision()) + " names, is ";
    return wanted.decision().answer == uinfo::Answer::notALanguage ? which + "not a language"
           : wanted.decision().answer == uinfo::Answer::notInstalled
               ? which + "not installed: " + languages[static_cast<std::size_t>(wanted.language)].whyNot()
               : "";
}

std::string Installation::whyNone() const
{
    std::string why;
    for (const LanguageState& state : languages) {
        if (state.installed != uinfo::Installed::noFolder) {
            why += (why.empty() ? ": " : ", ") + state.name() + " (" + state.whyNot() + ')';
        }
    }
    return "no language is installed in " + utf8(folder) +
           (why.empty() ? ": it has no language folder" : why);
}

const LanguageState& Installation::chosenLanguage() const
{
    if (preferred == uinfo::unknownLanguage) {
        throw Failure(whyNone());
    }
    if (const std::string why = whyNotWanted(); !why.empty()) {
        throw Failure(why, "choose an installed language with --language");
    }
    return languages[static_cast<std::size_t>(wanted.isMade() ? wanted.language : preferred)];
}

uinfo::Choice Installation::profile() const
{
    return uinfo::chooseProfile(m_profileName, Argument(path(TarvoConfig::eProfilesRoot)));
}

Text Installation::path(TarvoConfig::Path subtree) const
{
    const Argument root(composed(
        [this](auto& key) { return uinfo::appendProductRoot(key, Argument(companyRoot), product.value()); }));
    const Argument version(composed([&](auto& key) { return uinfo::appendVersionRoot(key, root); }));
    if (subtree == TarvoConfig::eCurrentProfile) {
        return composed([this](auto& key) {
            return key.append(Argument(path(TarvoConfig::eProfilesRoot))) &&
                   uinfo::appendProfile(key, profile().value());
        });
    }
    const Argument name(subtree > TarvoConfig::eVersionRoot ? language() : Text());
    return composed([&](auto& key) { return uinfo::appendSubtree(key, subtree, {root, version, name}); });
}

std::vector<Origin> Installation::origins() const
{
    std::vector<Origin> all;
    // `choose` stops at the first source that contains a name, so each pass hides one more source from
    // `choose`.
    const auto read = [&](const char* name, const uinfo::Choice& used, const wchar_t* given, const Text& root,
                          const auto& choose) {
        for (const Source source : {Source::argument, Source::registry, Source::iniFile, Source::builtIn}) {
            const auto choice = choose(source == Source::argument ? given : nullptr,
                                       Argument(source <= Source::registry ? root : rkuinfo::text(nowhere)),
                                       Argument(source <= Source::iniFile ? folder : Text()));
            const uinfo::Finding* last = nullptr;
            for (const uinfo::Finding& finding : choice.findings()) {
                last = finding.source == source ? &finding : last;
            }
            if (last != nullptr) {
                all.push_back({name, sourceName(*last),
                               last == &choice.decision() ? rkuinfo::text(choice.value()) : Text(),
                               problemOf(*last, root),
                               last->answer == uinfo::Answer::chosen && source == used.decision().source});
            }
        }
    };
    read("company", company, m_companyName, {}, [](auto* given, const auto& /*root*/, const auto& program) {
        return uinfo::chooseCompany(given, program);
    });
    read("product", product, m_productName, companyRoot, uinfo::chooseProduct);
    read("language", wanted, m_languageName, path(TarvoConfig::eVersionRoot),
         [this](auto* given, const auto& root, const auto& program) {
             return uinfo::chooseLanguage(given, root, program, needsEntries);
         });
    if (hasLanguage()) {
        read("profile", profile(), m_profileName, path(TarvoConfig::eProfilesRoot),
             [](auto* given, const auto& root, const auto& /*program*/) {
                 return uinfo::chooseProfile(given, root);
             });
    }
    return all;
}

std::optional<Text> Installation::storedPath(TarvoConfig::Path subtree, const wchar_t* valuePath) const
{
    const Text whole = joinedKey(path(subtree), rkuinfo::text(valuePath));
    const auto key = uinfo::RegistryKey::open(HKEY_CURRENT_USER, Argument(parentKey(whole)), KEY_READ);
    VelaVariant value;
    const auto read =
        key ? uinfo::readValueFromKey(key.get(), Argument(lastName(whole)), value) : TarvoConfig::eNotFound;
    uinfo::PathBuffer stored;
    return uinfo::assignStoredPath(stored, read, value) ? std::optional(rkuinfo::text(stored.text()))
                                                        : std::nullopt;
}

Text Installation::iniText(const wchar_t* section, const wchar_t* key) const
{
    wchar_t text[256] = {};
    uinfo::readIniText(m_folder, section, key, text, 256, uinfo::tarvoIni);
    return rkuinfo::text(text);
}

Text Installation::commandPrefix() const
{
    uinfo::PathBuffer prefix;
    return uinfo::readCommandPrefix(m_folder, prefix) ? rkuinfo::text(prefix.text()) : Text();
}
