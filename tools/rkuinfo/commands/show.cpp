// rkuinfo show.
#include "commands/command.h"

#include "program/names.h"
#include "transfer/json_file.h"

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
    const bool isThere = exists(path);
    return {std::move(name), std::move(path), true, isThere};
}

Text buildStamp()
{
    wchar_t stamp[64] = {};
    GetVerNum(stamp, 64, false);
    return rkuinfo::text(stamp);
}

using NamedFolder = std::pair<const char*, uinfo::UserFolder>;

/// The sections of one installation. The library's own functions say the same of the program that asks them.
class Report
{
public:
    explicit Report(const Installation& installation)
        : m_of(installation), m_language(installation.chosenLanguage())
    {
    }

    std::vector<Section> sections() const { return {identity(), program(), roaming(), local(), registry()}; }

private:
    Section identity() const
    {
        return {"identity",
                {fact("company", m_of.company), fact("product", m_of.product),
                 fact("product-type", long{uinfo::productType(m_of.productChoice.value())}),
                 fact("version", GetVelaProgramVersionString()),
                 fact("service-pack", GetServicePackageVersionString()), fact("build", buildStamp()),
                 fact("language", m_of.language()), fact("language-name", m_language.record.globalName),
                 fact("local-name", m_language.localName.value_or(Text())),
                 fact("language-id", long{m_language.record.lcid}), fact("profile", m_of.profile()),
                 fact("command-prefix", m_of.commandPrefix())}};
    }

    Section program() const
    {
        const Text cache = m_of.folder + rkuinfo::text(uinfo::userDataCache);
        return {"program",
                {file("program-folder", m_of.folder), file("resources", m_language.folder),
                 file("help-viewer", m_of.folder + rkuinfo::text(uinfo::helpViewer)),
                 file("user-data-cache", cache), file("language-cache", joinedKey(cache, m_of.language()))}};
    }

    Text folderOf(const Text& applicationData, uinfo::UserFolder folder) const
    {
        return m_of.composed([&](uinfo::BoundedText& path) {
            return path.append(rkuinfo::Argument(applicationData)) &&
                   uinfo::appendUserFolder(
                       path, folder,
                       {m_of.companyChoice.value(), m_of.productChoice.value(), m_language.record.shortName});
        });
    }

    std::vector<Fact> folders(const Text& applicationData, std::initializer_list<NamedFolder> leaves) const
    {
        using enum uinfo::UserFolder;
        std::vector<Fact> facts = {file("application-data", applicationData)};
        std::vector<NamedFolder> all = {
            {"company", company}, {"product", product}, {"version", version}, {"language", language}};
        all.insert(all.end(), leaves);
        for (const auto& [name, folder] : all) {
            facts.push_back(file(name, folderOf(applicationData, folder)));
        }
        return facts;
    }

    Section roaming() const
    {
        using enum uinfo::UserFolder;
        const Text applicationData = rkuinfo::text(GetUserApplicationDataPath);
        std::vector<Fact> facts = folders(applicationData, {{"support", support},
                                                            {"plotters", plotters},
                                                            {"crash-report", crashReport},
                                                            {"printstyle", printstyle}});
        const std::optional<Text> stored = m_of.storedPath(TarvoConfig::eUserConfig, uinfo::styleFileValue);
        facts.push_back(file("ui-style", stored ? *stored : m_of.composed([&](uinfo::BoundedText& path) {
            return path.append(rkuinfo::Argument(folderOf(applicationData, support))) &&
                   uinfo::appendStyleFile(path);
        })));
        return {"roaming", facts};
    }

    Section local() const
    {
        return {"local", folders(rkuinfo::text(GetUserLocalApplicationDataPath),
                                 {{"template", uinfo::UserFolder::templates}})};
    }

    Section registry() const
    {
        Section section = {"registry", {}};
        const auto add = [&section](std::string_view name, const Text& path) {
            section.facts.push_back({std::string(name), path, true, Key::find(path).has_value()});
        };
        for (const Subtree& subtree : subtrees()) {
            add(subtree.name, m_of.path(subtree.path));
        }
        add("profile-config", m_of.composed([this](uinfo::BoundedText& key) {
            return key.append(rkuinfo::Argument(m_of.path(TarvoConfig::eCurrentProfile))) &&
                   uinfo::appendProfileConfig(key);
        }));
        section.facts.push_back(fact(
            "custom-resources",
            m_of.storedPath(TarvoConfig::eCurrentProfile, uinfo::customResourcesValue).value_or(Text())));
        return section;
    }

    const Installation& m_of;
    const LanguageState& m_language;
};

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
                          {missing ? "missing" : "", Style::quiet},
                          {fact.value.empty() ? "(none)" : shown(fact.value),
                           missing || fact.value.empty() ? Style::quiet : Style::plain}});
        }
    }
    table.print(layout);
}

bool showJson = false;

void show(Session& session)
{
    const Installation installation(session);
    const std::vector<Section> sections = Report(installation).sections();
    if (showJson) {
        printJson(describe(sections));
    } else {
        printTable(sections, session.layout());
    }
}

} // namespace

Command showCommand()
{
    return {"show",
            "Show who the program is, and where its folders, files and registry keys are",
            {jsonFlag(showJson)},
            "What does not exist is marked as missing.",
            show};
}
