// The version resource of the libraries, as the system's version call reads it.
#include "support/scratch.h"
#include "support/text.h"

#include <RkUInfo.h>

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

class VersionResource
{
public:
    explicit VersionResource(const std::string& library)
        : m_data(GetFileVersionInfoSizeW(Wide(library), nullptr))
    {
        GetFileVersionInfoW(Wide(library), 0, static_cast<DWORD>(m_data.size()), m_data.data());
    }

    std::string text(const std::string& name) const
    {
        const auto* const found = static_cast<const wchar_t*>(query("\\StringFileInfo\\040904B0\\" + name));
        return found != nullptr ? utf8(found) : "(none)";
    }

    const VS_FIXEDFILEINFO& fixed() const
    {
        static const VS_FIXEDFILEINFO none = {};
        const void* const found = query("\\");
        return found != nullptr ? *static_cast<const VS_FIXEDFILEINFO*>(found) : none;
    }

private:
    const void* query(const std::string& path) const
    {
        void* found = nullptr;
        UINT size = 0;
        return !m_data.empty() && VerQueryValueW(m_data.data(), Wide(path), &found, &size) != FALSE ? found
                                                                                                    : nullptr;
    }

    std::vector<char> m_data;
};

std::string words(DWORD high, DWORD low)
{
    return std::to_string(HIWORD(high)) + '.' + std::to_string(LOWORD(high)) + '.' +
           std::to_string(HIWORD(low)) + '.' + std::to_string(LOWORD(low));
}

TEST(VersionResource, SaysWhatTheLibraryAnswers)
{
    std::array<wchar_t, 64> stamp = {};
    GetVerNum(stamp.data(), stamp.size(), false);
    for (const std::string name : {"RkUInfo", "RkOsBase"}) {
        SCOPED_TRACE(name);
        const VersionResource resource(windowsPath(thisProgram().parent_path() / (name + ".dll")));
        const VS_FIXEDFILEINFO& fixed = resource.fixed();
        EXPECT_EQ(words(fixed.dwFileVersionMS, fixed.dwFileVersionLS), "2018.3.16.29562");
        EXPECT_EQ(words(fixed.dwProductVersionMS, fixed.dwProductVersionLS), "2018.0.0.0");
        EXPECT_EQ(fixed.dwFileType, static_cast<DWORD>(VFT_DLL));
        EXPECT_EQ(resource.text("FileVersion"), "2018.3.16.29562");
        EXPECT_EQ(resource.text("ProductVersion"), utf8(GetVelaProgramVersionString()));
        EXPECT_EQ(resource.text("ServicePack"), utf8(GetServicePackageVersionString()));
        EXPECT_EQ(resource.text("BuildStamp"), utf8(stamp.data()));
        EXPECT_EQ(resource.text("OriginalFilename"), name + ".dll");
    }
}

} // namespace
