// rkuinfo languages.
#include "commands/command.h"

#include "installation/names.h"

namespace {

void languages(Session& session)
{
    const Installation installation(session);
    Table table;
    Json list = Json::array();
    for (const LanguageState& state : installation.languages) {
        const bool isInstalled = state.installed == uinfo::Installed::yes;
        const bool isBroken = state.installed == uinfo::Installed::emptyFolder || !state.other.empty() ||
                              (isInstalled && !state.hasResources);
        const std::string library = !state.other.empty()                 ? "library of " + state.other
                                    : isInstalled && !state.hasResources ? "no library to load"
                                                                         : "";
        table.push_back({{state.name(), Style::name},
                         {shown(state.localName.value_or(rkuinfo::text(state.record.globalName)))},
                         {isInstalled ? "installed" : state.whyNot(), isBroken      ? Style::bad
                                                                      : isInstalled ? Style::good
                                                                                    : Style::quiet},
                         {library, Style::bad}});
        list.push_back({{"language", state.name()},
                        {"id", state.record.lcid},
                        {"name", utf8(state.record.globalName)},
                        {"local-name", state.localName ? toJson(*state.localName) : Json()},
                        {"folder", toJson(state.folder)},
                        {"uninstall-entry", state.hasEntry},
                        {"resource-library", state.hasResources},
                        {"library-language", state.other.empty() ? Json() : Json(state.other)},
                        {"installed", isInstalled},
                        {"why-not", isInstalled ? Json() : Json(state.whyNot())}});
    }
    const Text wanted = rkuinfo::text(installation.wanted.value());
    printEither(session, table,
                {{"company", toJson(rkuinfo::text(installation.company.value()))},
                 {"product", toJson(rkuinfo::text(installation.product.value()))},
                 {"needs-uninstall-entries", installation.needsEntries},
                 {"wanted", wanted.empty() ? Json() : toJson(wanted)},
                 {"languages", list}});
}

const Command
    languagesCommand({"languages", "[--json]", "List which languages are installed, and why others are not",
                      "A language is installed if its folder beside the program has a library and, for\n"
                      "the default product, its installer's uninstall entry exists.",
                      languages});

} // namespace
