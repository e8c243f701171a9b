// The only file that sees the argument parser, whose templates take long to compile.
#include "commands/command_line.h"

#include "commands/command.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

std::vector<Command> allCommands()
{
    return {showCommand(),     getCommand(), setCommand(),       listCommand(),      treeCommand(),
            searchCommand(),   rmCommand(),  exportCommand(),    importCommand(),    diffCommand(),
            profilesCommand(), useCommand(), provisionCommand(), languagesCommand(), doctorCommand()};
}

struct Common
{
    std::string columns;
    std::string topic;   ///< of help
    bool isHelp = false; ///< this and the next stand only in the help: the parser counts them itself
    bool isVersion = false;
};

std::vector<Parameter> commonOptions(Session& session, Common& common)
{
    return {
        {"--program", "FOLDER", &session.program, "look at the application in that folder"},
        {"--company", "NAME", &session.company, "the company to be"},
        {"--product", "NAME", &session.product, "the product to be"},
        {"--language", "xx-XX", &session.language, "the language to be in, such as en-US"},
        {"--profile", "NAME", &session.profile, "the user profile to be in"},
        {"--columns", "N", &common.columns, "lay tables out for a terminal of that width, from 40 to 1000"},
        {"--color", "WHEN", &session.colour, "always, never, or auto: on a terminal"},
        {"--help", "", &common.isHelp, "print the help, behind a command that of the command"},
        {"--version", "", &common.isVersion, "print the version, as -V"}};
}

// ---- Help

class Help
{
public:
    explicit Help(const Layout& layout) : m_layout(layout)
    {
        constexpr std::size_t usual = 80;
        m_layout.columns = layout.columns.value_or(usual);
    }

    void printAll(const std::vector<Command>& commands, const std::vector<Parameter>& options) const
    {
        say("Shows and changes what RkUInfo knows about the program in this folder.");
        say("Usage: rkuinfo [OPTIONS] COMMAND ...");
        print("Commands:");
        Table table;
        for (const Command& command : commands) {
            table.addRow({{command.name, Style::name}, {command.summary}});
        }
        table.addRow({{"help", Style::name}, {"Tell about a command: help COMMAND"}});
        table.print(m_layout);
        print("");
        printOptions(options);
        std::string list = "SUBTREE is one of";
        for (const std::string& name : subtreeNames()) {
            list += ' ' + name;
        }
        say(list + ", in any case, also as the interface writes it: eSettings.");
        say("Only provision and use remember who to be, as an application does; all others leave it as it "
            "is.");
        say("Exit code: 0, 1 when something is not found, different or wrong, 2 for a wrong command line.");
    }

    void printOne(const Command& command, const std::vector<Parameter>& options) const
    {
        std::string usage = "Usage: rkuinfo [OPTIONS] " + command.name;
        for (const Parameter& parameter : command.parameters) {
            const std::string word = parameter.name + (parameter.value.empty() ? "" : ' ' + parameter.value);
            usage += parameter.isRequired ? ' ' + word : " [" + word + ']';
        }
        say(command.summary + '.');
        say(usage);
        printTable(command.parameters);
        if (!command.more.empty()) {
            say(command.more);
        }
        printOptions(options);
    }

private:
    void say(const std::string& paragraph) const
    {
        print(folded(paragraph, 0, *m_layout.columns));
    } // and a gap

    void printOptions(const std::vector<Parameter>& options) const
    {
        print("Options, before or behind the command:");
        printTable(options);
    }

    void printTable(const std::vector<Parameter>& parameters) const
    {
        Table table;
        for (const Parameter& parameter : parameters) {
            table.addRow(
                {{parameter.name + (parameter.value.empty() ? "" : ' ' + parameter.value), Style::name},
                 {parameter.help}});
        }
        if (!parameters.empty()) {
            table.print(m_layout);
            print("");
        }
    }

    Layout m_layout;
};

// ---- Parsing

void add(CLI::App& app, const Parameter& parameter)
{
    std::visit(
        [&](auto* target) {
            using Target = std::remove_pointer_t<decltype(target)>;
            if constexpr (std::is_same_v<Target, bool>) {
                app.add_flag(parameter.name, *target, parameter.help);
            } else { // an std::optional of the parser would take an empty text for none
                app.add_option_function<std::string>(
                    parameter.name, [target](const std::string& word) { *target = word; }, parameter.help);
            }
        },
        parameter.target);
}

