// The only file that sees the argument parser, whose templates take long to compile.
#include "command_line.h"

#include "commands.h"
#include "names.h"
#include "text.h"

#include <CLI/CLI.hpp>

namespace {

std::string subtreeList()
{
    std::string list = "SUBTREE is one of";
    for (const Subtree& subtree : subtrees()) {
        list += subtree.path == TarvoConfig::eApplications ? "\n" : " ";
        list += subtree.name;
    }
    return list + ".\n";
}

std::string checkLanguage(const std::string& name)
{
    return TarvoLanguage::isValidShortName(rkuinfo::Argument(utf16(name)))
               ? ""
               : '\'' + name + "' is none of the fifteen languages";
}

void addOptions(CLI::App& app, Session& session)
{
    app.add_option("--company", session.company, "The company to be")->type_name("NAME");
    app.add_option("--product", session.product, "The product to be")->type_name("NAME");
    app.add_option("--language", session.language, "The language to be in, such as en-US")
        ->type_name("xx-XX")
        ->check(CLI::Validator(checkLanguage, ""));
    app.add_option("--profile", session.profile, "The user profile to be in")->type_name("NAME");
    app.add_option("--columns", session.columns, "Lay tables out for a terminal of that width")
        ->type_name("N")
        ->check(CLI::Range(40, 1000).description(""));
    app.set_version_flag("--version", "rkuinfo " + utf8(rkuinfo::text(GetVelaProgramVersionString())) + ' ' +
                                          utf8(rkuinfo::text(GetServicePackageVersionString())));
}

/// Adds the commands; what they take is read into arguments and session.
class Commands
{
public:
    Commands(CLI::App& app, Session& session, Arguments& arguments)
        : m_app(app), m_session(session), m_arguments(arguments)
    {
    }

    void addAll()
    {
        add("show", "Show who the program is, and where its folders, files and registry keys are", show);
        m_command->footer("What does not exist is marked as missing.");
        addJson("Print JSON");

        addOnSubtree("get", "Print a value", get);
        addValue();
        addJson("Print JSON, with the type");

        addOnSubtree("set", "Store a value and make its key", set);
        addValue();
        addWord("TYPE", m_arguments.type, "int, int64, double, binary (in hexadecimal) or string")
            ->required()
            ->check(CLI::IsMember(typeNames()).description(""));
        addWord("DATA", m_arguments.data, "what to store; behind -- when it begins with a dash")->required();

        addOnSubtree("list", "List the keys and values of a key", list);
        addKey();
        addJson("Print JSON");

        addOnSubtree("tree", "List a key with everything below it", tree);
        addKey();

        addOnSubtree("rm", "Remove a key with everything below it, or a value", remove);
        addKey();
        m_command
            ->add_option_function<std::string>( // an std::optional would take an empty name for none
                "--value", [this](const std::string& name) { m_arguments.valueName = name; },
                "Remove only that value of the key; \"\" is its default value")
            ->type_name("NAME");
        m_command->add_flag("--all", m_arguments.all, "Remove the subtree's own key");

        addOnSubtree("export", "Write a key with everything below it as JSON", exportTree);
        addKey();
        addFile("Where to, instead of standard output");
        m_command->footer("What the library cannot read is left out, told and makes exit code 1.");

        addOnSubtree("import", "Write what export gave, into a key", importTree);
        addKey();
        addFile("Where from, instead of standard input");
        m_command->footer(
            "What is there already stays, unless it has the same name. A bad file changes nothing.");

        add("provision", "Create the current user's tree", provision);

        add("languages", "Tell which languages are installed, and why the others are not", languages);
        m_command->footer(
            "FOLDER is the language's folder beside the program, ENTRY its installer's uninstall entry,\n"
            "which only the default product needs, LIBRARY its RkUInfoRes.dll. Nothing is written.");
        addJson("Print JSON");

        add("doctor", "Tell what is wrong with the installation, and how to mend it", doctor);
        m_command->footer("Exit code 1 when something is wrong. Nothing is written.");
        addJson("Print JSON");
    }

private:
    void add(const char* name, const char* description, void (*run)(Session&))
    {
        m_command = m_app.add_subcommand(name, description);
        m_command->callback([this, run] { run(m_session); });
    }

    void addOnSubtree(const char* name, const char* description, void (*run)(Session&, const Arguments&))
    {
        m_command = m_app.add_subcommand(name, description);
        m_command->callback([this, run] { run(m_session, m_arguments); });
        addWord("SUBTREE", m_arguments.subtree, "product-root ... user-config, see rkuinfo --help")
            ->required()
            ->check(CLI::IsMember(subtreeNames()).description(""));
    }

    CLI::Option* addWord(const char* name, std::string& word, const char* description)
    {
        return m_command->add_option(name, word, description)->type_name("");
    }

    void addKey()
    {
        addWord("KEY", m_arguments.key, "a key below the subtree's own, / or \\ between its parts");
    }

    void addValue()
    {
        addWord("VALUE", m_arguments.key, "a value: its name, with its key before it, / or \\ between them")
            ->required();
    }

    void addFile(const char* description)
    {
        m_command->add_option("--file", m_arguments.file, description)->type_name("FILE");
    }

    void addJson(const char* description) { m_command->add_flag("--json", m_session.json, description); }

    CLI::App& m_app;
    Session& m_session;
    Arguments& m_arguments;
    CLI::App* m_command = nullptr; // the one that was added last
};

std::string explain(const CLI::App& app, const CLI::ParseError& error)
{
    const std::vector<std::string> unknown = app.remaining();
    const bool noCommand = app.get_subcommands().empty() && !unknown.empty();
    return (noCommand ? '\'' + unknown.front() + "' is no command" : std::string(error.what())) +
           "; see rkuinfo --help";
}

} // namespace

int runCommandLine(const std::vector<std::string>& words)
{
    Session session;
    Arguments arguments;
    CLI::App app("Shows and changes what RkUInfo knows about the program in this folder.", "rkuinfo");
    app.footer(
        subtreeList() +
        "Who to be is remembered in the registry, as at the start of an application; languages and doctor\n"
        "only look. Exit code: 0, 1 when something is not found or wrong, 2 for a wrong command line.");
    app.require_subcommand(1);
    app.fallthrough();
    app.allow_windows_style_options(false); // a KEY may begin with a slash
    addOptions(app, session);
    Commands commands(app, session, arguments);
    commands.addAll();
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // the last one first
    } catch (const CLI::Success& request) {                                // help or version
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        throw Failure(explain(app, error), exitUsage);
    }
    return session.exitCode;
}
