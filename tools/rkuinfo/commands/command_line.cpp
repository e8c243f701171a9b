// The table of all words and options. The command-line parser is built from this table and the list of
// commands; the man page and the completions are generated from the parser. No other file includes CLI11,
// which is slow to compile.
#include "commands/command.h"

#include "installation/languages.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <sstream>

namespace {

using Names = std::vector<std::string>;

/// A word or an option on a command line.
struct Parameter
{
    const char* name;  ///< such as "--file" for an option or "KEY" for a word
    const char* value; ///< the label of an option's value, such as "FILE"; empty for a flag or a word
    const char* help;
    Names (*choices)(); ///< null if every word is accepted
};

template <typename Rows, typename NameOf>
Names namesOf(const Rows& rows, NameOf nameOf)
{
    Names names;
    for (const auto& row : rows) {
        names.emplace_back(std::invoke(nameOf, row));
    }
    return names;
}

Names languageNames()
{
    return namesOf(uinfo::languages, [](const uinfo::Language& record) { return utf8(record.shortName); });
}

Names typeNames()
{
    return namesOf(valueTypes, &ValueType::name);
}

// clang-format off
constexpr Parameter parameterTable[] = {
    {"--program",   "FOLDER", "look at the application in this folder", nullptr},
    {"--company",   "NAME",   "use this company's keys and folders", nullptr},
    {"--product",   "NAME",   "use this product's keys and folders", nullptr},
    {"--language",  "xx-XX",  "use this language (for example, en-US)", languageNames},
    {"--profile",   "NAME",   "use this profile", nullptr},
    {"--columns",   "N",      "lay out tables for this width, from 40 to 1000", nullptr},
    {"--color",     "WHEN",   "always, never or auto (on a terminal)", [] { return Names{"always", "never", "auto"}; }},
    // The options above are common to all commands.
    {"SUBTREE",     "", "product-root ... user-config, see rkuinfo --help", subtreeNames},
    {"KEY",         "", "a key below the subtree, with / or \\ between names", nullptr},
    {"VALUE",       "", "a value: KEY/NAME, or its NAME alone", nullptr},
    {"TYPE",        "", "int, int64, double, binary or string", typeNames},
    {"DATA",        "", "the new data; write -- before data that begins with -", nullptr},
    {"TEXT",        "", "part of a name, part of data, or a number", nullptr},
    {"--as",        "TYPE",   "print the bytes as this type, such as double", typeNames},
    {"--value",     "NAME",   "remove only this value; \"\" is the default value", nullptr},
    {"--file",      "FILE",   "use a file instead of the standard stream", nullptr},
    {"--json",      "", "print JSON", nullptr},
    {"--recursive", "", "also list everything below", nullptr},
    {"--origin",    "", "print where the names come from", nullptr},
    {"--all",       "", "remove the subtree's own key", nullptr},
    {"--dry-run",   "", "only print what would change", nullptr},
    {"--replace",   "", "also remove what the file does not contain", nullptr},
    {"--salvage",   "", "skip what cannot be read, and list it", nullptr},
};
// clang-format on

/// Returns null if the table has no such row.
const Parameter* parameterNamed(const std::string& name)
{
    const auto* const found = std::ranges::find(parameterTable, name, &Parameter::name);
    return found == std::end(parameterTable) ? nullptr : found;
}

void add(CLI::App& app, const Parameter& parameter, bool isRequired)
{
    const std::string help = parameter.help;
    const bool isOption = parameter.name[0] == '-';
    if (isOption && *parameter.value == 0) {
        app.add_flag(parameter.name, help);
        return;
    }
    CLI::Option* const option = app.add_option(parameter.name, help)->type_name(parameter.value);
    option->required(isRequired && !isOption)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    if (parameter.choices != nullptr) {
        option->transform(CLI::IsMember(parameter.choices(), CLI::ignore_case).description(""));
    }
    if (std::string_view(parameter.name) == "--columns") {
        option->check(CLI::Range(40, 1000).description(""));
    }
}

class Parser : public CLI::App
{
public:
    Parser() : App("Shows and changes what RkUInfo knows about the program in this folder.", "rkuinfo")
    {
        require_subcommand(1)->fallthrough()->allow_windows_style_options(false); // a KEY may begin with a /
        set_help_flag("-h,--help", "print this help");
        set_version_flag("-V,--version",
                         "rkuinfo " + utf8(GetVelaProgramVersionString()) + ' ' +
                             utf8(GetServicePackageVersionString()),
                         "print the version");
        get_formatter()->column_width(22);
        for (const auto& [label, word] :
             {std::pair("REQUIRED", ""), {"SUBCOMMAND", "COMMAND"}, {"Positionals", "Words"}}) {
            get_formatter()->label(label, word);
        }
        footer("Options may appear before or after the command.\n"
               "SUBTREE is product-root, version-root, language-root, profiles-root,\n"
               "current-profile, applications, recent-file-list, settings or user-config.\n"
               "Only 'use' and 'provision' record the names that are given as options.\n"
               "Exit code: 0 on success; 1 if the command fails, finds nothing, or finds a\n"
               "difference or an error; 2 if the command line is invalid.");
        for (const Parameter* each = parameterTable; each->name[0] == '-'; ++each) {
            add(*this, *each, false);
        }
        for (const Command& command : Command::all()) {
            App* const added = add_subcommand(command.name, command.summary);
            added->group("Commands")->footer(command.more);
            std::istringstream words(command.words);
            for (std::string word; words >> word;) {
                const bool isRequired = word[0] != '[';
                add(*added, *parameterNamed(isRequired ? word : word.substr(1, word.size() - 2)), isRequired);
            }
        }
    }

