// The version resource of the libraries, read by GetFileVersionInfoW.
#include "support/test.h"

namespace {

TEST(VersionResource, SaysWhatTheLibraryAnswers)
{
    wchar_t stamp[64] = {};
    GetVerNum(stamp, 64, false);
    for (const std::string name : {"RkUInfo.dll", "RkOsBase.dll"}) {
        SCOPED_TRACE(name);
        const Wide library(windowsPath(thisProgram().parent_path() / name));
        std::vector<char> data(GetFileVersionInfoSizeW(library, nullptr));
        EXPECT_TRUE(GetFileVersionInfoW(library, 0, static_cast<DWORD>(data.size()), data.data()));
        const auto query = [&](const std::string& key) {
            void* found = nullptr;
            UINT size = 0;
            VerQueryValueW(data.data(), Wide(key), &found, &size);
            return found;
        };
        const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(query("\\"));
        EXPECT_EQ(std::tuple(fixed.dwFileVersionMS, fixed.dwFileVersionLS, fixed.dwProductVersionMS),
                  std::tuple(2018U << 16 | 3, 16U << 16 | 29562, 2018U << 16));
        EXPECT_EQ(fixed.dwFileType, DWORD{VFT_DLL});
        const std::pair<std::string, std::string> texts[] = {
            {"FileVersion", "2018.3.16.29562"},
            {"ProductVersion", utf8(GetVelaProgramVersionString())},
            {"ServicePack", utf8(GetServicePackageVersionString())},
            {"BuildStamp", utf8(stamp)},
            {"OriginalFilename", name}};
        for (const auto& [key, expected] : texts) {
            const void* const found = query("\\StringFileInfo\\040904B0\\" + key);
            EXPECT_EQ(utf8(static_cast<const wchar_t*>(found)), expected) << key;
        }
    }
}

} // namespace
