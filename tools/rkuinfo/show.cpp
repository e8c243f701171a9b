// rkuinfo show.
#include "commands.h"

#include "installation.h"
#include "json.h"
#include "names.h"
#include "table.h"

#include <io.h>

namespace {

struct Fact
{
    std::string name;
    Text value; // empty: there is none
    bool isPlace = false;
    bool exists = false;
    bool isNumber = false;
};

struct Section
{
    std::string name;
    std::vector<Fact> facts;
};

Fact fact(std::string name, Text value)
{
    return {std::move(name), std::move(value)};
}

Fact fact(std::string name, const wchar_t* value)
{
    return fact(std::move(name), rkuinfo::text(value));
}

Fact fact(std::string name, long number)
{
    return {std::move(name), utf16(std::to_string(number)), false, false, true};
}

Fact file(std::string name, Text path)
{
    const bool exists = !path.empty() && _waccess(rkuinfo::Argument(path), 0) == 0;
    return {std::move(name), std::move(path), true, exists};
}

Fact file(std::string name, unsigned long (*function)(wchar_t*))
{
    return file(std::move(name), rkuinfo::text(function));
}

Text buildStamp()
{
    wchar_t stamp[64] = {};
    GetVerNum(stamp, 64, false);
    return rkuinfo::text(stamp);
}

/// The name as stored, of any length.
Text profileName()
{
    return rkuinfo::get<Text>(TarvoConfig::eProfilesRoot, nullptr).value_or(Text());
}

Section identity()
{
    return {"identity",
            {fact("company", velaConfig()->companyName()), fact("product", velaConfig()->productName()),
             fact("product-type", velaGetProduct()->productType()),
             fact("version", GetVelaProgramVersionString()),
             fact("service-pack", GetServicePackageVersionString()), fact("build", buildStamp()),
             fact("language", GetCurrentLanguageShortName()),
             fact("language-name", GetCurrentLanguageGlobalName()),
             fact("local-name", GetCurrentLanguageLocalName()),
             fact("language-id", GetCurrentVelaLanguageId()), fact("profile", profileName()),
             fact("command-prefix", GetVelaArchitectrueCommandNamePrefix())}};
}

unsigned long resourceFolder(wchar_t* buffer)
{
    return GetResourceDllPath(buffer, 1024);
}

Section program()
{
    return {"program",
            {fact("program", rkuinfo::text(GetVelaProgramName)), file("program-folder", GetVelaProgramPath),
             file("resources", resourceFolder),
             file("help-viewer", rkuinfo::text(velaGetProduct()->helpFilePath())),
             file("user-data-cache", rkuinfo::text(GetVelaUserDataCachePath())),
             file("language-cache", GetVelaUserDataCacheLanPath)}};
}

Section roaming()
{
    return {"roaming",
            {file("application-data", GetUserApplicationDataPath),
             file("company", GetUserApplicationDataComanyPath),
             file("product", GetUserApplicationDataProductPath),
             file("version", GetUserApplicationDataVersionPath),
             file("language", GetUserApplicationDataLanguagePath),
             file("support", GetUserApplicationDataSupportPath),
             file("plotters", GetUserApplicationDataPlottersPath),
             file("crash-report", GetUserApplicationDataCrashReportPath),
             file("printstyle", GetUserApplicationDataPrintstylePath),
             file("ui-style", GetVelaUIStyleConfigFilePath)}};
}

Section local()
{
    return {"local",
            {file("application-data", GetUserLocalApplicationDataPath),
             file("company", GetUserLocalApplicationDataComanyPath),
             file("product", GetUserLocalApplicationDataProductPath),
             file("version", GetUserLocalApplicationDataVersionPath),
             file("language", GetUserLocalApplicationDataLanguagePath),
             file("template", GetUserLocalApplicationDataTemplatePath)}};
}

Section registry()
{
    Section section = {"registry", {}};
    for (const Subtree& subtree : subtrees()) {
        wchar_t path[1024];
        velaConfig()->getRegRootPath(subtree.path, path);
        section.facts.push_back({std::string(subtree.name), rkuinfo::text(path), true,
                                 velaConfig()->isItemExist(subtree.path, nullptr) != 0});
    }
    section.facts.push_back({"profile-config", rkuinfo::text(GetVelaRegistryCurrentProfileConfigRootKey),
                             true, velaConfig()->isItemExist(TarvoConfig::eCurrentProfile, L"Config") != 0});
    section.facts.push_back(fact("custom-resources", rkuinfo::text(GetCustomResFileName)));
    return section;
}

Json describe(const Fact& fact)
{
    if (fact.isNumber) {
        return Json::parse(utf8(fact.value));
    }
    const Json value = fact.value.empty() ? Json() : toJson(fact.value);
    return fact.isPlace ? Json({{"path", value}, {"exists", fact.exists}}) : value;
}

Json describe(const std::vector<Section>& sections)
{
    Json all;
    for (const Section& section : sections) {
        for (const Fact& fact : section.facts) {
            all[section.name][fact.name] = describe(fact);
        }
    }
    return all;
}

/// For programs a name says its section too, since some are in several.
void printTable(const std::vector<Section>& sections, const Layout& layout)
{
    Table table;
    for (const Section& section : sections) {
        table.addHeading(section.name);
        for (const Fact& fact : section.facts) {
            const bool missing = fact.isPlace && !fact.exists;
            table.addRow({{layout.columns ? fact.name : section.name + '.' + fact.name, Style::name},
                          {missing ? "missing" : "", Style::bad},
                          {fact.value.empty() ? "(none)" : shown(fact.value),
                           missing || fact.value.empty() ? Style::quiet : Style::plain}});
        }
    }
    table.print(layout);
}

} // namespace

void show(Session& session)
{
    startUp(session);
    const std::vector<Section> sections = {identity(), program(), roaming(), local(), registry()};
    if (session.json) {
        printJson(describe(sections));
    } else {
        printTable(sections, layout(session));
    }
}
