// rkuinfo, run as the real program by the transcripts in cases/, each in an empty registry and an
// application's folder of its own. What may stand in one is told in cases/README.
#include "support/child.h"
#include "support/isolation.h"
#include "support/registry.h"
#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <sstream>

namespace {

using namespace testing_support;

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

/// {k*300} is so many of them.
std::string expanded(std::string text)
{
    static const std::regex many(R"(\{(.)\*([0-9]+)\})");
    for (std::smatch match; std::regex_search(text, match, many);) {
        const std::string run(std::stoul(match[2]), match[1].str()[0]);
        text = match.prefix().str() + run + match.suffix().str();
    }
    return text;
}

/// As a shell splits them, without expansions: quotation marks of both kinds keep blanks.
std::vector<std::string> words(const std::string& line)
{
    std::vector<std::string> all;
    char quote = 0;
    bool isOpen = false;
    for (const char c : line) {
        const bool isBlank = c == ' ' && quote == 0;
        if (!isBlank && !isOpen) {
            all.emplace_back();
        }
        isOpen = !isBlank;
        if (quote == c || (quote == 0 && (c == '\'' || c == '"'))) {
            quote = quote == c ? '\0' : c;
        } else if (!isBlank) {
            all.back() += c;
        }
    }
    return all;
}

/// A line "..." of what is expected stands for any lines.
bool matches(std::istringstream expected, const std::string& actual)
{
    std::string pattern;
    const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    for (std::string line; std::getline(expected, line);) {
        pattern += line == "..." ? "(?:[^\\n]*\\n)*" : std::regex_replace(line, special, R"(\$&)") + "\\n";
    }
    return std::regex_match(actual, std::regex(pattern));
}

class Transcript : public testing::Test
{
public:
    explicit Transcript(std::filesystem::path file) : m_file(std::move(file)) {}

private:
    void TestBody() override
    {
        for (const char* const variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) { // the host's shell folders
            if (const char* const folder = std::getenv(variable)) {
                std::filesystem::create_directories(folder);
            }
        }
        removeKey(HKEY_CURRENT_USER, "Software\\Acme");
        std::istringstream lines(readFile(m_file));
        for (std::string line; std::getline(lines, line); ++m_line) {
            if (line.starts_with("$ ")) {
                finish();
                m_command = line.substr(2);
            } else if (line.starts_with('@')) {
                finish();
                prepare(line.substr(1), lines);
            } else if (!line.starts_with('#')) {
                m_expected += line + '\n';
            }
        }
        finish();
    }

    void prepare(const std::string& line, std::istringstream& lines)
    {
        std::vector<std::string> asked = words(expanded(line));
        const std::string what = asked.front();
        asked.erase(asked.begin());
        if (what == "language") {
            m_application.addLanguage(asked.at(0));
        } else if (what == "registry") { // KEY NAME TYPE DATA-IN-HEXADECIMAL
            std::string bytes;
            for (std::size_t i = 0; i + 1 < asked.at(3).size(); i += 2) {
                bytes += static_cast<char>(std::stoi(asked.at(3).substr(i, 2), nullptr, 16));
            }
            setRaw(HKEY_CURRENT_USER, asked.at(0), asked.at(1),
                   {static_cast<DWORD>(std::stoul(asked.at(2))), bytes});
        } else if (what == "remove") {
            std::filesystem::remove_all(m_application.folder() / asked.at(0));
        } else if (what == "unnamed") {
            m_isNamed = false;
        } else if (what == "stdin") {
            m_options.answers = asked;
        } else {
            ASSERT_TRUE(what == "file" || what == "utf16") << line;
            std::string text;
            for (std::string row; std::getline(lines, row) && row != "@end"; ++m_line) {
                replaceAll(row, "{company}", companyFromOutside("Acme"));
                text += expanded(row) + "\r\n";
            }
            writeFile(m_application.folder() / asked.at(0),
                      what == "file" ? text
                                     : "\xff\xfe" + Wide(text).bytes().substr(0, 2 * Wide(text).length()));
        }
    }

    void finish()
    {
        if (m_command.empty()) {
            return;
        }
        std::string line = expanded(m_command);
        replaceAll(line, "{app}", windowsPath(m_application.folder()));
        std::vector<std::string> all = words(line);
        if (m_isNamed) {
            all.insert(all.begin(), {"--company", companyFromOutside("Acme"), "--product", "Widget"});
        }
        const std::string before = tree(HKEY_CURRENT_USER, "Software\\Acme");
        m_options.workingFolder = m_application.folder();
        const ChildResult result = runProgram(m_program, all, m_options);
        std::string actual = result.output + result.errors;
        if (companyFromOutside("Acme") != "Acme") { // has to be quoted on a command line
            replaceAll(actual, '"' + companyFromOutside("Acme") + '"', "Acme");
            replacePath(actual, companyFromOutside("Acme"), "Acme");
        }
        replacePath(actual, windowsPath(m_application.folder()), "{app}");
        replaceAll(actual, "\x1b", "{ESC}");
        std::erase(actual, '\0');
        actual += result.exitCode == 0 ? "" : '[' + std::to_string(result.exitCode) + "]\n";
        if (!matches(std::istringstream(expanded(m_expected)), actual)) {
            ADD_FAILURE_AT(m_file.string().c_str(), m_line) << "$ " << m_command << '\n'
                                                            << actual << "---- expected\n"
                                                            << m_expected;
        }
        static const std::regex changing("(^|.* )(set|rm|import|profiles|use|provision)( .*|$)");
        if (!std::regex_match(m_command, changing)) {
            EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software\\Acme"), before) << m_command;
        }
        m_command.clear();
        m_expected.clear();
        m_options.answers.clear();
    }

    std::filesystem::path m_file;
    Application m_application{m_file.stem().string()};
    std::filesystem::path m_program = m_application.addProgram("rkuinfo");
    ChildOptions m_options;
    bool m_isNamed = true; ///< as Widget of Acme, a rebranded product
    int m_line = 1;
    std::string m_command;
    std::string m_expected;
};

const bool registered = [] {
    for (const auto& entry : std::filesystem::directory_iterator(RKUINFO_TOOL_CASES)) {
        if (entry.path().extension() == ".txt") {
            testing::RegisterTest("Rkuinfo", entry.path().stem().string().c_str(), nullptr, nullptr, __FILE__,
                                  __LINE__, [file = entry.path()] { return new Transcript(file); });
        }
    }
    return true;
}();

} // namespace
