// The table of languages and the language resource library.
#include "support/test.h"

#include "installation/languages.h"

namespace {

TEST(Language, IsFoundByItsNumberAndItsName)
{
    std::string localNames, globalNames;
    for (long index = 0; index < 15; ++index) {
        const TarvoLanguage language(index);
        EXPECT_EQ(language.language(), index);
        EXPECT_TRUE(TarvoLanguage::isValidShortName(language.shortName()));
        EXPECT_TRUE(TarvoLanguage(language.shortName()) == language);
        EXPECT_FALSE(TarvoLanguage(index - 1) == language);
        // The language's local name is in the language's own resource library.
        const auto file = thisProgram().parent_path() / utf8(language.shortName()) / "RkUInfoRes.dll";
        wchar_t name[64] = {};
        LoadStringW(LoadLibraryW(Wide(windowsPath(file))), static_cast<UINT>(1001 + index), name, 64);
        localNames += utf8(name) + ' ';
        globalNames += utf8(language.globalName()) + ' ';
    }
    EXPECT_EQ(localNames, "Čeština Deutsch English Español Français Magyar Italiano 日本語 한국어 Polski "
                          "Português (Brasil) Русский Türkçe 简体中文 繁體中文 ");
    EXPECT_EQ(globalNames, "Czech German English Spanish French Hungarian Italian Japanese Korean Polish "
                           "Portuguese Russian Turkish Simplified Chinese Traditional Chinese ");
    for (const long index : {-1L, -2L, long{uinfo::languageCount}, 0x7FFFFFFFL}) {
        const TarvoLanguage unknown(index);
        EXPECT_EQ(utf8(unknown.shortName()) + utf8(unknown.globalName()), "unknownunknown");
        EXPECT_EQ(unknown.velaLanguage() + unknown.language(), 1033 - 1);
    }
    for (const wchar_t* const name : {L"", L"en", L"unknown", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_TRUE(TarvoLanguage(name) == TarvoLanguage(-1L));
        EXPECT_FALSE(TarvoLanguage::isValidShortName(name));
    }
}

TEST(Language, LoadsItsLocalNameOncePerObject)
{
    int asked = 0;
    std::optional<int> length; // if set, LoadStringW finds a string of this length
    const Patch strings = intercept<"LoadStringW", decltype(LoadStringW)>(
        [&](auto real, HINSTANCE module, UINT id, LPWSTR buffer, int size) {
            ++asked;
            if (!length) {
                return real(module, id, buffer, size);
            }
            const int copied = std::min(*length, size - 1);
            *std::fill_n(buffer, copied, L'x') = L'\0';
            return copied;
        });
    const TarvoLanguage german(1L);
    EXPECT_EQ(german.localName(), nullptr); // the language folder "unknown" does not exist
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    TarvoLanguage copy(german);
    EXPECT_EQ(utf8(german.localName()), "German");
    EXPECT_EQ(german.localName(), german.localName());
    EXPECT_NE(copy.localName(), german.localName());
    copy = TarvoLanguage(-1L);
    EXPECT_EQ(utf8(copy.localName()), "Unknown");
    EXPECT_EQ(asked, 3);
    length = 0;
    EXPECT_EQ(TarvoLanguage(1L).localName(), nullptr);
    length = 63;
    EXPECT_EQ(utf8(TarvoLanguage(1L).localName()), std::string(62, 'x'));
    length.reset();
    EXPECT_EQ(utf8(GetCurrentLanguageLocalName()) + utf8(GetCurrentLanguageGlobalName()), "EnglishEnglish");
}

} // namespace
