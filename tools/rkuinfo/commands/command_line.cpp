// The table of all words and options, and what is made from it and the list of commands: the command line is
// read, the help and the man page are printed, and shells are told how to complete a word.
#include "commands/command.h"

#include "installation/languages.h"
#include "model/tree.h"
#include "model/value.h"

#include <algorithm>
#include <stdexcept>

namespace {

using Names = std::vector<std::string>;

/// A word or an option of a command line.
struct Parameter
{
    std::string_view name;  ///< "--file" for an option, "KEY" for a word
    std::string_view value; ///< "FILE", what follows an option; empty for a flag and a word
    std::string_view help;
    Names (*choices)(); ///< null when every word is accepted

    bool isOption() const { return name.starts_with("--"); }
    bool isFlag() const { return isOption() && value.empty(); }
    std::string title() const { return std::string(name) + (value.empty() ? "" : " ") + std::string(value); }
};

Names languageNames()
{
    Names names;
    for (const uinfo::Language& record : uinfo::languages) {
        names.push_back(utf8(record.shortName));
    }
    return names;
}

// clang-format off
constexpr Parameter parameterTable[] = {
    {"--program",   "FOLDER", "look at the application in this folder", nullptr},
    {"--company",   "NAME",   "use this company's keys and folders", nullptr},
    {"--product",   "NAME",   "use this product's", nullptr},
    {"--language",  "xx-XX",  "use this language's, such as en-US", languageNames},
    {"--profile",   "NAME",   "use this profile", nullptr},
    {"--columns",   "N",      "lay out tables for this width, from 40 to 1000", nullptr},
    {"--color",     "WHEN",   "always, never, or auto: on a terminal", [] { return Names{"always", "never", "auto"}; }},
    {"--help",      "",       "print the help, or that of a command", nullptr},
    {"--version",   "",       "print the version", nullptr},
    // Those before are common to all commands.
    {"SUBTREE",     "", "product-root ... user-config, see rkuinfo --help", subtreeNames},
    {"KEY",         "", "a key below it, with / or \\ between names", nullptr},
    {"VALUE",       "", "a value: KEY/NAME, or its NAME alone", nullptr},
    {"TYPE",        "", "int, int64, double, binary or string", typeNames},
    {"DATA",        "", "the new data; after -- if it begins with --", nullptr},
    {"TEXT",        "", "a part of a name or of data, or a number", nullptr},
    {"--as",        "TYPE",   "print the bytes as this type: double", typeNames},
    {"--default",   "DATA",   "print this when there is no such value", nullptr},
    {"--value",     "NAME",   "remove only this value; \"\" is the default value", nullptr},
    {"--file",      "FILE",   "use a file instead of the standard stream", nullptr},
    {"--format",    "FORMAT", "json, or reg for the Windows registry editor", [] { return Names{"json", "reg"}; }},
    {"--json",      "", "print JSON", nullptr},
    {"--recursive", "", "also list everything below", nullptr},
    {"--origin",    "", "print where the names come from", nullptr},
    {"--all",       "", "remove the subtree's own key", nullptr},
    {"--dry-run",   "", "only print what would change", nullptr},
    {"--replace",   "", "also remove what the file does not have", nullptr},
    {"--salvage",   "", "skip what cannot be read, and list it", nullptr},
};
// clang-format on

using Parameters = std::vector<Parameter>;

Parameters commonParameters()
{
    const auto* const end = std::ranges::find_if_not(parameterTable, &Parameter::isOption);
    return {parameterTable, end};
}

/// In the order of the words.
Parameters parametersOf(const Command& command)
{
    Parameters all;
    for (std::string_view rest = command.words; !rest.empty();) {
        std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
        word = word.starts_with('[') ? word.substr(1, word.size() - 2) : word;
        const auto* const found = std::ranges::find(parameterTable, word, &Parameter::name);
        if (found == std::end(parameterTable)) {
            throw std::logic_error("no parameter " + std::string(word));
        }
        all.push_back(*found);
    }
    return all;
}

/// A command line as far as it has been read.
struct Line
{
    Session session;
    const Command* command = nullptr;
    Parameters options = commonParameters(); ///< also those of the command
    Parameters words;                        ///< of the command, which are still to come
    Parameters option;                       ///< whose value is the next word
    bool isVerbatim = false;                 ///< "--" was read: no options follow

    [[noreturn]] void refuse(const std::string& sentence) const
    {
        throw Failure(sentence + "; see rkuinfo " + (command != nullptr ? "help " : "--help") +
                          std::string(command != nullptr ? command->name : ""),
                      exitUsage);
    }