    /// Reverses the words, because CLI11 expects the last one first.
    void parseWords(const Names& words) { parse(Names(words.rbegin(), words.rend())); }

    /// Returns the options of the program, and the options and words of the parsed command.
    std::vector<const CLI::Option*> options() const
    {
        std::vector<const CLI::Option*> options = get_options();
        for (const App* command : get_subcommands()) {
            std::ranges::copy(command->get_options(), std::back_inserter(options));
        }
        return options;
    }

    /// Returns the message of an error. Composes its own message for unexpected words, because CLI11's
    /// message differs between versions.
    std::string explain(const CLI::ParseError& error) const
    {
        const Names unknown = remaining(true);
        const auto first = std::ranges::find_if(unknown, [](const auto& word) { return word != "--"; });
        const std::string command =
            get_subcommands().empty() ? "" : get_subcommands().front()->get_name() + ' ';
        return (first == unknown.end()
                    ? error.what()
                    : '\'' + *first + (command.empty() ? "' is not a command" : "' is not expected")) +
               "; see rkuinfo " + command + "--help";
    }
};

/// Prints the commands, options or subtrees that can replace the last word, one per line.
void complete(Names words)
{
    const std::string last = words.back();
    words.pop_back();
    const Parameter* const before = words.empty() ? nullptr : parameterNamed(words.back());
    if (before != nullptr && *before->value != 0) {
        return; // the value of an option
    }
    Parser parser;
    try {
        parser.parseWords(words);
    } catch (const CLI::ParseError&) { // the command line is not complete yet
    }
    Names found = parser.get_subcommands().empty() ? namesOf(Command::all(), &Command::name) : Names();
    for (const CLI::Option* option : parser.options()) {
        if (last.starts_with('-')) {
            found.push_back(option->get_name());
        } else if (option->get_name() == "SUBTREE" && option->count() == 0) {
            found = subtreeNames();
        }
    }
    for (const std::string& each : found) {
        if (each.starts_with(last)) {
            print(each);
        }
    }
}

/// Prints the middle of the man page: the program's help text, then a section with the help text of each
/// command. In the page, .eo makes a backslash an ordinary character.
void printManual()
{
    Parser parser;
    print(parser.help());
    for (const Command& command : Command::all()) {
        print(".ec\n.SS " + command.name + "\n.nf\n.eo\n" +
              parser.get_subcommand(command.name)->help("rkuinfo"));
    }
}

/// Like the library, replaces / with \ in a key and removes leading and trailing separators.
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
    if (first == "complete" && words.size() > 1) {
        complete(Names(words.begin() + 1, words.end()));
        return 0;
    }
    if (first == "manual") {
        printManual();
        return 0;
    }
    Parser parser;
    try {
        parser.parseWords(words);
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        if (parser.exit(error, out, out) != 0) {
            throw Failure(parser.explain(error), {}, exitUsage);
        }
        std::fputs(out.str().c_str(), stdout); // the help or the version
        return 0;
    }
    Session session;
    for (const CLI::Option* option : parser.options()) {
        if (option->count() > 0) {
            session.given[option->get_name()] = option->results().back();
        }
    }
    std::ranges::find(Command::all(), parser.get_subcommands().front()->get_name(), &Command::name)
        ->run(session);
    return session.exitCode;
}

void printEither(const Session& session, const Table& table, const Json& json)
{
    session.has("--json") ? print(documentText(json)) : printTable(table, session.layout());
}

std::vector<std::string> subtreeNames()
{
    return {"product-root", "version-root",     "language-root", "profiles-root", "current-profile",
            "applications", "recent-file-list", "settings",      "user-config"};
}

Place::Place(const Session& session, const Installation& installation)
{
    const Names names = subtreeNames();
    const auto number = std::ranges::find(names, session["SUBTREE"]) - names.begin();
    subtree = installation.path(static_cast<TarvoConfig::Path>(number));
    key = normalised(session[session.has("VALUE") ? "VALUE" : "KEY"]);
    if (session.has("VALUE")) {
        value = lastName(key);
        key = parentKey(key);
    } else if (session.has("--value")) {
        value = utf16(session["--value"]);
    }
    if (!isUsablePath(path()) || (value && value->size() > longestValueName)) {
        throw Failure("a path may have at most 1020 characters, a key name 255 and a value name 1023");
    }
}

Tree Place::tree(bool isDeep, Losses* losses) const
{
    Tree tree = readTree(path(), isDeep, losses);
    if (tree.empty()) {
        failNotFound();
    }
    return tree;
}

void Place::failNotFound() const
{
    const std::string name = !value ? "" : '\\' + (value->empty() ? "(default)" : utf8(*value));
    throw Failure("HKEY_CURRENT_USER\\" + utf8(path()) + name + ": not found");
}
