// Runs random store operations, and repeats each one with registry calls on a second tree, the twin. After
// each operation, the results, variants, iterators and numbers of open keys must agree. At the end, both
// trees must be equal. Arguments: the number of operations, the seed.
#include "support/open_keys.h"
#include "support/registry.h"

#include <RkUInfo.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>

using namespace testing_support;
using Items = TarvoConfig::ItemIterator;
using Values = TarvoConfig::ValueIterator;
using Codes = std::pair<long, long>; // the results of the library and of the registry calls

constexpr long ok = 0, missing = 1, over = 4, failed = 5, tooSmall = 6; // values of TarvoConfig::Error
constexpr TarvoConfig::Path root = TarvoConfig::eSettings;
const std::string realRoot = "Software\\Oracle\\Thing\\2018\\en-US\\Settings";
const std::string twinRoot = "Software\\Mirror\\Thing\\2018\\en-US\\Settings";
const HKEY user = HKEY_CURRENT_USER;
TarvoConfig& config = *velaConfig();
VelaVariant value; // the variant that all operations read and write
std::optional<RawValue> twinValue;
std::string path;      // the argument of an operation
std::string whole;     // the key in the twin tree, if `path` is the path of a key
std::string key, name; // the key in the twin tree and the value name, if `path` is the path of a value

/// Returns the registry value that stores a variant, or nothing if the variant has no block or its block
/// records a size of 0.
std::optional<RawValue> rawOf(const VelaVariant& variant)
{
    static constexpr DWORD types[] = {REG_NONE, REG_DWORD, REG_QWORD, REG_BINARY, REG_BINARY, REG_SZ};
    const char* block = nullptr;
    std::memcpy(&block, reinterpret_cast<const char*>(&variant) + 4, sizeof block);
    std::int32_t size = 0;
    std::memcpy(&size, block != nullptr ? block : "\0\0\0", sizeof size);
    return size < 4 ? std::nullopt
                    : std::optional(RawValue{types[variant.type()], std::string(block + 4, block + size)});
}

long read(HKEY parent, const std::string& subKey, const std::string& valueName)
{
    const std::optional<RawValue> stored = getRaw(parent, subKey, valueName);
    twinValue = stored ? stored : twinValue;
    return stored ? ok : missing;
}

long remove(const std::string& from, const std::string& what, LSTATUS (*call)(HKEY, LPCWSTR))
{
    const OwnedKey parent = openKey(user, from, KEY_ALL_ACCESS);
    return !parent ? missing : call(parent.get(), Wide(what)) == ERROR_SUCCESS ? ok : failed;
}

/// Stores a registry value in both trees without using the library. Then sets `value` to a variant that
/// cannot be stored, because its block records a size of 0, and clears `twinValue`.
void interfere(const RawValue& raw)
{
    setRaw(user, realRoot + key.substr(twinRoot.size()), name, raw);
    setRaw(user, key, name, raw);
    value.setBinary("#", 1);
    std::memset(static_cast<char*>(const_cast<void*>(value.getBinary())) - 4, 0, 4);
    value = VelaVariant(value);
    twinValue.reset();
}

Codes operate(unsigned long kind)
{
    std::string spelled = path;
    std::ranges::replace(spelled, '\\', '/');
    const Wide argument(kind == 0 || path.empty() ? path
                                                  : "\\/" + spelled + "//"); // isItemExist trims nothing
    const std::size_t end = whole.rfind('\\');
    // clang-format off
    switch (kind) {
    case 0: return {config.isItemExist(root, argument), openKey(user, whole) != nullptr};
    case 1: return {config.getValue(root, argument, value), read(user, key, name)};
    case 2: return {config.setValue(root, argument, value), setRaw(user, key, name, twinValue)};
    case 3: return {config.addItem(root, argument), setRaw(user, whole, "", std::nullopt)};
    case 4: return {config.addValue(root, argument, L"n", value), setRaw(user, whole, "n", twinValue)};
    case 5: return {config.removeValue(root, argument, L"n"), remove(whole, "n", RegDeleteValueW)};
    default: return {config.removeItem(root, argument), remove(whole.substr(0, end), whole.substr(end + 1), RegDeleteTreeW)};
    }
    // clang-format on
}

/// Wraps the calls whose names differ between the two kinds of iterator.
struct Call
{
    static long name(const Items& it, wchar_t* out, long& size) { return it.name(out, size); }
    static long name(const Values& it, wchar_t* out, long& size) { return it.key(out, size); }
    static long read(const Items& it) { return config.getValue(it, L"n", value); }
    static long read(const Values& it) { return it.value(value); }
    static long write(Items& it) { return config.setValue(it, L"n", value); }
    static long write(Values& it) { return it.setValue(value); }
};

/// The fields of an iterator, in memory order.
struct Fields
{
    HKEY key;
    std::int32_t index;
    DWORD count, longestName, longestOther;

