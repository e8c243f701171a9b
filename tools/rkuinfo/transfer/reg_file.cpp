#include "transfer/transfer.h"

#include "text/text.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view firstLine = "Windows Registry Editor Version 5.00";
constexpr std::string_view longRoot = "HKEY_CURRENT_USER\\";
constexpr std::string_view shortRoot = "HKCU\\";
constexpr std::string_view mark = "\xff\xfe";
constexpr std::string_view utf8Mark = "\xef\xbb\xbf";
constexpr const char* blanks = " \t\r";

/// The registry editor writes UTF-16; other editors may save the file as UTF-8.
std::string textOfFile(const std::string& bytes)
{
    if (!bytes.starts_with(mark)) {
        return bytes.substr(bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0);
    }
    Text text((bytes.size() - mark.size()) / sizeof(wchar_t), 0);
    bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t), mark.size());
    return utf8(text);
}

/// Returns the length of the first line. Line breaks in a value's strings do not end the line.
std::size_t lengthOfLine(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(blanks);
    const bool isValue = first != std::string_view::npos && (text[first] == '"' || text[first] == '@');
    bool isString = false;
    std::size_t i = 0;
    for (; i < text.size() && (text[i] != '\n' || isString); ++i) {
        isString ^= isValue && text[i] == '"';
        i += isString && text[i] == '\\' ? 1U : 0U;
    }
    return std::min(i, text.size());
}

/// Reads the file in one pass. Functions named `take...` remove what they read from the line.
class Reader
{
public:
    Reader(const std::string& file, const std::string& bytes, const Text& root)
        : m_file(file), m_text(textOfFile(bytes)), m_root(root)
    {
    }

    std::vector<Edit> read()
    {
        require(nextLine() && m_line == firstLine, "its first line is not \"" + std::string(firstLine) + '"');
        while (nextLine()) {
            if (take("[")) {
                readKey();
            } else if (!m_line.empty() && !m_line.starts_with(';')) {
                readValue();
            }
        }
        return std::move(m_edits);
    }

private:
    void require(bool holds, const std::string& why) const
    {
        if (!holds) {
            throw Failure(m_file + ": line " + std::to_string(m_number) + ": " + why);
        }
    }

    /// Reads a line. If a line ends with a backslash, appends the next line.
    bool nextLine()
    {
        m_joined.clear();
        m_number = m_nextNumber;
        bool isRead = false;
        for (bool continues = true; continues && !m_rest.empty(); isRead = true) {
            std::string_view line = m_rest.substr(0, lengthOfLine(m_rest));
            m_nextNumber += 1 + static_cast<std::size_t>(std::ranges::count(line, '\n'));
            m_rest.remove_prefix(std::min(line.size() + 1, m_rest.size()));
            line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
            line = line.substr(0, line.find_last_not_of(blanks) + 1);
            continues = line.ends_with('\\') && !line.starts_with(';');
            m_joined += line.substr(0, line.size() - (continues ? 1 : 0));
        }
        m_line = m_joined;
        return isRead;
    }

    /// Removes a word from the front of the line. Returns false if the line does not begin with the word.
    bool take(std::string_view word)
    {
        const bool isThere = m_line.starts_with(word);
        m_line.remove_prefix(isThere ? word.size() : 0);
        return isThere;
    }

    /// Removes a hexadecimal number of at most eight digits from the front of the line.
    std::uint32_t takeNumber(const char* what)
    {
        std::uint32_t number = 0;
        const std::string_view digits = m_line.substr(0, 8);
        const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
        require(error == std::errc(), std::string("not a ") + what);
        m_line.remove_prefix(static_cast<std::size_t>(stop - m_line.data()));
        return number;
    }

    Text takeQuoted()
    {
        std::string out;
        std::size_t i = 1;
        for (; m_line.starts_with('"') && i < m_line.size() && m_line[i] != '"'; ++i) {
            i += m_line[i] == '\\' && i + 1 < m_line.size() ? 1U : 0U;
            out += m_line[i];
        }
        require(m_line.starts_with('"') && i < m_line.size(), "no quotation mark before or after a string");
        require(out.find('\0') == std::string::npos, "a string contains a null character");
        m_line.remove_prefix(i + 1);
        return utf16(out);
    }

    void readKey()
    {
        const bool isRemoval = take("-");
        require(m_line.ends_with(']') && m_line.find('\0') == std::string::npos,
                "the key path does not end with ] or contains a null character");
        m_key = keyBelowRoot(utf16(m_line.substr(0, m_line.size() - 1)));
        m_hasKey = !isRemoval;
        require(!isRemoval || !m_key.empty(), "a file cannot remove the key it is imported into: use rm");
        m_edits.push_back({{m_key, std::nullopt}, {}, isRemoval});
    }

    Text keyBelowRoot(const Text& name) const
    {
        Text path;
        for (const std::string_view root : {longRoot, shortRoot}) {
            path =
                equalIgnoringCase(name.substr(0, root.size()), utf16(root)) ? name.substr(root.size()) : path;
        }
        const bool isRoot = equalIgnoringCase(path, m_root);
        require(isRoot || equalIgnoringCase(path.substr(0, m_root.size() + 1), m_root + separator),
                utf8(name) + " is not below " + utf8(m_root) +
                    ": specify the subtree, company, product and language of this key");
        require(isUsablePath(path), "a path may have at most 1020 characters, a key name 1 to 255");
        return path.substr(m_root.size() + (isRoot ? 0 : 1));
    }

    void readValue()
    {
        require(m_hasKey, "the value does not belong to a key");
        Value value;
        value.name = take("@") ? Text() : takeQuoted();
        require(take("=") && value.name.size() <= longestValueName, "expected a valid value name and =");
        const bool isRemoval = take("-");
        if (isRemoval) {
        } else if (m_line.starts_with('"')) {
            value = textValue(value.name, takeQuoted());
        } else if (take("dword:")) {
            value.type = REG_DWORD;
            value.data = bytesOf(takeNumber("dword"));
        } else {
            value.type = take("hex:") ? REG_BINARY : REG_NONE;
            if (value.type == REG_NONE) {
                require(take("hex("), "not a \"string\", dword:, hex: or hex(type):");
                value.type = takeNumber("registry type");
                require(take("):"), "expected \"):\" after the registry type");
            }
            value.data = takeBytes();
        }
        require(m_line.empty(), "unexpected characters after the value");
        m_edits.push_back({{m_key, value.name}, std::move(value), isRemoval});
    }

    std::string takeBytes()
    {
        std::string digits(m_line);
        std::erase_if(digits, [](char each) { return each == ',' || each == ' ' || each == '\t'; });
        m_line = {};
        const std::optional<std::string> bytes = bytesFromHex(digits);
        require(bytes.has_value(), "not hexadecimal bytes");
        return *bytes;
    }

    const std::string& m_file;
    const std::string m_text;
    const Text& m_root;
    std::string_view m_rest = m_text;
    std::string m_joined;
    std::string_view m_line;
    std::size_t m_number = 1; ///< the line number
    std::size_t m_nextNumber = 1;
    Text m_key;
    bool m_hasKey = false; ///< whether `m_key` can contain values
    std::vector<Edit> m_edits;
};

} // namespace

bool isRegFile(const std::string& bytes)
{
    const std::string start = bytes.substr(0, utf8Mark.size() + firstLine.size());
    return start.starts_with(mark) || textOfFile(start).starts_with(firstLine);
}

std::vector<Edit> fromRegFile(const std::string& file, const std::string& bytes, const Text& root)
{
    return Reader(file, bytes, root).read();
}
