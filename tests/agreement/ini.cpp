// Tests how INI files are read.
#include "agreement/trace.h"

#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using namespace agreement;
using namespace testing_support;

/// Returns random sections and entries, some of them malformed. Uses only lower-case non-ASCII letters,
/// because some systems do not ignore their case.
Text lines(Trace& trace)
{
    Text all;
    for (std::uint32_t more = trace.below(12); more > 0; --more) {
        all += trace.word(u"|[Sec]|[two] |key=|K2 = |\u00E9=");
        for (std::uint32_t i = trace.below(5); i > 0; --i) {
            all += trace.word(
                u"[|]|sec|Two|key|K2|=|=| "
                u"|\t|;|\"|'|value|0x1F|-12|+4A|99999999999|000000000000000000000000000012|\u00E9");
        }
        all += trace.word(u"\n|\r\n|\r");
    }
    return all;
}

/// Encodes text as single-byte characters (encoding 0), UTF-8 (1), or UTF-16 in either byte order (2 and 3).
/// Every encoding except 0 has a byte order mark.
std::string encoded(const Text& text, std::uint32_t encoding)
{
    if (encoding < 2) {
        return encoding == 0 ? std::string(text.begin(), text.end()) : "\xEF\xBB\xBF" + utf8(wide(text));
    }
    std::string bytes;
    for (const char16_t unit : u"\xFEFF" + text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += encoding == 2 ? std::string{low, high} : std::string{high, low};
    }
    return bytes;
}

void readFile(Trace& trace, const Wide& path)
{
    constexpr auto names = u"sec| SEC |two|key|KEY |k2||value|\u00E9|sec]";
    static const wchar_t* const fallbacks[] = {nullptr, L"", L"def", L" d ", L"\"q\"", L"'"};
    const Text section = trace.word(names);
    const Text key = trace.word(names);
    const wchar_t* const fallback = trace.oneOf(fallbacks);
    wchar_t out[] = L"????????????????????????????????????????";
    const auto get = [&](DWORD size) {
        return GetPrivateProfileStringW(wide(section), wide(key), fallback, out, size, path);
    };
    const DWORD whole = get(40);
    const DWORD size = trace.below(40);
    trace.start(u"get", section, key, utf16(out), size);
    // If a quoted value exactly fits the buffer, Wine truncates it but winhost does not.
    trace.say(get(size != whole + 1 ? size : 40));
    trace.say(utf16(out), GetPrivateProfileIntW(wide(section), wide(key), -9, path));
}

TEST(Winhost, AgreesWithWineOnIniFiles)
{
    expectAgreement("ini", [](Trace& trace) {
        for (int file = 0; file < 300; ++file) {
            const auto path = scratchFolder() / ("file" + std::to_string(file) + ".ini");
            const Text text = lines(trace);
            const std::uint32_t encoding = trace.below(4);
            writeFile(path, encoded(text, encoding) + (trace.oneIn(9) ? "x" : ""));
            trace.start(u"write", text, encoding);
            for (int call = 0; call < 10; ++call) {
                readFile(trace, windowsPath(path));
            }
        }
    });
}

} // namespace
