#include "model/system.h"

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

Console::Console()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    DWORD mode = 0;
    if (GetConsoleMode(console(), &mode) != FALSE) {
        m_mode = mode;
        m_codePage = GetConsoleOutputCP();
        SetConsoleMode(console(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        SetConsoleOutputCP(CP_UTF8);
    }
}

Console::~Console()
{
    if (m_codePage != 0) {
        SetConsoleMode(console(), m_mode);
        SetConsoleOutputCP(m_codePage);
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

bool errorsGoToTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != FALSE;
}

Text fullFolder(const std::string& name)
{
    wchar_t path[1024] = {};
    const DWORD length = GetFullPathNameW(utf16(name).c_str(), 1023, path, nullptr);
    const DWORD attributes =
        length == 0 || length >= 1023 ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return {};
    }
    Text folder = path;
    return folder.ends_with(L'\\') ? folder : folder + L'\\';
}

std::string nativePath(const Text& path)
{
    return utf8(path);
}

bool isBarred(const Text& path)
{
    constexpr DWORD sharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE const file =
        CreateFileW(path.c_str(), GENERIC_READ, sharedByAll, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
        return false;
    }
    return GetLastError() == ERROR_ACCESS_DENIED || GetLastError() == ERROR_SHARING_VIOLATION;
}

bool makeFile(const std::filesystem::path& path)
{
    HANDLE const file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != FALSE;
}

std::string registryPlace()
{
    return "";
}

bool RegistryTransaction::begin()
{
    return false; // the Windows registry's own are deprecated, and not there in Wine
}

bool RegistryTransaction::end(bool /*keep*/)
{
    return false;
}