    bool operator==(const Fields&) const = default;
};

template <typename Iterator>
struct Walk
{
    Iterator real;
    Fields twin = {nullptr, -1, 0, 0, 0}; // `twinKey` replaces the field `key`
    OwnedKey twinKey;

    Codes operate(unsigned long kind, const Walk& other)
    {
        constexpr bool isItem = std::is_same_v<Iterator, Items>;
        const auto index = static_cast<DWORD>(twin.index);
        wchar_t current[9] = L"", given[9] = L"";
        DWORD size = 9, of[6] = {};
        const bool isThere =
            twinKey && enumerate(!isItem, twinKey.get(), index, current, &size) == ERROR_SUCCESS;
        const std::string subKey = isItem ? utf8(current) : "", valueName = isItem ? "n" : utf8(current);
        // clang-format off
        switch (kind) {
        case 0:
            real = Iterator();
            twinKey = openKey(user, whole, KEY_ALL_ACCESS);
            RegQueryInfoKeyW(twinKey.get(), nullptr, nullptr, nullptr, of, of + 1, of + 2, of + 3, of + 4, of + 5, nullptr, nullptr);
            twin = isItem ? Fields{nullptr, 0, of[0], of[1], of[2]} : Fields{nullptr, 0, of[3], of[4], of[5]};
            return {config.findItem(root, Wide(path), real), twinKey ? ok : missing};
        case 1:
            real = other.real;
            twinKey = other.twinKey ? openKey(other.twinKey.get(), "", KEY_ALL_ACCESS) : nullptr;
            twin = other.twin;
            return {};
        case 2:
            twin.index += index < twin.count ? 1 : 0; // converted to unsigned, -1 exceeds every count
            return {real.step(), index < twin.count ? ok : over};
        case 3: return {Call::read(real), isThere ? ::read(twinKey.get(), subKey, valueName) : over};
        case 4: return {Call::write(real), isThere ? setRaw(twinKey.get(), subKey, valueName, twinValue) : isItem && !twinKey ? missing : over};
        default:
            long length = static_cast<long>(kind) - 4; // the buffer's size, including the terminator: 1 or 2
            const long named = static_cast<long>(size) < length ? ok : tooSmall;
            const long code = Call::name(real, given, length);
            return {given[0] == (code == ok ? current[0] : 0) ? code : -1, isThere ? named : over};
        }
        // clang-format on
    }

    /// Returns the number of keys that the iterator has open. If it differs from its twin, returns -9.
    int keys() const
    {
        Fields fields;
        std::memcpy(&fields, static_cast<const void*>(&real), sizeof fields);
        const int count = std::exchange(fields.key, nullptr) != nullptr ? 1 : 0;
        return fields == twin && count == (twinKey ? 1 : 0) ? count : -9;
    }
};

// NOLINTNEXTLINE(bugprone-exception-escape): an exception fails the test
int main(int, char** arguments)
{
    removeKey(user, "Software\\Oracle");
    removeKey(user, "Software\\Mirror");
    bool agrees = InitVelaConfig(L"Oracle", L"Thing", L"en-US", nullptr) == ok;
    const OpenKeys counter;
    Walk<Items> items[2];
    Walk<Values> values[2];
    const RawValue others[] = {text("abc"), dword(7), {REG_QWORD, "12345678"}, {REG_BINARY, "x"}};
    const char* const paths[][3] = {{"", "", ""},         {"a", "", "a"},       {"n", "", "n"},
                                    {"a\\n", "\\a", "n"}, {"a\\b", "\\a", "b"}, {"b\\a\\n", "\\b\\a", "n"}};
    std::mt19937 numbers(static_cast<unsigned>(std::atoi(arguments[2])));
    int left = std::atoi(arguments[1]);
    for (; agrees && left > 0; --left) {
        const auto& [argument, keyPart, last] = paths[numbers() % 6];
        path = argument;
        name = last;
        key = twinRoot + keyPart;
        whole = path.empty() ? twinRoot : twinRoot + '\\' + path;
        const auto kind = numbers() % 21, which = numbers() % 2;
        const Codes codes = kind < 7    ? operate(kind)
                            : kind < 14 ? items[which].operate(kind - 7, items[1 - which])
                                        : values[which].operate(kind - 14, values[1 - which]);
        if (numbers() % 8 == 0) {
            interfere(others[numbers() % 4]);
        }
        const int keys = items[0].keys() + items[1].keys() + values[0].keys() + values[1].keys();
        agrees = codes.first == codes.second && rawOf(value) == twinValue && counter.stillOpen() == keys;
    }
    agrees = agrees && tree(openKey(user, "Software\\Oracle").get(), "Thing") ==
                           tree(openKey(user, "Software\\Mirror").get(), "Thing");
    std::printf(agrees ? "all operations agree\n" : "operation %d from the end does not agree\n", left);
    return agrees ? 0 : 1;
}
