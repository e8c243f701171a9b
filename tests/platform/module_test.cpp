// Modules and their string tables.
#include "support/imports.h"
#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

constexpr UINT englishId = 1003; // of the English language library, whose last string in that block is 1007

HMODULE load(const fs::path& file, DWORD flags = 0)
{
    SetLastError(ERROR_SUCCESS);
    return LoadLibraryExW(Wide(windowsPath(file)), nullptr, flags);
}

std::string fileNameOf(HMODULE module)
{
    wchar_t path[1024] = {};
    return GetModuleFileNameW(module, path, 1024) != 0 ? utf8(path) : "";
}

std::string stringOf(HMODULE module, UINT id, int size = 100)
{
    wchar_t text[100] = L"#";
    const int copied = LoadStringW(module, id, text, size);
    return std::to_string(copied) + " " + utf8(text);
}

TEST(Module, TheExecutableIsKnown)
{
    const HMODULE program = GetModuleHandleW(nullptr);
    const std::string path = fileNameOf(program);
    EXPECT_EQ(path, windowsPath(thisProgram()));
    EXPECT_EQ(fileNameOf(nullptr), path);
    EXPECT_EQ(path.substr(0, 3), "Z:\\");

    wchar_t buffer[1024] = {};
    const auto length = static_cast<DWORD>(path.size());
    for (const DWORD size : {DWORD{0}, DWORD{1}, DWORD{5}, length}) {
        EXPECT_EQ(GetModuleFileNameW(program, buffer, size), size);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    }
    EXPECT_EQ(GetModuleFileNameW(program, buffer, length + 1), length);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(utf8(buffer), path);
    EXPECT_NE(FreeLibrary(program), FALSE);
    EXPECT_EQ(DisableThreadLibraryCalls(program), FALSE);
}

TEST(Module, SystemNamesAreKnown)
{
    for (const wchar_t* const name : {L"advapi32", L"Advapi32.dll", L"KERNEL32.DLL"}) {
        EXPECT_NE(GetModuleHandleW(name), nullptr) << utf8(name);
    }
    const HMODULE system = GetModuleHandleW(L"advapi32.dll");
    EXPECT_NE(GetProcAddress(system, "RegDeleteTreeW"), nullptr);
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetProcAddress(system, "NoSuchFunction"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    EXPECT_EQ(GetModuleHandleW(L"no such module"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(Module, CodeIsLoadedOnce)
{
    const fs::path file = thisProgram().parent_path() / libraryModule;
    const HMODULE module = load(file);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(load(file), module);
    EXPECT_EQ(fileNameOf(module), windowsPath(file));
    EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), module);
    EXPECT_NE(GetProcAddress(module, "_Z10velaConfigv"), nullptr);
    EXPECT_EQ(GetProcAddress(module, "malloc"), nullptr); // of another module
    EXPECT_NE(FreeLibrary(module), FALSE);
    EXPECT_NE(FreeLibrary(module), FALSE);
    EXPECT_EQ(stringOf(module, englishId), "0 #");
    EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_DATA_NOT_FOUND});
}

TEST(Module, ResourceFilesAreLoadedAndSearched)
{
    const fs::path folder = scratchFolder() / "modules";
    fs::create_directories(folder);
    for (const char* const name : {"Pack.dll", "noext", "other.foo"}) {
        fs::copy_file(thisProgram().parent_path() / "en-US" / "RkUInfoRes.dll", folder / name);
    }
    writeFile(folder / "text.dll", "hello");
    writeFile(folder / "stub.dll", "MZ");
    writeFile(folder / "empty.dll", "");
    fs::create_directories(folder / "folder.dll");

    const std::pair<const char*, DWORD> cases[] = {
        {"pack.dll", 0},
        {"PACK", 0},
        {"other.foo", 0},
        {"noext.", 0},
        {"noext", ERROR_MOD_NOT_FOUND},
        {"none.dll", ERROR_MOD_NOT_FOUND},
        {"none\\none.dll", ERROR_MOD_NOT_FOUND},
        {"text.dll", ERROR_BAD_EXE_FORMAT},
        {"stub.dll", ERROR_BAD_EXE_FORMAT},
        {"empty.dll", ERROR_BAD_EXE_FORMAT},
        {"folder.dll", ERROR_ACCESS_DENIED},
    };
    for (const auto& [name, error] : cases) {
        const HMODULE module = load(folder / name);
        EXPECT_EQ(module == nullptr, error != 0) << name;
        EXPECT_EQ(GetLastError(), error) << name;
        if (module != nullptr) {
            EXPECT_EQ(stringOf(module, englishId), "7 English") << name;
            EXPECT_NE(FreeLibrary(module), FALSE);
            EXPECT_EQ(FreeLibrary(module), FALSE) << name; // gone
        }
    }

    fs::current_path(folder);
    const HMODULE found = LoadLibraryW(L"pack");
    fs::current_path(scratchFolder());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(load(folder / "Pack.dll"), found);
    EXPECT_EQ(GetModuleHandleW(L"Pack"), found);
    EXPECT_EQ(LoadLibraryW(L"pack.dll"), found); // loaded, though no longer to be found
    for (int i = 0; i < 3; ++i) {
        EXPECT_NE(FreeLibrary(found), FALSE);
    }
    EXPECT_EQ(GetModuleHandleW(L"Pack"), nullptr);
    EXPECT_EQ(fileNameOf(found), "");
    EXPECT_EQ(FreeLibrary(nullptr), FALSE);
    EXPECT_EQ(LoadLibraryW(nullptr), nullptr);
    EXPECT_EQ(LoadLibraryW(L""), nullptr);
}

TEST(Module, StringsAreCopiedOrPointedTo)
{
    for (const DWORD flags :
         {DWORD{0}, DWORD{LOAD_LIBRARY_AS_DATAFILE}, DWORD{LOAD_LIBRARY_AS_IMAGE_RESOURCE}}) {
        const HMODULE module = load(thisProgram().parent_path() / "en-US" / "RkUInfoRes.dll", flags);
        ASSERT_NE(module, nullptr);
        EXPECT_EQ(stringOf(module, englishId, 8), "7 English");
        EXPECT_EQ(stringOf(module, englishId, 4), "3 Eng");
        EXPECT_EQ(stringOf(module, englishId + 0x10000), "7 English");
        EXPECT_EQ(stringOf(module, 1000), "0 "); // its block is there
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(stringOf(module, 5), "0 #");
        EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_NAME_NOT_FOUND});
        const wchar_t* address = nullptr;
        ASSERT_EQ(LoadStringW(module, englishId, reinterpret_cast<wchar_t*>(&address), 0), 7);
        EXPECT_EQ(std::memcmp(address, L"English", 7 * sizeof(wchar_t)), 0);
        EXPECT_NE(FreeLibrary(module), FALSE);
    }
    EXPECT_EQ(stringOf(nullptr, englishId), "0 #");
}

} // namespace
