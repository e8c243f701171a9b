// The user's folders.
#include "support/test.h"

#include <shlobj.h>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

/// Makes a folder the user's documents folder, as the user would on either target.
void moveDocuments(const fs::path& folder)
{
    setRaw(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
           "Personal", {REG_EXPAND_SZ, Wide(windowsPath(folder)).bytes()});
    shareWithChildren("XDG_DOCUMENTS_DIR", folder.string());
}

std::string specialFolder(int folder, BOOL create = FALSE)
{
    wchar_t path[MAX_PATH] = {};
    return SHGetSpecialFolderPathW(nullptr, path, folder, create) != FALSE ? utf8(path) : "failed";
}

TEST(Shell, FoldersAreAbsolute)
{
    for (const int folder : {CSIDL_APPDATA, CSIDL_LOCAL_APPDATA, CSIDL_PERSONAL}) {
        const std::string path = specialFolder(folder, TRUE);
        EXPECT_EQ(path.substr(1, 2), ":\\") << folder;
        EXPECT_NE(path.back(), '\\') << folder;
    }
    EXPECT_NE(specialFolder(CSIDL_APPDATA), specialFolder(CSIDL_LOCAL_APPDATA));
}

TEST(Shell, MissingFoldersAreMadeOnRequest)
{
    const fs::path folder = scratchFolder() / "documents" / "deep";
    moveDocuments(folder);
    wchar_t path[MAX_PATH] = {};
    const auto get = [&](int id) { return SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path); };
    EXPECT_EQ(specialFolder(CSIDL_PERSONAL), "failed");
    EXPECT_TRUE(FAILED(get(CSIDL_PERSONAL)));
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(get(CSIDL_PERSONAL | CSIDL_FLAG_CREATE), S_OK);
    EXPECT_EQ(utf8(path), windowsPath(folder));
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_EQ(specialFolder(CSIDL_PERSONAL), windowsPath(folder));
    EXPECT_EQ(get(0x77), E_INVALIDARG);
    EXPECT_EQ(utf8(path), "");

    writeFile(scratchFolder() / "file", "");
    moveDocuments(scratchFolder() / "file" / "below");
    EXPECT_EQ(specialFolder(CSIDL_PERSONAL, TRUE), "failed");
}

} // namespace
