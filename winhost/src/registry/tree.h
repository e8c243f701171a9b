// The registry's keys and values, in a transaction. Every function answers with a Win32 error.
#pragma once

#include "registry/environment.h"
#include "registry/records.h"

namespace winhost::registry {

/// Where an enumeration stands, so that the next step need not count from the start.
struct Position
{
    NodeId node = 0; // 0: nowhere
    std::uint64_t changes = 0;
    DWORD index = 0;
    std::size_t keySize = 0;
    unsigned char key[EntryKey::capacity];
};

// ---- Reading ---------------------------------------------------------------------------------

LSTATUS checkHeader(const Transaction& in);

/// ERROR_KEY_DELETED when it is no more.
LSTATUS readNode(const Transaction& in, NodeId id, Node& node);
/// The class that a key was given; empty for a root.
LSTATUS readClass(const Transaction& in, NodeId id, TextView& keyClass);

/// A path's components are separated by backslashes; empty ones count only in front, where they are refused.
LSTATUS findPath(const Transaction& in, NodeId start, TextView path, NodeId& found);

LSTATUS findValue(const Transaction& in, NodeId node, TextView name, Entry& value);
/// Gives the entry at an index, and those behind it as far as there is room for them, to one who enumerates
/// in order. ERROR_NO_MORE_ITEMS past the end.
LSTATUS entriesAt(const Transaction& in, List list, NodeId id, DWORD index, Position& position,
                  Entry* entries, DWORD room, DWORD& count);

struct Longest
{
    std::size_t subKeyName = 0; // units
    std::size_t keyClass = 0;
    std::size_t valueName = 0;
    std::size_t valueData = 0; // bytes
};
LSTATUS measureSubKeys(const Transaction& in, NodeId id, Longest& longest);
LSTATUS measureValues(const Transaction& in, NodeId id, Longest& longest);

// ---- Writing ---------------------------------------------------------------------------------

LSTATUS createRoots(const Transaction& in);
/// Creates what is missing of the path, each new key with the class; a last key that exists takes the class
/// over unless it is empty.
LSTATUS createPath(const Transaction& in, NodeId start, TextView path, TextView keyClass, NodeId& found,
                   bool& created);
LSTATUS setValue(const Transaction& in, NodeId node, TextView name, DWORD type, const BYTE* data, DWORD size);
LSTATUS deleteValue(const Transaction& in, NodeId node, TextView name);
/// ERROR_ACCESS_DENIED for a root and for a key that has sub-keys.
LSTATUS deleteKey(const Transaction& in, NodeId id);
/// Deletes all sub-keys and values.
LSTATUS deleteContent(const Transaction& in, NodeId id);

} // namespace winhost::registry
