// The language catalogue and the language resource library.
#include "support/test.h"

namespace {

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

void expectLanguage(const TarvoLanguage& language, long index, const Language& expected)
{
    EXPECT_EQ(language.language(), index);
    EXPECT_EQ(utf8(language.shortName()), expected.shortName);
    EXPECT_EQ(utf8(language.globalName()), expected.globalName);
    EXPECT_EQ(language.velaLanguage(), expected.lcid);
    EXPECT_TRUE(language == TarvoLanguage(language));
    EXPECT_EQ(language == TarvoLanguage(-1L), index == -1);
}

TEST(Language, CatalogueHasFifteen)
{
    for (long index = 0; index < 15; ++index) {
        const Language& expected = languages[index];
        std::string upper = expected.shortName;
        std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
        expectLanguage(index, index, expected);
        expectLanguage(TarvoLanguage(Wide(upper)), index, expected);
        EXPECT_TRUE(TarvoLanguage::isValidShortName(Wide(upper)));
        // Its own library names it.
        const auto file = thisProgram().parent_path() / expected.shortName / "RkUInfoRes.dll";
        wchar_t name[64] = {};
        LoadStringW(LoadLibraryW(Wide(windowsPath(file))), static_cast<UINT>(1001 + index), name, 64);
        EXPECT_EQ(utf8(name), expected.localName);
    }
    constexpr Language unknown = {"unknown", "unknown", 1033, ""};
    for (const long index : {-1L, -2L, 15L, 0x7FFFFFFFL}) {
        expectLanguage(index, -1, unknown);
    }
    for (const wchar_t* const name : {L"", L"en", L"unknown", static_cast<const wchar_t*>(nullptr)}) {
        expectLanguage(name, -1, unknown);
        EXPECT_FALSE(TarvoLanguage::isValidShortName(name));
    }
}

TEST(Language, IsNamedByTheLibraryOfTheProcessOncePerObject)
{
    int asked = 0;
    const Patch strings = intercept<"LoadStringW", decltype(LoadStringW)>([&](auto real, auto... arguments) {
        ++asked;
        return real(arguments...);
    });
    const TarvoLanguage german(1L);
    EXPECT_EQ(german.localName(), nullptr); // no folder "unknown"
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    TarvoLanguage copy(german);
    EXPECT_EQ(utf8(german.localName()), "German");
    EXPECT_EQ(german.localName(), german.localName());
    EXPECT_NE(copy.localName(), german.localName());
    copy = TarvoLanguage(-1L);
    EXPECT_EQ(utf8(copy.localName()), "Unknown");
    EXPECT_EQ(asked, 3);
    std::string names;
    for (long index = 0; index < 15; ++index) {
        names += utf8(TarvoLanguage(index).localName()) + ' ';
    }
    EXPECT_EQ(names, "Czech German English Spanish French Hungarian Italian Japanese Korean Polish "
                     "Portuguese (Brazil) Russian Turkish Chinese (Simplified) Chinese (Traditional) ");
    EXPECT_EQ(utf8(GetCurrentLanguageLocalName()) + utf8(GetCurrentLanguageGlobalName()), "EnglishEnglish");
}

} // namespace
