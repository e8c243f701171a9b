// The iterators over the sub-keys and the values of one key.
#include "platform/registry_key.h"
#include "platform/text.h"
#include "store/codec.h"
#include "store/key_path.h"

#include <RkUInfo.h>

#include <windows.h>

#include <algorithm>
#include <tuple>

namespace {

using Error = TarvoConfig::Error;
using uinfo::RegistryKey;

constexpr long unreachableNameLength = 8192; // reported for a name that no call returns

struct KeyInfo
{
    DWORD subKeys = 0;
    DWORD maxSubKeyLength = 0;
    DWORD maxClassLength = 0;
    DWORD values = 0;
    DWORD maxValueNameLength = 0;
    DWORD maxValueLength = 0;
};

bool queryInfo(const RegistryKey& key, KeyInfo& info)
{
    wchar_t keyClass[MAX_PATH];
    DWORD classLength = MAX_PATH;
    return RegQueryInfoKeyW(key.get(), keyClass, &classLength, nullptr, &info.subKeys, &info.maxSubKeyLength,
                            &info.maxClassLength, &info.values, &info.maxValueNameLength,
                            &info.maxValueLength, nullptr, nullptr) == ERROR_SUCCESS;
}

/// Opens the key that an iterator is to walk and sets its fields; those of a cleared one on failure. A key
/// that it held stays open.
template <typename Fields>
Error findWalk(const TarvoConfig& config, TarvoConfig::Path path, const wchar_t* item, Fields fields,
               DWORD KeyInfo::*count, DWORD KeyInfo::*longestName, DWORD KeyInfo::*longestOther)
{
    fields = std::tuple(nullptr, 0, 0, 0, 0);
    uinfo::KeyPath keyPath;
    if (!keyPath.assign(config, path, item)) {
        return TarvoConfig::eInvalidInput;
    }
    RegistryKey opened = RegistryKey::open(HKEY_CURRENT_USER, keyPath.text(), KEY_ALL_ACCESS);
    if (!opened) {
        return TarvoConfig::eNotFound;
    }
    KeyInfo info;
    if (!queryInfo(opened, info)) {
        return TarvoConfig::eRegistryError;
    }
    fields = std::tuple(opened.release(), 0, info.*count, info.*longestName, info.*longestOther);
    return TarvoConfig::eOk;
}

/// Hands the name of an entry to the caller, whose capacity length gives and receives the need.
template <typename Enumerate>
Error enumerateName(Enumerate enumerate, HKEY key, std::int32_t index, wchar_t* buffer, long& length)
{
    if (key == nullptr) {
        return TarvoConfig::eInvalidIterator;
    }
    wchar_t name[uinfo::pathCapacity];
    DWORD nameLength = uinfo::pathCapacity;
    const LSTATUS status =
        enumerate(key, static_cast<DWORD>(index), name, &nameLength, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_MORE_DATA) {
        length = unreachableNameLength;
        return TarvoConfig::eBufferTooSmall;
    }
    if (status != ERROR_SUCCESS) {
        return TarvoConfig::eInvalidIterator;
    }
    const long needed = static_cast<long>(nameLength) + 1;
    const bool fits = buffer != nullptr && length >= needed;
    if (fits) {
        std::copy_n(name, needed, buffer);
    }
    length = needed;
    return fits ? TarvoConfig::eOk : TarvoConfig::eBufferTooSmall;
}

/// An iterator's fields, in their order: one tuple of references is assigned to another.
template <typename Fields>
void closeWalk(Fields fields)
{
    const RegistryKey closed(std::get<0>(fields));
    fields = std::tuple(nullptr, -1, 0, 0, 0);
}

/// Opens the other iterator's key for this one too. One that has gone leaves this one without a key.
template <typename Fields, typename OtherFields>
void copyWalk(Fields fields, OtherFields others)
{
    const HKEY other = std::get<0>(others);
    RegistryKey again = other != nullptr ? RegistryKey::open(other, nullptr, KEY_ALL_ACCESS) : RegistryKey();
    closeWalk(fields);
    if (again) {
        fields = others;
        std::get<0>(fields) = again.release();
    }
}

Error stepIndex(std::int32_t& index, std::int32_t count)
{
    if (index < 0 || index >= count) {
        return TarvoConfig::eInvalidIterator;
    }
    ++index;
    return TarvoConfig::eOk;
}

/// Runs use(name) on the name of the value that an iterator stands on.
template <typename Use>
Error withCurrentName(const TarvoConfig::ValueIterator& it, Use use)
{
    wchar_t name[uinfo::pathCapacity];
    long nameLength = uinfo::pathCapacity;
    const Error error = it.key(name, nameLength);
    return error == TarvoConfig::eOk ? use(name) : error;
}

} // namespace

