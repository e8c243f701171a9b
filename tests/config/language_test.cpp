// The language catalogue and the language resource library.
#include "support/config.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

constexpr struct Language
{
    const char* shortName;
    const char* otherCase;
    const char* globalName;
    long lcid;
    const char* localName;
} languages[] = {
    {"cs-CZ", "CS-cz", "Czech", 1029, "Čeština"},
    {"de-DE", "DE-de", "German", 1031, "Deutsch"},
    {"en-US", "EN-us", "English", 1033, "English"},
    {"es-ES", "ES-es", "Spanish", 3082, "Español"},
    {"fr-FR", "FR-fr", "French", 1036, "Français"},
    {"hu-HU", "HU-hu", "Hungarian", 1038, "Magyar"},
    {"it-IT", "IT-it", "Italian", 1040, "Italiano"},
    {"ja-JP", "JA-jp", "Japanese", 1041, "日本語"},
    {"ko-KR", "KO-kr", "Korean", 1042, "한국어"},
    {"pl-PL", "PL-pl", "Polish", 1045, "Polski"},
    {"pt-BR", "PT-br", "Portuguese", 1046, "Português (Brasil)"},
    {"ru-RU", "RU-ru", "Russian", 1049, "Русский"},
    {"tr-TR", "TR-tr", "Turkish", 1055, "Türkçe"},
    {"zh-CN", "ZH-cn", "Simplified Chinese", 2052, "简体中文"},
    {"zh-TW", "ZH-tw", "Traditional Chinese", 1028, "繁體中文"},
};

std::string localName(const TarvoLanguage& language)
{
    const wchar_t* const name = language.localName();
    return name == nullptr ? "none" : utf8(name);
}

TEST(Language, CatalogueHasFifteen)
{
    const auto check = [](const TarvoLanguage& language, long index, const Language& expected) {
        EXPECT_EQ(language.language(), index);
        EXPECT_EQ(utf8(language.shortName()), expected.shortName);
        EXPECT_EQ(utf8(language.globalName()), expected.globalName);
        EXPECT_EQ(language.velaLanguage(), expected.lcid);
        EXPECT_TRUE(language == TarvoLanguage(language));
    };
    for (long index = 0; index < 15; ++index) {
        const Language& expected = languages[index];
        check(TarvoLanguage(index), index, expected);
        check(TarvoLanguage(Wide(expected.otherCase)), index, expected);
        EXPECT_TRUE(TarvoLanguage::isValidShortName(Wide(expected.otherCase)));
        EXPECT_FALSE(TarvoLanguage(index) == TarvoLanguage(-1L));
    }
    constexpr Language unknown = {"unknown", "", "unknown", 1033, ""};
    for (const long index : {-1L, -2L, 15L, 0x7FFFFFFFL, -0x7FFFFFFFL}) {
        check(TarvoLanguage(index), -1, unknown);
    }
    for (const std::string& name : {std::string(), std::string("en"), std::string(5000, 'x')}) {
        check(TarvoLanguage(Wide(name)), -1, unknown);
        EXPECT_EQ(TarvoLanguage::shortNameToLangId(Wide(name)), -1);
        EXPECT_FALSE(TarvoLanguage::isValidShortName(Wide(name)));
    }
    EXPECT_FALSE(TarvoLanguage::isValidShortName(nullptr));
}

TEST(Language, EachLibraryNamesItsOwn)
{
    for (const Language& language : languages) {
        const auto file = thisProgram().parent_path() / language.shortName / "RkUInfoRes.dll";
        const HMODULE library = LoadLibraryW(Wide(windowsPath(file)));
        wchar_t name[64] = {};
        LoadStringW(library, static_cast<UINT>(1001 + (&language - languages)), name, 64);
        EXPECT_EQ(utf8(name), language.localName);
    }
}

TEST(Language, ADamagedLibraryGivesNoLocalName)
{
    const Application application;
    const PretendedExecutable pretended(windowsPath(application.program()));
    const std::string whole = readFile(thisProgram().parent_path() / "de-DE" / "RkUInfoRes.dll");
    for (const std::string& bytes : // what can be loaded is kept, so the half one comes last
         {std::string(), std::string("MZ"), std::string(1 << 20, 'M'), whole.substr(0, whole.size() / 2)}) {
        application.writeIni(bytes, "unknown/RkUInfoRes.dll");
        EXPECT_EQ(localName(1L), "none") << bytes.size();
    }
}

TEST(Language, TheLibraryIsLoadedOnceAndTheNameOncePerObject)
{
    int loads = 0;
    int reads = 0;
    UINT lastId = 0;
    const auto library = intercept<decltype(LoadLibraryW)>("LoadLibraryW", [&](auto real, LPCWSTR name) {
        ++loads;
        return real(name);
    });
    const auto strings = intercept<decltype(LoadStringW)>(
        "LoadStringW", [&](auto real, HINSTANCE module, UINT id, LPWSTR out, int size) {
            ++reads;
            lastId = id;
            EXPECT_EQ(size, 63);
            return id == 1015 ? 0 : real(module, id, out, size);
        });
    const TarvoLanguage german(1L);
    EXPECT_EQ(localName(german) + localName(german), "nonenone"); // no folder "unknown"
    EXPECT_EQ(loads, 4);
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_EQ(localName(german), "German");
    EXPECT_EQ(german.localName(), german.localName());
    TarvoLanguage copy(german);
    EXPECT_NE(copy.localName(), german.localName());
    EXPECT_EQ(reads, 2);
    copy = TarvoLanguage(4L);
    EXPECT_EQ(localName(copy), "French");
    for (long index = 0; index < 15; ++index) {
        EXPECT_EQ(localName(index) == "none", index == 14); // no such string
        EXPECT_EQ(lastId, 1001 + index);
    }
    EXPECT_EQ(localName(-1L), "Unknown");
    EXPECT_EQ(utf8(GetCurrentLanguageLocalName()) + utf8(GetCurrentLanguageGlobalName()), "EnglishEnglish");
    EXPECT_EQ(loads, 5);
}

} // namespace
