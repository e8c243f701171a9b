// Which registry calls each operation makes, in which order and with which rights, and the code that it
// gives: a call more is a message more to another process on Windows.
#include "store.h"

#include <map>

namespace {

/// The registry calls that the library makes: each with its texts, its right and its other numbers but 0, and
/// with its status if it fails. Those whose names are in refused do.
struct Trace
{
    auto noting(const char* call)
    {
        return [this, call](auto real, auto... arguments) {
            const LSTATUS status = refused.find(call) == std::string::npos ? real(arguments...) : denied;
            calls += (calls.empty() ? "" : ", ") + std::string(call);
            (note(arguments), ...);
            calls += status == ERROR_SUCCESS ? "" : " = " + std::to_string(status);
            return status;
        };
    }

    std::string calls, refused;

private:
    void note(LPCWSTR text)
    {
        const std::string whole = utf8(text);
        const bool isBelow = whole.starts_with(settings);
        calls += (whole.empty() ? "" : " ") + (isBelow ? '~' + whole.substr(settings.size()) : whole);
    }
    void note(DWORD number)
    {
        static const std::map<DWORD, std::string> known = {
            {0, ""}, {KEY_READ, " r"}, {KEY_WRITE, " w"}, {KEY_ALL_ACCESS, " all"}};
        calls += known.contains(number) ? known.at(number) : ' ' + std::to_string(number);
    }
    static void note(const auto&) {}
};

class RegistryCalls : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        makeTree();
        m_text.setString(L"kept");
    }
    static void makeTree()
    {
        removeKey(HKEY_CURRENT_USER, settings);
        setRaw(HKEY_CURRENT_USER, settings + "\\Item", "n", text("some"));
        setRaw(HKEY_CURRENT_USER, settings + "\\Item\\Sub", "n", text("some"));
    }
    void expect(const std::function<int()>& run, const char* refused, const char* calls, int code)
    {
        m_trace = {"", refused};
        EXPECT_EQ(run(), code) << calls;
        EXPECT_EQ(m_trace.calls, calls);
        m_trace.refused = "";
    }

    VelaVariant m_text;
    Trace m_trace;
    const Patch m_patches[10] = {
        pretendVersion(7),
        intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(m_trace.noting("open")),
        intercept<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(m_trace.noting("create")),
        intercept<"RegQueryValueExW", decltype(RegQueryValueExW)>(m_trace.noting("query")),
        intercept<"RegSetValueExW", decltype(RegSetValueExW)>(m_trace.noting("set")),
        intercept<"RegQueryInfoKeyW", decltype(RegQueryInfoKeyW)>(m_trace.noting("info")),
        intercept<"RegEnumKeyExW", decltype(RegEnumKeyExW)>(m_trace.noting("key")),
        intercept<"RegEnumValueW", decltype(RegEnumValueW)>(m_trace.noting("value")),
        intercept<"RegDeleteValueW", decltype(RegDeleteValueW)>(m_trace.noting("delete")),
        intercept<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(m_trace.noting("remove"))};
};

TEST_F(RegistryCalls, OfEachOperation)
{
    const struct
    {
        OperationIndex operation;
        LPCWSTR path;
        const char* refused;
        const char* calls;
        int code;
    } rows[] = {
        {eExists, L"Item", "", "open ~\\Item r", 0},
        {eExists, nullptr, "", "open ~ r", 0},
        {eExists, L"None", "", "open ~\\None r = 2", 7},
        {eExists, L"/A//B/C/", "open", "open ~\\A//B/C/ r = 5", 7},
        {eGet, L"Item/n", "", "open ~\\Item r, query n, query n", 0},
        {eGet, L"/Item//Sub\\n//", "", "open ~\\Item\\\\Sub r, query n, query n", 0},
        {eGet, L"Item/none", "", "open ~\\Item r, query none = 2", 1},
        {eGet, L"None/n", "", "open ~\\None r = 2", 1},
        {eGet, L"/", "", "open ~ r, query = 2", 1},
        {eSet, L"Item/n", "", "open ~\\Item w, set n 1 10", 0},
        {eSet, L"//Item/Sub//n/", "", "open ~\\Item\\Sub w, set n 1 10", 0},
        {eSet, L"New/n", "", "open ~\\New w = 2, create ~\\New w, set n 1 10", 0},
        {eSet, L"New/n", "create", "open ~\\New w = 2, create ~\\New w = 5", 1},
        {eSet, L"Item/n", "set", "open ~\\Item w, set n 1 10 = 5", 5},
        {eSet, L"/", "", "open ~ w, set 1 10", 0},
        {eAddItem, L"Item", "", "open ~\\Item w", 0},
        {eAddItem, L"New", "", "open ~\\New w = 2, create ~\\New w", 0},
        {eAddItem, L"/A//B/C/", "open create", "open ~\\A\\\\B\\C w = 5, create ~\\A\\\\B\\C w = 5", 5},
        {eAddValue, L"Item/Sub/", "", "open ~\\Item\\Sub w, set n 1 10", 0},
        {eAddValue, L"New", "create", "open ~\\New w = 2, create ~\\New w = 5", 1},
        {eAddValue, L"Item", "set", "open ~\\Item w, set n 1 10 = 5", 5},
        {eRemoveItem, L"/Item//Sub/", "", "open ~\\Item\\ all, remove Sub", 0},
        {eRemoveItem, L"Item/None", "", "open ~\\Item all, remove None = 2, open None r = 2", 0},
        {eRemoveItem, L"None/n", "", "open ~\\None all = 2", 1},
        {eRemoveItem, L"", "open", "open Software\\Acme\\Widget\\2018\\en-US all = 5", 1},
        {eRemoveItem, L"\\/", "", "", 1},
        {eRemoveItem, L"Item", "",
         "open ~ all, remove Item = 5, open Item r, key, remove Item\\Sub, key = 259, remove Item", 0},
        {eRemoveItem, L"Item/Sub", "remove",
         "open ~\\Item all, remove Sub = 5, open Sub r, key = 259, remove Sub = 5", 5},
        {eRemoveValue, L"/Item/", "", "open ~\\Item all, delete n", 0},
        {eRemoveValue, L"", "", "open ~ all, delete n = 2", 5},
        {eRemoveValue, L"None", "", "open ~\\None all = 2", 1},
        {eFindItems, L"/Item/", "", "open ~\\Item all, info", 0},
        {eFindValues, L"Item", "info", "open ~\\Item all, info = 5", 5},
    };
    for (const auto& row : rows) {
        const Operation& operation = operations[row.operation];
        SCOPED_TRACE(operation.name + " of " + utf8(row.path));
        makeTree();
        VelaVariant value(m_text);
        expect([&] { return operation.call(m_config, eSettings, row.path, value); }, row.refused, row.calls,
               row.code);
        EXPECT_EQ(utf8(value.getString()), row.operation == eGet && row.code == eOk ? "some" : "kept");
    }
    for (const Operation& operation : operations) {
        for (const auto root : {TarvoConfig::eCurrentProfile, static_cast<TarvoConfig::Path>(9)}) {
            SCOPED_TRACE(operation.name); // there is no profiles key, and no such root
            EXPECT_EQ(operation.call(m_config, root, L"Item", m_text), TarvoConfig::eInvalidInput);
        }
    }
}

