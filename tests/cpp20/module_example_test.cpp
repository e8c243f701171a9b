// The examples' module: what one process leaves, the next one finds.
#include "support/test.h"

namespace {

using namespace testing_support;

TEST(ModuleExample, RemembersItsPalettes)
{
    const Application application;
    const std::filesystem::path program = application.addProgram("drawing");
    application.addLanguage("en-US");
    application.writeIni("[Product]\r\nCompanyName=" + companyFromOutside("Acme") +
                         "\r\nLocaleId=1033\r\n[LocaleIdLangName]\r\n1033=en-US\r\n");
    EXPECT_EQ(runProgram(program, {}).output, "at most 8 palettes\n");
    EXPECT_EQ(runProgram(program, {}).output, "at most 9 palettes\n"
                                              "Layers: 240 x 600 at 20, 80\n"
                                              "Properties: 300 x 900 at 1600, 80\n");
}

} // namespace
