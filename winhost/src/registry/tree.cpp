// Reading the tree.
#include "registry/tree_detail.h"

#include <algorithm>
#include <cstring>

namespace winhost::registry {

namespace {

LSTATUS readRecord(const Transaction& in, NodeId id, MDB_val& record)
{
    const IdKey key(List::eNodes, id);
    MDB_val at = key.value();
    const int failed = mdb_get(in.txn, in.database, &at, &record);
    return failed == MDB_NOTFOUND ? ERROR_KEY_DELETED : statusOf(failed);
}

/// Runs use(entry) on all entries of a list.
template <typename Use>
LSTATUS forEach(const Transaction& in, List list, NodeId id, Use use)
{
    Cursor cursor;
    if (const LSTATUS status = openCursor(in, cursor)) {
        return status;
    }
    const IdKey prefix(list, id);
    MDB_val at = prefix.value();
    MDB_val record;
    int failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_SET_RANGE);
    while (failed == 0 && startsWith(at, prefix.value())) {
        Entry entry;
        if (!decodeEntry(record, entry)) {
            return ERROR_REGISTRY_CORRUPT;
        }
        use(entry);
        failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_NEXT);
    }
    return failed == MDB_NOTFOUND ? ERROR_SUCCESS : statusOf(failed);
}

} // namespace

LSTATUS openCursor(const Transaction& in, Cursor& cursor)
{
    MDB_cursor* opened = nullptr;
    const LSTATUS status = statusOf(mdb_cursor_open(in.txn, in.database, &opened));
    cursor.reset(opened);
    return status;
}

bool takeComponent(TextView& path, TextView& component)
{
    path.remove_prefix(std::min(path.find_first_not_of(L'\\'), path.size()));
    component = path.substr(0, path.find(L'\\'));
    path.remove_prefix(component.size());
    return !component.empty();
}

bool isRefused(TextView path)
{
    return !path.empty() && path.front() == L'\\';
}

LSTATUS findEntry(const Transaction& in, EntryKey& key, TextView name, Entry& entry)
{
    MDB_val at = key.value();
    MDB_val record;
    if (!key.isCut()) {
        const int failed = mdb_get(in.txn, in.database, &at, &record);
        return failed != 0                  ? statusOf(failed)
               : decodeEntry(record, entry) ? ERROR_SUCCESS
                                            : ERROR_REGISTRY_CORRUPT;
    }
    const MDB_val prefix = key.value();
    Cursor cursor;
    if (const LSTATUS status = openCursor(in, cursor)) {
        return status;
    }
    for (int failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_SET_RANGE);;
         failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_NEXT)) {
        if (failed != 0) {
            return statusOf(failed);
        }
        if (!startsWith(at, prefix)) {
            return ERROR_FILE_NOT_FOUND;
        }
        if (!decodeEntry(record, entry)) {
            return ERROR_REGISTRY_CORRUPT;
        }
        if (equalIgnoringCase(entry.name, name)) {
            key.complete(at);
            return ERROR_SUCCESS;
        }
    }
}

LSTATUS readLink(const Transaction& in, const EntryKey& key, Entry& link)
{
    MDB_val at = key.value();
    MDB_val record;
    if (const int failed = mdb_get(in.txn, in.database, &at, &record)) {
        return statusOf(failed);
    }
    return decodeEntry(record, link) ? ERROR_SUCCESS : ERROR_REGISTRY_CORRUPT;
}

LSTATUS findSubKey(const Transaction& in, NodeId parent, TextView name, NodeId& found)
{
    if (name.size() > longestKeyName) {
        return ERROR_INVALID_PARAMETER;
    }
    EntryKey key(List::eSubKeys, parent, name);
    Entry link;
    const LSTATUS status = findEntry(in, key, name, link);
    if (status == ERROR_SUCCESS) {
        found = link.child();
    }
    return status;
}

LSTATUS readNode(const Transaction& in, NodeId id, StoredNode& stored)
{
    MDB_val record;
    if (const LSTATUS status = readRecord(in, id, record)) {
        return status;
    }
    if (!decodeNode(record, stored.node) || record.mv_size - sizeof(Node) > sizeof stored.suffix) {
        return ERROR_REGISTRY_CORRUPT;
    }
    stored.suffixSize = record.mv_size - sizeof(Node);
    std::memcpy(stored.suffix, static_cast<const BYTE*>(record.mv_data) + sizeof(Node), stored.suffixSize);
    return ERROR_SUCCESS;
}

LSTATUS readHeader(const Transaction& in, StoreHeader& header)
{
    MDB_val record;
    const LSTATUS status = readRecord(in, headerId, record);
    if (status != ERROR_SUCCESS || record.mv_size != sizeof header) {
        return status != ERROR_SUCCESS && status != ERROR_KEY_DELETED ? status : ERROR_BADDB;
    }
    std::memcpy(&header, record.mv_data, sizeof header);
    return ERROR_SUCCESS;
}

