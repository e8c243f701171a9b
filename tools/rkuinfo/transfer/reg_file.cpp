#include "transfer/reg_file.h"

#include "model/value.h"
#include "text/print.h"

#include <algorithm>
#include <cstdint>
#include <set>

namespace {

constexpr const char* header = "Windows Registry Editor Version 5.00";
constexpr const char* userRoot = "HKEY_CURRENT_USER\\";
constexpr const char* shortUserRoot = "HKCU\\";
constexpr std::string_view mark = "\xff\xfe";

std::string quoted(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text) {
        out += c == '"' || c == '\\' ? "\\" : "";
        out += c;
    }
    return out + '"';
}

/// Bytes as the editor writes them: separated by commas, a line of at most so many columns.
void appendHex(std::string& out, std::string_view start, const std::string& bytes)
{
    constexpr std::size_t widest = 76;
    std::size_t column = start.size();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (column > widest) {
            out += "\\\r\n  ";
            column = 2;
        }
        out += hexDigits(static_cast<unsigned char>(bytes[i]), 2) + (i + 1 < bytes.size() ? "," : "");
        column += 3;
    }
}

/// A text that a quoted string gives back, which none with a line's end or without its terminator is.
bool isPlainText(const Value& value)
{
    return value.type == REG_SZ && value.sameData(textValue({}, textOf(value))) && isValid(textOf(value)) &&
           textOf(value).find_first_of(utf16("\r\n")) == Text::npos;
}

/// The format has no way to write a name of several lines.
void checkName(const Text& name)
{
    if (name.find_first_of(utf16("\r\n")) != Text::npos) {
        throw Failure("the name '" + shown(name) +
                      "' has several lines, which a .reg file cannot hold: use json");
    }
}

void appendValue(std::string& out, const Value& value)
{
    checkName(value.name);
    std::string line = (value.name.empty() ? "@" : quoted(utf8(value.name))) + '=';
    if (isPlainText(value)) {
        out += line + quoted(utf8(textOf(value))) + "\r\n";
        return;
    }
    if (value.type == REG_DWORD && value.data.size() == sizeof(std::uint32_t)) {
        out += line + "dword:" + hexDigits(numberOf<std::uint32_t>(value), 8) + "\r\n";
        return;
    }
    std::string type = hexDigits(static_cast<std::uint32_t>(value.type), 8);
    type.erase(0, std::min(type.find_first_not_of('0'), type.size() - 1));
    line += value.type == REG_BINARY ? "hex:" : "hex(" + type + "):";
    out += line;
    appendHex(out, line, value.data);
    out += "\r\n";
}

void appendKey(std::string& out, const Text& path, const Node& node)
{
    checkName(path);
    out += "\r\n[" + (userRoot + utf8(path)) + "]\r\n";
    for (const Value& value : node.values) {
        appendValue(out, value);
    }
    for (const Node& key : node.keys) {
        appendKey(out, joinedKey(path, key.name), key);
    }
}

class Reader
{
public:
    Reader(const std::string& file, const std::string& bytes, const Text& root)
        : m_file(file), m_rest(utf8(unitsOf(bytes))), m_root(root)
    {
        m_node.isMade = false; // until a line names it or a key below it
    }

