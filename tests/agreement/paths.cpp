// Paths as texts and as names of files; file patterns; the comparison of texts.
#include "agreement/trace.h"

#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cerrno>
#include <io.h>
#include <numeric>
#include <shlwapi.h>

namespace {

namespace fs = std::filesystem;
using namespace agreement;
using namespace testing_support;

/// A few components, each with a separator behind it, which the last may have, too.
template <typename Components>
Text relativePath(Trace& trace, const Components& components, const Text& separators)
{
    Text path;
    for (std::uint32_t more = trace.below(5); more > 0; --more) {
        path += trace.oneOf(components);
        path += trace.oneOf(separators);
    }
    return trace.oneIn(8) ? path : path + trace.oneOf(components);
}

/// A component that begins with ".." and is longer differs.
void textCalls(Trace& trace)
{
    static const Text roots[] = {u"", u"", u"\\", u"Z:\\", u"c:\\", u"\\\\srv\\"};
    static const Text whole[] = {u"", u"Z:", u"Z:b", u"\\\\srv"};
    static const Text components[] = {u"a", u"b.c",          u" ",           u".", u"..", u"..", u"x/y",
                                      u"?", Text(100, u'l'), Text(300, u'm')};
    const auto next = [&] {
        Text path = trace.oneOf(whole);
        if (!trace.oneIn(6)) {
            path = trace.oneOf(roots) + relativePath(trace, components, u"\\");
            path += path.ends_with(u"..") ? u"\\z" : u""; // differs: Wine reads on behind it
        }
        trace.say(path);
        return path;
    };
    for (int call = 0; call < 3000; ++call) {
        const bool isAppend = trace.oneIn(2);
        trace.start(isAppend ? "append" : "remove file");
        const Text start = next();
        wchar_t buffer[2000] = {};
        std::copy(start.begin(), start.end(), buffer);
        trace.say(isAppend ? PathAppendW(buffer, wide(next())) : PathRemoveFileSpecW(buffer));
        trace.say(utf16(buffer));
    }
}

TEST(Agreement, OfPaths)
{
    expectAgreement("paths", textCalls);
}

/// In a folder deep enough for any "..".
void fileCalls(Trace& trace)
{
    const fs::path folder = scratchFolder() / "a" / "b" / fs::path(u"Gr\u00FCn") / "Deep";
    for (const char* const file : {"A.dll", "two.x", "noext", "Sub/sub.txt", "Sub/locked.txt"}) {
        writeFile(folder / file, "");
    }
    fs::permissions(folder / "Sub" / "locked.txt", fs::perms::owner_read);
    const Text full = utf16(Wide(windowsPath(scratchFolder()))) + u"\\A\\B\\GR\u00DCN\\deep";
    const Text components[] = {u".",      u"..",     u"sub",        u"Sub",  u"SUB.", u"a.DLL",
                               u"A.dll ", u"noext.", u"locked.TXT", u"deep", u"none"};
    const Text patterns[] = {u"*", u"*.", u"*d", u"?", u".", u"l", u"x", u"two", u"a", u"sub", u"t"};
    for (int call = 0; call < 3000; ++call) {
        SetCurrentDirectoryW(wide(full));
        const std::uint32_t kind = trace.below(3);
        trace.start(kind == 0 ? "find" : kind == 1 ? "access" : "change folder");
        Text name = relativePath(trace, components, u"\\\\\\/");
        trace.say(name);
        if (kind == 0 && !trace.oneIn(4)) {
            for (std::uint32_t more = 1 + trace.below(6); more > 0; --more) {
                const Text& next = trace.oneOf(patterns);
                name +=
                    name.ends_with(u'*') && next == u"?" ? u"" : next; // differs: Wine finds nothing by "*?"
            }
            trace.say(name);
        }
        if (trace.oneIn(3)) {
            name = full + u"\\" + name;
        }
        SetLastError(0);
        errno = 0;
        if (kind == 0) {
            WIN32_FIND_DATAW found = {};
            HANDLE const search = FindFirstFileW(wide(name), &found);
            trace.say(search == INVALID_HANDLE_VALUE ? GetLastError() : 0, utf16(found.cFileName));
            trace.say(search != INVALID_HANDLE_VALUE && FindClose(search));
        } else if (kind == 1) {
            const int mode = static_cast<int>(2 * trace.below(4));
            trace.say(mode, _waccess(wide(name), mode) == 0 ? 0 : errno);
        } else {
            trace.say(SetCurrentDirectoryW(wide(name)) ? 0 : GetLastError());
            wchar_t now[1024] = {};
            const DWORD length = GetCurrentDirectoryW(1024, now);
            trace.say(length - full.size());
        }
    }
    fs::permissions(folder / "Sub" / "locked.txt", fs::perms::all);
}

TEST(Agreement, OfFiles)
{
    expectAgreement("files", fileCalls);
}

} // namespace
