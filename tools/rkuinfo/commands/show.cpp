// rkuinfo show.
#include "commands/command.h"

#include "model/value.h"
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

/// A text of the user's tree, of any length.
Text stored(const Text& path, const char* name)
{
    const std::optional<Key> key = Key::find(path);
    const std::optional<Value> value = key ? key->value(utf16(name)) : std::nullopt;
    return value && value->type == REG_SZ ? textOf(*value) : Text();
}

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
                 fact("product-type", velaGetProduct()->productType()),
                 fact("version", GetVelaProgramVersionString()),
                 fact("service-pack", GetServicePackageVersionString()), fact("build", buildStamp()),
                 fact("language", m_of.language()), fact("language-name", m_language.record.globalName),
                 fact("local-name", m_language.localName.value_or(Text())),
                 fact("language-id", long{m_language.record.lcid}), fact("profile", m_of.profile()),
                 fact("command-prefix", commandPrefix())}};
    }

    Text commandPrefix() const
    {
        const auto number = [this](const char* key) {
            return m_of.iniText("product.ini", L"Product", utf16(key), 32);
        };
        const Text major = number("MajorVer");
        const Text product = number("ProductId");
        return major.empty() || product.empty() ? Text() : utf16("S") + major + product + utf16("_");
    }

    Section program() const
    {
        const Text cache = m_of.folder + utf16("UserDataCache");
        return {"program",
                {file("program-folder", m_of.folder), file("resources", m_language.folder),
                 file("help-viewer", m_of.folder + utf16("RKHelp.exe")), file("user-data-cache", cache),
                 file("language-cache", joinedKey(cache, m_of.language()))}};
    }

    /// The folders of company, product, version and language, each in the one before it.
    std::vector<Fact> levels(Text path, Text& language) const
    {
        std::vector<Fact> facts = {file("application-data", path)};
        const std::pair<const char*, Text> names[] = {{"company", m_of.company},
                                                      {"product", m_of.product},
                                                      {"version", utf16("2018")},
                                                      {"language", m_of.language()}};
        for (const auto& [name, folder] : names) {
            path += folder + utf16("\\");
            facts.push_back(file(name, path));
        }
        language = path;
        return facts;
    }

    Section roaming() const
    {
        Text language;
        std::vector<Fact> facts = levels(rkuinfo::text(GetUserApplicationDataPath), language);
        const Text support = language + utf16("Support\\");
        facts.push_back(file("support", support));
        facts.push_back(file("plotters", language + utf16("Plotters\\")));
        facts.push_back(file("crash-report", language + utf16("CrashReport\\")));
        facts.push_back(file("printstyle", language + utf16("Printstyle\\")));
        const Text style = stored(joinedKey(m_of.path(TarvoConfig::eUserConfig), utf16("Config")), "UIStyle");
        facts.push_back(file("ui-style", style.empty() ? support + utf16("Style.tus") : style));
        return {"roaming", facts};
    }

    Section local() const
    {
        Text language;
        std::vector<Fact> facts = levels(rkuinfo::text(GetUserLocalApplicationDataPath), language);
        facts.push_back(file("template", language + utf16("Template")));
        return {"local", facts};
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
        const Text profile = m_of.path(TarvoConfig::eCurrentProfile);
        add("profile-config", joinedKey(profile, utf16("Config")));
        section.facts.push_back(
            fact("custom-resources", stored(joinedKey(profile, utf16("CommonSettings")), "CustomResFile")));
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