/// Not by the parser, whose versions differ in what they still set when something is missing.
void requireAll(const CLI::App& app, const Command& command)
{
    for (const Parameter& parameter : command.parameters) {
        if (parameter.isRequired && app.count(parameter.name) == 0) {
            throw Failure(parameter.name + " is required; see rkuinfo help " + command.name, exitUsage);
        }
    }
}

std::string version()
{
    return "rkuinfo " + utf8(rkuinfo::text(GetVelaProgramVersionString())) + ' ' +
           utf8(rkuinfo::text(GetServicePackageVersionString()));
}

void check(Session& session, const Common& common)
{
    if (!common.columns.empty()) {
        constexpr unsigned long least = 40;
        constexpr unsigned long most = 1000;
        const bool isNumber =
            common.columns.size() < 5 && common.columns.find_first_not_of("0123456789") == std::string::npos;
        session.columns = isNumber ? std::stoul(common.columns) : 0;
        if (session.columns < least || session.columns > most) {
            throw Failure("--columns takes a number from 40 to 1000", exitUsage);
        }
    }
    session.colour = chosen(session.colour, {"always", "never", "auto"}, "time for colours");
    if (!session.language.empty() &&
        !TarvoLanguage::isValidShortName(rkuinfo::Argument(utf16(session.language)))) {
        std::vector<std::string> names;
        for (const uinfo::Language& record : uinfo::languages) {
            names.push_back(utf8(rkuinfo::text(record.shortName)));
        }
        session.language = chosen(session.language, names, "language");
    }
}

std::string explain(const CLI::App& app, const CLI::ParseError& error,
                    const std::vector<std::string>& commands)
{
    const std::vector<std::string> unknown = app.remaining(true);
    if (!app.get_subcommands().empty()) { // the parser's own sentence about the rest differs between versions
        return (unknown.empty() ? error.what() : '\'' + unknown.front() + "' is not expected") +
               "; see rkuinfo help " + app.get_subcommands().front()->get_name();
    }
    if (unknown.empty()) {
        return std::string(error.what()) + "; see rkuinfo --help";
    }
    const std::string meant = nearest(unknown.front(), commands);
    return '\'' + unknown.front() + "' is no command" +
           (meant.empty() ? "; see rkuinfo --help" : ": did you mean " + meant + '?');
}

} // namespace

int runCommandLine(const std::vector<std::string>& words)
{
    Session session;
    Common common;
    const std::vector<Parameter> options = commonOptions(session, common);
    const std::vector<Command> commands = allCommands();
    CLI::App app("", "rkuinfo");
    app.require_subcommand(0, 1);
    app.fallthrough();
    app.set_help_flag(); // the parser's own may end the parsing before the options that follow it
    const CLI::Option* const help = app.add_flag("-h,--help");
    app.allow_windows_style_options(false); // a KEY may begin with a slash
    app.set_version_flag("--version,-V", version());
    for (const Parameter& option : options) {
        if (option.name != "--help" && option.name != "--version") {
            add(app, option);
        }
    }
    std::vector<std::string> names;
    for (const Command& command : commands) {
        CLI::App* const added = app.add_subcommand(command.name, command.summary);
        for (const Parameter& parameter : command.parameters) {
            add(*added, parameter);
        }
        names.push_back(command.name);
    }
    app.add_subcommand("help", "")->add_option("COMMAND", common.topic);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // the last one first
    } catch (const CLI::CallForVersion&) {
        print(version());
        return 0;
    } catch (const CLI::ParseError& error) {
        if (help->count() == 0) {
            throw Failure(explain(app, error, names), exitUsage);
        }
    }
    std::string name = app.get_subcommands().empty() ? "" : app.get_subcommands().front()->get_name();
    const bool isHelp = help->count() > 0 || name == "help";
    if (name.empty() && !isHelp) {
        throw Failure("a command is missing; see rkuinfo --help", exitUsage);
    }
    if (name == "help") {
        name = common.topic.empty() ? "" : chosen(common.topic, names, "command");
    }
    const auto command = std::ranges::find(commands, name, &Command::name);
    if (!isHelp) {
        requireAll(*app.get_subcommands().front(), *command);
    }
    check(session, common);
    const Help printer(session.layout());
    if (command == commands.end()) {
        printer.printAll(commands, options);
    } else if (isHelp) {
        printer.printOne(*command, options);
    } else {
        command->run(session);
    }
    return session.exitCode;
}
