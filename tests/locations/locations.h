// What the tests of the locations share.
#pragma once

#include "support/registry.h"
#include "support/seam.h"
#include "support/text.h"

#include <RkUInfo.h>

#include <gtest/gtest.h>
#include <shlobj.h>

#include <string>

namespace testing_support {

using PathFunction = unsigned long (*)(wchar_t* const);

/// What a function writes, after checking the length that it returns; "" for 0.
inline std::string pathOf(PathFunction function)
{
    wchar_t buffer[1024] = {L'?'};
    const unsigned long length = function(buffer);
    if (length == 0) {
        return {};
    }
    EXPECT_EQ(Wide(utf8(buffer)).length(), length);
    return utf8(buffer);
}

/// What a function leaves in the buffer when it fails.
inline std::string leftBy(PathFunction function)
{
    wchar_t buffer[1024] = {L'?'};
    EXPECT_EQ(function(buffer), 0u) << utf8(buffer);
    return utf8(buffer);
}

/// Start-up as the default product, with the names "Norvik" and "TARVO".
inline TarvoConfig::Error startNorvik()
{
    addUninstallEntry(1033);
    return InitVelaConfig(nullptr, nullptr, L"en-US", nullptr);
}

/// Gives the library a roaming and a local application data folder, each a text of any length.
class PretendedFolders
{
public:
    std::string roaming;
    std::string local;
    BOOL result = TRUE;
    int queries = 0;

    /// Both the same, of that many characters.
    void setLength(std::size_t length)
    {
        roaming = "Z:\\" + std::string(length - 3, 'x');
        local = roaming;
    }

private:
    struct Answer
    {
        PretendedFolders* folders;

        BOOL operator()(auto /*real*/, HWND owner, LPWSTR path, int id, BOOL create) const
        {
            EXPECT_EQ(owner, nullptr);
            EXPECT_EQ(create, FALSE);
            EXPECT_TRUE(id == CSIDL_APPDATA || id == CSIDL_LOCAL_APPDATA) << id;
            const Wide text(id == CSIDL_APPDATA ? folders->roaming : folders->local);
            std::copy_n(static_cast<const wchar_t*>(text), text.length() + 1, path);
            ++folders->queries;
            return folders->result;
        }
    };

    Intercept<decltype(SHGetSpecialFolderPathW), Answer> m_folder{
        libraryModule, "SHGetSpecialFolderPathW", {this}};
};

} // namespace testing_support
