// rkuinfo: shows and changes what RkUInfo knows about the program in its own folder.
#include "commands.h"
#include "names.h"
#include "session.h"
#include "terminal.h"
#include "text.h"

#include <RkUInfo.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <string>
#include <vector>

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

std::string explain(const CLI::App& app, const CLI::ParseError& error)
{
    const std::vector<std::string> unknown = app.remaining();
    const bool noCommand = app.get_subcommands().empty() && !unknown.empty();
    return (noCommand ? '\'' + unknown.front() + "' is no command" : std::string(error.what())) +
           "; see rkuinfo --help";
}

int fail(const std::string& sentence, int exitCode)
{
    std::fflush(stdout);
    fmt::print(stderr, "rkuinfo: {}\n", sentence);
    return exitCode;
}

int run(const std::vector<std::string>& arguments)
{
    Session session;
    CLI::App app("Shows and changes what RkUInfo knows about the program in this folder.", "rkuinfo");
    app.footer(
        subtreeList() +
        "Who to be is remembered in the registry, as at the start of an application; languages and doctor\n"
        "only look. Exit code: 0, 1 when something is not found or wrong, 2 for a wrong command line.");
    app.require_subcommand(1);
    app.fallthrough();
    app.allow_windows_style_options(false); // a KEY may begin with a slash
    addOptions(app, session);
    addShow(app, session);
    addStoreCommands(app, session);
    addTransfer(app, session);
    addProvision(app, session);
    addLanguages(app, session);
    addDoctor(app, session);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // the last one first
    } catch (const CLI::Success& request) {                                        // help or version
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        return fail(explain(app, error), exitUsage);
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        return fail("the output cannot be written", exitFailed);
    }
    return session.exitCode;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    prepareStreams();
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.push_back(utf8(rkuinfo::text(argv[i])));
    }
    try {
        return run(arguments);
    } catch (const Failure& failure) {
        return fail(failure.what(), failure.exitCode());
    } catch (RkException* exception) { // thrown without memory; by pointer, as the whole family is
        delete exception;
        return fail("out of memory", exitFailed);
    } catch (const std::exception& exception) {
        return fail(exception.what(), exitFailed);
    }
}
