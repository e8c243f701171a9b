// Items and values by subtree and sub-path: the keys opened, the codes given, the names kept.
#include "store.h"

namespace {

using namespace testing_support;

using Operations = StoreTest;

TEST_F(Operations, OpenTheirKey)
{
    std::ostringstream calls;
    const auto missing = [&](auto, HKEY, LPCWSTR path, DWORD, REGSAM access, HKEY*) {
        calls << "open " << utf8(path) << std::hex << ' ' << access;
        return ERROR_FILE_NOT_FOUND;
    };
    const auto refused = [&](auto, HKEY, LPCWSTR path, DWORD, auto* keyClass, DWORD options, REGSAM access,
                             auto* security, auto...) {
        EXPECT_TRUE(keyClass == nullptr && options == 0 && security == nullptr);
        calls << ", create " << utf8(path) << std::hex << ' ' << access;
        return denied;
    };
    const Patch open = intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(missing);
    const Patch create = intercept<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(refused);
    const struct
    {
        LPCWSTR argument;
        std::string parent, trimmed, exists; // exists: as isItemExist takes it
    } rows[] = {
        {L"Display/Colors\\Back", "\\Display\\Colors", "\\Display\\Colors\\Back", "\\Display/Colors\\Back"},
        {L"/Set//Colors/Back/", "\\Set\\\\Colors", "\\Set\\\\Colors\\Back", "\\Set//Colors/Back/"},
        {L"\\\\Back//", "", "\\Back", "\\\\Back//"},
        {L"/\\", "", "\\", "\\\\"},
        {L"/", "", "\\", "\\"},
        {L"", "", "", ""},
        {nullptr, "", "", ""},
    };
    VelaVariant value;
    value.setInt(1);
    for (const auto& [argument, parent, trimmed, exists] : rows) {
        const bool hasName = utf8(argument).find('B') != std::string::npos;
        const std::string path = settings + trimmed;
        const std::string write = path + " 20006";
        const std::string change = "open " + path + " f003f";
        const std::string setInParent = settings + parent + " 20006";
        const std::string expected[] = {"open " + settings + exists + " 20019",
                                        "open " + settings + parent + " 20019",
                                        "open " + setInParent + ", create " + setInParent,
                                        "open " + write + ", create " + write,
                                        "open " + write + ", create " + write,
                                        hasName                  ? "open " + settings + parent + " f003f"
                                        : utf8(argument).empty() ? "open " + languageRoot + " f003f"
                                                                 : "",
                                        change,
                                        change,
                                        change};
        for (const Operation& operation : operations) {
            SCOPED_TRACE(operation.name + " of " + utf8(argument));
            calls.str("");
            operation.call(m_config, eSettings, argument, value);
            EXPECT_EQ(calls.str(), expected[&operation - operations]);
        }
    }
}

TEST_F(Operations, AnswerWithTheirCode)
{
    std::string refused;
    const auto refuse = [&](const char* call) {
        return [&refused, call](auto real, auto... arguments) {
            return refused.find(call) != std::string::npos ? denied : real(arguments...);
        };
    };
    const Patch patches[] = {pretendVersion(7),
                             intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(refuse("open")),
                             intercept<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(refuse("create")),
                             intercept<"RegSetValueExW", decltype(RegSetValueExW)>(refuse("set")),
                             intercept<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(refuse("delete")),
                             intercept<"RegDeleteValueW", decltype(RegDeleteValueW)>(refuse("delete")),
                             intercept<"RegQueryInfoKeyW", decltype(RegQueryInfoKeyW)>(refuse("info"))};
    VelaVariant value;
    const auto makeTree = [&] {
        removeKey(HKEY_CURRENT_USER, settings);
        setRaw(HKEY_CURRENT_USER, settings + "\\Inner", "n", dword(1));
        setRaw(HKEY_CURRENT_USER, settings + "\\Inner", "multi", {REG_MULTI_SZ, text("").bytes});
        value.setString(L"kept");
    };
    const auto noSuchPath = static_cast<TarvoConfig::Path>(9);
    const struct
    {
        LPCWSTR path;
        const char* refused;
        TarvoConfig::Path root;
        int expected[std::size(operations)];
    } rows[] = {
        {L"Inner", "", noSuchPath, {7, 7, 7, 7, 7, 7, 7, 7, 7}},
        {L"Inner", "", TarvoConfig::eCurrentProfile, {7, 7, 7, 7, 7, 7, 7, 7, 7}}, // there is no profiles key
        {L"", "", eSettings, {0, 1, 0, 0, 0, 0, 5, 0, 0}},
        {L"Inner", "", eSettings, {0, 1, 0, 0, 0, 0, 0, 0, 0}},
        {L"Inner/n", "", eSettings, {7, 0, 0, 0, 0, 0, 1, 1, 1}},
        {L"Inner/multi", "", eSettings, {7, 2, 0, 0, 0, 0, 1, 1, 1}},
        {L"None/n", "", eSettings, {7, 1, 0, 0, 0, 1, 1, 1, 1}},
        {L"Inner", "open create", eSettings, {7, 1, 1, 5, 1, 1, 1, 1, 1}},
        {L"Inner", "set", eSettings, {0, 1, 5, 0, 5, 0, 0, 0, 0}},
        {L"Inner", "delete", eSettings, {0, 1, 0, 0, 0, 5, 5, 0, 0}},
        {L"Inner", "info", eSettings, {0, 1, 0, 0, 0, 0, 0, 5, 5}},
    };
    for (const auto& row : rows) {
        for (const Operation& operation : operations) {
            SCOPED_TRACE(operation.name + " of " + utf8(row.path) + " without " + row.refused);
            makeTree();
            refused = row.refused;
            const Error error = operation.call(m_config, row.root, row.path, value);
            EXPECT_EQ(error, row.expected[&operation - operations]);
            EXPECT_EQ(utf8(value.getString()) == "kept", operation.name != "getValue" || error != eOk);
        }
    }

    makeTree();
    refused = "";
    TarvoConfig::ItemIterator none;
    TarvoConfig::ItemIterator item;
    ASSERT_EQ(m_config.findItem(eSettings, nullptr, item), eOk);
    TarvoConfig::ItemIterator past(item);
    EXPECT_EQ(past.step(), eOk);
    // What reads and what writes give for an item's value.
    const std::tuple<TarvoConfig::ItemIterator*, LPCWSTR, const char*, int, int> itemRows[] = {
        {&none, L"n", "", 4, 1},
        {&past, L"n", "", 4, 4},
        {&item, L"none", "set", 1, 5},
        {&item, L"n", "open", 1, 1},
        {&item, L"multi", "set", 2, 5}};
    for (const auto& [it, valueName, refusal, reads, writes] : itemRows) {
        SCOPED_TRACE(utf8(valueName) + " without " + refusal);
        refused = refusal;
        EXPECT_EQ(m_config.getValue(*it, valueName, value), reads);
        EXPECT_EQ(m_config.setValue(*it, valueName, value), writes);
        EXPECT_EQ(utf8(value.getString()), "kept");
    }
    const Patch nameless = intercept<"RegEnumKeyExW", decltype(RegEnumKeyExW)>(
        [](auto, HKEY, DWORD, wchar_t* name, DWORD* length, auto...) {
            *name = 0;
            *length = 0;
            return ERROR_SUCCESS;
        });
    EXPECT_EQ(m_config.getValue(item, L"n", value), TarvoConfig::eRegistryError);
}

TEST_F(Operations, ChangeTheTree)
{
    VelaVariant value;
    value.setString(L"new");
    EXPECT_EQ(m_config.setValue(eSettings, L"Display/Colors/Back", value), eOk);
    EXPECT_EQ(m_config.setValue(eSettings, nullptr, value), eOk);
    EXPECT_EQ(m_config.addValue(eSettings, L"Empty/Deep", L"none", VelaVariant()), eOk);
    const std::string line = "=" + testing::PrintToString(text("new")) + "\n";
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), "[" + settings + "]\n" + line + "[" + settings +
                                                     "\\Display]\n[" + settings + "\\Display\\Colors]\nBack" +
                                                     line + "[" + settings + "\\Empty]\n[" + settings +
                                                     "\\Empty\\Deep]\n");
    VelaVariant read;
    EXPECT_EQ(m_config.getValue(eSettings, L"\\Display//Colors\\Back//", read), eOk);
    EXPECT_EQ(m_config.setValue(eSettings, L"//Display/Colors//Back/", value), eOk); // the same one
    EXPECT_EQ(m_config.getValue(eSettings, L"", read), eOk);
    TarvoConfig::ItemIterator item;
    ASSERT_EQ(m_config.findItem(eSettings, nullptr, item), eOk);
    EXPECT_EQ(m_config.setValue(item, L"/n/", value), eOk); // of an item, as it is written
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, settings + "\\Display", "/n/"), text("new"));
    EXPECT_EQ(m_config.removeValue(eSettings, L"/Display/", L"/n/"), eOk);
    item = TarvoConfig::ItemIterator();
    EXPECT_EQ(m_config.removeValue(eSettings, nullptr, nullptr), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"Display/Colors"), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"Empty"), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"\\/"), TarvoConfig::eNotFound);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), "[" + settings + "]\n[" + settings + "\\Display]\n");
    EXPECT_EQ(m_config.removeItem(eSettings, nullptr), eOk);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, languageRoot), "[" + languageRoot + "]\n");
}

