// What reading and writing the tree share.
#pragma once

#include "registry/tree.h"

#include <memory>

namespace winhost::registry {

struct CloseCursor
{
    void operator()(MDB_cursor* cursor) const { mdb_cursor_close(cursor); }
};
using Cursor = std::unique_ptr<MDB_cursor, CloseCursor>;

LSTATUS openCursor(const Transaction& in, Cursor& cursor);

/// Takes the next component off a path. False at its end.
bool takeComponent(TextView& path, TextView& component);
bool isRefused(TextView path);

/// A node with the part of its link's key that follows the parent's id.
struct StoredNode
{
    Node node;
    std::size_t suffixSize = 0;
    unsigned char suffix[EntryKey::capacity];

    EntryKey linkKey() const { return EntryKey(List::eSubKeys, node.parent, suffix, suffixSize); }
};

LSTATUS readNode(const Transaction& in, NodeId id, StoredNode& stored);
LSTATUS readHeader(const Transaction& in, StoreHeader& header);

/// Finds an entry, and completes the key of one whose name is cut in it.
LSTATUS findEntry(const Transaction& in, EntryKey& key, TextView name, Entry& entry);
/// The link that a node's record names.
LSTATUS readLink(const Transaction& in, const EntryKey& key, Entry& link);
LSTATUS findSubKey(const Transaction& in, NodeId parent, TextView name, NodeId& found);

} // namespace winhost::registry
