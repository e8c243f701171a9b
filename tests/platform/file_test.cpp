// Tests long INI files and the user's folders, which tests/agreement does not cover.
#include "support/test.h"

#include <shlobj.h>

namespace {

namespace fs = std::filesystem;

std::string iniValue(const fs::path& file, LPCWSTR key)
{
    std::vector<wchar_t> out(100'000);
    GetPrivateProfileStringW(L"s", key, L"?", out.data(), 100'000, Wide(windowsPath(file)));
    return utf8(out.data());
}

/// According to its documentation, Windows ignores the first section after a UTF-8 byte order mark. Wine and
/// winhost read this section.
TEST(WineIniFile, IsReadAtAnyLength)
{
    const fs::path file = scratchFolder() / "big.ini";
    const std::string line = std::string(70'000, 'x') + // then U+0080, U+0800, U+10000 and U+10FFFF
                             "\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    writeFile(file, "\xEF\xBB\xBF[s]\n" + std::string(900'000, ';') + "\nline=" + line + "\nend=1");
    EXPECT_EQ(iniValue(file, L"line"), line);
    EXPECT_EQ(iniValue(file, L"end"), "1");
    EXPECT_EQ(iniValue(scratchFolder(), L"end"), "?");
    EXPECT_EQ(iniValue(scratchFolder() / "none.ini", L"end"), "?");
}

std::string userFolder(int id)
{
    wchar_t path[MAX_PATH] = L"?";
    wchar_t same[MAX_PATH] = {};
    const HRESULT result = SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path);
    const bool isFound = SHGetSpecialFolderPathW(nullptr, same, id & 0xFF, id & CSIDL_FLAG_CREATE) != FALSE;
    EXPECT_EQ(isFound, SUCCEEDED(result));
    return SUCCEEDED(result) ? utf8(path) : result == E_INVALIDARG ? "invalid" + utf8(path) : "failed";
}

TEST(GetFolderPath, ReturnsAbsolutePathsAndCreatesOnRequest)
{
    const std::string roaming = userFolder(CSIDL_APPDATA | CSIDL_FLAG_CREATE);
    const std::string local = userFolder(CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE);
    EXPECT_EQ(roaming.substr(1, 2) + local.substr(1, 2), ":\\:\\");
    EXPECT_NE(roaming, local);
    EXPECT_EQ(userFolder(0x77), "invalid");
    const fs::path folder = scratchFolder() / "documents" / "deep";
    setRaw(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
           "Personal", RawValue{REG_EXPAND_SZ, Wide(windowsPath(folder)).bytes()});
    shareWithChildren("XDG_DOCUMENTS_DIR", folder.string() + "//");
    EXPECT_EQ(userFolder(CSIDL_PERSONAL), "failed");
    EXPECT_EQ(userFolder(CSIDL_PERSONAL | CSIDL_FLAG_CREATE), windowsPath(folder));
    EXPECT_TRUE(fs::is_directory(folder));
}

} // namespace
