// The version resource of the libraries, as the system's version call reads it.
#include "support/test.h"

#include <RkUInfo.h>

namespace {

using namespace testing_support;

/// What a library's version resource has under a name, or null.
const void* query(const std::string& library, const std::string& name)
{
    static std::vector<char> data;
    data.resize(GetFileVersionInfoSizeW(Wide(library), nullptr));
    void* found = nullptr;
    UINT size = 0;
    return GetFileVersionInfoW(Wide(library), 0, static_cast<DWORD>(data.size()), data.data()) != FALSE &&
                   VerQueryValueW(data.data(), Wide(name), &found, &size) != FALSE
               ? found
               : nullptr;
}

std::string words(DWORD high, DWORD low)
{
    return std::to_string(HIWORD(high)) + '.' + std::to_string(LOWORD(high)) + '.' +
           std::to_string(HIWORD(low)) + '.' + std::to_string(LOWORD(low));
}

TEST(VersionResource, SaysWhatTheLibraryAnswers)
{
    wchar_t stamp[64] = {};
    GetVerNum(stamp, 64, false);
    for (const std::string name : {"RkUInfo.dll", "RkOsBase.dll"}) {
        SCOPED_TRACE(name);
        const std::string library = windowsPath(thisProgram().parent_path() / name);
        const auto* const fixed = static_cast<const VS_FIXEDFILEINFO*>(query(library, "\\"));
        ASSERT_NE(fixed, nullptr);
        EXPECT_EQ(words(fixed->dwFileVersionMS, fixed->dwFileVersionLS), "2018.3.16.29562");
        EXPECT_EQ(words(fixed->dwProductVersionMS, fixed->dwProductVersionLS), "2018.0.0.0");
        EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
        const std::pair<const char*, std::string> texts[] = {
            {"FileVersion", "2018.3.16.29562"},
            {"ProductVersion", utf8(GetVelaProgramVersionString())},
            {"ServicePack", utf8(GetServicePackageVersionString())},
            {"BuildStamp", utf8(stamp)},
            {"OriginalFilename", name}};
        for (const auto& [key, expected] : texts) {
            const void* const found = query(library, std::string("\\StringFileInfo\\040904B0\\") + key);
            EXPECT_EQ(utf8(static_cast<const wchar_t*>(found)), expected) << key;
        }
    }
}

} // namespace