    Node read()
    {
        std::string line;
        if (!nextLine(line) || line != header) {
            refuse(std::string("its first line is not \"") + header + '"');
        }
        while (nextLine(line)) {
            if (line.starts_with('[')) {
                readKey(line);
            } else if (!line.empty() && !line.starts_with(';')) {
                readValue(line);
            }
        }
        return m_node;
    }

private:
    static Text unitsOf(const std::string& bytes)
    {
        Text text((bytes.size() - mark.size()) / sizeof(wchar_t), 0);
        bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t), mark.size());
        return text;
    }

    [[noreturn]] void refuse(const std::string& why) const
    {
        throw Failure(m_file + ": line " + std::to_string(m_line) + ": " + why);
    }

    bool nextLine(std::string& line)
    {
        if (m_rest.empty()) {
            return false;
        }
        ++m_line;
        const std::size_t end = std::min(m_rest.find('\n'), m_rest.size());
        line = m_rest.substr(0, end);
        m_rest.erase(0, end + 1);
        line.erase(line.find_last_not_of("\r \t") + 1);
        line.erase(0, std::min(line.find_first_not_of(" \t"), line.size()));
        return true;
    }

    void readKey(const std::string& line)
    {
        const bool isRemoved = line.starts_with("[-");
        const std::size_t start = isRemoved ? 2 : 1;
        if (!line.ends_with(']')) {
            refuse("a key's name has no ]");
        }
        if (line.find('\0') != std::string::npos) {
            refuse("a key's name has a null character");
        }
        const Text name = utf16(line.substr(start, line.size() - start - 1));
        Text path;
        for (const char* const root : {userRoot, shortUserRoot}) {
            const Text prefix = utf16(root);
            if (equalIgnoringCase(name.substr(0, prefix.size()), prefix)) {
                path = name.substr(prefix.size());
            }
        }
        const bool isRoot = equalIgnoringCase(path, m_root);
        const Text prefix = m_root + utf16("\\");
        if (!isRoot && !equalIgnoringCase(path.substr(0, prefix.size()), prefix)) {
            refuse("the key is not below " + shown(m_root));
        }
        if (isRoot && isRemoved) {
            refuse("it removes the key that is imported into: use rm");
        }
        m_key = &m_node;
        m_key->isMade = m_key->isMade || !isRemoved;
        std::size_t depth = 0;
        for (Text rest = isRoot ? Text() : path.substr(prefix.size()); !rest.empty();) {
            constexpr std::size_t longest = 255;
            const std::size_t end = std::min(rest.find(Text::value_type('\\')), rest.size());
            if (end == 0 || end > longest) {
                refuse("no usable name of a key");
            }
            if (++depth > deepestKey) {
                refuse("the keys are nested too deeply");
            }
            m_key = &m_key->below(rest.substr(0, end));
            m_key->isMade = m_key->isMade || !isRemoved;
            rest.erase(0, end + 1);
        }
        m_names = {m_key->removedValues.begin(), m_key->removedValues.end()};
        for (const Value& value : m_key->values) {
            m_names.insert(value.name);
        }
        if (isRemoved) {
            *m_key = {m_key->name, {}, {}, true, {}, false};
            m_key = nullptr;
        }
    }

    /// The last line about a name counts.
    void readValue(std::string line)
    {
        if (m_key == nullptr) {
            refuse("a value that belongs to no key");
        }
        const Text name = line.starts_with('@') ? (line.erase(0, 1), Text()) : utf16(readQuoted(line));
        constexpr std::size_t longest = 1023;
        if (name.size() > longest || !line.starts_with('=')) {
            refuse("no usable name of a value, and = behind it");
        }
        line.erase(0, 1);
        if (!m_names.insert(name).second) {
            std::erase_if(m_key->values,
                          [&](const Value& earlier) { return equalIgnoringCase(earlier.name, name); });
            std::erase_if(m_key->removedValues,
                          [&](const Text& earlier) { return equalIgnoringCase(earlier, name); });
        }
        if (line == "-") {
            m_key->removedValues.push_back(name);
            return;
        }
        Value value = readData(line);
        value.name = name;
        m_key->values.push_back(std::move(value));
    }

    Value readData(std::string& line)
    {
        if (line.starts_with('"')) {
            const Text text = utf16(readQuoted(line));
            if (!line.empty()) {
                refuse("something follows the text");
            }
            return textValue({}, text);
        }
        if (line.starts_with("dword:")) {
            const std::string digits = line.substr(6);
            if (digits.empty() || digits.size() > 8 ||
                digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
                refuse("no usable dword");
            }
            return numberValue(REG_DWORD, static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16)));
        }
        unsigned long type = REG_BINARY;
        if (line.starts_with("hex(")) {
            const std::size_t end = line.find("):");
            if (end == std::string::npos || end < 5 || end > 12 ||
                line.find_first_not_of("0123456789abcdefABCDEF", 4) != end) {
                refuse("no usable type of hexadecimal data");
            }
            type = std::stoul(line.substr(4, end - 4), nullptr, 16);
            line.erase(0, end + 2);
        } else if (line.starts_with("hex:")) {
            line.erase(0, 4);
        } else {
            refuse("no usable data: it is no \"text\", dword:, hex: and no hex(type):");
        }
        return {{}, type, readBytes(line)};
    }

    /// Goes on behind a backslash at a line's end.
    std::string readBytes(std::string line)
    {
        std::string digits;
        for (;;) {
            const bool goesOn = line.ends_with('\\');
            for (const char c : line.substr(0, line.size() - (goesOn ? 1 : 0))) {
                if (c != ',' && c != ' ' && c != '\t') {
                    digits += c;
                }
            }
            if (!goesOn || !nextLine(line)) {
                break;
            }
        }
        const std::optional<std::string> bytes = bytesFromHex(digits);
        if (!bytes) {
            refuse("no usable bytes in hexadecimal");
        }
        return *bytes;
    }

    /// Takes a quoted text off the line.
    std::string readQuoted(std::string& line)
    {
        std::string out;
        std::size_t i = 1;
        for (; line.starts_with('"') && i < line.size() && line[i] != '"'; ++i) {
            if (line[i] == '\\' && i + 1 < line.size()) {
                ++i;
            }
            out += line[i];
        }
        if (!line.starts_with('"') || i >= line.size()) {
            refuse("a text has no quotation mark at its beginning or its end");
        }
        if (out.find('\0') != std::string::npos) {
            refuse("a text has a null character");
        }
        line.erase(0, i + 1);
        return out;
    }

    const std::string& m_file;
    std::string m_rest;
    const Text& m_root;
    std::size_t m_line = 0;
    Node m_node;
    Node* m_key = nullptr;
    std::set<Text, LessIgnoringCase> m_names; ///< that the file has said something about, in that key
};

} // namespace

bool isRegFile(const std::string& bytes)
{
    return bytes.starts_with(mark);
}

std::string toRegFile(const Text& root, const Node& node)
{
    std::string lines = std::string(header) + "\r\n";
    appendKey(lines, root, node);
    lines += "\r\n";
    const Text units = utf16(lines);
    return std::string(mark) + std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2);
}

Node fromRegFile(const std::string& file, const std::string& bytes, const Text& root)
{
    return Reader(file, bytes, root).read();
}
