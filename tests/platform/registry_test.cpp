// The registry calls, as the system and winhost both answer them: what the random calls of tests/reliability,
// by which the two are compared, do not reach.
#include "support/test.h"

namespace {

using namespace testing_support;

LSTATUS open(HKEY parent, LPCWSTR path)
{
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(parent, path, 0, KEY_READ, &opened);
    const OwnedKey owned(opened);
    return status;
}

LSTATUS create(HKEY parent, LPCWSTR path)
{
    HKEY made = nullptr;
    const LSTATUS status = RegCreateKeyExW(parent, path, 0, nullptr, 0, KEY_READ, nullptr, &made, nullptr);
    const OwnedKey owned(made);
    return status;
}

LSTATUS set(HKEY key, LPCWSTR name, DWORD type, const std::string& bytes)
{
    return RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                          static_cast<DWORD>(bytes.size()));
}

LSTATUS query(HKEY key, LPCWSTR name)
{
    return RegQueryValueExW(key, name, nullptr, nullptr, nullptr, nullptr);
}

class RegistryTest : public testing::Test
{
protected:
    const OwnedKey m_owned = makeKey(HKEY_CURRENT_USER, "Software\\Acme");
    const HKEY m_key = m_owned.get();
};

TEST_F(RegistryTest, LimitsNamesNotDepthOrSize)
{
    const Wide longest(std::string(16383, 'n'));
    const Wide tooLong(std::string(16384, 'n'));
    EXPECT_EQ(set(m_key, longest, REG_SZ, ""), ERROR_SUCCESS);
    EXPECT_EQ(query(m_key, longest), ERROR_SUCCESS);
    EXPECT_EQ(set(m_key, tooLong, REG_SZ, ""), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(query(m_key, tooLong), ERROR_FILE_NOT_FOUND);
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

TEST_F(RegistryTest, TellsLongNamesApart)
{
    const std::string common(252, 'p'); // more than what an index may hold of a name
    const auto find = [this](const std::string& name) {
        const LSTATUS status = query(m_key, Wide(name));
        EXPECT_EQ(open(m_key, Wide(name)), status) << name;
        return status;
    };
    for (const std::string& name : {common + "a", common + "b"}) {
        EXPECT_EQ(set(m_key, Wide(name), REG_SZ, ""), ERROR_SUCCESS);
        EXPECT_EQ(create(m_key, Wide(name)), ERROR_SUCCESS);
    }
    EXPECT_EQ(find(common + "c"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(find(common), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteValueW(m_key, Wide(common + "A")), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyW(m_key, Wide(common + "A")), ERROR_SUCCESS);
    EXPECT_EQ(find(common + "a"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(find(common + "B"), ERROR_SUCCESS);
}

TEST_F(RegistryTest, RefusesMissingArgumentsAndRoom)
{
    wchar_t name[4];
    BYTE data[4];
    DWORD length = 4;
    DWORD size = 1;
    constexpr LSTATUS noAccess = 998;
    EXPECT_EQ(RegSetValueExW(m_key, L"v", 0, REG_SZ, nullptr, 4), noAccess);
    EXPECT_EQ(RegSetValueExW(m_key, L"v", 0, REG_SZ, nullptr, 0), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(m_key, L"v", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(set(m_key, L"v", REG_BINARY, "ab"), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(m_key, L"v", nullptr, nullptr, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 2U);
    EXPECT_EQ(enumerate(true, m_key, 0, nullptr, &length), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(enumerate(true, m_key, 0xFFFFFFFF, name, &length), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(enumerate(false, m_key, 0xFFFFFFFF, name, &length), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(RegDeleteKeyW(m_key, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryTest, FindsBadHandlesOut)
{
    const HKEY stale = makeKey(m_key, "sub").release();
    EXPECT_EQ(RegCloseKey(stale), ERROR_SUCCESS);
    for (const HKEY bad : {HKEY{}, stale, reinterpret_cast<HKEY>(ULONG_PTR{0x7654321})}) {
        EXPECT_EQ(RegCloseKey(bad), ERROR_INVALID_HANDLE);
        for (const LPCWSTR path : {L"", L"sub"}) {
            EXPECT_EQ(open(bad, path), ERROR_INVALID_HANDLE);
            EXPECT_EQ(create(bad, path), ERROR_INVALID_HANDLE);
            EXPECT_EQ(RegDeleteKeyW(bad, path), ERROR_INVALID_HANDLE);
            EXPECT_EQ(RegDeleteTreeW(bad, path), ERROR_INVALID_HANDLE);
            EXPECT_EQ(query(bad, path), ERROR_INVALID_HANDLE);
            EXPECT_EQ(set(bad, path, REG_SZ, ""), ERROR_INVALID_HANDLE);
            EXPECT_EQ(RegDeleteValueW(bad, path), ERROR_INVALID_HANDLE);
        }
    }
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        EXPECT_EQ(RegCloseKey(root), ERROR_SUCCESS);
        EXPECT_EQ(open(root, L"Software"), ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteKeyW(root, L""), ERROR_ACCESS_DENIED);
    }
}

} // namespace
