// rkuinfo languages.
#include "commands/command.h"

#include "program/names.h"
#include "transfer/json_file.h"

namespace {

const char* folderWord(const LanguageState& state)
{
    switch (state.installed) {
    case uinfo::Installed::noFolder:
        return "missing";
    case uinfo::Installed::emptyFolder:
        return "empty";
    case uinfo::Installed::yes:
    case uinfo::Installed::noEntry:
        break;
    }
    return "yes";
}

/// A language whose installer has not run is merely absent; one whose folder lacks its library is broken.
Cell mark(const LanguageState& state, bool good, const std::string& word)
{
    const bool isBroken = state.installed != uinfo::Installed::noFolder && !state.hasResources;
    return {word, good ? Style::good : isBroken ? Style::bad : Style::quiet};
}

Json describe(const LanguageState& state)
{
    return {{"language", state.name()},
            {"id", state.record.lcid},
            {"name", utf8(state.record.globalName)},
            {"local-name", state.localName ? toJson(*state.localName) : Json()},
            {"folder", toJson(state.folder)},
            {"folder-state", folderWord(state)},
            {"uninstall-entry", state.hasEntry},
            {"resource-library", state.hasResources},
            {"installed", state.isInstalled()},
            {"why-not", state.isInstalled() ? Json() : Json(state.whyNot())}};
}

/// A narrow terminal has no room for what the short name says too.
void printTable(const Installation& installation, const Layout& layout)
{
    constexpr std::size_t wide = 104;
    const bool isWide = !layout.columns || *layout.columns >= wide;
    Table table;
    const auto add = [&](std::vector<Cell> row, std::vector<Cell> detail) {
        if (isWide) {
            row.insert(row.begin() + 1, detail.begin(), detail.end());
        }
        table.addRow(std::move(row));
    };
    if (layout.columns) {
        const auto title = [](const char* text) { return Cell{text, Style::quiet}; };
        add({title("LANGUAGE"), title("LOCAL NAME"), title("FOLDER"), title("ENTRY"), title("LIBRARY"),
             title("INSTALLED")},
            {title("ID"), title("NAME")});
    }
    for (const LanguageState& state : installation.languages) {
        add({{state.name(), Style::name},
             {shown(state.localName.value_or(Text()))},
             mark(state, std::string_view(folderWord(state)) == "yes", folderWord(state)),
             mark(state, state.hasEntry || !installation.needsEntries, state.hasEntry ? "yes" : "no"),
             mark(state, state.hasResources, state.hasResources ? "yes" : "no"),
             mark(state, state.isInstalled(), state.isInstalled() ? "yes" : state.whyNot())},
            {{std::to_string(state.record.lcid)}, {utf8(state.record.globalName)}});
    }
    table.print(layout);
}

bool languagesJson = false;

void languages(Session& session)
{
    const Installation installation(session);
    if (!languagesJson) {
        printTable(installation, session.layout());
        return;
    }
    Json languages = Json::array();
    for (const LanguageState& state : installation.languages) {
        languages.push_back(describe(state));
    }
    printJson({{"company", toJson(installation.company)},
               {"product", toJson(installation.product)},
               {"needs-uninstall-entries", installation.needsEntries},
               {"wanted", installation.wanted().empty() ? Json() : toJson(installation.wanted())},
               {"languages", languages}});
}

} // namespace

Command languagesCommand()
{
    return {
        "languages",
        "Tell which languages are installed, and why the others are not",
        {jsonFlag(languagesJson)},
        "FOLDER is the language's folder beside the program, ENTRY its installer's uninstall entry, which "
        "only the default product needs, LIBRARY its " +
            utf8(uinfo::languageLibrary) + '.',
        languages};
}
