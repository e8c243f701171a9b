// The registry calls, as the system and winhost both answer them.
#include "support/text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing_support::utf8;
using testing_support::Wide;

constexpr const wchar_t* testPath = L"Software\\RkUInfoTestRegistry";
constexpr LSTATUS badPathName = 161;
constexpr LSTATUS noAccess = 998;

/// An owned key.
struct Key
{
    HKEY handle = nullptr;

    Key() = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key()
    {
        if (handle != nullptr) {
            RegCloseKey(handle);
        }
    }
    operator HKEY() const { return handle; }
};

LSTATUS open(HKEY parent, const wchar_t* path, REGSAM access, Key& key)
{
    return RegOpenKeyExW(parent, path, 0, access, &key.handle);
}

LSTATUS open(HKEY parent, const wchar_t* path)
{
    Key key;
    return open(parent, path, KEY_READ, key);
}

LSTATUS create(HKEY parent, const wchar_t* path, Key& key, DWORD* disposition = nullptr)
{
    return RegCreateKeyExW(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                           &key.handle, disposition);
}

LSTATUS create(HKEY parent, const wchar_t* path)
{
    Key key;
    return create(parent, path, key);
}

LSTATUS set(HKEY key, const wchar_t* name, DWORD type, const std::string& bytes)
{
    return RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                          static_cast<DWORD>(bytes.size()));
}

LSTATUS query(HKEY key, const wchar_t* name)
{
    return RegQueryValueExW(key, name, nullptr, nullptr, nullptr, nullptr);
}

LSTATUS enumerate(bool values, HKEY key, DWORD index, wchar_t* name, DWORD* length)
{
    return values ? RegEnumValueW(key, index, name, length, nullptr, nullptr, nullptr, nullptr)
                  : RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}

/// The entry at an index, or the error.
std::string at(bool values, HKEY key, DWORD index)
{
    wchar_t name[300];
    DWORD length = 300;
    const LSTATUS status = enumerate(values, key, index, name, &length);
    return status == ERROR_SUCCESS ? utf8(name) : std::to_string(status);
}

std::string all(bool values, HKEY key)
{
    std::string names;
    for (DWORD index = 0;; ++index) {
        const std::string name = at(values, key, index);
        if (name == std::to_string(ERROR_NO_MORE_ITEMS)) {
            return names;
        }
        names += (index == 0 ? "" : " ") + name;
    }
}

/// Expects one error from every call on a key.
void expectFromAll(LSTATUS error, HKEY key)
{
    wchar_t name[10];
    DWORD length = 10;
    for (const wchar_t* const path : {L"", L"sub", L"\\"}) {
        EXPECT_EQ(open(key, path), error);
        EXPECT_EQ(create(key, path), error);
        EXPECT_EQ(RegDeleteKeyW(key, path), error);
        EXPECT_EQ(RegDeleteTreeW(key, path), error);
    }
    for (const bool values : {false, true}) {
        EXPECT_EQ(enumerate(values, key, 0, name, &length), error);
    }
    EXPECT_EQ(query(key, L"v"), error);
    EXPECT_EQ(set(key, L"v", REG_SZ, "x"), error);
    EXPECT_EQ(RegDeleteValueW(key, L"v"), error);
    EXPECT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr),
              error);
}

class RegistryTest : public testing::Test
{
protected:
    RegistryTest()
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, testPath);
        EXPECT_EQ(create(HKEY_CURRENT_USER, testPath, m_key), ERROR_SUCCESS);
    }
    ~RegistryTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, testPath); }

    Key m_key;
};

