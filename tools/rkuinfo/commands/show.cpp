// rkuinfo show.
#include "commands/command.h"

#include "installation/names.h"

namespace {

using rkuinfo::Argument;

/// Describes one installation. The library's own functions return the same to the program that asks them.
class Report
{
public:
    Report(const Installation& installation, const Layout& layout)
        : m_of(installation),
          m_language(installation.chosenLanguage()),
          m_name(m_language.record.shortName),
          m_isForPeople(layout.columns.has_value())
    {
        addIdentity();
        addProgram();
        addFolders("roaming", rkuinfo::text(GetUserApplicationDataPath));
        addFolders("local", rkuinfo::text(GetUserLocalApplicationDataPath));
        addRegistry();
    }

    const Table& table() const { return m_table; }
    const Json& json() const { return m_json; }

private:
    void begin(const char* section)
    {
        m_section = section;
        m_table.addHeading(section);
    }

    void add(const std::string& name, const Text& value, const Json& json, bool isMissing = false)
    {
        const bool isQuiet = isMissing || value.empty();
        m_table.addRow(
            {{(m_isForPeople ? "" : m_section + '.') + name, Style::name}, // programs need it to be unique
             {isMissing ? "missing" : "", Style::quiet},
             {value.empty() ? "(none)" : shown(value), isQuiet ? Style::quiet : Style::plain}});
        m_json[m_section][name] = json;
    }

    void addText(const char* name, const Text& value)
    {
        add(name, value, value.empty() ? Json() : toJson(value));
    }

    void addNumber(const char* name, long number) { add(name, utf16(std::to_string(number)), number); }

    void addPlace(const std::string& name, const Text& path, bool isThere)
    {
        add(name, path, {{"path", path.empty() ? Json() : toJson(path)}, {"exists", isThere}}, !isThere);
    }

    void addFile(const char* name, const Text& path) { addPlace(name, path, exists(path)); }

    void addIdentity()
    {
        begin("identity");
        wchar_t stamp[64] = {};
        GetVerNum(stamp, 64, false);
        addText("company", rkuinfo::text(m_of.company.value()));
        addText("product", rkuinfo::text(m_of.product.value()));
        addNumber("product-type", uinfo::productType(m_of.product.value()));
        addText("version", rkuinfo::text(GetVelaProgramVersionString()));
        addText("service-pack", rkuinfo::text(GetServicePackageVersionString()));
        addText("build", rkuinfo::text(stamp));
        addText("language", m_of.language());
        addText("language-name", rkuinfo::text(m_language.record.globalName));
        addText("local-name", m_language.localName.value_or(Text()));
        addNumber("language-id", m_language.record.lcid);
        addText("profile", rkuinfo::text(m_of.profile().value()));
        addText("command-prefix", m_of.commandPrefix());
    }

    void addProgram()
    {
        begin("program");
        const Text cache = m_of.folder + rkuinfo::text(uinfo::userDataCache);
        addFile("program-folder", m_of.folder);
        addFile("resources", m_language.folder);
        addFile("help-viewer", m_of.folder + rkuinfo::text(uinfo::helpViewer));
        addFile("user-data-cache", cache);
        addFile("language-cache", joinedKey(cache, m_of.language()));
    }

    void addFolders(const char* section, const Text& applicationData)
    {
        using enum uinfo::UserFolder;
        begin(section);
        const bool isRoaming = m_section == "roaming";
        const auto folderOf = [&](uinfo::BoundedText& path, uinfo::UserFolder folder) {
            return path.append(Argument(applicationData)) &&
                   uinfo::appendUserFolder(path, folder,
                                           {m_of.company.value(), m_of.product.value(), m_name});
        };
        const auto add = [&](const char* name, uinfo::UserFolder folder) {
            addFile(name, m_of.composed([&](auto& path) { return folderOf(path, folder); }));
        };
        addFile("application-data", applicationData);
        add("company", company);
        add("product", product);
        add("version", version);
        add("language", language);
        if (!isRoaming) {
            add("template", templates);
            return;
        }
        add("support", support);
        add("plotters", plotters);
        add("crash-report", crashReport);
        add("printstyle", printstyle);
        const std::optional<Text> stored = m_of.storedPath(TarvoConfig::eUserConfig, uinfo::styleFileValue);
        addFile("ui-style", stored ? *stored : m_of.composed([&](auto& path) {
            return folderOf(path, support) && uinfo::appendStyleFile(path);
        }));
    }

    void addRegistry()
    {
        begin("registry");
        const auto addKey = [this](const std::string& name, const Text& path) {
            addPlace(name, path, Key::find(path).has_value());
        };
        std::int32_t number = 0;
        for (const std::string& name : subtreeNames()) {
            addKey(name, m_of.path(static_cast<TarvoConfig::Path>(number++)));
        }
        addKey("profile-config", m_of.composed([this](auto& key) {
            return key.append(Argument(m_of.path(TarvoConfig::eCurrentProfile))) &&
                   uinfo::appendProfileConfig(key);
        }));
        addText("custom-resources",
                m_of.storedPath(TarvoConfig::eCurrentProfile, uinfo::customResourcesValue).value_or(Text()));
    }

    const Installation& m_of;
    const LanguageState& m_language;
    const wchar_t* m_name; ///< of the language
    const bool m_isForPeople;
    std::string m_section;
    Table m_table;
    Json m_json;
};

/// What start-up asks for each name, and what it hears.
void showOrigins(const Session& session, const std::vector<Origin>& origins)
{
    Table table;
    Json json;
    for (const auto& [name, source, value, problem, isUsed] : origins) {
        table.addRow({{name, Style::name},
                      {source},
                      {isUsed ? "used" : problem, isUsed ? Style::good : Style::quiet},
                      {shown(value), isUsed ? Style::plain : Style::quiet}});
        json[name].push_back({{"source", source},
                              {"value", value.empty() ? Json() : toJson(value)},
                              {"problem", problem.empty() ? Json() : Json(problem)},
                              {"used", isUsed}});
    }
    printEither(session, table, json);
}

void show(Session& session)
{
    const Installation installation(session);
    if (session.has("--origin")) {
        showOrigins(session, installation.origins());
        return;
    }
    const Report report(installation, session.layout());
    printEither(session, report.table(), report.json());
}

const Command showCommand({"show", "[--origin] [--json]",
                           "Show the names in use, and where folders, files and keys are",
                           "What does not exist is marked as missing. --origin prints what each source\n"
                           "says: the first with a name is used.",
                           show});

} // namespace
