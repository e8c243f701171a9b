// Modules and their string tables.
#include "support/test.h"

namespace {

namespace fs = std::filesystem;

constexpr UINT englishId = 1003; // "English" in the English language library

fs::path inBin(const fs::path& file)
{
    return thisProgram().parent_path() / file;
}

HMODULE load(const fs::path& file)
{
    SetLastError(ERROR_SUCCESS);
    return LoadLibraryExW(Wide(windowsPath(file)), nullptr, 0);
}

std::string fileNameOf(HMODULE module)
{
    return textOf([module](wchar_t* path) { return GetModuleFileNameW(module, path, 1024); });
}

/// Calls LoadStringW and prints the length, the buffer and the error.
std::string stringOf(HMODULE module, UINT id)
{
    wchar_t text[100] = L"#";
    SetLastError(ERROR_SUCCESS);
    const int copied = LoadStringW(module, id, text, 100);
    return std::to_string(copied) + ' ' + utf8(text) + ' ' + std::to_string(GetLastError());
}

TEST(GetModuleFileName, ReturnsTheExecutable)
{
    const std::string path = fileNameOf(GetModuleHandleW(nullptr));
    EXPECT_EQ(path, windowsPath(thisProgram()));
    wchar_t buffer[1024];
    const auto length = static_cast<DWORD>(path.size());
    for (const DWORD size : {DWORD{0}, DWORD{1}, length, length + 1}) {
        EXPECT_EQ(GetModuleFileNameW(nullptr, buffer, size), std::min(size, length));
        EXPECT_EQ(GetLastError(), size <= length ? DWORD{ERROR_INSUFFICIENT_BUFFER} : DWORD{ERROR_SUCCESS});
    }
}

TEST(LoadLibrary, LoadsCodeOnceAndFindsItsOwnFunctions)
{
    const HMODULE system = GetModuleHandleW(L"Advapi32.dll");
    EXPECT_EQ(GetModuleHandleW(L"advapi32"), system);
    EXPECT_TRUE(GetModuleHandleW(L"shlwapi") != nullptr && GetModuleHandleW(L"kernel32") != nullptr);
    EXPECT_NE(GetProcAddress(system, "RegDeleteTreeW"), nullptr);
    const HMODULE module = load(inBin(libraryModule));
    EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), module);
    EXPECT_EQ(GetModuleHandleW(Wide(windowsPath(inBin(libraryModule)))), module);
    EXPECT_EQ(fileNameOf(module), windowsPath(inBin(libraryModule)));
    EXPECT_EQ(stringOf(module, englishId).substr(0, 3), "0 #");
    EXPECT_EQ(GetProcAddress(module, "malloc"), nullptr); // exported by another module
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_NE(FreeLibrary(module), FALSE);
    EXPECT_EQ(GetModuleHandleW(L"no such module"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(LoadLibrary, FindsResourceFilesOrReportsWhy)
{
    const fs::path folder = scratchFolder() / "modules";
    fs::create_directories(folder / "folder.dll");
    for (const char* const name : {"Pack.dll", "noext", "other.foo"}) {
        fs::copy_file(inBin("en-US/RkUInfoRes.dll"), folder / name);
    }
    writeFile(folder / "text.dll", "\177ELF");
    writeFile(folder / "stub.dll", "MZ");
    writeFile(folder / "empty.dll", "");
    const std::pair<DWORD, std::vector<std::string>> rows[] = {
        {0, {"pack.dll", "PACK", "other.foo", "noext."}},
        {ERROR_MOD_NOT_FOUND, {"noext", "none\\none.dll"}},
        {ERROR_BAD_EXE_FORMAT, {"text.dll", "stub.dll", "empty.dll"}},
        {ERROR_ACCESS_DENIED, {"folder.dll"}},
    };
    for (const auto& [error, names] : rows) {
        for (const std::string& name : names) {
            SCOPED_TRACE(name);
            const HMODULE module = load(folder / name);
            EXPECT_EQ(GetLastError(), error);
            EXPECT_EQ(stringOf(module, englishId) == "7 English 0", error == 0);
            EXPECT_EQ(FreeLibrary(module) != FALSE, error == 0);
            EXPECT_EQ(FreeLibrary(module), FALSE); // the module is no longer loaded
        }
    }

    fs::current_path(folder);
    const HMODULE found = LoadLibraryW(L"pack");
    fs::current_path(scratchFolder());
    EXPECT_EQ(LoadLibraryW(L"pack.dll"), found); // found, although not in the search path
    EXPECT_EQ(load(folder / "pack.dll"), found);
    EXPECT_EQ(LoadLibraryW(Wide("\\\\?\\" + windowsPath(folder / "pack.dll"))), found);
    for (int references = 4; references > 0; --references) {
        EXPECT_EQ(GetModuleHandleW(L"Pack"), found);
        EXPECT_NE(FreeLibrary(found), FALSE);
    }
    EXPECT_EQ(GetModuleHandleW(L"Pack"), nullptr);
}

} // namespace
