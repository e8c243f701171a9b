// What is read of INI files.
#include "agreement/trace.h"

#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using namespace agreement;
using namespace testing_support;

/// Sections and entries, and what looks like them. Beyond ASCII, which letters' case counts differs.
Text lines(Trace& trace)
{
    static const Text pieces[] = {u"[",    u"]",   u"sec", u"Two",         u"key",  u"K2",  u"=",
                                  u"=",    u" ",   u"\t",  u";",           u"\"",   u"'",   u"value",
                                  u"0x1F", u"-12", u"+4",  u"99999999999", u"0b11", u"o17", u"\u00E9"};
    static const Text common[] = {u"[Sec]", u"[two] ", u"key=", u"K2 = ", u"é="};
    static const Text ends[] = {u"\n", u"\r\n", u"\r"};
    Text all;
    for (std::uint32_t more = trace.below(12); more > 0; --more) {
        all += trace.oneIn(4) ? Text() : trace.oneOf(common);
        for (std::uint32_t more2 = trace.below(5); more2 > 0; --more2) {
            all += trace.oneOf(pieces);
        }
        all += trace.oneOf(ends);
    }
    return all;
}

std::string encoded(Trace& trace, const Text& text)
{
    std::string bytes;
    switch (trace.below(4)) {
    case 0:
        return "\xEF\xBB\xBF" + utf8(wide(text));
    case 1:
        for (const char16_t unit : u"\xFEFF" + text) {
            bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
        }
        return bytes;
    case 2:
        for (const char16_t unit : u"\xFEFF" + text) {
            bytes += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
        }
        return bytes;
    default:
        return {text.begin(), text.end()};
    }
}

void iniCalls(Trace& trace)
{
    static const Text names[] = {u"sec", u" SEC ", u"two",   u"key",    u"KEY ",
                                 u"k2",  u"",      u"value", u"\u00E9", u"sec]"};
    static const Text fallbacks[] = {u"", u"def", u" d ", u"\"q\"", u"'"};
    for (int file = 0; file < 300; ++file) {
        const auto path = scratchFolder() / ("file" + std::to_string(file) + ".ini");
        trace.start("write");
        const Text text = lines(trace);
        trace.say(text);
        writeFile(path, encoded(trace, text));
        const Wide name(windowsPath(path));
        for (int call = 0; call < 10; ++call) {
            const Text& section = trace.oneOf(names);
            const Text& key = trace.oneOf(names);
            trace.start("get");
            trace.say(section, key);
            const Text& fallback = trace.oneOf(fallbacks);
            wchar_t out[40] = L"";
            const DWORD whole =
                GetPrivateProfileStringW(wide(section), wide(key), wide(fallback), out, 40, name);
            DWORD size = trace.below(40);
            size +=
                size == whole + 1 ? 1 : 0; // differs: in room for no more, Wine cuts off a quoted text's end
            trace.say(fallback, size,
                      GetPrivateProfileStringW(wide(section), wide(key), wide(fallback), out, size, name),
                      out);
            trace.say(GetPrivateProfileIntW(wide(section), wide(key), -9, name));
        }
    }
}

TEST(Agreement, OfIniFiles)
{
    expectAgreement("ini", iniCalls);
}

} // namespace
