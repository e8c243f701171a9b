// The registry calls, as the system and winhost both answer them.
#include "support/registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace testing_support;
using Text = const wchar_t*;

constexpr LSTATUS badPathName = 161;
constexpr LSTATUS noAccess = 998;

LSTATUS open(HKEY parent, Text path)
{
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(parent, path, 0, KEY_READ, &opened);
    const OwnedKey owned(opened);
    return status;
}

LSTATUS create(HKEY parent, Text path)
{
    HKEY made = nullptr;
    const LSTATUS status = RegCreateKeyExW(parent, path, 0, nullptr, 0, KEY_READ, nullptr, &made, nullptr);
    const OwnedKey owned(made);
    return status;
}

LSTATUS set(HKEY key, Text name, DWORD type, const std::string& bytes)
{
    const std::string padded = bytes + "zz"; // lest a terminator behind the bytes be counted in
    return RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE*>(padded.data()),
                          static_cast<DWORD>(bytes.size()));
}

LSTATUS query(HKEY key, Text name)
{
    return RegQueryValueExW(key, name, nullptr, nullptr, nullptr, nullptr);
}

std::string infoOf(HKEY key, LSTATUS expected = ERROR_SUCCESS)
{
    wchar_t keyClass[10] = {};
    DWORD length = 10;
    DWORD keys = 0, keyName = 0, classes = 0, values = 0, valueName = 0, data = 0;
    EXPECT_EQ(RegQueryInfoKeyW(key, keyClass, &length, nullptr, &keys, &keyName, &classes, &values,
                               &valueName, &data, nullptr, nullptr),
              expected);
    std::string text = utf8(keyClass);
    for (const DWORD number : {length, keys, keyName, classes, values, valueName, data}) {
        text += ' ' + std::to_string(number);
    }
    return text;
}

/// The values or the sub-keys of a key: one set of rules holds for the names of both.
struct Entries
{
    bool values;
    HKEY key;

    LSTATUS make(Text name) const { return values ? set(key, name, REG_SZ, "x") : create(key, name); }
    LSTATUS find(Text name) const { return values ? query(key, name) : open(key, name); }
    LSTATUS remove(Text name) const { return values ? RegDeleteValueW(key, name) : RegDeleteKeyW(key, name); }
    std::string names() const
    {
        std::string all;
        for (const std::string& name : namesIn(values, key)) {
            all += name + ' ';
        }
        return all;
    }
};

/// Expects one answer from every call that takes a key and a path.
void expectFromPath(LSTATUS error, HKEY key, Text path)
{
    SCOPED_TRACE(utf8(path));
    EXPECT_EQ(open(key, path), error);
    EXPECT_EQ(create(key, path), error);
    EXPECT_EQ(RegDeleteKeyW(key, path), error);
    EXPECT_EQ(RegDeleteTreeW(key, path), error);
}

/// And from every call on a key.
void expectFromAll(LSTATUS error, HKEY key)
{
    wchar_t name[10];
    DWORD length = 10;
    for (const Text path : {L"", L"sub", L"\\"}) {
        expectFromPath(error, key, path);
    }
    for (const bool values : {false, true}) {
        EXPECT_EQ(enumerate(values, key, 0, name, &length), error);
    }
    EXPECT_EQ(query(key, L"v"), error);
    EXPECT_EQ(set(key, L"v", REG_SZ, "x"), error);
    EXPECT_EQ(RegDeleteValueW(key, L"v"), error);
    infoOf(key, error);
}

class RegistryTest : public testing::Test
{
protected:
    const OwnedKey m_owned = createKey(HKEY_CURRENT_USER, "Software\\Acme");
    const HKEY m_key = m_owned.get();
    const Entries m_both[2] = {{false, m_key}, {true, m_key}};
};

TEST_F(RegistryTest, TakesPathsApart)
{
    ASSERT_EQ(create(m_key, L"a\\\\b\\c\\"), ERROR_SUCCESS);
    ASSERT_EQ(create(m_key, L"a/b"), ERROR_SUCCESS);
    for (const Text path : {L"", L"A\\B\\C", L"a\\", L"a\\\\\\b\\\\", L"a/b"}) {
        EXPECT_EQ(open(m_key, path), ERROR_SUCCESS) << utf8(path);
    }
    for (const Text path : {L"a/b/c", L".", L"a ", L"x\\b"}) {
        EXPECT_EQ(open(m_key, path), ERROR_FILE_NOT_FOUND) << utf8(path);
    }
    expectFromPath(badPathName, m_key, L"\\");
    expectFromPath(badPathName, m_key, L"\\a");
    EXPECT_EQ(m_both[0].names(), "a a/b ");
}