// ---- Limits, and trees that are removed

class Operations : public StoreTest
{
protected:
    static void make(const std::string& path) { makeKey(HKEY_CURRENT_USER, settings + '\\' + path); }
};

TEST_F(Operations, TakePathsUpToALimit)
{
    const std::string root = "Software\\Acme\\Widget";
    for (const Operation& operation : operations) {
        const auto accepts = [&](TarvoConfig::Path from, const std::string& path) {
            VelaVariant value;
            return operation.call(m_config, from, Wide(path), value) != TarvoConfig::eInvalidInput;
        };
        const bool cuts = operation.name != "isItemExist"; // separators at the ends
        for (const std::string separator : {"", "/"}) {
            const std::size_t limit = operation.limit - (cuts ? 0 : separator.size());
            for (const std::size_t length : {limit, limit + 1}) {
                SCOPED_TRACE(operation.name + " of " + std::to_string(length));
                std::string subPath(length - root.size(), 'k');
                for (std::size_t at = 200; at < 1000; at += 200) {
                    subPath[at] = '\\';
                }
                makeKey(HKEY_CURRENT_USER, root + '\\' + subPath);
                EXPECT_EQ(accepts(TarvoConfig::eProductRoot, separator + subPath + operation.last),
                          length == limit);
            }
        }
        for (const std::size_t length : {1023u, 1024u}) { // of the argument alone
            const bool isTaken = length == 1023;
            EXPECT_EQ(accepts(eSettings, std::string(length, 'x')), isTaken && !operation.last.empty());
            EXPECT_EQ(accepts(eSettings, std::string(length, '/')), isTaken && cuts);
        }
    }
}

TEST_F(Operations, RemoveATreeAndNothingElse)
{
    for (const int version : {-1, 7, 8}) {
        SCOPED_TRACE(version);
        const Patch pretended = pretendVersion(version);
        for (const char* const key : {"Tree\\a\\b\\c", "Tree\\d", "Tree\\e", "Treetop"}) {
            make(key);
        }
        EXPECT_EQ(m_config.removeItem(eSettings, L"Tree"), eOk);
        EXPECT_EQ(tree(HKEY_CURRENT_USER, settings), "[" + settings + "]\n[" + settings + "\\Treetop]\n");
        EXPECT_EQ(m_config.removeItem(eSettings, L"Tree"), version < 8 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_EQ(m_config.removeItem(eSettings, nullptr), eOk);
        EXPECT_EQ(tree(HKEY_CURRENT_USER, languageRoot), "[" + languageRoot + "]\n");
    }
}

TEST_F(Operations, RemoveKeyByKeyUpTo519Characters)
{
    const Patch version = pretendVersion(7);
    const std::string longest = "T\\" + std::string(250, 'x') + "\\" + std::string(250, 'y') + "\\";
    for (const std::size_t length : {519u, 520u}) {
        make("T\\first");
        make(longest + std::string(length - longest.size(), 'z'));
        EXPECT_EQ(m_config.removeItem(eSettings, L"T"), length == 519 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_EQ(tree(HKEY_CURRENT_USER, settings + "\\T\\first"), ""); // what was removed stays removed
        EXPECT_EQ(tree(HKEY_CURRENT_USER, settings + '\\' + longest).empty(), length != 520);
    }
}

} // namespace
