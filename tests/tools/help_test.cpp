// rkuinfo's help, its man page and its completion tell the same; wrong command lines are explained.
#include "tool.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace {

using namespace testing_support;

const std::vector<std::string> commands = {"show",   "get",    "set",       "list",      "tree",  "rm",
                                           "export", "import", "provision", "languages", "doctor"};

std::set<std::string> optionsIn(const std::string& text)
{
    static const std::regex option("--[a-z]+");
    return {std::sregex_token_iterator(text.begin(), text.end(), option), {}};
}

TEST(RkuinfoHelp, AgreesWithManPageAndCompletion)
{
    const Tool tool;
    const std::regex roff(R"(\\f[A-Z]|\\)");
    const std::string man = std::regex_replace(readFile(RKUINFO_TOOL_SOURCE "/rkuinfo.1"), roff, "");
    const std::string completion = readFile(RKUINFO_TOOL_SOURCE "/rkuinfo.bash");
    std::string help = tool.run({"--help"}).output;
    for (const std::string& command : commands) {
        const ChildResult result = tool.run({command, "--help"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_NE(result.output.find("rkuinfo " + command), std::string::npos) << result.output;
        EXPECT_NE(help.find("\n  " + command + ' '), std::string::npos) << command;
        EXPECT_TRUE(std::regex_search(man, std::regex("\n\\.(BI?R?|B) " + command + "\\b"))) << command;
        EXPECT_TRUE(std::regex_search(completion, std::regex("commands='.*\\b" + command + "\\b")))
            << command;
        help += result.output;
    }
    EXPECT_EQ(optionsIn(man), optionsIn(help));
    EXPECT_EQ(optionsIn(completion), optionsIn(help));
    EXPECT_EQ(tool.run({"--version"}).output, "rkuinfo 2018 SP2\n");
}

TEST(RkuinfoHelp, ExplainsAWrongCommandLine)
{
    const std::string see = "; see rkuinfo --help";
    const std::string types = "{int,int64,double,binary,string}";
    Tool().check({
        {{}, "", "A subcommand is required" + see, 2},
        {{"frob"}, "", "'frob' is no command" + see, 2},
        {{"get"}, "", "SUBTREE is required" + see, 2},
        {{"show", "--frob"}, "", "The following argument was not expected: --frob" + see, 2},
        {{"set", "settings", "A", "float", "1"}, "", "TYPE: float not in " + types + see, 2},
        {{"--language", "xx", "show"}, "", "--language: 'xx' is none of the fifteen languages" + see, 2},
        {{"--columns", "7", "show"}, "", "--columns: Value 7 not in range 40 to 1000" + see, 2},
    });
    const ChildResult result = Tool().run({"tree", "settngs"});
    EXPECT_EQ(result.errors.find("rkuinfo: SUBTREE: settngs not in {product-root,"), 0u) << result.errors;
    EXPECT_EQ(result.exitCode, 2);
}

} // namespace