/// Whether a path is not too long.
bool accepts(const Operation& operation, TarvoConfig& config, TarvoConfig::Path root, const std::string& path)
{
    VelaVariant value;
    return operation.call(config, root, Wide(path), value) != TarvoConfig::eInvalidInput;
}

TEST_F(Operations, TakeRootAndSubPathUpToALimit)
{
    const std::string root = "Software\\Acme\\Widget";
    for (const Operation& operation : operations) {
        const bool countsSeparators = operation.name == "isItemExist";
        for (const std::string separator : {"", "/"}) {
            const std::size_t limit = operation.limit - (countsSeparators ? separator.size() : 0);
            for (const std::size_t length : {limit, limit + 1}) {
                SCOPED_TRACE(operation.name + " of " + std::to_string(length));
                std::string subPath(length - root.size(), 'k');
                for (std::size_t at = 200; at < 1000; at += 200) {
                    subPath[at] = '\\';
                }
                makeKey(HKEY_CURRENT_USER, std::string(root).append("\\").append(subPath));
                EXPECT_EQ(accepts(operation, m_config, TarvoConfig::eProductRoot,
                                  separator + subPath + operation.last),
                          length == limit);
            }
        }
    }
}

TEST_F(Operations, TakeAnArgumentOf1023Characters)
{
    for (const Operation& operation : operations) {
        for (const std::size_t length : {1023u, 1024u, 5000u}) {
            SCOPED_TRACE(operation.name + " of " + std::to_string(length));
            // Without separators it may be a value or an item; separators come to nothing, or are not cut.
            const bool named = length == 1023 && !operation.last.empty();
            const bool cut = length == 1023 && operation.name != "isItemExist";
            EXPECT_EQ(accepts(operation, m_config, eSettings, std::string(length, 'x')), named);
            EXPECT_EQ(accepts(operation, m_config, eSettings, std::string(length, '/')), cut);
        }
    }
}

