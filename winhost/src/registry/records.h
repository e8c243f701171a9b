// What the registry's database holds: the keys that order names, and the records behind them.
//
//   nodes     node id                  -> Node, then the part of its link's key that follows the parent's id
//   sub-keys  parent id, folded name   -> Entry: the name as created, the child's id, its class (a link)
//   values    node id, folded name     -> Entry: the name as created, the type, the bytes
//
// The three share one database: a transaction that comes to a second one first has to look it up. An id has
// 56 bits, big-endian, and the list in the byte behind them, so that a node and its values are neighbours; a
// folded name is UTF-16 and big-endian, so that byte order is name order. Ids are never used twice. Node 0 is
// the StoreHeader. A database key ends at 511 bytes: a name that is too long for it is there with its first
// 247 units and a unique number, and is compared in full from its record. Such names enumerate in order of
// creation among those that share the 247 units.
#pragma once

#include "text.h"

#include <lmdb.h>

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace winhost::registry {

using NodeId = std::uint64_t;

enum class List : std::uint64_t
{
    eNodes,
    eSubKeys,
    eValues,
};

constexpr NodeId headerId = 0;
constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;
constexpr NodeId firstFreeId = 3;

constexpr std::size_t longestKeyName = 256;
constexpr std::size_t longestValueName = 16383;
constexpr std::size_t longestClass = 32766;

/// A terminated text as a name; a null one is empty.
inline TextView nameOf(const wchar_t* text)
{
    return text != nullptr ? TextView(text) : TextView();
}

struct StoreHeader
{
    std::uint64_t format;
    NodeId nextId;
};

constexpr std::uint64_t storeFormat = 3;

struct Node
{
    NodeId parent = 0; // 0: a root
    std::uint64_t changes =
        0; // of the lists of sub-keys and values: tells whether a position in them still holds
    std::uint64_t lastWrite = 0; // as in a FILETIME
    std::uint32_t subKeys = 0;
    std::uint32_t values = 0;
};

/// The key of a link or a value.
class EntryKey
{
public:
    static constexpr std::size_t capacity = 510;

    EntryKey(List list, NodeId owner, TextView name);
    /// From the stored part behind the owner's id.
    EntryKey(List list, NodeId owner, const void* suffix, std::size_t size);

    /// Whether the name is longer than the key can hold, and the key therefore needs a number.
    bool isCut() const { return m_isCut; }
    void appendNumber(std::uint64_t number);
    /// Takes over the stored key of the entry that was meant.
    void complete(const MDB_val& stored);

    MDB_val value() const { return {m_size, const_cast<unsigned char*>(m_bytes)}; }
    MDB_val suffix() const { return {m_size - idSize, const_cast<unsigned char*>(m_bytes) + idSize}; }

    static constexpr std::size_t idSize = sizeof(NodeId);

private:
    unsigned char m_bytes[capacity];
    std::size_t m_size = 0;
    bool m_isCut = false;
};

/// The key of a node, and what all keys of its links or values begin with.
class IdKey
{
public:
    IdKey(List list, NodeId id);
    MDB_val value() const { return {sizeof m_bytes, const_cast<unsigned char*>(m_bytes)}; }

private:
    unsigned char m_bytes[sizeof(NodeId)];
};

bool startsWith(const MDB_val& key, const MDB_val& prefix);

/// A link or a value, pointing into the database.
struct Entry
{
    TextView name;
    DWORD type = 0; // of a value
    const BYTE* data = nullptr;
    std::size_t size = 0;

    // Of a link:
    NodeId child() const;
    TextView keyClass() const;
};

constexpr std::size_t linkDataSize(TextView keyClass)
{
    return sizeof(NodeId) + keyClass.size() * sizeof(wchar_t);
}

constexpr std::size_t recordSize(TextView name, std::size_t dataSize)
{
    return 2 * sizeof(std::uint32_t) + name.size() * sizeof(wchar_t) + dataSize;
}

/// Writes all but the data, and returns where that goes.
BYTE* encodeEntry(void* record, TextView name, DWORD type);
void encodeLinkData(BYTE* data, NodeId child, TextView keyClass);
/// False for a record that is not whole.
bool decodeEntry(const MDB_val& record, Entry& entry);
bool decodeNode(const MDB_val& record, Node& node);

} // namespace winhost::registry
