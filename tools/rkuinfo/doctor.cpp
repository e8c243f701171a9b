// rkuinfo doctor.
#include "commands.h"

#include "installation.h"
#include "json.h"
#include "system.h"
#include "table.h"
#include "user_registry.h"

#include <io.h>

#include <vector>

namespace {

using rkuinfo::Argument;

struct Finding
{
    std::string problem;
    std::string remedy;
};
using Findings = std::vector<Finding>;

// ---- INI files

Text iniText(const wchar_t* section, const Argument& key)
{
    VelaVariant value;
    return GetVelaIniConfigValue(section, key, value, VelaVariant::eString) != 0
               ? rkuinfo::text(value.getString())
               : Text();
}

bool exists(const Text& path)
{
    return _waccess(Argument(path), 0) == 0;
}

/// Whether the file is there and can be read.
bool checkIniFile(const std::string& name, Findings& findings)
{
    const Text path = rkuinfo::text(GetVelaProgramPath) + utf16(name);
    if (!exists(path)) {
        return false;
    }
    if (isBarred(name)) {
        findings.push_back({shown(path) + " cannot be read", "give its users the right to read it"});
        return false;
    }
    return true;
}

void checkLanguageIni(const Installation& installation, Findings& findings)
{
    const Text wantedId = iniText(L"Product", L"LocaleId");
    if (!wantedId.empty() && iniText(L"LocaleIdLangName", wantedId).empty()) {
        findings.push_back(
            {"TARVO.ini: [Product] LocaleId=" + shown(wantedId) + " is not mapped to a language",
             "add " + shown(wantedId) + "=xx-XX to its section [LocaleIdLangName]"});
    }
    const auto checkMapping = [&findings](const Text& id) {
        const Text name = iniText(L"LocaleIdLangName", id);
        if (!name.empty() && !TarvoLanguage::isValidShortName(Argument(name))) {
            findings.push_back(
                {"TARVO.ini: [LocaleIdLangName] " + shown(id) + '=' + shown(name) + " names no language",
                 "write the short name of one of the fifteen languages there"});
        }
    };
    bool isKnownId = false;
    for (const LanguageState& state : installation.languages) {
        const Text id = utf16(std::to_string(state.language.velaLanguage()));
        isKnownId = isKnownId || id == wantedId;
        checkMapping(id);
    }
    if (!isKnownId && !wantedId.empty()) {
        checkMapping(wantedId);
    }
}

void checkIni(const Installation& installation, Findings& findings)
{
    if (checkIniFile("TARVO.ini", findings)) {
        checkLanguageIni(installation, findings);
    }
    if (checkIniFile("product.ini", findings) && *GetVelaArchitectrueCommandNamePrefix() == 0) {
        findings.push_back({"product.ini gives commands no prefix",
                            "write numbers for MajorVer and ProductId into its section [Product]"});
    }
}

// ---- Languages

void checkLanguage(const LanguageState& state, bool needsEntries, Findings& findings)
{
    const std::string name = utf8(rkuinfo::text(state.language.shortName()));
    const std::string folder = shown(state.folder);
    const std::string install = "install " + name;
    switch (state.installed) {
    case uinfo::Installed::noFolder:
        if (state.hasEntry && needsEntries) {
            findings.push_back({name + " has an uninstall entry and no folder " + folder,
                                install + " again, or remove the entry"});
        }
        return;
    case uinfo::Installed::emptyFolder:
        findings.push_back({folder + " holds no library", install + " again, or remove the folder"});
        return;
    case uinfo::Installed::noEntry:
        findings.push_back(
            {folder + " is no installed language: " + state.whyNot(), install + ", or remove the folder"});
        break;
    case uinfo::Installed::yes:
        break;
    }
    if (!state.hasResources) {
        findings.push_back({folder + "\\RkUInfoRes.dll cannot be loaded", install + " again"});
    }
}

void checkLanguages(const Installation& installation, Findings& findings)
{
    for (const LanguageState& state : installation.languages) {
        checkLanguage(state, installation.needsEntries, findings);
    }
    if (installation.preferred < 0) {
        findings.push_back({"no language is installed", "install one: no application can start"});
    } else if (const std::string why = whyNotWanted(installation); !why.empty()) {
        const Text instead = rkuinfo::text(TarvoLanguage(installation.preferred).shortName());
        findings.push_back(
            {why, "install it, or choose another: rkuinfo --language " + utf8(instead) + " provision"});
    }
}

// ---- The user's folders and tree

void checkShellFolder(const char* name, unsigned long (*function)(wchar_t*), Findings& findings)
{
    if (rkuinfo::text(function).empty()) {
        findings.push_back(
            {std::string("the user has no ") + name + " application data folder",
             "create it: ~/.config or ~/.local/share on Linux, else the user's profile is broken"});
    }
}

/// "Default" is the library's own name for a profile, whose key comes with its first setting.
void checkTree(const std::string& profiles, Findings& findings)
{
    constexpr std::size_t longestProfile = 254; // bytes, as the library reads it
    if (!userKeyExists(profiles)) {
        findings.push_back(
            {"the user has no key " + shown(utf16(profiles)), "create the user's tree: rkuinfo provision"});
        return;
    }
    const std::string profile = utf8(readUserText(profiles, nullptr, longestProfile));
    if (profile.empty()) {
        findings.push_back({"no profile is the current one", "choose one: rkuinfo provision"});
    } else if (profile != "Default" && !userKeyExists(profiles + '\\' + profile)) {
        findings.push_back({"the current profile '" + shown(utf16(profile)) + "' has no key",
                            "store a setting in it, or choose another with --profile"});
    }
}

// ---- The command

Findings examineAll(const Session& session)
{
    Findings findings;
    const Installation installation = examine(session);
    checkIni(installation, findings);
    checkLanguages(installation, findings);
    checkShellFolder("roaming", GetUserApplicationDataPath, findings);
    checkShellFolder("local", GetUserLocalApplicationDataPath, findings);
    if (installation.preferred >= 0 && whyNotWanted(installation).empty()) {
        const TarvoLanguage language = installation.wanted.empty()
                                           ? TarvoLanguage(installation.preferred)
                                           : TarvoLanguage(Argument(installation.wanted));
        checkTree(installation.versionRoot + '\\' + utf8(rkuinfo::text(language.shortName())) + "\\Profiles",
                  findings);
    }
    return findings;
}

void printFindings(const Findings& findings, const Layout& layout)
{
    Table table;
    for (const Finding& finding : findings) {
        if (layout.columns) {
            table.addRow({{"problem", Style::bad}, {finding.problem}});
            table.addRow({{"remedy", Style::good}, {finding.remedy}});
        } else {
            table.addRow({{finding.problem}, {finding.remedy}});
        }
    }
    table.print(layout);
}

} // namespace

void doctor(Session& session)
{
    const Findings findings = examineAll(session);
    if (session.json) {
        Json json = Json::array();
        for (const Finding& finding : findings) {
            json.push_back({{"problem", finding.problem}, {"remedy", finding.remedy}});
        }
        printJson({{"findings", json}});
    } else if (findings.empty()) {
        print("nothing is wrong");
    } else {
        printFindings(findings, layout(session));
    }
    session.exitCode = findings.empty() ? 0 : exitFailed;
}
