// Items and values by subtree and sub-path: the keys opened, the codes given, the names kept.
#include "store.h"

namespace {

using namespace testing_support;

std::string orNull(Text name)
{
    return name == nullptr ? "(null)" : utf8(name);
}

using Operations = StoreTest;

TEST_F(Operations, OpenTheirKey)
{
    setRaw(HKEY_CURRENT_USER, settings + "\\Inner", "n", dword(1));
    TarvoConfig::ItemIterator item;
    ASSERT_EQ(m_config.findItem(eSettings, nullptr, item), eOk);
    // Every key path stands for eSettings itself, so that no path is too odd for the registry.
    std::string calls;
    bool missing = false;
    const auto note = [&](const std::string& call, LSTATUS answer = ERROR_SUCCESS) {
        calls += (calls.empty() ? "" : "; ") + call;
        return answer;
    };
    const auto noteKey = [&](const char* call, HKEY parent, Text path, REGSAM access) {
        std::ostringstream out;
        const std::string whole = utf8(path);
        const bool below = whole.compare(0, settings.size(), settings) == 0;
        out << call << (parent != HKEY_CURRENT_USER ? "item " : "")
            << (below ? "~" + whole.substr(settings.size()) : whole) << ' ' << std::hex << access;
        note(out.str());
    };
    const Patch version = pretendVersion(7);
    const Patch open = intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(
        [&](auto real, HKEY parent, Text path, DWORD options, REGSAM access, HKEY* key) {
            noteKey("open ", parent, path, access);
            const Wide opened(parent == HKEY_CURRENT_USER ? settings : utf8(path));
            return missing ? ERROR_FILE_NOT_FOUND : real(parent, opened, options, access, key);
        });
    const Patch create = intercept<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(
        [&](auto real, HKEY parent, Text path, DWORD reserved, auto* keyClass, DWORD options, REGSAM access,
            auto* security, HKEY* key, DWORD* disposition) {
            EXPECT_TRUE(reserved == 0 && keyClass == nullptr && options == 0 && security == nullptr);
            noteKey("create ", parent, path, access);
            return real(parent, Wide(settings), 0, nullptr, 0, access, nullptr, key, disposition);
        });
    const Patch query = intercept<"RegQueryValueExW", decltype(RegQueryValueExW)>(
        [&](auto, HKEY, Text name, auto...) { return note("query " + orNull(name), denied); });
    const Patch set = intercept<"RegSetValueExW", decltype(RegSetValueExW)>(
        [&](auto, HKEY, Text name, auto...) { return note("set " + orNull(name)); });
    const Patch removeValue = intercept<"RegDeleteValueW", decltype(RegDeleteValueW)>(
        [&](auto, HKEY, Text name) { return note("delete " + orNull(name)); });
    const Patch removeKey = intercept<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(
        [&](auto, HKEY, Text name) { return note("delete " + orNull(name)); });

    struct
    {
        Text argument;
        std::string parent, last, trimmed, exists; // exists: as isItemExist takes it
    } const rows[] = {
        {L"Display/Colors\\Back", "\\Display\\Colors", "Back", "\\Display\\Colors\\Back",
         "\\Display/Colors\\Back"},
        {L"/Set//Colors/Back/", "\\Set\\\\Colors", "Back", "\\Set\\\\Colors\\Back", "\\Set//Colors/Back/"},
        {L"Back", "", "Back", "\\Back", "\\Back"},
        {L"\\\\Back//", "", "Back", "\\Back", "\\\\Back//"},
        {L"/\\", "", "", "\\", "\\\\"},
        {L"/", "", "", "\\", "\\"},
        {L"", "", "(null)", "", ""},
        {nullptr, "", "(null)", "", ""},
    };
    VelaVariant value;
    value.setInt(1);
    for (const auto& row : rows) {
        const bool whole = row.argument == nullptr || *row.argument == 0;
        const std::string removed = whole ? languageRoot + " f003f; delete Settings"
                                          : "~" + row.parent + " f003f; delete " + row.last;
        const std::string expected[] = {"~" + row.exists + " 20019",
                                        "~" + row.parent + " 20019; query " + row.last,
                                        "~" + row.parent + " 20006; set " + row.last,
                                        "~" + row.trimmed + " 20006",
                                        "~" + row.trimmed + " 20006; set n",
                                        row.last.empty() ? "" : removed,
                                        "~" + row.trimmed + " f003f; delete n",
                                        "~" + row.trimmed + " f003f",
                                        "~" + row.trimmed + " f003f"};
        for (const Operation& operation : operations) {
            SCOPED_TRACE(operation.name + " of " + orNull(row.argument));
            const std::string& wanted = expected[&operation - operations];
            const std::string opened = wanted.empty() ? "" : "open " + wanted.substr(0, wanted.find(';'));
            const bool creates = wanted.find(" 20006") != std::string::npos;
            missing = true; // then the key is made, or the operation ends
            calls.clear();
            operation.call(m_config, eSettings, row.argument, value);
            EXPECT_EQ(calls, creates ? std::string(opened).append("; create ").append(wanted) : opened);
            missing = false;
            calls.clear();
            operation.call(m_config, eSettings, row.argument, value);
            EXPECT_EQ(calls, wanted.empty() ? "" : "open " + wanted);
        }
    }
    calls.clear();
    EXPECT_EQ(m_config.getValue(item, L"/n/", value), TarvoConfig::eNotFound);
    EXPECT_EQ(m_config.setValue(item, nullptr, value), eOk);
    EXPECT_EQ(calls, "open item Inner 20019; query /n/; open item Inner 20006; set (null)");
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
        Text path;
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
    const std::tuple<TarvoConfig::ItemIterator*, Text, const char*, int, int> itemRows[] = {
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
    EXPECT_EQ(m_config.removeValue(eSettings, nullptr, nullptr), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"Display/Colors"), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"Empty"), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"\\/"), TarvoConfig::eNotFound);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), "[" + settings + "]\n[" + settings + "\\Display]\n");
    EXPECT_EQ(m_config.removeItem(eSettings, nullptr), eOk);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, languageRoot), "[" + languageRoot + "]\n");
}

TEST_F(Operations, KeepNamesOfEveryScript)
{
    // As written, and as looked up.
    constexpr const char* names[][2] = {{"日本語", "日本語"},
                                        {"\U0001F600", "\U0001F600"},
                                        {"x\xED\xA0\x80y", "X\xED\xA0\x80Y"},
                                        {"привет", "ПРИВЕТ"},
                                        {"éàüø", "ÉÀÜØ"}};
    for (const auto& [name, lookedUp] : names) {
        SCOPED_TRACE(name);
        VelaVariant value;
        value.setString(Wide(name));
        EXPECT_EQ(m_config.addValue(eSettings, Wide(name), Wide(name), value), eOk);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, settings + "\\" + name, name), text(name));
        VelaVariant read;
        EXPECT_EQ(m_config.getValue(eSettings, Wide(std::string(lookedUp) + "/" + lookedUp), read), eOk);
        EXPECT_EQ(utf8(read.getString()), name);
        EXPECT_EQ(m_config.removeItem(eSettings, Wide(lookedUp)), eOk);
        EXPECT_EQ(m_config.isItemExist(eSettings, Wide(name)), 0);
    }
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

} // namespace
