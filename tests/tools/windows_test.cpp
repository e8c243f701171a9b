// Tests how rkuinfo behaves when Windows refuses an import.
#include "support/test.h"

namespace {

/// The import fails because it creates a permanent key below a volatile one, which Windows refuses.
TEST(RkuinfoOnWindows, UndoesAnImportThatIsRefused)
{
    const Application application("RkuinfoOnWindows");
    application.addLanguage("en-US");
    setRaw(HKEY_CURRENT_USER, settings, "int", dword(1));
    HKEY opened = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, Wide(settings + "\\Volatile"), 0, nullptr, REG_OPTION_VOLATILE,
                    KEY_READ, nullptr, &opened, nullptr);
    RegCloseKey(opened);
    const std::string before = tree(HKEY_CURRENT_USER, settings);
    writeFile(
        application.folder() / "file.json",
        R"({"keys": [{"name": "Volatile", "values": [], "keys": [{"name": "B", "values": [], "keys": []}]}],
                  "values": [{"name": "int", "type": "int", "value": 2}]})");
    const ChildResult result = runProgram(application.addProgram("rkuinfo"),
                                          {"--company", companyFromOutside("Acme"), "--product", "Widget",
                                           "import", "settings", "--file", "file.json"});
    EXPECT_NE(result.errors.find("error 1021; nothing was changed"), std::string::npos) << result.errors;
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), before);
}

} // namespace
