// rkuinfo show and languages.
#include "commands/command.h"

#include "installation/names.h"

namespace {

using rkuinfo::Argument;

Json textJson(const Text& text)
{
    return text.empty() ? Json() : toJson(text);
}

Json placeJson(const Text& path, bool isThere)
{
    return {{"path", textJson(path)}, {"exists", isThere}};
}

Json fileJson(const Text& path)
{
    return placeJson(path, exists(path));
}

Json identity(const Installation& of)
{
    const LanguageState& language = of.chosenLanguage();
    wchar_t stamp[64] = {};
    GetVerNum(stamp, 64, false);
    return {{"company", textJson(rkuinfo::text(of.company.value()))},
            {"product", textJson(rkuinfo::text(of.product.value()))},
            {"product-type", uinfo::productType(of.product.value())},
            {"version", textJson(rkuinfo::text(GetVelaProgramVersionString()))},
            {"service-pack", textJson(rkuinfo::text(GetServicePackageVersionString()))},
            {"build", textJson(rkuinfo::text(stamp))},
            {"language", language.name()},
            {"language-name", utf8(language.record.globalName)},
            {"local-name", textJson(language.localName.value_or(Text()))},
            {"language-id", language.record.lcid},
            {"profile", textJson(rkuinfo::text(of.profile().value()))},
            {"command-prefix", textJson(of.commandPrefix())}};
}

Json program(const Installation& of)
{
    const Text cache = of.folder + rkuinfo::text(uinfo::userDataCache);
    return {{"program-folder", fileJson(of.folder)},
            {"resources", fileJson(of.chosenLanguage().folder)},
            {"help-viewer", fileJson(of.folder + rkuinfo::text(uinfo::helpViewer))},
            {"user-data-cache", fileJson(cache)},
            {"language-cache", fileJson(joinedKey(cache, of.language()))}};
}

Json folders(const Installation& of, bool isRoaming)
{
    using enum uinfo::UserFolder;
    const Text applicationData =
        rkuinfo::text(isRoaming ? GetUserApplicationDataPath : GetUserLocalApplicationDataPath);
    const auto append = [&](uinfo::BoundedText& path, uinfo::UserFolder folder) {
        return path.append(Argument(applicationData)) &&
               uinfo::appendUserFolder(path, folder,
                                       {of.company.value(), of.product.value(), Argument(of.language())});
    };
    Json json = {{"application-data", fileJson(applicationData)}};
    const auto add = [&](const char* name, uinfo::UserFolder folder) {
        json[name] = fileJson(Installation::composed([&](auto& path) { return append(path, folder); }));
    };
    add("company", company);
    add("product", product);
    add("version", version);
    add("language", language);
    if (!isRoaming) {
        add("template", templates);
        return json;
    }
    add("support", support);
    add("plotters", plotters);
    add("crash-report", crashReport);
    add("printstyle", printstyle);
    const std::optional<Text> stored = of.storedPath(TarvoConfig::eUserConfig, uinfo::styleFileValue);
    json["ui-style"] = fileJson(stored ? *stored : Installation::composed([&](auto& path) {
        return append(path, support) && uinfo::appendStyleFile(path);
    }));
    return json;
}

Json registry(const Installation& of)
{
    Json json;
    const auto add = [&](const std::string& name, const Text& path) {
        json[name] = placeJson(path, keyExists(path));
    };
    std::int32_t number = 0;
    for (const std::string& name : subtreeNames()) {
        add(name, of.path(static_cast<TarvoConfig::Path>(number++)));
    }
    add("profile-config", Installation::composed([&](auto& key) {
            return key.append(Argument(of.path(TarvoConfig::eCurrentProfile))) &&
                   uinfo::appendProfileConfig(key);
        }));
    json["custom-resources"] =
        textJson(of.storedPath(TarvoConfig::eCurrentProfile, uinfo::customResourcesValue).value_or(Text()));
    return json;
}

/// Returns a heading for each section and a row for each of its members. If `isForPeople` is
/// false, adds the section to each name, so that all names are unique.
Table tableOf(const Json& json, bool isForPeople)
{
    Table table;
    for (const auto& [section, members] : json.items()) {
        table.push_back({{section, Style::heading}});
        for (const auto& [name, member] : members.items()) {
            const bool isMissing = member.is_object() && !member.value("exists", true);
            const Json& value = member.is_object() ? member.value("path", member) : member;
            const std::string text = value.is_null()     ? "(none)"
                                     : value.is_string() ? value.get<std::string>()
                                                         : value.dump();
            table.push_back(
                {{isForPeople ? name : std::string(section).append(".").append(name), Style::name},
                 {isMissing ? "missing" : "", Style::quiet},
                 {shown(text), isMissing || value.is_null() ? Style::quiet : Style::plain}});
        }
    }
    return table;
}

/// Prints the sources of each name in the order in which start-up reads them.
void showOrigins(const Session& session, const std::vector<Origin>& origins)
{
    Table table;
    Json json;
    for (const auto& [name, source, value, problem, isUsed] : origins) {
        table.push_back({{name, Style::name},
                         {source},
                         {isUsed ? "used" : problem, isUsed ? Style::good : Style::quiet},
                         {shown(value), isUsed ? Style::plain : Style::quiet}});
        json[name].push_back({{"source", source},
                              {"value", textJson(value)},
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
    const Json json = {{"identity", identity(installation)},
                       {"program", program(installation)},
                       {"roaming", folders(installation, true)},
                       {"local", folders(installation, false)},
                       {"registry", registry(installation)}};
    printEither(session, tableOf(json, session.layout().columns.has_value()), json);
}

void languages(Session& session)
{
    const Installation installation(session);
    Table table;
    Json list = Json::array();
    for (const LanguageState& state : installation.languages) {
        const bool isInstalled = state.installed == uinfo::Installed::yes;
        const std::string library = !state.other.empty()                 ? "library of " + state.other
                                    : isInstalled && !state.hasResources ? "no library to load"
                                                                         : "";
        const bool isBroken = !library.empty() || state.installed == uinfo::Installed::emptyFolder;
        table.push_back({{state.name(), Style::name},
                         {shown(state.localName.value_or(rkuinfo::text(state.record.globalName)))},
                         {isInstalled ? "installed" : state.whyNot(), isBroken      ? Style::bad
                                                                      : isInstalled ? Style::good
                                                                                    : Style::quiet},
                         {library, Style::bad}});
        list.push_back({{"language", state.name()},
                        {"id", state.record.lcid},
                        {"name", utf8(state.record.globalName)},
                        {"local-name", textJson(state.localName.value_or(Text()))},
                        {"folder", toJson(state.folder)},
                        {"uninstall-entry", state.hasEntry},
                        {"resource-library", state.hasResources},
                        {"library-language", state.other.empty() ? Json() : Json(state.other)},
                        {"installed", isInstalled},
                        {"why-not", isInstalled ? Json() : Json(state.whyNot())}});
    }
    printEither(session, table,
                {{"company", toJson(rkuinfo::text(installation.company.value()))},
                 {"product", toJson(rkuinfo::text(installation.product.value()))},
                 {"needs-uninstall-entries", installation.needsEntries},
                 {"wanted", textJson(rkuinfo::text(installation.wanted.value()))},
                 {"languages", list}});
}

const Command showCommand({"show", "[--origin] [--json]",
                           "Show the names in use, and where folders, files and keys are",
                           "Missing items are marked. --origin prints all sources of each\n"
                           "name, in order of precedence.",
                           show});

const Command
    languagesCommand({"languages", "[--json]", "List which languages are installed, and why others are not",
                      "A language is installed if its folder beside the program has a library. The\n"
                      "default product also requires the language's uninstall entry.",
                      languages});

} // namespace
