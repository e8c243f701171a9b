// Path strings, file names and string comparison.
#include "agreement/trace.h"

#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <io.h>
#include <numeric>
#include <shlwapi.h>

namespace {

namespace fs = std::filesystem;
using namespace agreement;
using namespace testing_support;

/// Returns up to four components, each followed by a separator, and usually a last component without a
/// separator.
Text relativePath(Trace& trace, std::u16string_view components, std::u16string_view separators,
                  std::u16string_view last)
{
    Text path;
    for (std::uint32_t more = trace.below(5); more > 0; --more) {
        const Text separator = trace.word(separators);
        path += trace.word(components) + separator;
    }
    return trace.oneIn(8) ? path : path + trace.word(last);
}

/// Returns a random path. Components other than ".." never start with two dots, because winhost, unlike
/// Windows, treats "..b" as a name. Paths never end with "..", because Wine reads past the end of such a
/// path.
Text pathText(Trace& trace)
{
    static const Text components = u"a|b.c| |.|..|..|x/y|?|" + Text(100, u'l') + u'|' + Text(300, u'm');
    Text path = relativePath(trace, components, u"\\", components);
    path = trace.word(u"||\\|Z:\\|c:\\|\\\\srv\\") + path;
    path += path.ends_with(u"..") ? u"\\z" : u"";
    path = trace.oneIn(6) ? trace.word(u"|Z:|Z:b|\\\\srv") : path;
    trace.say(path);
    return path;
}

TEST(Winhost, AgreesWithWineOnPaths)
{
    expectAgreement("paths", [](Trace& trace) {
        for (int call = 0; call < 3000; ++call) {
            const Text what = trace.word(u"append|remove file");
            trace.start(what);
            wchar_t buffer[2000] = {};
            std::ranges::copy(pathText(trace), buffer);
            trace.say(what == u"append" ? PathAppendW(buffer, wide(pathText(trace)))
                                        : PathRemoveFileSpecW(buffer));
            trace.say(utf16(buffer));
        }
    });
}

/// Sorts all code units, then records the result of comparing each with the one before it.
TEST(Winhost, AgreesWithWineOnTheCaseOfUnits)
{
    expectAgreement("units", [](Trace& trace) {
        const auto compare = [](wchar_t a, wchar_t b) { return CompareStringOrdinal(&a, 1, &b, 1, TRUE); };
        std::vector<wchar_t> units(0x10000);
        std::iota(units.begin(), units.end(), wchar_t{0});
        std::ranges::stable_sort(units,
                                 [&](wchar_t a, wchar_t b) { return compare(a, b) == CSTR_LESS_THAN; });
        for (std::size_t i = 1; i < units.size(); ++i) {
            trace.start(u"unit", units[i], compare(units[i - 1], units[i]));
        }
    });
}

void fileCall(Trace& trace, const Text& folder)
{
    constexpr auto names = u".|..|sub|Sub|SUB.|a.DLL|A.dll |noext.|locked.TXT|deep|none";
    const Text call = trace.word(u"find|access|change folder");
    const bool isSearch = call == u"find";
    Text name = relativePath(trace, names, u"\\|\\|\\\\|/", isSearch ? u"*.dll|*.X|*.txt|*.none" : names);
    name = trace.oneIn(12) ? trace.word(isSearch ? u"|Q:\\*.dll" : u"|Q:\\x|" + Text(300, u'x')) : name;
    const Text before = trace.word(u"|||z:|Z:|full|full");
    trace.start(call, before, name);
    name = (before == u"full" ? folder + u"\\" : before) + name;
    SetCurrentDirectoryW(wide(folder));
    SetLastError(ERROR_SUCCESS);
    if (isSearch) {
        WIN32_FIND_DATAW found = {};
        const HANDLE search = FindFirstFileW(wide(name), &found);
        trace.say(search == INVALID_HANDLE_VALUE ? GetLastError() : 0, utf16(found.cFileName));
        trace.say(search != INVALID_HANDLE_VALUE && FindClose(search) != FALSE);
    } else if (call == u"access") {
        const int mode = static_cast<int>(2 * trace.below(4));
        trace.say(mode, _waccess(wide(name), mode) == 0 ? 0 : errno);
    } else {
        wchar_t current[1024] = L"?";
        trace.say(SetCurrentDirectoryW(wide(name)));
        trace.say(name.starts_with(u"Q:") ? 0 : GetLastError()); // errors for a missing drive differ
        const DWORD room = GetCurrentDirectoryW(0, nullptr) - trace.below(2);
        trace.say(GetCurrentDirectoryW(room, current) - folder.size(), current[0]);
    }
}

/// Runs in a folder so deep that the ".." components of a path never reach the root.
TEST(Winhost, AgreesWithWineOnFiles)
{
    const fs::path folder = scratchFolder() / "a" / "b" / fs::path(u"Gr\u00FCn") / "Deep";
    for (const char* const file : {"A.dll", "two.x", "noext", "Sub/sub.txt", "Sub/locked.txt"}) {
        writeFile(folder / file, "");
    }
    fs::permissions(folder / "Sub" / "locked.txt", fs::perms::owner_read);
    expectAgreement("files", [](Trace& trace) {
        const Text otherCase = utf16(Wide(windowsPath(scratchFolder()))) + u"\\A\\B\\GR\u00DCN\\deep";
        for (int call = 0; call < 3000; ++call) {
            fileCall(trace, otherCase);
        }
    });
    fs::permissions(folder / "Sub" / "locked.txt", fs::perms::all);
    fs::current_path(scratchFolder());
}

} // namespace