TEST_F(RegistryTest, TakesPathsApart)
{
    ASSERT_EQ(create(m_key, L"a\\\\b\\c\\"), ERROR_SUCCESS);
    ASSERT_EQ(create(m_key, L"a/b"), ERROR_SUCCESS);
    for (const wchar_t* const path : {L"", L"A\\B\\C", L"a\\", L"a\\\\\\b\\\\", L"a/b"}) {
        EXPECT_EQ(open(m_key, path), ERROR_SUCCESS) << utf8(path);
    }
    for (const wchar_t* const path : {L"a/b/c", L".", L"a ", L"x\\b"}) {
        EXPECT_EQ(open(m_key, path), ERROR_FILE_NOT_FOUND) << utf8(path);
    }
    for (const wchar_t* const path : {L"\\", L"\\a", L"\\\\a"}) {
        EXPECT_EQ(open(m_key, path), badPathName) << utf8(path);
        EXPECT_EQ(create(m_key, path), badPathName) << utf8(path);
        EXPECT_EQ(RegDeleteKeyW(m_key, path), badPathName) << utf8(path);
        EXPECT_EQ(RegDeleteTreeW(m_key, path), badPathName) << utf8(path);
    }
    EXPECT_EQ(all(false, m_key), "a a/b");
    DWORD disposition = 0;
    Key key;
    EXPECT_EQ(create(m_key, L"a\\new\\deep", key, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    Key again;
    EXPECT_EQ(create(m_key, L"A\\NEW", again, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
}

TEST_F(RegistryTest, LimitsNamesNotDepthOrSize)
{
    for (const std::size_t length : {255U, 256U, 257U}) {
        const LSTATUS expected = length <= 256 ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
        const Wide name(length, L'n');
        EXPECT_EQ(create(m_key, name), expected) << length;
        EXPECT_EQ(open(m_key, name), expected) << length;
        EXPECT_EQ(RegDeleteKeyW(m_key, name), expected) << length;
    }
    for (const std::size_t length : {16383U, 16384U}) {
        const bool fits = length == 16383;
        const Wide name(length, L'v');
        EXPECT_EQ(set(m_key, name, REG_SZ, "ab"), fits ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER);
        EXPECT_EQ(query(m_key, name), fits ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(RegDeleteValueW(m_key, name), fits ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
    }
    std::string deep;
    for (int level = 0; level < 300; ++level) {
        deep += "level\\";
    }
    EXPECT_EQ(create(m_key, Wide(deep)), ERROR_SUCCESS);
    EXPECT_EQ(open(m_key, Wide(deep)), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(m_key, L"level"), ERROR_SUCCESS);

    const std::string large(std::size_t{3} << 20, 'x');
    std::string read(large.size(), 0);
    auto size = static_cast<DWORD>(read.size());
    EXPECT_EQ(set(m_key, L"large", REG_BINARY, large), ERROR_SUCCESS);
    EXPECT_EQ(
        RegQueryValueExW(m_key, L"large", nullptr, nullptr, reinterpret_cast<BYTE*>(read.data()), &size),
        ERROR_SUCCESS);
    EXPECT_TRUE(read == large);
}

TEST_F(RegistryTest, ComparesNamesWithoutCaseAndKeepsIt)
{
    // Names that agree in more than what an index may hold of them, and units of which no text is made.
    const std::string common(252, 'p');
    for (const bool values : {false, true}) {
        const auto make = [&](const wchar_t* name) {
            return values ? set(m_key, name, REG_SZ, "x") : create(m_key, name);
        };
        const auto find = [&](const wchar_t* name) {
            return values ? query(m_key, name) : open(m_key, name);
        };
        for (const wchar_t* const name : {L"MiXed", L"mIxED", L"\x00C9t\x00E9", L"\x00E9T\x00C9", L"\x0416",
                                          L"\x0436", L"\xD800", L"\xDC00"}) {
            EXPECT_EQ(make(name), ERROR_SUCCESS) << utf8(name);
        }
        EXPECT_EQ(all(values, m_key), utf8(L"MiXed \x00C9t\x00E9 \x0416 \xD800 \xDC00"));
        EXPECT_EQ(make(Wide(common + "a")), ERROR_SUCCESS);
        EXPECT_EQ(make(Wide(common + "b")), ERROR_SUCCESS);
        EXPECT_EQ(find(Wide(common + "B")), ERROR_SUCCESS);
        EXPECT_EQ(find(Wide(common + "c")), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(find(Wide(common)), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(values ? RegDeleteValueW(m_key, Wide(common + "A"))
                         : RegDeleteKeyW(m_key, Wide(common + "A")),
                  ERROR_SUCCESS);
        EXPECT_EQ(find(Wide(common + "a")), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(find(Wide(common + "b")), ERROR_SUCCESS);
    }
}

TEST_F(RegistryTest, HoldsHandlesToTheirRights)
{
    const struct
    {
        REGSAM access;
        bool reads, lists, writes;
    } cases[] = {{0, false, false, false},
                 {KEY_QUERY_VALUE, true, false, false},
                 {KEY_SET_VALUE, false, false, true},
                 {KEY_CREATE_SUB_KEY, false, false, false},
                 {KEY_ENUMERATE_SUB_KEYS, false, true, false},
                 {KEY_READ, true, true, false},
                 {KEY_WRITE, false, false, true},
                 {KEY_READ | KEY_WRITE, true, true, true},
                 {KEY_ALL_ACCESS, true, true, true}};
    ASSERT_EQ(create(m_key, L"sub"), ERROR_SUCCESS);
    ASSERT_EQ(set(m_key, L"v", REG_SZ, "x"), ERROR_SUCCESS);
    const auto answer = [](bool allowed) { return allowed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED; };
    wchar_t name[10];
    for (const auto& each : cases) {
        SCOPED_TRACE(each.access);
        Key key;
        DWORD length = 10;
        ASSERT_EQ(open(m_key, nullptr, each.access, key), ERROR_SUCCESS);
        EXPECT_EQ(query(key, L"v"), answer(each.reads));
        EXPECT_EQ(enumerate(true, key, 0, name, &length), answer(each.reads));
        length = 10;
        EXPECT_EQ(enumerate(false, key, 0, name, &length), answer(each.lists));
        EXPECT_EQ(set(key, L"w", REG_SZ, "x"), answer(each.writes));
        EXPECT_EQ(RegDeleteValueW(key, L"w"), answer(each.writes));
        EXPECT_EQ(RegDeleteTreeW(key, nullptr), answer(each.reads && each.lists && each.writes));
        // These depend on the keys they name alone.
        EXPECT_EQ(create(key, L"made\\deep"), ERROR_SUCCESS);
        EXPECT_EQ(open(key, L"made"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteKeyW(key, L"made\\deep"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteTreeW(key, L"made"), ERROR_SUCCESS);
        EXPECT_EQ(create(m_key, L"sub"), ERROR_SUCCESS);
        EXPECT_EQ(set(m_key, L"v", REG_SZ, "x"), ERROR_SUCCESS);
    }
}

TEST_F(RegistryTest, KeepsDataByteForByte)
{
    using namespace std::string_literals;
    const struct
    {
        DWORD type;
        std::string bytes;
        bool terminates; // the reader's copy
    } cases[] = {{REG_SZ, "a\0b\0"s, true},       {REG_SZ, "a\0b"s, true},
                 {REG_SZ, "a\0\0\0"s, false},     {REG_SZ, ""s, false},
                 {REG_EXPAND_SZ, "a\0"s, true},   {REG_MULTI_SZ, "a\0b\0\0\0"s, false},
                 {REG_MULTI_SZ, "a\0b\0"s, true}, {REG_BINARY, "abc"s, false},
                 {REG_DWORD, "abcd"s, false},     {REG_DWORD, "ab"s, false},
                 {REG_QWORD, "12345678"s, false}, {REG_NONE, ""s, false},
                 {REG_LINK, "a\0"s, false},       {0x12345678, "abcde"s, false},
                 {0xFFFFFFFF, "x"s, false}};
    for (const wchar_t* const name : {L"name", static_cast<const wchar_t*>(nullptr)}) {
        for (const auto& each : cases) {
            const auto stored = static_cast<DWORD>(each.bytes.size());
            // The bytes lie before a unit that is not zero, lest a terminator be counted in.
            const std::string padded = each.bytes + "zz";
            ASSERT_EQ(RegSetValueExW(m_key, name, 0, each.type, reinterpret_cast<const BYTE*>(padded.data()),
                                     stored),
                      ERROR_SUCCESS);
            for (DWORD room = 0; room < stored + 4; ++room) {
                SCOPED_TRACE(std::to_string(each.type) + ", " + std::to_string(stored) + " in " +
                             std::to_string(room));
                const bool fits = room >= stored;
                std::string expected(30, '\xEE');
                if (fits) {
                    expected.replace(0, stored, each.bytes);
                }
                if (fits && each.terminates && room >= stored + 2) {
                    expected.replace(stored, 2, 2, '\0');
                }
                for (const bool byIndex : {false, true}) {
                    std::string bytes(30, '\xEE');
                    auto* const data = reinterpret_cast<BYTE*>(bytes.data());
                    DWORD type = 77;
                    DWORD size = room;
                    wchar_t found[10];
                    DWORD length = 10;
                    EXPECT_EQ(byIndex ? RegEnumValueW(m_key, 0, found, &length, nullptr, &type, data, &size)
                                      : RegQueryValueExW(m_key, name, nullptr, &type, data, &size),
                              fits ? ERROR_SUCCESS : ERROR_MORE_DATA);
                    EXPECT_EQ(type, each.type);
                    EXPECT_EQ(size, stored);
                    EXPECT_TRUE(bytes == expected);
                }
            }
            DWORD size = 77;
            EXPECT_EQ(RegQueryValueExW(m_key, L"NAME" + (name == nullptr ? 4 : 0), nullptr, nullptr, nullptr,
                                       &size),
                      ERROR_SUCCESS);
            EXPECT_EQ(size, stored);
        }
        EXPECT_EQ(RegDeleteValueW(m_key, name), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteValueW(m_key, name), ERROR_FILE_NOT_FOUND);
    }
}

TEST_F(RegistryTest, RefusesMissingArguments)
{
    ASSERT_EQ(set(m_key, L"v", REG_SZ, "x"), ERROR_SUCCESS);
    BYTE data[4];
    DWORD zero = 0;
    wchar_t name[4];
    DWORD length = 4;
    Key key;
    EXPECT_EQ(RegOpenKeyExW(m_key, L"", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegCreateKeyExW(m_key, L"a", 5, nullptr, 0, KEY_READ, nullptr, &key.handle, nullptr),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegDeleteKeyW(m_key, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExW(m_key, L"v", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExW(m_key, L"v", &zero, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegEnumValueW(m_key, 0, nullptr, &length, nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegEnumValueW(m_key, 0, name, nullptr, nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegEnumValueW(m_key, 0, name, &length, nullptr, nullptr, data, nullptr),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegSetValueExW(m_key, L"v", 0, REG_SZ, nullptr, 4), noAccess);
    EXPECT_EQ(RegSetValueExW(m_key, L"v", 0, REG_SZ, nullptr, 0), ERROR_SUCCESS);
}

TEST_F(RegistryTest, EnumeratesInOrderOfNamesByLiveIndex)
{
    for (const bool values : {false, true}) {
        const auto make = [&](const wchar_t* name) {
            return values ? set(m_key, name, REG_SZ, "x") : create(m_key, name);
        };
        const auto remove = [&](const wchar_t* name) {
            return values ? RegDeleteValueW(m_key, name) : RegDeleteKeyW(m_key, name);
        };
        for (const wchar_t* const name : {L"b", L"C1", L"_", L"a1", L"[", L"A", L"\x00E9", L"c", L"-"}) {
            ASSERT_EQ(make(name), ERROR_SUCCESS);
        }
        EXPECT_EQ(all(values, m_key), utf8(L"- [ _ A a1 b c C1 \x00E9"));
        EXPECT_EQ(at(values, m_key, 4), "a1");
        EXPECT_EQ(at(values, m_key, 2), "_");
        EXPECT_EQ(make(L"Aa"), ERROR_SUCCESS);
        EXPECT_EQ(at(values, m_key, 5), "Aa");
        EXPECT_EQ(remove(L"["), ERROR_SUCCESS);
        EXPECT_EQ(at(values, m_key, 5), "b");
        EXPECT_EQ(make(L"B"), ERROR_SUCCESS); // exists
        EXPECT_EQ(at(values, m_key, 6), "c");

        wchar_t name[10];
        const struct
        {
            DWORD index, room;
            LSTATUS status;
            DWORD length;
        } cases[] = {{4, 0, ERROR_MORE_DATA, 0},     {4, 2, ERROR_MORE_DATA, 2},
                     {4, 3, ERROR_SUCCESS, 2},       {9, 10, ERROR_NO_MORE_ITEMS, 10},
                     {9, 0, ERROR_NO_MORE_ITEMS, 0}, {0xFFFFFFFF, 10, ERROR_NO_MORE_ITEMS, 10}};
        for (const auto& each : cases) {
            DWORD length = each.room;
            name[0] = L'?';
            EXPECT_EQ(enumerate(values, m_key, each.index, name, &length), each.status) << each.index;
            EXPECT_EQ(length, each.length);
            EXPECT_EQ(name[0] == L'?', each.status != ERROR_SUCCESS);
        }
    }
}

TEST_F(RegistryTest, ReportsCountsMaximaAndClass)
{
    wchar_t keyClass[] = L"Class";
    Key classed;
    ASSERT_EQ(
        RegCreateKeyExW(m_key, L"sub", 0, keyClass, 0, KEY_ALL_ACCESS, nullptr, &classed.handle, nullptr),
        ERROR_SUCCESS);
    ASSERT_EQ(create(m_key, L"longer"), ERROR_SUCCESS);
    ASSERT_EQ(set(m_key, L"value", REG_BINARY, "seven b"), ERROR_SUCCESS);
    ASSERT_EQ(set(m_key, L"", REG_BINARY, "x"), ERROR_SUCCESS);
    const auto info = [](HKEY key) {
        DWORD keys = 77, keyName = 77, classes = 77, values = 77, valueName = 77, data = 77;
        const LSTATUS status = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, &keyName, &classes,
                                                &values, &valueName, &data, nullptr, nullptr);
        EXPECT_EQ(status, ERROR_SUCCESS);
        return std::vector<DWORD>{keys, keyName, classes, values, valueName, data};
    };
    EXPECT_EQ(info(m_key), (std::vector<DWORD>{2, 6, 5, 2, 5, 7}));
    RegDeleteKeyW(m_key, L"longer");
    RegDeleteValueW(m_key, L"value");
    EXPECT_EQ(info(m_key), (std::vector<DWORD>{1, 3, 5, 1, 0, 1}));
    EXPECT_EQ(info(classed), (std::vector<DWORD>(6, 0)));

    wchar_t text[10];
    for (const DWORD room : {0U, 1U, 5U, 6U}) {
        DWORD length = room;
        EXPECT_EQ(RegQueryInfoKeyW(classed, text, &length, nullptr, nullptr, nullptr, nullptr, nullptr,
                                   nullptr, nullptr, nullptr, nullptr),
                  room == 1 || room == 5 ? ERROR_INSUFFICIENT_BUFFER : ERROR_SUCCESS);
        EXPECT_EQ(length, 5U);
    }
    EXPECT_EQ(utf8(text), "Class");
}

TEST_F(RegistryTest, DeletesKeysUnderOpenHandles)
{
    Key top;
    Key inner;
    ASSERT_EQ(create(m_key, L"top", top), ERROR_SUCCESS);
    ASSERT_EQ(create(m_key, L"top\\inner", inner), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyW(m_key, L"top"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyW(top, L""), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyW(m_key, L"top\\none"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteTreeW(m_key, L"none"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteKeyW(inner, L""), ERROR_SUCCESS);
    ASSERT_EQ(create(top, L"inner"), ERROR_SUCCESS); // another key of that name

    expectFromAll(ERROR_KEY_DELETED, inner);
    ASSERT_EQ(set(top, L"v", REG_SZ, "x"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(top, nullptr), ERROR_SUCCESS); // what is in it only
    EXPECT_EQ(open(m_key, L"top\\inner"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(query(top, L"v"), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(create(top, L"a\\b\\c"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(m_key, L"top"), ERROR_SUCCESS);
    expectFromAll(ERROR_KEY_DELETED, top);
}

TEST_F(RegistryTest, FindsBadHandlesOut)
{
    Key closed;
    ASSERT_EQ(create(m_key, L"sub", closed), ERROR_SUCCESS);
    HKEY stale = closed.handle;
    closed.handle = nullptr;
    EXPECT_EQ(RegCloseKey(stale), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(stale), ERROR_INVALID_HANDLE);
    for (const HKEY bad : {HKEY{}, stale, reinterpret_cast<HKEY>(ULONG_PTR{0x7654321})}) {
        expectFromAll(ERROR_INVALID_HANDLE, bad);
    }
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        HKEY self = nullptr;
        EXPECT_EQ(RegOpenKeyExW(root, nullptr, 0, KEY_READ, &self), ERROR_SUCCESS);
        EXPECT_EQ(self, root);
        EXPECT_EQ(RegCloseKey(root), ERROR_SUCCESS);
        EXPECT_EQ(open(root, L"Software"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteKeyW(root, L""), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall"),
              ERROR_SUCCESS);
}

TEST_F(RegistryTest, ServesThreadsAtOnce)
{
    constexpr int rounds = 50;
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&, number] {
            const Wide own("thread" + std::to_string(number));
            for (int round = 0; round < rounds; ++round) {
                Key key;
                wchar_t name[20];
                DWORD length = 20;
                failures += create(m_key, own, key) != ERROR_SUCCESS;
                failures += set(key, L"v", REG_DWORD, "1234") != ERROR_SUCCESS;
                failures += query(key, L"v") != ERROR_SUCCESS;
                failures += enumerate(false, m_key, 0, name, &length) != ERROR_SUCCESS;
                failures += RegDeleteKeyW(m_key, own) != ERROR_SUCCESS;
                failures += query(key, L"v") != ERROR_KEY_DELETED;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(all(false, m_key), "");
}

} // namespace