    /// Accepts a choice in any case.
    void set(const Parameter& parameter, const std::string& word)
    {
        const bool isNumber = word.size() < 5 && word.find_first_not_of("0123456789") == std::string::npos;
        const unsigned long width = isNumber ? std::stoul('0' + word) : 0;
        std::string list = parameter.name == "--columns" ? "a number from 40 to 1000" : "";
        session.given[std::string(parameter.name)] = word;
        if (list.empty() ? parameter.choices == nullptr : width >= 40 && width <= 1000) {
            return;
        }
        for (const std::string& choice : parameter.choices != nullptr ? parameter.choices() : Names()) {
            if (equalIgnoringCase(utf16(word), utf16(choice))) {
                session.given[std::string(parameter.name)] = choice;
                return;
            }
            list += (list.empty() ? "" : ", ") + choice;
        }
        throw Failure(std::string(parameter.name) + " cannot be '" + word + "': use " + list, exitUsage);
    }

    void readOption(const std::string& word)
    {
        const std::size_t end = std::min(word.find('='), word.size());
        const std::string name = word == "-h" ? "--help" : word == "-V" ? "--version" : word.substr(0, end);
        const auto found = std::ranges::find(options, name, &Parameter::name);
        if (found == options.end() || (found->isFlag() && end < word.size())) {
            refuse('\'' + word + "' is not an option here");
        }
        if (found->isFlag()) {
            session.given[name];
        } else if (end < word.size()) {
            set(*found, word.substr(end + 1));
        } else {
            option = {*found};
        }
    }

    void read(const std::string& word)
    {
        if (!option.empty()) {
            set(option.front(), word);
            option.clear();
        } else if (word == "--" && !isVerbatim) {
            isVerbatim = true;
        } else if ((word.starts_with("--") || word == "-h" || word == "-V") && !isVerbatim) {
            readOption(word);
        } else if (command == nullptr && word == "help") {
            session.given["--help"];
        } else if (command == nullptr) {
            const auto found = std::ranges::find(Command::all(), word, &Command::name);
            if (found == Command::all().end()) {
                refuse('\'' + word + "' is not a command");
            }
            command = &*found;
            for (const Parameter& parameter : parametersOf(*command)) {
                (parameter.isOption() ? options : words).push_back(parameter);
            }
        } else if (words.empty()) {
            refuse('\'' + word + "' is not expected");
        } else {
            set(words.front(), word);
            words.erase(words.begin());
        }
    }

    void requireAll() const
    {
        if (!option.empty()) {
            refuse(option.front().title() + " has no value");
        }
        const bool isOptional =
            words.empty() || command->words.find('[' + words.front().title()) != std::string_view::npos;
        if (command == nullptr || !isOptional) {
            refuse(command == nullptr ? "a command is missing" : words.front().title() + " is missing");
        }
    }
};

// ---- Help, completion and man page

void printParameters(const char* title, const Parameters& parameters, const Layout& layout)
{
    Table table;
    table.addHeading(title);
    for (const Parameter& parameter : parameters) {
        table.addRow({{parameter.title(), Style::name}, {std::string(parameter.help)}});
    }
    table.print(layout);
}

/// Of a command, or of all.
void printHelp(const Command* command, Layout layout)
{
    constexpr std::size_t usual = 80;
    layout.columns = layout.columns.value_or(usual);
    if (command != nullptr) {
        print("Usage: rkuinfo " + std::string(command->name) + ' ' + std::string(command->words) + '\n' +
              std::string(command->summary) + '.');
        printParameters("Words and options", parametersOf(*command), layout);
        print(command->more);
        return;
    }
    print("Usage: rkuinfo [OPTIONS] COMMAND ...\n"
          "Shows and changes what RkUInfo knows about the program in this folder.");
    Table table;
    table.addHeading("Commands");
    for (const Command& each : Command::all()) {
        table.addRow({{std::string(each.name), Style::name}, {std::string(each.summary)}});
    }
    table.print(layout);
    printParameters("Options, before or after the command", commonParameters(), layout);
    print("SUBTREE is product-root, version-root, language-root, profiles-root,\n"
          "current-profile, applications, recent-file-list, settings or user-config.\n"
          "Only use and provision record the names that options give.\n"
          "Exit code: 0; 1 when something is not found, different or wrong; 2 for a wrong\n"
          "command line.");
}

/// The keys right below the part of a path up to its last separator, and the values for a VALUE.
Names paths(Session session, const std::string& word, bool withValues)
{
    const std::string above = word.substr(0, word.find_last_of("/\\") + 1);
    session.given["KEY"] = above;
    const Key key = Place(session, Installation(session)).open();
    Names found;
    for (const Text& name : key.keys()) {
        found.push_back(above + utf8(name) + '/');
    }
    for (const Value& value : withValues ? key.values() : std::vector<Value>()) {
        found.push_back(above + utf8(value.name));
    }
    return found;
}

/// Prints what may stand in place of the last word, one a line. The first word is "complete" itself.
void complete(const Names& words)
{
    Line line;
    std::for_each(words.begin() + 1, std::max(words.begin() + 1, words.end() - 1),
                  [&](const std::string& word) { line.read(word); });
    const std::string last = words.size() > 1 ? words.back() : "";
    const Parameters next = line.option.empty() ? line.words : line.option;
    Names found;
    if (line.option.empty() && last.starts_with('-')) {
        std::ranges::for_each(line.options, [&](const Parameter& each) { found.emplace_back(each.name); });
    } else if (line.option.empty() && line.command == nullptr) {
        std::ranges::for_each(Command::all(), [&](const Command& each) { found.emplace_back(each.name); });
    } else if (!next.empty() && next.front().choices != nullptr) {
        found = next.front().choices();
    } else if (!next.empty() && (next.front().name == "KEY" || next.front().name == "VALUE")) {
        found = paths(line.session, last, next.front().name == "VALUE");
    }
    for (const std::string& each : found) {
        if (each.starts_with(last) && shown(each) == each) {
            print(each);
        }
    }
}

std::string roff(std::string_view text)
{
    std::string out;
    for (const char each : text) {
        out += each == '\\' ? "\\e" : each == '-' ? "\\-" : std::string(1, each);
    }
    return out;
}

void printManualItem(const Parameter& parameter)
{
    print(".TP\n.B \"" + roff(parameter.title()) + "\"\n" + roff(parameter.help));
}

void printManual()
{
    print(".SH OPTIONS\nThese may stand before or after the command.");
    std::ranges::for_each(commonParameters(), printManualItem);
    print(".SH COMMANDS");
    for (const Command& each : Command::all()) {
        print(".SS \"" + roff(each.name) + ' ' + roff(each.words) + "\"\n" + roff(each.summary) + ".\n" +
              roff(each.more));
        std::ranges::for_each(parametersOf(each), printManualItem);
    }
}

/// The key as the library accepts it: with \ for /, and none at its ends.
Text normalised(const std::string& key)
{
    Text path = utf16(key);
    std::ranges::replace(path, Text::value_type('/'), separator);
    const std::size_t start = std::min(path.find_first_not_of(separator), path.size());
    return path.substr(start, path.find_last_not_of(separator) + 1 - start);
}

} // namespace

