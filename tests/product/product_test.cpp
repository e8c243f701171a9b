// The product object, version and identity.
#include "installation/choices.h"

#include "support/test.h"

namespace {

ITarvoProduct& product = *velaGetProduct();

std::string facts()
{
    std::ostringstream out;
    out << utf8(product.companyName()) << ' ' << utf8(product.productName()) << ' '
        << utf8(GetCurrentProductName()) << ' ' << utf8(product.language().shortName()) << ' '
        << GetCurrentVelaLanguageId() << ' ' << product.productType() << "; "
        << utf8(product.defaultProductName()) << ' ' << utf8(product.programVersionString()) << ' '
        << utf8(GetVelaProgramVersionString()) << ' ' << utf8(GetServicePackageVersionString()) << ' '
        << utf8(product.productVersionTag()) << ' ' << product.productNumber() << ' '
        << product.productFlagA() << ' ' << product.productFlagB();
    return out.str();
}

TEST(Product, FollowsTheConfiguration)
{
    const std::string fixed = "; TARVO 2018 2018 SP2 4.0 27 1 1";
    EXPECT_EQ(facts(), "NORVIK TARVO TARVO unknown 1033 1" + fixed);
    ASSERT_EQ(InitVelaConfig(L"Acme", L"Widget", L"ja-JP", nullptr), TarvoConfig::eOk);
    EXPECT_EQ(facts(), "Acme Widget Widget ja-JP 1041 4" + fixed);
    EXPECT_EQ(&product.language(), &velaConfig()->language());
    const std::pair<const char*, long> types[] = {{"TARVO", 1}, {"tarvo", 1},   {"tarvom", 2}, {"TarvoA", 3},
                                                  {"TARV", 4},  {"TARVOAB", 4}, {" TARVO", 4}};
    for (const auto& [name, type] : types) {
        EXPECT_EQ(uinfo::productType(Wide(name)), type) << name;
    }
    for (const auto& [name, id] : {std::pair("DE-de", 1031L), {"xx-XX", 1033}, {"", 0}}) {
        EXPECT_EQ(GetVelaLanguageIdByShortName(Wide(name)), id) << name;
    }
    EXPECT_EQ(GetVelaLanguageIdByShortName(nullptr), 0);
}

TEST(Product, SharesThreeIntegersUnderItsLock)
{
    std::string calls;
    const Patch lock = intercept<"RkLocker::lock", void(RkLocker*)>([&](auto, auto*) { calls += '<'; });
    const Patch unlock = intercept<"RkLocker::unlock", void(RkLocker*)>([&](auto, auto*) { calls += '>'; });
    const auto shared = [] {
        return std::vector{product.getSharedValueA(), product.getSharedValueB(), product.getSharedValueC()};
    };
    EXPECT_EQ(shared(), (std::vector<long>{-1, 0, 1}));
    product.setSharedValueA(INT32_MIN);
    product.setSharedValueB(5);
    product.setSharedValueC(INT32_MAX);
    EXPECT_EQ(shared(), (std::vector<long>{INT32_MIN, 5, INT32_MAX}));
    EXPECT_EQ(calls, "<><><><><><><><><>");
}

std::string folderOf(std::size_t length)
{
    return length == 0 ? "" : "Z:\\" + std::string(length - 4, 'x') + '\\';
}

TEST(Product, CachesPathsOnceTheyFit)
{
    const std::string help = folderOf(499) + "RKHelp.exe", cache = folderOf(246) + "UserDataCache";
    const std::tuple<std::size_t, std::string, std::string> rows[] = {
        {0, "RKHelp.exe", ""}, {1020, "RKHelp.exe", ""}, {500, "RKHelp.exe", ""}, {499, help, ""},
        {247, help, ""},       {246, help, cache},       {100, help, cache}};
    for (const auto& [length, helpPath, cachePath] : rows) {
        const Patch pretended = pretendExecutable(length == 0 ? "" : folderOf(length) + "cad.exe");
        EXPECT_EQ(utf8(product.helpFilePath()), helpPath) << length;
        EXPECT_EQ(utf8(product.userDataCachePath()), cachePath) << length;
        EXPECT_EQ(GetVelaUserDataCachePath(), product.userDataCachePath());
        EXPECT_EQ(textOf(GetVelaUserDataCacheLanPath), cachePath.empty() ? "failed: " : cache + "\\unknown");
    }
    EXPECT_EQ(GetVelaUserDataCacheLanPath(nullptr), 0U);
}

TEST(VersionNumbers, AreWrittenIfTheyFit)
{
    const std::tuple<decltype(&GetVerNum), bool, std::string> rows[] = {
        {GetVerNum, true, "VERNUM = \"2018.03.16(29562)_x64\""},
        {GetVerNum, false, "2018.03.16(29562)_x64"},
        {GetResVerNum, true, "VERNUM = \"\""},
        {GetResVerNum, false, ""}};
    for (const auto& [write, withPrefix, expected] : rows) {
        for (const std::size_t size : {expected.size() + 1, expected.size()}) {
            wchar_t buffer[64] = L"";
            write(buffer, static_cast<unsigned long>(size), withPrefix);
            EXPECT_EQ(utf8(buffer), size > expected.size() ? expected : "") << size;
        }
        write(nullptr, 64, withPrefix);
    }
}

TEST(ProgramName, IsTheFileNameWithoutExe)
{
    const std::string longFolder = "Z:\\" + std::string(1009, 'x') + '\\';
    const std::pair<std::string, std::string> rows[] = {
        {"C:\\a.b\\cad", "cad"},
        {"C:/Apps/Cad/cad.exe", "cad"},
        {"cad.exe", "cad.exe"},
        {"C:\\ä€😀.exe", "ä€😀"},
        {longFolder + "12345.exe", "12345"},
        {longFolder + "123456.exe", "none"},
        {"", "none"},
        {"C:\\.exe", "none"},
    };
    for (const auto& [path, name] : rows) {
        const Patch pretended = pretendExecutable(path);
        const std::string text = textOf(GetVelaProgramName);
        EXPECT_EQ(text.starts_with("failed: ") ? "none" : text, name) << path;
    }
    EXPECT_EQ(GetVelaProgramName(nullptr), 0U);
}

} // namespace
