// Tests RkUInfo.hpp (typed settings, ranges and error codes) and the example module that uses it.
#include "support/test.h"

#include <RkUInfo.hpp>
#include <ranges>
#include <set>

namespace {

using rkuinfo::Text;

constexpr auto settings = TarvoConfig::eSettings;
const std::string settingsKey = "Software\\Acme\\Widget\\2018\\en-US\\Settings";

static_assert(std::ranges::input_range<decltype(rkuinfo::items(settings))>);

/// Writes a value and reads it back as its own type; reading it as another type must fail.
template <typename Other, typename T>
void checkRoundTrip(const T& value)
{
    std::error_code error;
    EXPECT_FALSE(rkuinfo::set(settings, L"Display/Value", value));
    EXPECT_TRUE(rkuinfo::get<T>(settings, L"/Display\\Value", error) == value);
    EXPECT_FALSE(error);
    EXPECT_FALSE(rkuinfo::get<Other>(settings, L"Display/Value", error));
    EXPECT_EQ(error, TarvoConfig::eWrongType);
}

TEST(Cpp20, RoundTripsEachType)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const KeyCounter keys;
    checkRoundTrip<std::int64_t>(std::int32_t(-5));
    checkRoundTrip<std::int32_t>(std::int64_t(-9007199254740993));
    checkRoundTrip<Text>(1.25);
    checkRoundTrip<double>(rkuinfo::Bytes{std::byte(0), std::byte(255)});
    checkRoundTrip<double>(rkuinfo::Bytes(9));
    checkRoundTrip<rkuinfo::Bytes>(rkuinfo::text(Wide("Grün 图纸 \xed\xa0\x80")));
    EXPECT_FALSE(rkuinfo::set(settings, Text(), L"of the key itself"));
    EXPECT_EQ(utf8(rkuinfo::get<Text>(settings, nullptr).value()), "of the key itself");
}

TEST(Cpp20, ConvertsBetweenUtf8AndUtf16)
{
    using Units = std::vector<unsigned>;
    const std::tuple<std::string_view, Units, bool> rows[] = {
        {"a\x7f\xc2\x80\xdf\xbf", {0x61, 0x7F, 0x80, 0x7FF}, true},
        {"\xe0\xa0\x80\xef\xbf\xbf", {0x800, 0xFFFF}, true},
        {"\xf0\x90\x80\x80\xf4\x8f\xbf\xbf", {0xD800, 0xDC00, 0xDBFF, 0xDFFF}, true},
        {"\xed\xa0\x80z\xed\xb0\x80", {0xD800, 'z', 0xDC00}, true}, // unpaired
        {"\x80\xc1\x80\xe0\x9f\xbf\xf4\x90\x80\x80\xc2", Units(11, 0xFFFD), false},
    };
    for (const auto& [bytes, units, back] : rows) {
        const Text text(units.begin(), units.end());
        EXPECT_TRUE(rkuinfo::utf16(bytes) == text);
        EXPECT_EQ(utf8(text) == bytes, back);
    }
}

TEST(Cpp20, ReportsWhatFailed)
{
    std::error_code error;
    EXPECT_FALSE(rkuinfo::get<double>(settings, L"Value", error));
    EXPECT_EQ(error, TarvoConfig::eInvalidInput) << "before start-up";
    EXPECT_EQ(rkuinfo::set(settings, L"Value", 1), TarvoConfig::eInvalidInput);
    EXPECT_EQ(rkuinfo::values(settings).error(), TarvoConfig::eInvalidInput);
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_FALSE(rkuinfo::get<double>(settings, L"Value", error));
    EXPECT_EQ(error, TarvoConfig::eNotFound);
    EXPECT_EQ(utf8(rkuinfo::text(GetRegistryVersionRootKey)), "Software\\Acme\\Widget\\2018");
    EXPECT_EQ(error.message(), "not found");
}

TEST(Cpp20, WalksItemsAndValues)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    setRaw(HKEY_CURRENT_USER, settingsKey, "", text("default"));
    setRaw(HKEY_CURRENT_USER, settingsKey, "List", RawValue{REG_MULTI_SZ, std::string(4, '\0')});
    setRaw(HKEY_CURRENT_USER, settingsKey, "Number", dword(7));
    setRaw(HKEY_CURRENT_USER, settingsKey, std::string(1100, 'n'), dword(8));
    makeKey(HKEY_CURRENT_USER, settingsKey + "\\One");
    makeKey(HKEY_CURRENT_USER, settingsKey + "\\Two\\Three");
    const KeyCounter keys;
    std::string seen;
    for (const Text& name : rkuinfo::items(settings)) {
        seen += utf8(name) + ' ';
        makeKey(HKEY_CURRENT_USER, settingsKey + "\\Grown" + std::to_string(seen.size()));
    }
    EXPECT_EQ(seen, "One One One "); // the loop ends, although each pass adds a key
    std::set<std::string> values;
    for (auto& value : rkuinfo::values(settings)) {
        values.insert(utf8(value.name) + '=' + std::to_string(value.as<std::int32_t>().value_or(-1)) +
                      utf8(value.as<Text>().value_or(Text())) + (value.error ? value.error.message() : ""));
    }
    EXPECT_EQ(values, (std::set<std::string>{"=-1default", "List=-1stored with another type", "Number=7",
                                             "=-1name too long"}));
    for (const char* const absent : {"Two\\Three", "None"}) { // an empty key, and one that does not exist
        auto items = rkuinfo::items(settings, static_cast<const wchar_t*>(Wide(absent)));
        EXPECT_TRUE(items.begin() == items.end());
        EXPECT_EQ(items.error(), *absent == 'T' ? TarvoConfig::eOk : TarvoConfig::eNotFound);
    }
}

/// Each process of the example finds what the previous one stored. On Linux, the INI file selects
/// a language that is not installed, so start-up proposes another.
TEST(ModuleExample, RemembersItsPalettes)
{
    const Application application;
    const std::filesystem::path program = application.addProgram("drawing");
    application.addLanguage("en-US");
    application.writeIni("[Product]\r\nCompanyName=" + companyFromOutside("Acme") +
                         "\r\nLocaleId=" + (onHost ? "1031" : "1033") +
                         "\r\n[LocaleIdLangName]\r\n1031=de-DE\r\n1033=en-US\r\n");
    for (const char* const refusal : {"", "perhaps\nno\n"}) {
        EXPECT_TRUE(!onHost || runProgram(program, {}, refusal).exitCode == 1);
    }
    const ChildResult result = runProgram(program, {}, "perhaps\n Yes\n");
    EXPECT_EQ(result.output, "at most 8 palettes\n");
    EXPECT_TRUE(!onHost || result.errors.starts_with("TARVO: The input language is not")) << result.errors;
    EXPECT_EQ(runProgram(program, {}, "y").output, "at most 9 palettes\n"
                                                   "Layers: 240 x 600 at 20, 80\n"
                                                   "Properties: 300 x 900 at 1600, 80\n");
}

} // namespace
