// rkuinfo on Windows: a file of the system's own reg.exe, and an import that is refused.
#include "support/test.h"

namespace {

class RkuinfoOnWindows : public testing::Test
{
protected:
    RkuinfoOnWindows() { m_application.addLanguage("en-US"); }

    std::string import(const std::string& file) const
    {
        return runProgram(m_application.addProgram("rkuinfo"),
                          {"--company", companyFromOutside("Acme"), "--product", "Widget", "import",
                           "settings", "--file", file},
                          {m_application.folder(), {}})
            .errors;
    }

    const Application m_application{testing::UnitTest::GetInstance()->current_test_info()->name()};
};

TEST_F(RkuinfoOnWindows, ImportsFilesOfRegExe)
{
    setRaw(HKEY_CURRENT_USER, settings, "", text("a \"b\" \\ c"));
    setRaw(HKEY_CURRENT_USER, settings + "\\Grün – 图纸", "a\"b\\c=d", text("图 [x]"));
    setRaw(HKEY_CURRENT_USER, settings + "\\Key", "int", dword(0x80000001));
    setRaw(HKEY_CURRENT_USER, settings + "\\Key", "bytes", {REG_BINARY, std::string(200, '\xa5')});
    setRaw(HKEY_CURRENT_USER, settings + "\\Key", "list",
           {REG_MULTI_SZ, Wide("a").bytes() + Wide("").bytes()});
    const std::string before = tree(HKEY_CURRENT_USER, settings);
    const std::string key =
        "HKCU\\Software\\" + companyFromOutside("Acme") + "\\Widget\\2018\\en-US\\Settings";
    runProgram("C:/windows/system32/reg.exe", {"export", key, "saved.reg"}, {m_application.folder(), {}});
    removeKey(HKEY_CURRENT_USER, settings);
    EXPECT_EQ(import("saved.reg"), "");
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), before);
}

/// A key of a volatile one, which lasts until the system's end, has to be volatile too: creating another kind
/// is refused.
TEST_F(RkuinfoOnWindows, UndoesAnImportThatIsRefused)
{
    setRaw(HKEY_CURRENT_USER, settings, "int", dword(1));
    HKEY opened = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, Wide(settings + "\\Volatile"), 0, nullptr, REG_OPTION_VOLATILE,
                    KEY_READ, nullptr, &opened, nullptr);
    RegCloseKey(opened);
    const std::string before = tree(HKEY_CURRENT_USER, settings);
    writeFile(
        m_application.folder() / "file.json",
        R"({"values": [{"name": "int", "type": "int", "value": 2}, {"name": "new", "type": "int", "value": 2}],
            "keys": [{"name": "Volatile", "values": [], "keys": [{"name": "B", "values": [], "keys": []}]}]})");
    EXPECT_NE(import("file.json").find("error 1021; nothing was changed"), std::string::npos);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), before);
}

} // namespace
