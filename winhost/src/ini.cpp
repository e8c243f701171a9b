// Private profile (INI) files. Each call reads the file again, because it may have changed.
#include "host_path.h"

#include <windows.h>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace {

using winhost::equalIgnoringCase;
using winhost::Text;
using winhost::TextView;

constexpr TextView blanks = L" \t\v\f\x1A";
constexpr std::size_t largestFile = std::size_t{1} << 20;

struct Entry
{
    TextView key;
    std::optional<TextView> value; // empty if the line has no '='
};

struct Section
{
    TextView name;
    std::vector<Entry> entries;
};

TextView trimmed(TextView text)
{
    const std::size_t first = text.find_first_not_of(blanks);
    return first == TextView::npos ? TextView()
                                   : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

TextView unquoted(TextView text)
{
    const bool isQuoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == L'"' || text.front() == L'\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

Text decodeUtf16(std::string_view bytes, std::size_t lowByte)
{
    Text text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i + lowByte]);
        const auto high = static_cast<unsigned char>(bytes[i + 1 - lowByte]);
        text.push_back(static_cast<wchar_t>(low | (high << 8)));
    }
    return text;
}

/// Decodes UTF-16 if the file begins with a UTF-16 byte order mark, otherwise UTF-8. In UTF-8, invalid bytes
/// are read as Latin-1. Returns an empty string if a UTF-8 file contains a zero byte.
Text decode(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xFE")) {
        return decodeUtf16(bytes.substr(2), 0);
    }
    if (bytes.starts_with("\xFE\xFF")) {
        return decodeUtf16(bytes.substr(2), 1);
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    return bytes.find('\0') == std::string_view::npos ? winhost::fromUtf8(bytes) : Text();
}

/// The first section returned has no name; it contains the entries that precede the file's first section. A
/// line that begins with '[' is an entry if it contains no ']'.
std::vector<Section> parse(TextView text)
{
    std::vector<Section> sections(1);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(L"\r\n"), text.size());
        const TextView line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t close = line.starts_with(L'[') ? line.rfind(L']') : TextView::npos;
        if (close != TextView::npos) {
            sections.push_back({trimmed(line.substr(1, close - 1)), {}});
        } else if (!line.empty()) {
            const std::size_t equals = line.find(L'=');
            Entry entry = {trimmed(line.substr(0, equals)), std::nullopt};
            if (equals != TextView::npos) {
                entry.value = trimmed(line.substr(equals + 1));
            }
            sections.back().entries.push_back(entry);
        }
    }
    return sections;
}

std::optional<TextView> findValue(const std::vector<Section>& sections, TextView sectionName, TextView key)
{
    for (const Section& section : sections) {
        if (!equalIgnoringCase(section.name, trimmed(sectionName))) {
            continue;
        }
        for (const Entry& entry : section.entries) {
            if (equalIgnoringCase(entry.key, trimmed(key))) {
                return entry.value;
            }
        }
        break;
    }
    return std::nullopt;
}

TextView withoutTrailingBlanks(TextView text)
{
    while (text.size() > 1 && text.back() == L' ') {
        text.remove_suffix(1);
    }
    return text;
}

/// Parses a decimal number, or a hexadecimal number that begins with 0x. A sign may precede the number.
/// The result is reduced modulo 2^32. Ignores the text after the digits.
UINT parseNumber(TextView text)
{
    text = trimmed(text);
    const bool isNegative = text.starts_with(L'-');
    text.remove_prefix(isNegative || text.starts_with(L'+') ? 1 : 0);
    const UINT base = text.starts_with(L"0x") ? 16 : 10;
    text.remove_prefix(base == 16 ? 2 : 0);
    UINT number = 0;
    for (const wchar_t unit : text) {
        const std::size_t digit = TextView(L"0123456789ABCDEF").find(winhost::upcase(unit));
        if (digit >= base) {
            break;
        }
        number = number * base + static_cast<UINT>(digit);
    }
    return isNegative ? 0U - number : number;
}

} // namespace

DWORD GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR defaultText, LPWSTR out, DWORD size,
                               LPCWSTR fileName)
{
    if (out == nullptr || size == 0) {
        return 0;
    }
    const TextView fallback = withoutTrailingBlanks(winhost::viewOf(defaultText));
    const std::optional<std::string> file = winhost::findOnHost(winhost::viewOf(fileName));
    const std::optional<std::string> bytes = file ? winhost::readFile(*file, largestFile) : std::nullopt;
    if (bytes) {
        SetLastError(ERROR_SUCCESS);
    }
    const Text text = bytes ? decode(*bytes) : Text();
    const bool isNamed = section != nullptr && key != nullptr;
    const TextView value = isNamed ? findValue(parse(text), section, key).value_or(fallback) : fallback;
    return static_cast<DWORD>(winhost::copyText(unquoted(value), out, size));
}

UINT GetPrivateProfileIntW(LPCWSTR section, LPCWSTR key, INT defaultValue, LPCWSTR fileName)
{
    constexpr DWORD longestNumber = 30;
    wchar_t text[longestNumber];
    const DWORD copied = GetPrivateProfileStringW(section, key, L"", text, longestNumber, fileName);
    return copied == 0 ? static_cast<UINT>(defaultValue) : parseNumber(TextView(text, copied));
}
