#include "registry/records.h"

#include <algorithm>
#include <cstring>

namespace winhost::registry {

namespace {

constexpr std::size_t longestWholeName = (EntryKey::capacity - 2 * EntryKey::idSize) / sizeof(wchar_t);

/// Equal for units that differ in case only. Letters sort as lower case ones, that is behind '_'.
wchar_t fold(wchar_t unit)
{
    const wchar_t upper = unit < 0x80 ? unit : upcase(unit);
    return upper >= L'A' && upper <= L'Z' ? static_cast<wchar_t>(upper + (L'a' - L'A')) : upper;
}

void storeBigEndian(unsigned char* out, std::uint64_t number)
{
    number = __builtin_bswap64(number);
    std::memcpy(out, &number, sizeof number);
}

void storeId(unsigned char* out, List list, NodeId id)
{
    constexpr unsigned listBits = 8;
    storeBigEndian(out, id << listBits | static_cast<std::uint64_t>(list));
}

} // namespace

EntryKey::EntryKey(List list, NodeId owner, TextView name)
    : m_size(idSize), m_isCut(name.size() > longestWholeName)
{
    storeId(m_bytes, list, owner);
    for (const wchar_t each : name.substr(0, longestWholeName)) {
        const unsigned unit = fold(each);
        m_bytes[m_size++] = static_cast<unsigned char>(unit >> 8);
        m_bytes[m_size++] = static_cast<unsigned char>(unit & 0xFF);
    }
}

EntryKey::EntryKey(List list, NodeId owner, const void* suffix, std::size_t size) : m_size(idSize)
{
    storeId(m_bytes, list, owner);
    size = std::min(size, capacity - m_size);
    std::memcpy(m_bytes + m_size, suffix, size);
    m_size += size;
}

void EntryKey::appendNumber(std::uint64_t number)
{
    storeBigEndian(m_bytes + m_size, number);
    m_size += sizeof number;
    m_isCut = false;
}

void EntryKey::complete(const MDB_val& stored)
{
    m_size = std::min(stored.mv_size, capacity);
    std::memcpy(m_bytes, stored.mv_data, m_size);
    m_isCut = false;
}

IdKey::IdKey(List list, NodeId id)
{
    storeId(m_bytes, list, id);
}

bool startsWith(const MDB_val& key, const MDB_val& prefix)
{
    return key.mv_size >= prefix.mv_size && std::memcmp(key.mv_data, prefix.mv_data, prefix.mv_size) == 0;
}

NodeId Entry::child() const
{
    NodeId id = 0;
    if (size >= sizeof id) {
        std::memcpy(&id, data, sizeof id);
    }
    return id;
}

TextView Entry::keyClass() const
{
    if (size < sizeof(NodeId)) {
        return {};
    }
    return TextView(reinterpret_cast<const wchar_t*>(data + sizeof(NodeId)),
                    (size - sizeof(NodeId)) / sizeof(wchar_t));
}

BYTE* encodeEntry(void* record, TextView name, DWORD type)
{
    const std::uint32_t head[] = {static_cast<std::uint32_t>(name.size()), type};
    auto* const bytes = static_cast<BYTE*>(record);
    std::memcpy(bytes, head, sizeof head);
    std::copy_n(name.data(), name.size(), reinterpret_cast<wchar_t*>(bytes + sizeof head));
    return bytes + recordSize(name, 0);
}

void encodeLinkData(BYTE* data, NodeId child, TextView keyClass)
{
    std::memcpy(data, &child, sizeof child);
    std::copy_n(keyClass.data(), keyClass.size(), reinterpret_cast<wchar_t*>(data + sizeof child));
}

bool decodeEntry(const MDB_val& record, Entry& entry)
{
    std::uint32_t head[2];
    if (record.mv_size < sizeof head) {
        return false;
    }
    auto* const bytes = static_cast<const BYTE*>(record.mv_data);
    std::memcpy(head, bytes, sizeof head);
    entry.name = TextView(reinterpret_cast<const wchar_t*>(bytes + sizeof head), head[0]);
    entry.type = head[1];
    const std::size_t before = recordSize(entry.name, 0);
    if (record.mv_size < before) {
        return false;
    }
    entry.data = bytes + before;
    entry.size = record.mv_size - before;
    return true;
}

bool decodeNode(const MDB_val& record, Node& node)
{
    if (record.mv_size < sizeof node) {
        return false;
    }
    std::memcpy(&node, record.mv_data, sizeof node);
    return true;
}

} // namespace winhost::registry
