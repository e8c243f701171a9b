#include "system.h"

#include "text.h"

#include <windows.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>

namespace {

HANDLE console()
{
    return GetStdHandle(STD_OUTPUT_HANDLE);
}

} // namespace

void prepareStreams()
{
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    DWORD mode = 0;
    if (GetConsoleMode(console(), &mode) != FALSE) {
        SetConsoleMode(console(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        SetConsoleOutputCP(CP_UTF8);
    }
}

std::optional<std::size_t> terminalColumns()
{
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    if (GetConsoleScreenBufferInfo(console(), &screen) == FALSE) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
}

bool isBarred(const std::string& name)
{
    const Text path = rkuinfo::text(GetVelaProgramPath) + utf16(name);
    constexpr DWORD sharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE const file =
        CreateFileW(path.c_str(), GENERIC_READ, sharedByAll, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
        return false;
    }
    return GetLastError() == ERROR_ACCESS_DENIED || GetLastError() == ERROR_SHARING_VIOLATION;
}