LSTATUS checkHeader(const Transaction& in)
{
    StoreHeader header{};
    const LSTATUS status = readHeader(in, header);
    return status != ERROR_SUCCESS || header.format == storeFormat ? status : ERROR_BADDB;
}

LSTATUS readNode(const Transaction& in, NodeId id, Node& node)
{
    MDB_val record;
    if (const LSTATUS status = readRecord(in, id, record)) {
        return status;
    }
    return decodeNode(record, node) ? ERROR_SUCCESS : ERROR_REGISTRY_CORRUPT;
}

LSTATUS readClass(const Transaction& in, NodeId id, TextView& keyClass)
{
    keyClass = {};
    StoredNode stored;
    const LSTATUS status = readNode(in, id, stored);
    if (status != ERROR_SUCCESS || stored.node.parent == 0) {
        return status;
    }
    Entry link;
    if (const LSTATUS found = readLink(in, stored.linkKey(), link)) {
        return found;
    }
    keyClass = link.keyClass();
    return ERROR_SUCCESS;
}

LSTATUS findPath(const Transaction& in, NodeId start, TextView path, NodeId& found)
{
    Node node;
    if (const LSTATUS status = readNode(in, start, node)) {
        return status;
    }
    if (isRefused(path)) {
        return ERROR_BAD_PATHNAME;
    }
    found = start;
    for (TextView component; takeComponent(path, component);) {
        if (const LSTATUS status = findSubKey(in, found, component, found)) {
            return status;
        }
    }
    return ERROR_SUCCESS;
}

LSTATUS findValue(const Transaction& in, NodeId node, TextView name, Entry& value)
{
    LSTATUS status = ERROR_FILE_NOT_FOUND;
    if (name.size() <= longestValueName) {
        EntryKey key(List::eValues, node, name);
        status = findEntry(in, key, name, value);
    }
    if (status == ERROR_FILE_NOT_FOUND) {
        Node owner;
        const LSTATUS exists = readNode(in, node, owner);
        return exists != ERROR_SUCCESS ? exists : status;
    }
    return status;
}

LSTATUS entriesAt(const Transaction& in, List list, NodeId id, DWORD index, Position& position,
                  Entry* entries, DWORD room, DWORD& count)
{
    count = 0;
    Node node;
    if (const LSTATUS status = readNode(in, id, node)) {
        return status;
    }
    const DWORD total = list == List::eSubKeys ? node.subKeys : node.values;
    if (index >= total) {
        return ERROR_NO_MORE_ITEMS;
    }
    Cursor cursor;
    if (const LSTATUS status = openCursor(in, cursor)) {
        return status;
    }
    // From the start, or from the last position if it holds and is nearer.
    const IdKey prefix(list, id);
    MDB_val at = prefix.value();
    DWORD standing = 0;
    const bool holds = position.node == id && position.changes == node.changes;
    if (holds && index >= position.index / 2) {
        at = {position.keySize, position.key};
        standing = position.index;
    }
    room = holds && index == position.index + 1 ? std::min(room, total - index) : 1;
    MDB_val record;
    int failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_SET_RANGE);
    for (; failed == 0 && standing < index; ++standing) {
        failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_NEXT);
    }
    for (; failed == 0 && standing > index; --standing) {
        failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_PREV);
    }
    while (failed == 0 && startsWith(at, prefix.value()) && at.mv_size <= sizeof position.key &&
           decodeEntry(record, entries[count])) {
        position.node = id;
        position.changes = node.changes;
        position.index = index + count;
        position.keySize = at.mv_size;
        std::memcpy(position.key, at.mv_data, at.mv_size);
        if (++count == room) {
            return ERROR_SUCCESS;
        }
        failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_NEXT);
    }
    if (count != 0) {
        return ERROR_SUCCESS;
    }
    return failed != 0 && failed != MDB_NOTFOUND ? statusOf(failed) : ERROR_REGISTRY_CORRUPT;
}

LSTATUS measureSubKeys(const Transaction& in, NodeId id, Longest& longest)
{
    return forEach(in, List::eSubKeys, id, [&](const Entry& link) {
        longest.subKeyName = std::max(longest.subKeyName, link.name.size());
        longest.keyClass = std::max(longest.keyClass, link.keyClass().size());
    });
}

LSTATUS measureValues(const Transaction& in, NodeId id, Longest& longest)
{
    return forEach(in, List::eValues, id, [&](const Entry& value) {
        longest.valueName = std::max(longest.valueName, value.name.size());
        longest.valueData = std::max(longest.valueData, value.size);
    });
}

} // namespace winhost::registry
