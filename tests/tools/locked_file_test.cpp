// rkuinfo doctor with an INI file that another process has locked.
#include "tool.h"

#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using namespace testing_support;

TEST(RkuinfoDoctor, FindsAnUnreadableIniFile)
{
    const Tool tool;
    tool.run({"provision"});
    tool.application().writeIni("[Product]\r\n");
    const Wide path(windowsPath(tool.application().folder() / "TARVO.ini"));
    HANDLE const lock = CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const ChildResult result = tool.run({"doctor"});
    CloseHandle(lock);
    EXPECT_EQ(result.output, "{app}\\TARVO.ini cannot be read\tgive its users the right to read it\n");
}

} // namespace