class Removal : public StoreTest
{
protected:
    static void make(const std::string& path) { makeKey(HKEY_CURRENT_USER, settings + "\\" + path); }
    static bool exists(const std::string& path)
    {
        return !tree(HKEY_CURRENT_USER, settings + "\\" + path).empty();
    }
    Error remove(LPCWSTR item) { return m_config.removeItem(eSettings, item); }
};

TEST_F(Removal, OfAMissingItemAndOfTrees)
{
    std::string deep = "Tree";
    for (int level = 0; level < 200; ++level) {
        deep += "\\k";
    }
    for (const int version : {-1, 7, 8}) {
        SCOPED_TRACE(version);
        const Patch pretended = pretendVersion(version);
        make(deep);
        for (int index = 0; index < 1000; ++index) {
            make("Tree\\Wide\\" + std::to_string(index));
        }
        make("Treetop");
        EXPECT_EQ(remove(L"Tree"), eOk);
        EXPECT_FALSE(exists("Tree"));
        EXPECT_TRUE(exists("Treetop"));
        EXPECT_EQ(remove(L"Tree"), version < 8 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_EQ(remove(L"Tree\\Item"), TarvoConfig::eNotFound);
    }
}

TEST_F(Removal, KeyByKeyReaches519Characters)
{
    const Patch version = pretendVersion(7);
    const std::string longest = "T\\" + std::string(250, 'x') + "\\" + std::string(250, 'y') + "\\";
    for (const std::size_t length : {519u, 520u}) {
        make("T\\first");
        make(longest + std::string(length - longest.size(), 'z'));
        EXPECT_EQ(remove(L"T"), length == 519 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_FALSE(exists("T\\first")); // what was removed stays removed
        EXPECT_EQ(exists(longest), length == 520);
    }
}

} // namespace
