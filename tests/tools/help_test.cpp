// rkuinfo's help, its man page and its completions tell the same.
#include "support/child.h"
#include "support/scratch.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace {

using namespace testing_support;

std::set<std::string> wordsIn(const std::string& text, const char* word)
{
    const std::regex pattern(word);
    return {std::sregex_token_iterator(text.begin(), text.end(), pattern, 1), {}};
}

TEST(RkuinfoHelp, AgreesWithManPageAndCompletions)
{
    const Application application("help");
    const std::filesystem::path program = application.addProgram("rkuinfo");
    const auto option = [](const std::string& text) { return wordsIn(text, "(--[a-z]+(?:-[a-z]+)*)"); };
    std::string help = runProgram(program, {"--help"}).output;
    const std::set<std::string> commands = wordsIn(help.substr(0, help.find("Options,")), "\n  ([a-z]+) ");
    EXPECT_EQ(commands.size(), 16u);
    for (const std::string& command : commands) {
        help += runProgram(program, {"help", command}).output;
    }
    const std::regex roff(R"(\\f[A-Z]|\\)");
    const std::string man = std::regex_replace(readFile(RKUINFO_TOOL_SOURCE "/rkuinfo.1"), roff, "");
    EXPECT_EQ(option(man), option(help));
    for (const char* const file : {"/rkuinfo.bash", "/rkuinfo.ps1"}) {
        const std::string completion = readFile(std::string(RKUINFO_TOOL_SOURCE) + file);
        EXPECT_EQ(option(completion), option(help)) << file;
        for (const std::string& command : commands) {
            EXPECT_TRUE(std::regex_search(completion, std::regex("commands ?= ?'.*\\b" + command + "\\b")))
                << command;
            EXPECT_TRUE(std::regex_search(man, std::regex("\n\\.(BI?R?|B) " + command + "\\b"))) << command;
        }
    }
}

} // namespace
