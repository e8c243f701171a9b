// The table of all words and options. The parser of command lines is made from it and the list of commands;
// the man page and what shells complete are made from the parser. The only file that sees CLI11, which takes
// long to compile.
#include "commands/command.h"

#include "installation/languages.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace {

using Names = std::vector<std::string>;

constexpr const char* programName = "rkuinfo";
constexpr const char* purpose = "Shows and changes what RkUInfo knows about the program in this folder.";

/// A word or an option of a command line.
struct Parameter
{
    const char* name;  ///< "--file" for an option, "KEY" for a word
    const char* value; ///< "FILE", what follows an option; empty for a flag and a word
    const char* help;
    Names (*choices)(); ///< null when every word is accepted
};

Names languageNames()
{
    Names names;
    for (const uinfo::Language& record : uinfo::languages) {
        names.push_back(utf8(record.shortName));
    }
    return names;
}

Names commandNames()
{
    Names names;
    for (const Command& command : Command::all()) {
        names.emplace_back(command.name);
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
    // Those before are common to all commands.
    {"COMMAND",     "", "a command", commandNames},
    {"SUBTREE",     "", "product-root ... user-config, see rkuinfo --help", subtreeNames},
    {"KEY",         "", "a key below it, with / or \\ between names", nullptr},
    {"VALUE",       "", "a value: KEY/NAME, or its NAME alone", nullptr},
    {"TYPE",        "", "int, int64, double, binary or string", typeNames},
    {"DATA",        "", "the new data; after -- if it begins with -", nullptr},
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

/// Null when the table has no such row.
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

/// Makes it the parser of this program.
void describe(CLI::App& app)
{
    app.require_subcommand(1)->fallthrough()->allow_windows_style_options(
        false); // a KEY may begin with a slash
    app.set_help_flag("-h,--help", "print this help");
    app.set_version_flag("-V,--version",
                         "rkuinfo " + utf8(GetVelaProgramVersionString()) + ' ' +
                             utf8(GetServicePackageVersionString()),
                         "print the version");
    app.get_formatter()->column_width(22);
    for (const auto& [label, word] :
         {std::pair("REQUIRED", ""), {"SUBCOMMAND", "COMMAND"}, {"Positionals", "Words"}}) {
        app.get_formatter()->label(label, word);
    }
    app.footer("Options may stand before or after the command.\n"
               "SUBTREE is product-root, version-root, language-root, profiles-root,\n"
               "current-profile, applications, recent-file-list, settings or user-config.\n"
               "Only use and provision record the names that options give.\n"
               "Exit code: 0; 1 when something is not found, different or wrong; 2 for a wrong\n"
               "command line.");
    for (const Parameter* each = parameterTable; each->name[0] == '-'; ++each) {
        add(app, *each, false);
    }
    for (const Command& command : Command::all()) {
        CLI::App* const added = app.add_subcommand(std::string(command.name), std::string(command.summary));
        added->group("Commands")->footer(std::string(command.more));
        std::istringstream words{std::string(command.words)};
        for (std::string word; words >> word;) {
            const bool isRequired = word[0] != '[';
            add(*added, *parameterNamed(isRequired ? word : word.substr(1, word.size() - 2)), isRequired);
        }
    }
}

/// Those of the program, and those and the words of the command that was parsed.
std::vector<const CLI::Option*> optionsOf(const CLI::App& app)
{
    std::vector<const CLI::Option*> options = app.get_options();
    for (const CLI::App* command : app.get_subcommands()) {
        std::ranges::copy(command->get_options(), std::back_inserter(options));
    }
    return options;
}

/// What was parsed of a command line.
Session parsed(const CLI::App& app)
{
    Session session;
    for (const CLI::Option* option : optionsOf(app)) {
        if (option->count() > 0) {
            session.given[option->get_name()] = option->results().back();
        }
    }
    return session;
}

void parse(CLI::App& app, const Names& words)
{
    app.parse(Names(words.rbegin(), words.rend())); // CLI11 wants the last one first
}

/// CLI11's own sentence about words that are not expected differs between its versions.
std::string explain(const CLI::App& app, const CLI::ParseError& error)
{
    const Names unknown = app.remaining(true);
    const auto first = std::ranges::find_if(unknown, [](const std::string& word) { return word != "--"; });
    const bool hasCommand = !app.get_subcommands().empty();
    return (first == unknown.end()
                ? error.what()
                : '\'' + *first + (hasCommand ? "' is not expected" : "' is not a command")) +
           "; see rkuinfo " + (hasCommand ? "help " + app.get_subcommands().front()->get_name() : "--help");
}

void help(Session& session)
{
    CLI::App app(purpose, programName);
    describe(app);
    print(session.has("COMMAND") ? app.get_subcommand(session["COMMAND"])->help(programName) : app.help());
}

const Command helpCommand("help", "[COMMAND]", "Print the help of a command", "", help);

// ---- Completion and man page

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
    const std::string last = words.size() > 1 ? words.back() : "";
    Names before(words.begin() + 1, std::max(words.begin() + 1, words.end() - 1));
    const Parameter* next = before.empty() ? nullptr : parameterNamed(before.back());
    const bool isValue = next != nullptr && *next->value != 0; // of the option before it
    before.resize(before.size() - (isValue ? 1 : 0));
    CLI::App app(purpose, programName);
    describe(app);
    try {
        parse(app, before);
    } catch (const CLI::ParseError&) { // what is missing follows
    }
    Names found;
    if (!isValue) {
        const std::vector<const CLI::Option*> options = optionsOf(app);
        const auto open = std::ranges::find_if(
            options, [](const CLI::Option* each) { return each->get_positional() && each->count() == 0; });
        next = open == options.end() ? nullptr : parameterNamed((*open)->get_name());
    }
    const std::string_view name = next != nullptr ? next->name : "";
    if (!isValue && last.starts_with('-')) {
        std::ranges::transform(optionsOf(app), std::back_inserter(found),
                               [](const CLI::Option* each) { return each->get_name(); });
    } else if (!isValue && app.get_subcommands().empty()) {
        found = commandNames();
    } else if (next != nullptr && next->choices != nullptr) {
        found = next->choices();
    } else if (name == "KEY" || name == "VALUE") {
        found = paths(parsed(app), last, name == "VALUE");
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

void printManualItems(const CLI::App& app)
{
    for (const CLI::Option* option : app.get_options()) {
        if (option != app.get_help_ptr() || app.get_parent() == nullptr) {
            print(".TP\n.B \"" + roff(option->get_name(false, true) + ' ' + option->get_type_name()) +
                  "\"\n" + roff(option->get_description()));
        }
    }
}

void printManual()
{
    CLI::App app(purpose, programName);
    describe(app);
    print(".SH OPTIONS\nThese may stand before or after the command.");
    printManualItems(app);
    print(".SH COMMANDS");
    for (const Command& each : Command::all()) {
        print(".SS \"" + roff(each.name) + ' ' + roff(each.words) + "\"\n" + roff(each.summary) + ".\n" +
              roff(each.more));
        printManualItems(*app.get_subcommand(std::string(each.name)));
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
    if (first == "complete") {
        complete(words);
        return 0;
    }
    if (first == "manual") {
        printManual();
        return 0;
    }
    CLI::App app(purpose, programName);
    describe(app);
    try {
        parse(app, words);
    } catch (const CLI::CallForHelp&) {
        print(app.help());
        return 0;
    } catch (const CLI::CallForVersion& version) {
        print(version.what());
        return 0;
    } catch (const CLI::ParseError& error) {
        throw Failure(explain(app, error), exitUsage);
    }
    Session session = parsed(app);
    std::ranges::find(Command::all(), app.get_subcommands().front()->get_name(), &Command::name)
        ->run(session);
    return session.exitCode;
}

void printEither(const Session& session, const Table& table, const Json& json)
{
    session.has("--json") ? print(documentText(json)) : table.print(session.layout());
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
