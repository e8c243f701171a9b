// Tests which source start-up uses for each name, and what it reports about each source.
#include "installation/choices.h"

#include "support/test.h"

namespace {

/// Prints each source and its state, then the chosen name or "-". Omits absent arguments.
std::string print(const uinfo::Choice& choice)
{
    constexpr const char* answers[] = {
        "", " absent", " empty", " too long", " other type", " unreadable", " no language", " not installed"};
    constexpr const char* sources[] = {"argument", "(default)", "", "built in"};
    std::string out;
    for (const auto& [source, name, answer] : choice.findings()) {
        if (source != uinfo::Source::argument || answer != uinfo::Answer::absent) {
            out += (name != nullptr ? utf8(name) : sources[static_cast<int>(source)]) +
                   answers[static_cast<int>(answer)] + ", ";
        }
    }
    return out + (choice.isMade() ? utf8(choice.value()) : "-");
}

struct Sources
{
    std::string argument;
    std::optional<RawValue> stored;
    std::string iniText;
    std::string report;
};

const std::string x253(253, 'x'), x254 = x253 + 'x', x255 = x254 + 'x';

class Choices : public testing::Test
{
protected:
    /// For each row, writes the sources, calls `choose`, and compares the printed result with `report`.
    template <typename Choose>
    void expect(std::initializer_list<Sources> rows, const std::string& key, const char* valueName,
                Choose choose)
    {
        for (const auto& [argument, stored, iniText, expected] : rows) {
            m_application.writeIni(iniText);
            remakeKey(HKEY_CURRENT_USER, key, valueName, stored);
            const std::string before = tree(HKEY_CURRENT_USER, "Software");
            const Wide words(argument);
            EXPECT_EQ(print(choose(argument.empty() ? nullptr : +words, +Wide(key))), expected);
            EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before) << "the choice changed the registry";
        }
    }

    const Application m_application;
    const Wide m_folder = windowsPath(m_application.folder()) + '\\';
};

TEST_F(Choices, PreferTheArgumentToStoredAndBuiltInNames)
{
    expect({{"Own", {}, "[Product]\r\nCompanyName=Acme", "argument, Own"},
            {"", {}, "[product]\r\ncompanyname=Acme", "CompanyName, Acme"},
            {"", {}, "[Product]\r\nCompanyName=" + x254, "CompanyName, " + x253},
            {"", {}, "[Product]\r\nCompanyName=", "CompanyName absent, built in, Norvik"}},
           "Software\\Acme", "",
           [&](auto* argument, auto*) { return uinfo::chooseCompany(argument, m_folder); });
    const std::string ini = "[Product]\r\nProductName=Widget";
    const std::string widget = "ProductName, Widget";
    expect({{"Own", text("Gadget"), ini, "argument, Own"},
            {x255, text("Gadget"), ini, "argument too long, -"},
            {"", text(x254), ini, "CurProduct, " + x254},
            {"", RawValue{REG_SZ, text(x255).bytes.substr(0, 510)}, ini, "CurProduct, " + x255},
            {"", text(x255), ini, "CurProduct too long, " + widget},
            {"", RawValue{REG_EXPAND_SZ, text("x").bytes}, ini, "CurProduct other type, " + widget},
            {"", {}, "", "CurProduct absent, ProductName absent, built in, TARVO"}},
           "Software\\Acme", "CurProduct",
           [&](auto* argument, auto* key) { return uinfo::chooseProduct(argument, key, m_folder); });
}

TEST_F(Choices, RejectALanguageThatIsNotInstalled)
{
    const auto ini = [](const std::string& id, const std::string& mapping) {
        return "[Product]\r\nLocaleId=" + id + "\r\n[LocaleIdLangName]\r\n" + mapping;
    };
    const std::string french = ini("1036", "1036=fr-FR");
    const std::string mapped = "LocaleId, LocaleIdLangName, fr-FR";
    for (const char* const language : {"fr-FR", "zh-CN", "de-DE"}) {
        m_application.addLanguage(language);
    }
    writeFile(m_application.folder() / "tr-TR" / "dll.txt", "");
    addUninstallEntry(1036);
    addUninstallEntry(2052);
    makeKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"
                                "{5C3D71E0-B00F-1031-C10E-9E40B6D2F815}"); // without UninstallString
    std::string missing;
    bool needsEntry = true;
    const auto choose = [&](auto* argument, auto* key) {
        const auto choice = uinfo::chooseLanguage(argument, key, m_folder, needsEntry);
        missing += std::to_string(static_cast<int>(choice.installed));
        return choice;
    };
    expect({{"FR-fr", text("zh-CN"), ini("2052", "2052=zh-CN"), "argument, FR-fr"},
            {"en", text("zh-CN"), french, "argument no language, -"},
            {"ja-JP", text("zh-CN"), french, "argument not installed, -"},
            {"tr-TR", text("zh-CN"), french, "argument not installed, -"},
            {"de-DE", text("zh-CN"), french, "argument not installed, -"},
            {"", text("ZH-cn"), french, "CurVer, ZH-cn"},
            {"", text("ja-JP"), french, "CurVer not installed, -"},
            {"", text("zh-CNx"), french, "CurVer no language, -"},
            {"", text("zh-CNxx"), french, "CurVer too long, " + mapped},
            {"", dword(0x410041), french, "CurVer other type, " + mapped},
            {"", text(""), french, "CurVer empty, " + mapped},
            {"", {}, ini("103612", "10361=fr-FRx"), "CurVer absent, " + mapped},
            {"", {}, ini("7", "1036=fr-FR"), "CurVer absent, LocaleId, LocaleIdLangName absent, -"},
            {"", {}, "", "CurVer absent, LocaleId absent, -"}},
           "Software\\Acme\\Widget\\2018", "CurVer", choose);
    EXPECT_EQ(missing, "01123011000011");
    needsEntry = false;
    expect({{"de-DE", {}, "", "argument, de-DE"}}, "Software\\Acme", "CurVer", choose);
}

} // namespace
