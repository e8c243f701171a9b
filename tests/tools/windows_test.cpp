// rkuinfo on Windows: the system's own reg.exe, and an import that is refused.
#include "support/test.h"

namespace {

const std::string below = "\\Widget\\2018\\en-US\\Settings";
const std::string key = "Software\\Acme" + below;

class RkuinfoOnWindows : public testing::Test
{
protected:
    RkuinfoOnWindows() { m_application.addLanguage("en-US"); }

    ChildResult run(std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"--company", companyFromOutside("Acme"), "--product", "Widget"});
        return runProgram(m_program, words, {m_application.folder(), {}});
    }

    Application m_application{testing::UnitTest::GetInstance()->current_test_info()->name()};
    std::filesystem::path m_program = m_application.addProgram("rkuinfo");
};

TEST_F(RkuinfoOnWindows, ExchangesFilesWithRegExe)
{
    const std::string outside = "HKCU\\Software\\" + companyFromOutside("Acme") + below;
    const auto reg = [&](const std::vector<std::string>& words) {
        const ChildResult result =
            runProgram("C:/windows/system32/reg.exe", words, {m_application.folder(), {}});
        EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    };
    setRaw(HKEY_CURRENT_USER, key, "", text("a \"b\" \\ c"));
    setRaw(HKEY_CURRENT_USER, key + "\\Grün – 图纸", "a\"b\\c=d", text("图 [x]"));
    setRaw(HKEY_CURRENT_USER, key + "\\Key", "int", dword(0x80000001));
    setRaw(HKEY_CURRENT_USER, key + "\\Key", "long", {REG_QWORD, std::string(8, '\x7f')});
    setRaw(HKEY_CURRENT_USER, key + "\\Key", "bytes", {REG_BINARY, std::string(200, '\xa5')});
    setRaw(HKEY_CURRENT_USER, key + "\\Key", "path", {REG_EXPAND_SZ, Wide("%HOME%\\x").bytes()});
    setRaw(HKEY_CURRENT_USER, key + "\\Key", "list", {REG_MULTI_SZ, Wide("a").bytes() + Wide("").bytes()});
    const std::string before = tree(HKEY_CURRENT_USER, key);

    EXPECT_EQ(run({"export", "settings", "--format", "reg", "--file", "ours.reg"}).exitCode, 0);
    reg({"export", outside, "theirs.reg"});
    removeKey(HKEY_CURRENT_USER, key);
    reg({"import", "ours.reg"});
    EXPECT_EQ(tree(HKEY_CURRENT_USER, key), before);
    removeKey(HKEY_CURRENT_USER, key);
    EXPECT_EQ(run({"import", "settings", "--file", "theirs.reg"}).errors, "");
    EXPECT_EQ(tree(HKEY_CURRENT_USER, key), before);
}

/// A key of a volatile one, which lasts until the system's end, has to be volatile too: a write in between is
/// refused.
TEST_F(RkuinfoOnWindows, TakesBackAnImportThatIsRefused)
{
    setRaw(HKEY_CURRENT_USER, key, "int", dword(1));
    HKEY opened = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, Wide(key + "\\Volatile"), 0, nullptr, REG_OPTION_VOLATILE, KEY_READ,
                    nullptr, &opened, nullptr);
    RegCloseKey(opened);
    const std::string before = tree(HKEY_CURRENT_USER, key);
    writeFile(
        m_application.folder() / "file.json",
        R"({"values": [{"name": "int", "type": "int", "value": 2}, {"name": "new", "type": "int", "value": 2}],
                  "keys": [{"name": "A", "values": [], "keys": []}, {"name": "Volatile", "values": [],
                            "keys": [{"name": "B", "values": [], "keys": []}]}]})");
    const ChildResult result = run({"import", "settings", "--file", "file.json"});
    EXPECT_NE(result.errors.find("error 1021; nothing was changed"), std::string::npos) << result.errors;
    EXPECT_EQ(tree(HKEY_CURRENT_USER, key), before);
}

} // namespace
