// rkuinfo languages.
#include "commands.h"

#include "installation.h"
#include "json.h"
#include "table.h"

namespace {

std::string nameOf(const wchar_t* text)
{
    return utf8(rkuinfo::text(text));
}

const char* folderWord(uinfo::Installed state)
{
    switch (state) {
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

Cell mark(bool good, const std::string& word)
{
    return {word, good ? Style::good : Style::bad};
}

Json describe(const LanguageState& state)
{
    return {{"language", nameOf(state.language.shortName())},
            {"id", state.language.velaLanguage()},
            {"name", nameOf(state.language.globalName())},
            {"local-name", state.localName ? toJson(*state.localName) : Json()},
            {"folder", toJson(state.folder)},
            {"folder-state", folderWord(state.installed)},
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
        add({{nameOf(state.language.shortName()), Style::name},
             {shown(state.localName.value_or(Text()))},
             mark(std::string(folderWord(state.installed)) == "yes", folderWord(state.installed)),
             mark(state.hasEntry || !installation.needsEntries, state.hasEntry ? "yes" : "no"),
             mark(state.hasResources, state.hasResources ? "yes" : "no"),
             mark(state.isInstalled(), state.isInstalled() ? "yes" : state.whyNot())},
            {{std::to_string(state.language.velaLanguage())}, {nameOf(state.language.globalName())}});
    }
    table.print(layout);
}

} // namespace

void languages(Session& session)
{
    const Installation installation = examine(session);
    if (!session.json) {
        printTable(installation, layout(session));
        return;
    }
    Json languages = Json::array();
    for (const LanguageState& state : installation.languages) {
        languages.push_back(describe(state));
    }
    printJson({{"company", toJson(installation.company)},
               {"product", toJson(installation.product)},
               {"needs-uninstall-entries", installation.needsEntries},
               {"wanted", installation.wanted.empty() ? Json() : toJson(installation.wanted)},
               {"languages", languages}});
}