TEST_F(RegistryTest, LimitsNamesNotDepthOrSize)
{
    for (const Entries& entries : m_both) {
        const std::size_t longest = entries.values ? 16383 : 256;
        const Wide fits(longest, L'n');
        const Wide tooLong(longest + 1, L'n');
        EXPECT_EQ(entries.make(fits), ERROR_SUCCESS);
        EXPECT_EQ(entries.find(fits), ERROR_SUCCESS);
        EXPECT_EQ(entries.remove(fits), ERROR_SUCCESS);
        EXPECT_EQ(entries.make(tooLong), ERROR_INVALID_PARAMETER);
        EXPECT_EQ(entries.find(tooLong), entries.values ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_PARAMETER);
    }
    std::string deep;
    for (int level = 0; level < 300; ++level) {
        deep += "level\\";
    }
    EXPECT_EQ(create(m_key, Wide(deep)), ERROR_SUCCESS);
    EXPECT_EQ(open(m_key, Wide(deep)), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(m_key, L"level"), ERROR_SUCCESS);

    const RawValue large = {REG_BINARY, std::string(std::size_t{3} << 20, 'x')};
    EXPECT_EQ(set(m_key, L"large", large.type, large.bytes), ERROR_SUCCESS);
    EXPECT_TRUE(getRaw(m_key, "", "large") == large);
}

