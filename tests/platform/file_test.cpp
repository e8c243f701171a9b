// Files, INI files and the user's folders: what the random calls of tests/agreement do not reach.
#include "support/test.h"

#include <io.h>
#include <shlobj.h>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

std::string iniValue(const fs::path& file, LPCWSTR key)
{
    std::vector<wchar_t> out(100'000);
    GetPrivateProfileStringW(L"s", key, L"?", out.data(), static_cast<DWORD>(out.size()),
                             Wide(windowsPath(file)));
    return utf8(out.data());
}

TEST(IniFile, IsReadWhereItIsOne)
{
    const fs::path big = scratchFolder() / "big.ini";
    const std::string line =
        std::string(70'000, 'x') + "\xF4\x8F\xBF\xBF"; // the last character that there is
    writeFile(big, "\xEF\xBB\xBF[s]\n" + std::string(900'000, ';') + "\nline=" + line + "\nend=1");
    EXPECT_EQ(iniValue(big, L"line"), line);
    EXPECT_EQ(iniValue(big, L"end"), "1");
    EXPECT_EQ(_waccess(Wide("\\\\?\\" + windowsPath(big)), 0), 0); // not to be worked out
    EXPECT_EQ(iniValue(scratchFolder(), L"end"), "?");
    EXPECT_EQ(iniValue(scratchFolder() / "none.ini", L"end"), "?");
    const fs::path unmarked = scratchFolder() / "unmarked.ini";
    writeFile(unmarked, {"[\0s\0]\0\n\0e\0n\0d\0=\0001\0", 18});
    EXPECT_EQ(iniValue(unmarked, L"end"), "?");
}

/// Makes a folder the user's documents folder, as the user would on either target.
void moveDocuments(const fs::path& folder)
{
    setRaw(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
           "Personal", {REG_EXPAND_SZ, Wide(windowsPath(folder)).bytes()});
    shareWithChildren("XDG_DOCUMENTS_DIR", folder.string() + "//");
}

std::string userFolder(int id)
{
    wchar_t path[MAX_PATH] = L"?";
    const HRESULT result = SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path);
    wchar_t same[MAX_PATH] = {};
    const BOOL isFound =
        SHGetSpecialFolderPathW(nullptr, same, id & 0xFF, (id & CSIDL_FLAG_CREATE) != 0 ? TRUE : FALSE);
    EXPECT_EQ(isFound != FALSE, SUCCEEDED(result));
    return SUCCEEDED(result) ? utf8(path) : result == E_INVALIDARG ? "invalid" + utf8(path) : "failed";
}

TEST(UserFolder, IsAbsoluteAndMadeOnRequest)
{
    const std::string roaming = userFolder(CSIDL_APPDATA | CSIDL_FLAG_CREATE);
    const std::string local = userFolder(CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE);
    EXPECT_EQ(roaming.substr(1, 2) + local.substr(1, 2), ":\\:\\");
    EXPECT_NE(roaming, local);
    EXPECT_EQ(userFolder(0x77), "invalid");
    const fs::path folder = scratchFolder() / "documents" / "deep";
    moveDocuments(folder);
    EXPECT_EQ(userFolder(CSIDL_PERSONAL), "failed");
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(userFolder(CSIDL_PERSONAL | CSIDL_FLAG_CREATE), windowsPath(folder));
    EXPECT_TRUE(fs::is_directory(folder));
    writeFile(scratchFolder() / "file", "");
    moveDocuments(scratchFolder() / "file" / "below");
    EXPECT_EQ(userFolder(CSIDL_PERSONAL | CSIDL_FLAG_CREATE), "failed");
}

} // namespace