TarvoConfig::Error TarvoConfig::findItem(Path path, const wchar_t* item, ItemIterator& it)
{
    return findWalk(
        *this, path, item,
        std::tie(it.m_key, it.m_index, it.m_subKeyCount, it.m_maxSubKeyNameLength, it.m_maxClassLength),
        &KeyInfo::subKeys, &KeyInfo::maxSubKeyLength, &KeyInfo::maxClassLength);
}

TarvoConfig::Error TarvoConfig::findItem(Path path, const wchar_t* item, ValueIterator& it)
{
    return findWalk(
        *this, path, item,
        std::tie(it.m_key, it.m_index, it.m_valueCount, it.m_maxValueNameLength, it.m_maxValueDataLength),
        &KeyInfo::values, &KeyInfo::maxValueNameLength, &KeyInfo::maxValueLength);
}

TarvoConfig::ItemIterator::ItemIterator()
    : m_key(nullptr), m_index(-1), m_subKeyCount(0), m_maxSubKeyNameLength(0), m_maxClassLength(0)
{
}

TarvoConfig::ItemIterator::~ItemIterator()
{
    closeWalk(std::tie(m_key, m_index, m_subKeyCount, m_maxSubKeyNameLength, m_maxClassLength));
}

TarvoConfig::ItemIterator& TarvoConfig::ItemIterator::operator=(const ItemIterator& other)
{
    if (this != &other) {
        copyWalk(std::tie(m_key, m_index, m_subKeyCount, m_maxSubKeyNameLength, m_maxClassLength),
                 std::tie(other.m_key, other.m_index, other.m_subKeyCount, other.m_maxSubKeyNameLength,
                          other.m_maxClassLength));
    }
    return *this;
}

TarvoConfig::Error TarvoConfig::ItemIterator::name(wchar_t* buffer, long& length) const
{
    return enumerateName(RegEnumKeyExW, m_key, m_index, buffer, length);
}

TarvoConfig::Error TarvoConfig::ItemIterator::step() const
{
    return stepIndex(m_index, m_subKeyCount);
}

long TarvoConfig::ItemIterator::getSubKeyCount() const
{
    return m_subKeyCount;
}

TarvoConfig::ValueIterator::ValueIterator()
    : m_key(nullptr), m_index(-1), m_valueCount(0), m_maxValueNameLength(0), m_maxValueDataLength(0)
{
}

TarvoConfig::ValueIterator::~ValueIterator()
{
    closeWalk(std::tie(m_key, m_index, m_valueCount, m_maxValueNameLength, m_maxValueDataLength));
}

TarvoConfig::ValueIterator& TarvoConfig::ValueIterator::operator=(const ValueIterator& other)
{
    if (this != &other) {
        copyWalk(std::tie(m_key, m_index, m_valueCount, m_maxValueNameLength, m_maxValueDataLength),
                 std::tie(other.m_key, other.m_index, other.m_valueCount, other.m_maxValueNameLength,
                          other.m_maxValueDataLength));
    }
    return *this;
}

TarvoConfig::Error TarvoConfig::ValueIterator::key(wchar_t* buffer, long& length) const
{
    return enumerateName(RegEnumValueW, m_key, m_index, buffer, length);
}

TarvoConfig::Error TarvoConfig::ValueIterator::value(VelaVariant& out) const
{
    return withCurrentName(*this,
                           [&](const wchar_t* name) { return uinfo::readValueFromKey(m_key, name, out); });
}

TarvoConfig::Error TarvoConfig::ValueIterator::setValue(const VelaVariant& v)
{
    return withCurrentName(*this,
                           [&](const wchar_t* name) { return uinfo::writeValueToKey(m_key, name, v); });
}

TarvoConfig::Error TarvoConfig::ValueIterator::step() const
{
    return stepIndex(m_index, m_valueCount);
}