Command::Command(std::string_view commandName, std::string_view commandWords, std::string_view commandSummary,
                 std::string_view moreHelp, void (*function)(Session&))
    : name(commandName), words(commandWords), summary(commandSummary), more(moreHelp), run(function)
{
    all().insert(std::ranges::lower_bound(all(), name, {}, &Command::name), *this);
}

std::vector<Command>& Command::all()
{
    static std::vector<Command> commands;
    return commands;
}

int runCommandLine(const std::vector<std::string>& words)
{
    const std::string first = words.empty() ? "" : words.front();
    Line line;
    if (first == "complete") {
        complete(words);
        return 0;
    }
    if (first == "manual") {
        printManual();
        return 0;
    }
    std::ranges::for_each(words, [&](const std::string& word) { line.read(word); });
    if (line.session.has("--version")) {
        print("rkuinfo " + utf8(GetVelaProgramVersionString()) + ' ' +
              utf8(GetServicePackageVersionString()));
    } else if (line.session.has("--help")) {
        printHelp(line.command, line.session.layout());
    } else {
        line.requireAll();
        line.command->run(line.session);
    }
    return line.session.exitCode;
}

std::vector<std::string> subtreeNames()
{
    return {"product-root", "version-root",     "language-root", "profiles-root", "current-profile",
            "applications", "recent-file-list", "settings",      "user-config"};
}

Place::Place(const Session& session, const Installation& installation)
{
    for (const char* const word : {"SUBTREE", "KEY", "VALUE", "--value"}) {
        m_words += session[word].empty() ? "" : (m_words.empty() ? "" : " ") + session[word];
    }
    const Names names = subtreeNames();
    const auto number = std::ranges::find(names, session["SUBTREE"]) - names.begin();
    subtree = installation.path(static_cast<TarvoConfig::Path>(number));
    key = normalised(session[session.has("VALUE") ? "VALUE" : "KEY"]);
    if (session.has("VALUE")) {
        value = lastName(key);
        key = parentKey(key);
    }
    if (!isUsablePath(path()) || value.size() > longestValueName) {
        throw Failure(m_words +
                      ": a path has at most 1020 characters, the name of a key 255 and of a value 1023");
    }
}

Key Place::open(unsigned long access) const
{
    std::optional<Key> found = Key::find(path(), access);
    if (!found) {
        failNotFound();
    }
    return std::move(*found);
}

void Place::failNotFound() const
{
    throw Failure(m_words + ": not found (looked in HKEY_CURRENT_USER\\" + utf8(path()) + ')');
}
