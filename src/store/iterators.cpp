// The iterators over the sub-keys and the values of one key.
#include "platform/registry_key.h"
#include "platform/text.h"
#include "store/codec.h"
#include "store/key_path.h"

#include <RkUInfo.h>

#include <windows.h>

#include <algorithm>
#include <utility>

namespace {

using Error = TarvoConfig::Error;
using uinfo::RegistryKey;

constexpr long unreachableNameLength = 8192; // reported for a name that is too long to be returned

struct KeyInfo
{
    DWORD subKeys = 0;
    DWORD maxSubKeyLength = 0;
    DWORD maxClassLength = 0;
    DWORD values = 0;
    DWORD maxValueNameLength = 0;
    DWORD maxValueLength = 0;
};

/// Opens the key that an iterator will walk and queries its counts and lengths. On failure, key and info stay
/// empty.
Error openWalk(const TarvoConfig& config, TarvoConfig::Path path, const wchar_t* item, RegistryKey& key,
               KeyInfo& info)
{
    uinfo::KeyPath keyPath;
    if (!keyPath.assign(config, path, item)) {
        return TarvoConfig::eInvalidInput;
    }
    RegistryKey opened = RegistryKey::open(HKEY_CURRENT_USER, keyPath.text(), KEY_ALL_ACCESS);
    if (!opened) {
        return TarvoConfig::eNotFound;
    }
    KeyInfo found;
    wchar_t keyClass[MAX_PATH];
    DWORD classLength = MAX_PATH;
    if (RegQueryInfoKeyW(opened.get(), keyClass, &classLength, nullptr, &found.subKeys,
                         &found.maxSubKeyLength, &found.maxClassLength, &found.values,
                         &found.maxValueNameLength, &found.maxValueLength, nullptr,
                         nullptr) != ERROR_SUCCESS) {
        return TarvoConfig::eRegistryError;
    }
    key = std::move(opened);
    info = found;
    return TarvoConfig::eOk;
}

/// Opens a second handle to a key. The result is empty if the key is null or has been deleted.
RegistryKey openAgain(HKEY key)
{
    return key != nullptr ? RegistryKey::open(key, nullptr, KEY_ALL_ACCESS) : RegistryKey();
}

/// Copies the name of an entry. On entry, length is the capacity of buffer. Sets length to the capacity
/// needed.
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

Error stepIndex(std::int32_t& index, std::int32_t count)
{
    if (index < 0 || index >= count) {
        return TarvoConfig::eInvalidIterator;
    }
    ++index;
    return TarvoConfig::eOk;
}

/// Calls use() with the name of the iterator's current value.
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
    RegistryKey key;
    KeyInfo info;
    const Error error = openWalk(*this, path, item, key, info);
    it.m_key = key.release();
    it.m_index = 0;
    it.m_subKeyCount = static_cast<std::int32_t>(info.subKeys);
    it.m_maxSubKeyNameLength = info.maxSubKeyLength;
    it.m_maxClassLength = info.maxClassLength;
    return error;
}

TarvoConfig::Error TarvoConfig::findItem(Path path, const wchar_t* item, ValueIterator& it)
{
    RegistryKey key;
    KeyInfo info;
    const Error error = openWalk(*this, path, item, key, info);
    it.m_key = key.release();
    it.m_index = 0;
    it.m_valueCount = static_cast<std::int32_t>(info.values);
    it.m_maxValueNameLength = info.maxValueNameLength;
    it.m_maxValueDataLength = info.maxValueLength;
    return error;
}

TarvoConfig::ItemIterator::ItemIterator()
    : m_key(nullptr), m_index(-1), m_subKeyCount(0), m_maxSubKeyNameLength(0), m_maxClassLength(0)
{
}

TarvoConfig::ItemIterator::~ItemIterator()
{
    const RegistryKey closed(std::exchange(m_key, nullptr));
}

TarvoConfig::ItemIterator& TarvoConfig::ItemIterator::operator=(const ItemIterator& other)
{
    if (this != &other) {
        RegistryKey again = openAgain(other.m_key);
        const RegistryKey closed(std::exchange(m_key, again.release()));
        m_index = other.m_index;
        m_subKeyCount = other.m_subKeyCount;
        m_maxSubKeyNameLength = other.m_maxSubKeyNameLength;
        m_maxClassLength = other.m_maxClassLength;
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
    const RegistryKey closed(std::exchange(m_key, nullptr));
}

TarvoConfig::ValueIterator& TarvoConfig::ValueIterator::operator=(const ValueIterator& other)
{
    if (this != &other) {
        RegistryKey again = openAgain(other.m_key);
        const RegistryKey closed(std::exchange(m_key, again.release()));
        m_index = other.m_index;
        m_valueCount = other.m_valueCount;
        m_maxValueNameLength = other.m_maxValueNameLength;
        m_maxValueDataLength = other.m_maxValueDataLength;
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
