// Changing the tree.
#include "registry/tree_detail.h"

#include <algorithm>
#include <cstring>
#include <ctime>

namespace winhost::registry {

namespace {

/// 100 ns units since 1601, as in a FILETIME.
std::uint64_t now()
{
    constexpr std::uint64_t unixEpoch = 116444736000000000U;
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return unixEpoch + static_cast<std::uint64_t>(time.tv_sec) * 10000000U +
           static_cast<std::uint64_t>(time.tv_nsec) / 100U;
}

LSTATUS writeNode(const Transaction& in, NodeId id, const StoredNode& stored)
{
    const IdKey key(List::eNodes, id);
    MDB_val at = key.value();
    MDB_val record{sizeof(Node) + stored.suffixSize, nullptr};
    if (const int failed = mdb_put(in.txn, in.database, &at, &record, MDB_RESERVE)) {
        return statusOf(failed);
    }
    std::memcpy(record.mv_data, &stored.node, sizeof(Node));
    std::memcpy(static_cast<BYTE*>(record.mv_data) + sizeof(Node), stored.suffix, stored.suffixSize);
    return ERROR_SUCCESS;
}

/// Runs change(node) on a node and stores it with the time.
template <typename Change>
LSTATUS updateNode(const Transaction& in, NodeId id, Change change)
{
    StoredNode stored;
    if (const LSTATUS status = readNode(in, id, stored)) {
        return status;
    }
    change(stored.node);
    stored.node.lastWrite = now();
    return writeNode(in, id, stored);
}

LSTATUS writeHeader(const Transaction& in, const StoreHeader& header)
{
    const IdKey key(List::eNodes, headerId);
    MDB_val at = key.value();
    MDB_val record{sizeof header, const_cast<StoreHeader*>(&header)};
    return statusOf(mdb_put(in.txn, in.database, &at, &record, 0));
}

LSTATUS takeId(const Transaction& in, NodeId& id)
{
    StoreHeader header{};
    if (const LSTATUS status = readHeader(in, header)) {
        return status;
    }
    id = header.nextId++;
    return writeHeader(in, header);
}

/// Stores an entry but for its data, for which it gives the place.
LSTATUS putEntry(const Transaction& in, const EntryKey& key, TextView name, DWORD type, std::size_t dataSize,
                 BYTE*& data)
{
    MDB_val at = key.value();
    MDB_val record{recordSize(name, dataSize), nullptr};
    if (const int failed = mdb_put(in.txn, in.database, &at, &record, MDB_RESERVE)) {
        return statusOf(failed);
    }
    data = encodeEntry(record.mv_data, name, type);
    return ERROR_SUCCESS;
}

LSTATUS putLink(const Transaction& in, const EntryKey& key, TextView name, NodeId child, TextView keyClass)
{
    BYTE* data = nullptr;
    const LSTATUS status = putEntry(in, key, name, 0, linkDataSize(keyClass), data);
    if (status == ERROR_SUCCESS) {
        encodeLinkData(data, child, keyClass);
    }
    return status;
}

LSTATUS createSubKey(const Transaction& in, NodeId parent, TextView name, TextView keyClass, NodeId& id)
{
    if (const LSTATUS status = takeId(in, id)) {
        return status;
    }
    EntryKey key(List::eSubKeys, parent, name);
    if (key.isCut()) {
        key.appendNumber(id);
    }
    if (const LSTATUS status = putLink(in, key, name, id, keyClass)) {
        return status;
    }
    StoredNode stored;
    stored.node.parent = parent;
    stored.node.lastWrite = now();
    const MDB_val suffix = key.suffix();
    stored.suffixSize = suffix.mv_size;
    std::memcpy(stored.suffix, suffix.mv_data, suffix.mv_size);
    if (const LSTATUS status = writeNode(in, id, stored)) {
        return status;
    }
    return updateNode(in, parent, [](Node& node) {
        ++node.subKeys;
        ++node.changes;
    });
}

LSTATUS changeClass(const Transaction& in, NodeId id, TextView keyClass)
{
    StoredNode stored;
    if (const LSTATUS status = readNode(in, id, stored)) {
        return status;
    }
    if (stored.node.parent == 0) {
        return ERROR_SUCCESS;
    }
    const EntryKey key = stored.linkKey();
    Entry link;
    if (const LSTATUS status = readLink(in, key, link)) {
        return status;
    }
    wchar_t name[longestKeyName]; // a write moves the record
    const std::size_t length = link.name.copy(name, longestKeyName);
    return putLink(in, key, TextView(name, length), id, keyClass);
}

LSTATUS deleteValues(const Transaction& in, NodeId id)
{
    Cursor cursor;
    if (const LSTATUS status = openCursor(in, cursor)) {
        return status;
    }
    const IdKey prefix(List::eValues, id);
    for (;;) {
        MDB_val at = prefix.value();
        MDB_val record;
        int failed = mdb_cursor_get(cursor.get(), &at, &record, MDB_SET_RANGE);
        if (failed == MDB_NOTFOUND || (failed == 0 && !startsWith(at, prefix.value()))) {
            return ERROR_SUCCESS;
        }
        if (failed == 0) {
            failed = mdb_cursor_del(cursor.get(), 0);
        }
        if (failed != 0) {
            return statusOf(failed);
        }
    }
}

/// Takes a key without sub-keys away; its parent is not told.
LSTATUS removeNode(const Transaction& in, NodeId id, const StoredNode& stored)
{
    if (const LSTATUS status = deleteValues(in, id)) {
        return status;
    }
    const IdKey key(List::eNodes, id);
    const EntryKey linkKey = stored.linkKey();
    MDB_val at = key.value();
    MDB_val link = linkKey.value();
    const int failed = mdb_del(in.txn, in.database, &at, nullptr);
    return statusOf(failed != 0 ? failed : mdb_del(in.txn, in.database, &link, nullptr));
}

/// The first sub-key; ERROR_NO_MORE_ITEMS when there is none.
LSTATUS firstSubKey(MDB_cursor* links, NodeId parent, NodeId& child)
{
    const IdKey prefix(List::eSubKeys, parent);
    MDB_val at = prefix.value();
    MDB_val record;
    const int failed = mdb_cursor_get(links, &at, &record, MDB_SET_RANGE);
    if (failed == MDB_NOTFOUND || (failed == 0 && !startsWith(at, prefix.value()))) {
        return ERROR_NO_MORE_ITEMS;
    }
    Entry link;
    if (failed == 0 && !decodeEntry(record, link)) {
        return ERROR_REGISTRY_CORRUPT;
    }
    child = link.child();
    return statusOf(failed);
}

} // namespace

LSTATUS createRoots(const Transaction& in)
{
    if (const LSTATUS status = writeHeader(in, {storeFormat, firstFreeId})) {
        return status;
    }
    const struct
    {
        NodeId root;
        const wchar_t* content;
    } roots[] = {
        {currentUserId, L"Software"},
        {localMachineId, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall"},
    };
    for (const auto& [root, content] : roots) {
        StoredNode stored;
        stored.node.lastWrite = now();
        if (const LSTATUS status = writeNode(in, root, stored)) {
            return status;
        }
        NodeId last = 0;
        bool created = false;
        if (const LSTATUS status = createPath(in, root, content, {}, last, created)) {
            return status;
        }
    }
    return ERROR_SUCCESS;
}

LSTATUS createPath(const Transaction& in, NodeId start, TextView path, TextView keyClass, NodeId& found,
                   bool& created)
{
    created = false;
    if (const LSTATUS status = findPath(in, start, {}, found)) {
        return status;
    }
    if (isRefused(path)) {
        return ERROR_BAD_PATHNAME;
    }
    for (TextView component; takeComponent(path, component);) {
        const NodeId parent = found;
        LSTATUS status = findSubKey(in, parent, component, found);
        if (status == ERROR_FILE_NOT_FOUND) {
            status = createSubKey(in, parent, component, keyClass, found);
            created = true;
        }
        if (status != ERROR_SUCCESS) {
            return status;
        }
    }
    return created || keyClass.empty() ? ERROR_SUCCESS : changeClass(in, found, keyClass);
}

LSTATUS setValue(const Transaction& in, NodeId node, TextView name, DWORD type, const BYTE* data, DWORD size)
{
    if (name.size() > longestValueName) {
        return ERROR_INVALID_PARAMETER;
    }
    EntryKey key(List::eValues, node, name);
    Entry existing;
    const LSTATUS found = findEntry(in, key, name, existing);
    if (found != ERROR_SUCCESS && found != ERROR_FILE_NOT_FOUND) {
        return found;
    }
    const bool isNew = found == ERROR_FILE_NOT_FOUND;
    if (!isNew && existing.type == type &&
        std::equal(data, data + size, existing.data, existing.data + existing.size)) {
        return ERROR_SUCCESS; // nothing to write, nor to wait for the disk for
    }
    wchar_t createdName[longestValueName]; // a write moves the record
    if (!isNew) {
        name = TextView(createdName, existing.name.copy(createdName, longestValueName));
    }
    if (const LSTATUS status = updateNode(in, node, [=](Node& owner) {
            owner.values += isNew ? 1 : 0;
            owner.changes += isNew ? 1 : 0;
        })) {
        return status;
    }
    if (key.isCut()) {
        std::uint64_t number = 0;
        if (const LSTATUS status = takeId(in, number)) {
            return status;
        }
        key.appendNumber(number);
    }
    BYTE* place = nullptr;
    const LSTATUS status = putEntry(in, key, name, type, size, place);
    if (status == ERROR_SUCCESS) {
        std::copy_n(data, size, place);
    }
    return status;
}

LSTATUS deleteValue(const Transaction& in, NodeId node, TextView name)
{
    Node owner;
    if (const LSTATUS status = readNode(in, node, owner)) {
        return status;
    }
    if (name.size() > longestValueName) {
        return ERROR_FILE_NOT_FOUND;
    }
    EntryKey key(List::eValues, node, name);
    Entry value;
    if (const LSTATUS status = findEntry(in, key, name, value)) {
        return status;
    }
    MDB_val at = key.value();
    if (const int failed = mdb_del(in.txn, in.database, &at, nullptr)) {
        return statusOf(failed);
    }
    return updateNode(in, node, [](Node& changed) {
        --changed.values;
        ++changed.changes;
    });
}

LSTATUS deleteKey(const Transaction& in, NodeId id)
{
    StoredNode stored;
    if (const LSTATUS status = readNode(in, id, stored)) {
        return status;
    }
    if (stored.node.parent == 0 || stored.node.subKeys != 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (const LSTATUS status = removeNode(in, id, stored)) {
        return status;
    }
    return updateNode(in, stored.node.parent, [](Node& parent) {
        --parent.subKeys;
        ++parent.changes;
    });
}

LSTATUS deleteContent(const Transaction& in, NodeId id)
{
    // Depth first without recursion, since there is no limit to the depth: down to a key without sub-keys,
    // away with it, and on from its parent.
    Cursor links;
    if (const LSTATUS status = openCursor(in, links)) {
        return status;
    }
    for (NodeId current = id;;) {
        NodeId child = 0;
        LSTATUS status = firstSubKey(links.get(), current, child);
        if (status == ERROR_SUCCESS) {
            current = child;
            continue;
        }
        if (status != ERROR_NO_MORE_ITEMS || current == id) {
            if (status != ERROR_NO_MORE_ITEMS) {
                return status;
            }
            break;
        }
        StoredNode stored;
        status = readNode(in, current, stored);
        if (status == ERROR_SUCCESS) {
            status = removeNode(in, current, stored);
        }
        if (status != ERROR_SUCCESS) {
            return status;
        }
        current = stored.node.parent;
    }
    if (const LSTATUS status = deleteValues(in, id)) {
        return status;
    }
    return updateNode(in, id, [](Node& node) {
        node.subKeys = 0;
        node.values = 0;
        ++node.changes;
    });
}

} // namespace winhost::registry
