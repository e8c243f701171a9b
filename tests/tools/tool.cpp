#include "tool.h"

#include "support/isolation.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace testing_support;

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

/// In JSON, where backslashes are doubled, too.
void replacePath(std::string& text, const std::string& path, const std::string& to)
{
    std::string inJson = path;
    replaceAll(inJson, "\\", "\\\\");
    replaceAll(text, path, to);
    replaceAll(text, inJson, to);
}

int made = 0; // each in a folder of its own

} // namespace

Tool::Tool(const Languages& languages)
    : m_application("app" + std::to_string(++made)), m_program(m_application.addProgram("rkuinfo"))
{
    for (const std::string& language : languages) {
        m_application.addLanguage(language);
    }
    for (const char* const variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) { // the host's own shell folders
        if (const char* const folder = std::getenv(variable)) {
            std::filesystem::create_directories(folder);
        }
    }
}

ChildResult Tool::runUnnamed(const std::vector<std::string>& arguments) const
{
    ChildResult result = runProgram(m_program, arguments);
    for (const ShownBox& box : result.boxes) {
        EXPECT_EQ(box.caption, "rkuinfo"); // the host takes an error message for a box
    }
    for (std::string* const text : {&result.output, &result.errors}) {
        replacePath(*text, companyFromOutside("Acme"), "Acme");
        replacePath(*text, windowsPath(m_application.folder()), "{app}");
        std::erase(*text, '\r'); // the Windows runtime's, on standard error
    }
    return result;
}

ChildResult Tool::run(const std::vector<std::string>& arguments) const
{
    std::vector<std::string> all = {"--company", companyFromOutside("Acme"), "--product", "Widget"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runUnnamed(all);
}

void Tool::check(const Expected& expected) const
{
    SCOPED_TRACE(testing::PrintToString(expected.arguments));
    const ChildResult result = run(expected.arguments);
    EXPECT_EQ(result.output, expected.output);
    EXPECT_EQ(result.errors, expected.error.empty() ? "" : "rkuinfo: " + expected.error + '\n');
    EXPECT_EQ(result.exitCode, expected.exitCode);
}

void Tool::check(const std::vector<Expected>& rows) const
{
    for (const Expected& row : rows) {
        check(row);
    }
}
