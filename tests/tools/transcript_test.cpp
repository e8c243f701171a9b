// rkuinfo, run as the real program by the transcripts in cases/, each in an empty registry and an
// application's folder of its own. What may stand in one is told in cases/README. Its help against its man
// page and its completions.
#include "support/test.h"

#include <iomanip>
#include <regex>
#include <set>
#include <shlobj.h>
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

/// As a shell splits them, without expansions: a word may stand in quotation marks of either kind.
std::vector<std::string> words(const std::string& line)
{
    std::vector<std::string> all;
    std::istringstream stream(line);
    for (std::string word; stream >> std::ws && !stream.eof(); all.push_back(word)) {
        stream >> std::quoted(word, stream.peek() == '"' ? '"' : '\'', '\0');
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
        wchar_t path[MAX_PATH];
        SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, TRUE); // makes it
        SHGetSpecialFolderPathW(nullptr, path, CSIDL_LOCAL_APPDATA, TRUE);
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
        const std::vector<std::string> asked = words(expanded(line));
        const std::string& what = asked.front();
        if (what == "language") {
            m_application.addLanguage(asked.at(1));
        } else if (what == "registry") { // KEY NAME TYPE DATA-IN-HEXADECIMAL
            std::string bytes;
            for (std::size_t i = 0; i + 1 < asked.at(4).size(); i += 2) {
                bytes += static_cast<char>(std::stoi(asked.at(4).substr(i, 2), nullptr, 16));
            }
            setRaw(HKEY_CURRENT_USER, asked.at(1), asked.at(2),
                   {static_cast<DWORD>(std::stoul(asked.at(3))), bytes});
        } else if (what == "remove") {
            std::filesystem::remove_all(m_application.folder() / asked.at(1));
        } else if (what == "unnamed") {
            m_isNamed = false;
        } else if (what == "stdin") {
            m_options.answers = {asked.begin() + 1, asked.end()};
        } else {
            ASSERT_TRUE(what == "file" || what == "utf16") << line;
            std::string text;
            for (std::string row; std::getline(lines, row) && row != "@end"; ++m_line) {
                replaceAll(row, "{company}", companyFromOutside("Acme"));
                text += expanded(row) + "\r\n";
            }
            writeFile(m_application.folder() / asked.at(1),
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
        EXPECT_TRUE(matches(std::istringstream(expanded(m_expected)), actual))
            << m_file.string() << ':' << m_line << ": $ "
            << m_command + '\n' + actual + "---- expected\n" + m_expected;
        static const std::regex changing("(^|.* )(set|rm|import|profiles|use|provision)( .*|$)");
        EXPECT_TRUE(std::regex_match(m_command, changing) ||
                    tree(HKEY_CURRENT_USER, "Software\\Acme") == before)
            << m_command;
        m_command.clear();
        m_expected.clear();
        m_options.answers.clear();
    }

    std::filesystem::path m_file;
    Application m_application{m_file.stem().string()};
    std::filesystem::path m_program = m_application.addProgram("rkuinfo");
    ChildOptions m_options{m_application.folder(), {}};
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

std::set<std::string> wordsIn(const std::string& text, const char* word)
{
    const std::regex pattern(word);
    return {std::sregex_token_iterator(text.begin(), text.end(), pattern, 1), {}};
}

TEST(RkuinfoHelp, AgreesWithManPageAndCompletions)
{
    const std::filesystem::path program = Application("help").addProgram("rkuinfo");
    const auto options = [](const std::string& text) { return wordsIn(text, "(--[a-z]+(?:-[a-z]+)*)"); };
    std::string help = runProgram(program, {"--help"}).output;
    const std::set<std::string> commands = wordsIn(help.substr(help.find("Commands:")), "\n  ([a-z]+) ");
    EXPECT_EQ(commands.size(), 16U);
    for (const std::string& command : commands) {
        help += runProgram(program, {"help", command}).output;
    }
    for (const std::string file : {"/rkuinfo.1", "/rkuinfo.bash", "/rkuinfo.ps1"}) {
        const std::regex roff(R"(\\f[A-Z]|\\)");
        const std::string text = std::regex_replace(readFile(RKUINFO_TOOL_SOURCE + file), roff, "");
        EXPECT_EQ(options(text), options(help)) << file;
        for (const std::string& command : commands) {
            const std::regex told("(commands ?= ?'.*\\b|\n\\.(BI?R?|B) )" + command + "\\b");
            EXPECT_TRUE(std::regex_search(text, told)) << file << ": " << command;
        }
    }
}

} // namespace
