// Runs rkuinfo as the transcripts in cases/ describe, each in an empty registry and a separate
// application folder. The README in this folder describes the transcripts.
#include "support/test.h"

#include <cstring>
#include <iomanip>
#include <regex>
#include <shlobj.h>

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

/// Splits a line as a shell does: a word may be enclosed in single quotes. Expands nothing.
std::vector<std::string> words(const std::string& line)
{
    std::vector<std::string> all;
    std::istringstream stream(line);
    for (std::string word; stream >> std::quoted(word, '\'', '\0');) {
        all.push_back(word);
    }
    return all;
}

/// Reads the lines up to, but not including, the next line that begins with #, $ or @.
std::string takeOutput(std::istringstream& lines)
{
    std::string all;
    for (std::string line; !std::strchr("#$@", lines.peek()) && std::getline(lines, line);) {
        all += line + '\n';
    }
    return all;
}

/// Compares two outputs. A line in `expected` that consists of "..." matches any number of lines.
bool matches(const std::string& expected, const std::string& actual)
{
    std::string pattern = std::regex_replace('\n' + expected, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
    replaceAll(pattern, "\n\\.\\.\\.\n", "\n(?:.*\n)*");
    return std::regex_match('\n' + actual, std::regex(pattern));
}

class Transcript : public testing::Test
{
public:
    explicit Transcript(std::filesystem::path file) : m_file(std::move(file)) {}

private:
    void TestBody() override
    {
        wchar_t path[MAX_PATH];
        SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, TRUE); // creates it
        SHGetSpecialFolderPathW(nullptr, path, CSIDL_LOCAL_APPDATA, TRUE);
        std::string text = readFile(m_file);
        replaceAll(text, "{app}", windowsPath(m_application.folder()));
        replaceAll(text, "{company}", m_company);
        replaceAll(text, "{ESC}", "\x1b");
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with('@')) {
                prepare(words(line), lines);
            } else if (line.starts_with('$')) {
                run(line.substr(2), takeOutput(lines));
            }
        }
    }

    void prepare(const std::vector<std::string>& asked, std::istringstream& lines)
    {
        if (asked[0] == "@language") {
            m_application.addLanguage(asked.at(1));
        } else if (asked[0] == "@registry") { // KEY NAME TYPE DATA-IN-HEXADECIMAL
            RawValue value = {static_cast<DWORD>(std::stoul(asked.at(3))), ""};
            for (std::size_t i = 0; i + 1 < asked.at(4).size(); i += 2) {
                value.bytes += static_cast<char>(std::stoi(asked.at(4).substr(i, 2), nullptr, 16));
            }
            setRaw(HKEY_CURRENT_USER, asked.at(1), asked.at(2), value);
        } else if (asked[0] == "@remove") {
            std::filesystem::remove_all(m_application.folder() / asked.at(1));
        } else {
            ASSERT_TRUE(asked[0] == "@file" || asked[0] == "@utf16") << asked[0];
            std::string text;
            for (std::string row; std::getline(lines, row) && row != "@end";) {
                text += row + "\r\n";
            }
            const Wide wide(text);
            writeFile(m_application.folder() / asked.at(1),
                      asked[0] == "@file" ? text : "\xff\xfe" + wide.bytes().substr(0, 2 * wide.length()));
        }
    }

    void run(const std::string& command, const std::string& expected)
    {
        const std::string before = tree(HKEY_CURRENT_USER, "Software\\Acme");
        // If an option is given twice, the last one counts.
        const auto all = words("--company '" + m_company + "' --product Widget " + command);
        const ChildResult result = runProgram(m_program, all);
        std::string actual = result.output + result.errors;
        actual += result.exitCode == 0 ? "" : '[' + std::to_string(result.exitCode) + "]\n";
        replaceAll(actual, std::regex_replace(m_company, std::regex(R"(\\)"), R"(\\)"), "Acme"); // in JSON
        replaceAll(actual, m_company, "Acme");
        EXPECT_TRUE(matches(expected, actual)) << command + '\n' + actual + "---- expected\n" + expected;
        const std::regex changing("(^|.* )(set|rm|import|use|provision)( .*|$)");
        EXPECT_TRUE(std::regex_match(command, changing) ||
                    tree(HKEY_CURRENT_USER, "Software\\Acme") == before);
    }

    const std::filesystem::path m_file;
    const Application m_application{m_file.stem().string()};
    const std::filesystem::path m_program = m_application.addProgram("rkuinfo");
    const std::string m_company = companyFromOutside("Acme");
};

const bool registered = [] {
    for (const auto& entry : std::filesystem::directory_iterator(RKUINFO_TOOL_CASES)) {
        testing::RegisterTest("Rkuinfo", entry.path().stem().string().c_str(), nullptr, nullptr, __FILE__,
                              __LINE__, [file = entry.path()] { return new Transcript(file); });
    }
    return true;
}();

} // namespace
