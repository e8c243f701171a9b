// The language catalogue and the language resource library.
#include "support/child.h"
#include "support/config.h"
#include "support/seam.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace {

using namespace testing_support;

constexpr struct Language
{
    const char* shortName;
    const char* globalName;
    long lcid;
    const char* localName;
} languages[] = {
    {"cs-CZ", "Czech", 1029, "Čeština"},
    {"de-DE", "German", 1031, "Deutsch"},
    {"en-US", "English", 1033, "English"},
    {"es-ES", "Spanish", 3082, "Español"},
    {"fr-FR", "French", 1036, "Français"},
    {"hu-HU", "Hungarian", 1038, "Magyar"},
    {"it-IT", "Italian", 1040, "Italiano"},
    {"ja-JP", "Japanese", 1041, "日本語"},
    {"ko-KR", "Korean", 1042, "한국어"},
    {"pl-PL", "Polish", 1045, "Polski"},
    {"pt-BR", "Portuguese", 1046, "Português (Brasil)"},
    {"ru-RU", "Russian", 1049, "Русский"},
    {"tr-TR", "Turkish", 1055, "Türkçe"},
    {"zh-CN", "Simplified Chinese", 2052, "简体中文"},
    {"zh-TW", "Traditional Chinese", 1028, "繁體中文"},
};

std::string localName(const TarvoLanguage& language)
{
    const wchar_t* const name = language.localName();
    return name == nullptr ? "none" : utf8(name);
}

/// Prints the local name of the language that it is started in.
const ChildPart starts("starts", [](const std::vector<std::string>& arguments) {
    const TarvoConfig::Error error = InitVelaConfig(L"Acme", L"Widget", Wide(arguments.at(0)), nullptr);
    std::printf("%s", localName(velaConfig()->language()).c_str());
    return static_cast<int>(error);
});

TEST(Language, CatalogueHasFifteen)
{
    const auto check = [](const TarvoLanguage& language, long index, const Language& expected) {
        EXPECT_EQ(language.language(), index);
        EXPECT_EQ(utf8(language.shortName()), expected.shortName);
        EXPECT_EQ(utf8(language.globalName()), expected.globalName);
        EXPECT_EQ(language.velaLanguage(), expected.lcid);
        TarvoLanguage assigned(-1L);
        assigned = language;
        EXPECT_TRUE(assigned == language && TarvoLanguage(language) == language);
    };
    for (long index = 0; index < 15; ++index) {
        std::string name = languages[index].shortName;
        check(TarvoLanguage(index), index, languages[index]);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c ^ (c == '-' ? 0 : 0x20); });
        check(TarvoLanguage(Wide(name)), index, languages[index]);
        EXPECT_TRUE(TarvoLanguage::isValidShortName(Wide(name)));
        EXPECT_FALSE(TarvoLanguage(index) == TarvoLanguage(-1L));
    }
    constexpr Language unknown = {"unknown", "unknown", 1033, ""};
    for (const long index : {-1L, -2L, 15L, 0x7FFFFFFFL, -0x7FFFFFFFL}) {
        check(TarvoLanguage(index), -1, unknown);
    }
    for (const std::string& name :
         {std::string(), std::string("en"), std::string("unknown"), std::string(5000, 'x')}) {
        check(TarvoLanguage(Wide(name)), -1, unknown);
        EXPECT_EQ(TarvoLanguage::shortNameToLangId(Wide(name)), -1);
        EXPECT_FALSE(TarvoLanguage::isValidShortName(Wide(name)));
    }
    EXPECT_FALSE(TarvoLanguage::isValidShortName(nullptr));
}

TEST(Language, LocalNamesComeFromTheLibraryInUse)
{
    const Application application;
    for (const Language& language : languages) {
        application.addLanguage(language.shortName);
        EXPECT_EQ(starts.run(application.program(), {language.shortName}).output, language.localName);
    }
}

TEST(Language, ADamagedLibraryGivesNoLocalName)
{
    const Application application;
    const std::string whole = readFile(thisProgram().parent_path() / "en-US" / "RkUInfoRes.dll");
    for (const std::string& bytes :
         {std::string(), std::string("MZ"), whole.substr(0, whole.size() / 2), std::string(1 << 20, 'M')}) {
        application.writeIni(bytes, "en-US/RkUInfoRes.dll");
        const ChildResult result = starts.run(application.program(), {"en-US"});
        EXPECT_EQ(std::to_string(result.exitCode) + result.output, "0none") << bytes.size();
    }
}

TEST(Language, TheLibraryIsLoadedOnceAndTheNameOncePerObject)
{
    int loads = 0;
    int reads = 0;
    int offered = 0;
    const auto library = intercept<decltype(LoadLibraryW)>("LoadLibraryW", [&](auto real, LPCWSTR name) {
        ++loads;
        return real(name);
    });
    const auto strings = intercept<decltype(LoadStringW)>(
        "LoadStringW", [&](auto real, HINSTANCE module, UINT id, LPWSTR out, int size) {
            ++reads;
            offered = size;
            return id == 1015 ? 0 : real(module, id, out, size);
        });
    const TarvoLanguage german(1L);
    EXPECT_EQ(localName(german), "none"); // no folder "unknown"
    EXPECT_EQ(localName(german), "none");
    EXPECT_EQ(loads, 4);
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_EQ(localName(german), "German");
    EXPECT_EQ(german.localName(), german.localName());
    EXPECT_EQ(loads, 5);
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(offered, 63);
    TarvoLanguage copy(german);
    EXPECT_NE(copy.localName(), german.localName());
    EXPECT_EQ(reads, 2);
    copy = TarvoLanguage(4L);
    EXPECT_EQ(localName(copy), "French");
    EXPECT_EQ(localName(14L), "none"); // no such string
    EXPECT_EQ(localName(-1L), "Unknown");
    EXPECT_EQ(utf8(GetCurrentLanguageLocalName()) + utf8(GetCurrentLanguageGlobalName()), "EnglishEnglish");
    EXPECT_EQ(loads, 5);
}

} // namespace