TEST_F(RegistryTest, ComparesNamesWithoutCaseAndKeepsIt)
{
    const std::string common(252, 'p'); // more than what an index may hold of a name
    for (const Entries& entries : m_both) {
        SCOPED_TRACE(entries.values);
        for (const Text name : {L"MiXed", L"mIxED", L"\x00C9t\x00E9", L"\x00E9T\x00C9", L"\x0416", L"\x0436",
                                L"\xD800", L"\xDC00"}) { // of the last two no text can be made
            EXPECT_EQ(entries.make(name), ERROR_SUCCESS) << utf8(name);
        }
        EXPECT_EQ(entries.names(), utf8(L"MiXed \x00C9t\x00E9 \x0416 \xD800 \xDC00 "));
        EXPECT_EQ(entries.make(Wide(common + "a")), ERROR_SUCCESS);
        EXPECT_EQ(entries.make(Wide(common + "b")), ERROR_SUCCESS);
        EXPECT_EQ(entries.find(Wide(common + "c")), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(entries.find(Wide(common)), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(entries.remove(Wide(common + "A")), ERROR_SUCCESS);
        EXPECT_EQ(entries.find(Wide(common + "a")), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(entries.find(Wide(common + "B")), ERROR_SUCCESS);
    }
}

TEST_F(RegistryTest, HoldsHandlesToTheirRights)
{
    const struct
    {
        REGSAM access;
        bool reads, lists, writes;
    } rows[] = {{0, false, false, false},
                {KEY_QUERY_VALUE, true, false, false},
                {KEY_SET_VALUE, false, false, true},
                {KEY_ENUMERATE_SUB_KEYS, false, true, false},
                {KEY_READ, true, true, false},
                {KEY_WRITE, false, false, true},
                {KEY_ALL_ACCESS, true, true, true}};
    const auto answer = [](bool allowed) { return allowed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED; };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.access);
        wchar_t name[10];
        DWORD valueLength = 10;
        DWORD keyLength = 10;
        HKEY opened = nullptr;
        ASSERT_EQ(create(m_key, L"sub"), ERROR_SUCCESS);
        ASSERT_EQ(set(m_key, L"v", REG_SZ, "x"), ERROR_SUCCESS);
        ASSERT_EQ(RegOpenKeyExW(m_key, nullptr, 0, row.access, &opened), ERROR_SUCCESS);
        const OwnedKey key(opened);
        EXPECT_EQ(query(key.get(), L"v"), answer(row.reads));
        EXPECT_EQ(enumerate(true, key.get(), 0, name, &valueLength), answer(row.reads));
        EXPECT_EQ(enumerate(false, key.get(), 0, name, &keyLength), answer(row.lists));
        EXPECT_EQ(set(key.get(), L"w", REG_SZ, "x"), answer(row.writes));
        EXPECT_EQ(RegDeleteValueW(key.get(), L"w"), answer(row.writes));
        EXPECT_EQ(RegDeleteTreeW(key.get(), nullptr), answer(row.reads && row.lists && row.writes));
        // These depend on the keys they name alone.
        EXPECT_EQ(create(key.get(), L"made\\deep"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteKeyW(key.get(), L"made\\deep"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteTreeW(key.get(), L"made"), ERROR_SUCCESS);
    }
}

TEST_F(RegistryTest, KeepsDataByteForByte)
{
    using namespace std::string_literals;
    const struct
    {
        RawValue value;
        bool terminates; // the reader's copy
    } rows[] = {{{REG_SZ, "a\0b\0"s}, true},     {{REG_SZ, "a\0b"s}, true},
                {{REG_SZ, "a\0\0\0"s}, false},   {{REG_SZ, ""s}, false},
                {{REG_EXPAND_SZ, "a\0"s}, true}, {{REG_MULTI_SZ, "a\0b\0"s}, true},
                {{REG_BINARY, "abc"s}, false},   {{REG_DWORD, "abcd"s}, false},
                {{REG_DWORD, "ab"s}, false},     {{REG_QWORD, "12345678"s}, false},
                {{REG_NONE, ""s}, false},        {{0xFFFFFFFF, "x"s}, false}};
    for (const auto& [value, terminates] : rows) {
        const auto stored = static_cast<DWORD>(value.bytes.size());
        const Text name = value.type == REG_QWORD ? nullptr : L"Name";
        ASSERT_EQ(set(m_key, name, value.type, value.bytes), ERROR_SUCCESS);
        for (DWORD room = 0; room < stored + 4; ++room) {
            const bool fits = room >= stored;
            std::string expected(30, '\xEE');
            expected.replace(0, fits ? stored : 0, fits ? value.bytes : "");
            if (fits && terminates && room >= stored + 2) {
                expected.replace(stored, 2, 2, '\0');
            }
            SCOPED_TRACE(testing::PrintToString(value) + " in " + std::to_string(room));
            std::string bytes(30, '\xEE');
            DWORD type = 77;
            DWORD size = room;
            EXPECT_EQ(
                RegQueryValueExW(m_key, name, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size),
                fits ? ERROR_SUCCESS : ERROR_MORE_DATA);
            EXPECT_EQ(type, value.type);
            EXPECT_EQ(size, stored);
            EXPECT_TRUE(bytes == expected);
        }
        DWORD size = 77; // asked for alone
        EXPECT_EQ(RegQueryValueExW(m_key, name == nullptr ? L"" : L"NAME", nullptr, nullptr, nullptr, &size),
                  ERROR_SUCCESS);
        EXPECT_EQ(size, stored);
        EXPECT_EQ(RegDeleteValueW(m_key, name), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteValueW(m_key, name), ERROR_FILE_NOT_FOUND);
    }
}

TEST_F(RegistryTest, RefusesMissingArguments)
{
    BYTE data[4];
    DWORD length = 4;
    EXPECT_EQ(RegSetValueExW(m_key, L"v", 0, REG_SZ, nullptr, 4), noAccess);
    EXPECT_EQ(RegSetValueExW(m_key, L"v", 0, REG_SZ, nullptr, 0), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(m_key, L"v", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(enumerate(true, m_key, 0, nullptr, &length), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegDeleteKeyW(m_key, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryTest, EnumeratesInOrderOfNamesByLiveIndex)
{
    for (const Entries& entries : m_both) {
        SCOPED_TRACE(entries.values);
        for (const Text name : {L"b", L"C1", L"_", L"a1", L"[", L"A", L"\x00E9", L"c", L"-"}) {
            ASSERT_EQ(entries.make(name), ERROR_SUCCESS);
        }
        EXPECT_EQ(entries.names(), utf8(L"- [ _ A a1 b c C1 \x00E9 "));
        EXPECT_EQ(entries.make(L"Aa"), ERROR_SUCCESS);
        EXPECT_EQ(entries.remove(L"["), ERROR_SUCCESS);
        EXPECT_EQ(entries.names(), utf8(L"- _ A a1 Aa b c C1 \x00E9 "));

        const struct
        {
            DWORD index, room;
            LSTATUS status;
            DWORD length;
        } rows[] = {{4, 0, ERROR_MORE_DATA, 0},
                    {4, 2, ERROR_MORE_DATA, 2},
                    {4, 3, ERROR_SUCCESS, 2},
                    {9, 10, ERROR_NO_MORE_ITEMS, 10},
                    {0xFFFFFFFF, 10, ERROR_NO_MORE_ITEMS, 10}};
        for (const auto& row : rows) {
            wchar_t name[10] = L"?";
            DWORD length = row.room;
            EXPECT_EQ(enumerate(entries.values, m_key, row.index, name, &length), row.status) << row.index;
            EXPECT_EQ(length, row.length);
            EXPECT_EQ(utf8(name), row.status == ERROR_SUCCESS ? "Aa" : "?");
        }
    }
}

TEST_F(RegistryTest, ReportsClassCountsAndMaxima)
{
    wchar_t keyClass[] = L"Class";
    HKEY made = nullptr;
    ASSERT_EQ(RegCreateKeyExW(m_key, L"sub", 0, keyClass, 0, KEY_READ, nullptr, &made, nullptr),
              ERROR_SUCCESS);
    const OwnedKey classed(made);
    ASSERT_EQ(create(m_key, L"longer"), ERROR_SUCCESS);
    ASSERT_EQ(set(m_key, L"value", REG_BINARY, "seven b"), ERROR_SUCCESS);
    ASSERT_EQ(set(m_key, L"", REG_BINARY, "x"), ERROR_SUCCESS);
    EXPECT_EQ(infoOf(m_key), " 0 2 6 5 2 5 7");
    RegDeleteKeyW(m_key, L"longer");
    RegDeleteValueW(m_key, L"value");
    EXPECT_EQ(infoOf(m_key), " 0 1 3 5 1 0 1");
    EXPECT_EQ(infoOf(classed.get()), "Class 5 0 0 0 0 0 0");
}

TEST_F(RegistryTest, DeletesKeysUnderOpenHandles)
{
    const OwnedKey top = createKey(m_key, "top");
    const OwnedKey inner = createKey(m_key, "top\\inner");
    EXPECT_EQ(RegDeleteKeyW(m_key, L"top"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyW(m_key, L"top\\none"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteTreeW(m_key, L"none"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteKeyW(inner.get(), L""), ERROR_SUCCESS);
    ASSERT_EQ(create(top.get(), L"inner"), ERROR_SUCCESS); // another key of that name
    expectFromAll(ERROR_KEY_DELETED, inner.get());

    ASSERT_EQ(set(top.get(), L"v", REG_SZ, "x"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(top.get(), nullptr), ERROR_SUCCESS); // what is in it only
    EXPECT_EQ(infoOf(top.get()), " 0 0 0 0 0 0 0");
    ASSERT_EQ(create(top.get(), L"a\\b\\c"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(m_key, L"top"), ERROR_SUCCESS);
    expectFromAll(ERROR_KEY_DELETED, top.get());
}

TEST_F(RegistryTest, FindsBadHandlesOut)
{
    const HKEY stale = createKey(m_key, "sub").release();
    EXPECT_EQ(RegCloseKey(stale), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(stale), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    for (const HKEY bad : {HKEY{}, stale, reinterpret_cast<HKEY>(ULONG_PTR{0x7654321})}) {
        expectFromAll(ERROR_INVALID_HANDLE, bad);
    }
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        EXPECT_EQ(RegCloseKey(root), ERROR_SUCCESS);
        EXPECT_EQ(open(root, L"Software"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteKeyW(root, L""), ERROR_ACCESS_DENIED);
    }
}

TEST_F(RegistryTest, ServesThreadsAtOnce)
{
    std::atomic<int> failures = 0;
    const auto use = [&](const std::string& name) {
        const Wide own(name);
        for (int round = 0; round < 50; ++round) {
            const OwnedKey key = createKey(m_key, name);
            wchar_t found[20];
            DWORD length = 20;
            failures += set(key.get(), L"v", REG_DWORD, "1234") != ERROR_SUCCESS;
            failures += query(key.get(), L"v") != ERROR_SUCCESS;
            failures += enumerate(false, m_key, 0, found, &length) != ERROR_SUCCESS;
            failures += RegDeleteKeyW(m_key, own) != ERROR_SUCCESS;
            failures += query(key.get(), L"v") != ERROR_KEY_DELETED;
        }
    };
    std::thread threads[] = {std::thread(use, "a"), std::thread(use, "b"), std::thread(use, "c")};
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(m_both[0].names(), "");
}

} // namespace
