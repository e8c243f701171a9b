#include "model/system.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <io.h>

namespace {

HANDLE console()
{
    return GetStdHandle(STD_OUTPUT_HANDLE);
}

} // namespace

void prepareProcess()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    static DWORD mode = 0;
    static UINT codePage = 0;
    if (GetConsoleMode(console(), &mode) != FALSE) {
        codePage = GetConsoleOutputCP();
        SetConsoleMode(console(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        SetConsoleOutputCP(CP_UTF8);
        std::atexit([] {
            SetConsoleMode(console(), mode);
            SetConsoleOutputCP(codePage);
        });
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
    return _isatty(_fileno(stderr)) != 0; // _isatty also returns true for NUL
}

Text fullFolder(const std::string& name)
{
    std::error_code failure;
    const auto folder = std::filesystem::absolute(utf16(name), failure).make_preferred();
    if (failure || !std::filesystem::is_directory(folder, failure)) {
        return {};
    }
    return folder.native().ends_with(separator) ? folder.native() : folder.native() + separator;
}

std::string nativePath(const Text& path)
{
    return utf8(path);
}

/// Quotes and escapes a word for PowerShell. cmd also reads the result correctly, unless the word contains $,
/// `, %NAME% or a typographic quotation mark.
std::string shellWord(const std::string& word)
{
    constexpr const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=.:/\\";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    std::string out = "\"";
    for (std::string_view rest = word; !rest.empty();) {
        const char32_t point = rkuinfo::detail::takeCodePoint(rest);
        if (point == '$' || point == '`') {
            out += '`';
        } else if (point == '"' || (point >= 0x201C && point <= 0x201E)) {
            rkuinfo::detail::appendCodePoint(out, point);
        }
        rkuinfo::detail::appendCodePoint(out, point);
    }
    return out + (word.ends_with('\\') ? "\\\"" : "\"");
}

std::string userFolder(bool isRoaming)
{
    return isRoaming ? "%APPDATA%" : "%LOCALAPPDATA%";
}

std::string registryPlace()
{
    return "";
}

void requireWritable(const Text& key)
{
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ | KEY_WRITE, &opened) ==
        ERROR_ACCESS_DENIED) {
        throw Failure("HKEY_CURRENT_USER\\" + utf8(key) + " cannot be written",
                      "give the user full control of the key in the registry editor");
    }
    RegCloseKey(opened);
}

void inTransaction(const std::function<void()>& change)
{
    change(); // Windows deprecates registry transactions, and Wine lacks them
}

bool hasTransactions()
{
    return false;
}
