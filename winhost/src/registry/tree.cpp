#include "registry/tree.h"

#include "registry/memory.h"

#include <algorithm>
#include <optional>

namespace winhost::registry {

namespace {

Text textOf(std::string_view bytes)
{
    Text text(bytes.size() / sizeof(wchar_t), 0);
    bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t)); // may be null if empty
    return text;
}

/// Converts a name to bytes for comparison. The result is the same for names that differ only in case. The
/// bytes sort in the registry's order: ASCII letters become lower case, so that they sort after '_'.
std::string folded(TextView name)
{
    std::string bytes;
    bytes.reserve(name.size() * sizeof(wchar_t));
    for (const wchar_t each : name) {
        const wchar_t upper = upcase(each);
        const unsigned unit = upper >= L'A' && upper <= L'Z' ? upper + (L'a' - L'A') : upper;
        bytes += static_cast<char>(unit >> 8);
        bytes += static_cast<char>(unit & 0xFF);
    }
    return bytes;
}

std::int64_t sumOf(NodeId owner, std::int64_t number, std::string_view foldedName, std::string_view name,
                   std::string_view data)
{
    std::uint64_t sum = mix(static_cast<std::uint64_t>(owner), static_cast<std::uint64_t>(number));
    for (const std::string_view part : {foldedName, name, data}) {
        sum = mix(sum, part);
    }
    return static_cast<std::int64_t>(sum);
}

bool isRoot(NodeId node)
{
    return node == currentUserId || node == localMachineId;
}

bool exists(NodeId node)
{
    return isRoot(node) || Query("SELECT 1 FROM keys WHERE id = ?1", node).next();
}

/// Returns the result for a missing sub-key or value: ERROR_KEY_DELETED if the key is deleted, otherwise the
/// given status.
Result missing(NodeId node, LSTATUS status)
{
    return {.status = exists(node) ? status : ERROR_KEY_DELETED};
}

/// Copies the cached result; returns false if there is none.
bool isKnown(const Lookup& lookup, Result& result)
{
    const std::lock_guard<std::mutex> lock(memory.mutex);
    const Result* const known = memory.recall(lookup);
    result = known != nullptr ? *known : result;
    return known != nullptr;
}

void remember(const Lookup& lookup, const Result& result)
{
    const std::lock_guard<std::mutex> lock(memory.mutex);
    memory.remember(lookup, result);
}

/// Removes the next component from a path. Returns false at the end.
bool takeComponent(TextView& path, TextView& component)
{
    path.remove_prefix(std::min(path.find_first_not_of(L'\\'), path.size()));
    component = path.substr(0, path.find(L'\\'));
    path.remove_prefix(component.size());
    return !component.empty();
}

std::optional<NodeId> findSubKey(NodeId parent, TextView name)
{
    require(name.size() <= longestKeyName || !exists(parent),
            ERROR_INVALID_PARAMETER); // if the parent is deleted, the caller reports ERROR_KEY_DELETED
    const std::string asked = folded(name);
    Query query("SELECT id, name, sum FROM keys WHERE parent = ?1 AND folded = ?2", parent, asked);
    if (!query.next()) {
        return {};
    }
    const NodeId found = query.number(0);
    require(found > parent); // otherwise the tree might contain a cycle
    require(sumOf(parent, found, asked, query.bytes(1), {}) == query.number(2));
    return found;
}

void insert(NodeId parent, NodeId id, TextView name)
{
    const std::string key = folded(name);
    Query("INSERT INTO keys(parent, folded, id, name, sum) VALUES(?1, ?2, ?3, ?4, ?5)", parent, key, id,
          bytesOf(name), sumOf(parent, id, key, bytesOf(name), {}))
        .run();
}

NodeId add(NodeId parent, TextView name)
{
    require(exists(parent), ERROR_KEY_DELETED);
    Query number("UPDATE shape SET last = last + 1 + abs(random() % 1048576) RETURNING last");
    require(number.next() && number.number(0) > parent);
    const NodeId id = number.number(0);
    insert(parent, id, name);
    return id;
}

/// Follows a path. Uses the cached parts of the path, and caches each part that it finds.
Result walk(NodeId start, TextView path, bool* created)
{
    Result at{.status = path.starts_with(L'\\') ? ERROR_BAD_PATHNAME : ERROR_SUCCESS, .node = start};
    TextView component;
    for (TextView rest = path; at.status == ERROR_SUCCESS && takeComponent(rest, component);) {
        const NodeId parent = at.node;
        const Lookup part{Lookup::ePath, path.substr(0, path.size() - rest.size()), 0, start};
        if (isKnown(part, at) && at.status == ERROR_SUCCESS) {
            continue;
        }
        if (const std::optional<NodeId> found = findSubKey(parent, component)) {
            at = {.node = *found};
            remember(part, at);
        } else if (created != nullptr) {
            at = {.node = add(parent, component)};
            *created = true;
        } else {
            at.status = ERROR_FILE_NOT_FOUND;
        }
    }
    if ((at.status != ERROR_SUCCESS || at.node == start) && !exists(start)) {
        at.status = ERROR_KEY_DELETED;
    }
    return at;
}

Result findValue(NodeId node, TextView name)
{
    const std::string asked = folded(name.substr(0, longestValueName));
    Query query("SELECT name, type, data, sum FROM vals WHERE key = ?1 AND folded = ?2", node, asked);
    if (name.size() > longestValueName || !query.next()) {
        return missing(node, ERROR_FILE_NOT_FOUND);
    }
    require(sumOf(node, query.number(1), asked, query.bytes(0), query.bytes(2)) == query.number(3));
    return {.type = static_cast<DWORD>(query.number(1)),
            .data = std::string(query.bytes(2)),
            .name = textOf(query.bytes(0))};
}

/// Finds the entry at an index. If the previous entry is known or cached, continues after its name, because
/// counting from the start for each entry would take quadratic time. If it is not outdated, also reads and
/// caches the entries that follow.
Result findAt(const Lookup& lookup, const Previous* previous)
{
    constexpr std::int64_t readAhead = 64;
    Lookup at = lookup;
    --at.index;
    Result before{.status = ERROR_NO_MORE_ITEMS};
    const bool isCached = previous == nullptr && lookup.index != 0 && isKnown(at, before);
    const bool isCurrent =
        previous != nullptr ? !previous->isOutdated : isCached && before.status == ERROR_SUCCESS;
    const std::string from = previous != nullptr ? folded(previous->name) + '\0'
                             : isCurrent         ? folded(before.name) + '\0'
                                                 : "";
    Query query(lookup.kind == Lookup::eSubKeyAt
                    ? "SELECT folded, name, id, x'', sum FROM keys WHERE parent = ?1 AND folded >= ?2"
                      " ORDER BY folded LIMIT ?3 OFFSET ?4"
                    : "SELECT folded, name, type, data, sum FROM vals WHERE key = ?1 AND folded >= ?2"
                      " ORDER BY folded LIMIT ?3 OFFSET ?4",
                lookup.node, from, isCurrent ? readAhead : 1, from.empty() ? std::int64_t{lookup.index} : 0);
    std::optional<Result> first;
    for (std::string last = from; query.next(); last.assign(query.bytes(0)) += '\0') {
        Result found{.type = static_cast<DWORD>(query.number(2)),
                     .data = std::string(query.bytes(3)),
                     .name = textOf(query.bytes(1))};
        if (query.bytes(0) < last || sumOf(lookup.node, query.number(2), query.bytes(0), query.bytes(1),
                                           found.data) != query.number(4)) {
            require(first.has_value());
            break;
        }
        ++at.index;
        if (isCurrent) {
            remember(at, found);
        }
        if (!first.has_value()) {
            first = std::move(found);
        }
    }
    return first.has_value() ? *first : missing(lookup.node, ERROR_NO_MORE_ITEMS);
}

void createFirstKeys()
{
    NodeId id = localMachineId; // numbers are fixed, because these keys can be open before the file exists
    insert(currentUserId, ++id, L"Software");
    NodeId parent = localMachineId;
    for (const TextView name : {L"SOFTWARE", L"Microsoft", L"Windows", L"CurrentVersion", L"Uninstall"}) {
        insert(parent, ++id, name);
        parent = id;
    }
    // Key numbers start at a random value, so that keys in different stores have different numbers.
    Query("INSERT INTO shape VALUES(abs(random() / 4) + ?1)", id).run();
}

} // namespace

Result find(const Lookup& lookup, const Previous* previous)
{
    Result found;
    const bool isOutdated = previous != nullptr && previous->isOutdated;
    if (isOutdated || !isKnown(lookup, found)) {
        found = lookup.kind == Lookup::ePath    ? walk(lookup.node, lookup.text, nullptr)
                : lookup.kind == Lookup::eValue ? findValue(lookup.node, lookup.text)
                                                : findAt(lookup, previous);
        if (!isOutdated) {
            remember(lookup, found);
        }
    }
    return found;
}

Measure measure(NodeId node)
{
    Query query("SELECT * FROM (SELECT count(*), max(length(name)) FROM keys WHERE parent = ?1),"
                " (SELECT count(*), max(length(name)), max(length(data)) FROM vals WHERE key = ?1)",
                node);
    require(query.next());
    const Measure found{query.number(0), query.number(1), query.number(2), query.number(3), query.number(4)};
    require(found.subKeys + found.values != 0 || exists(node), ERROR_KEY_DELETED);
    return found;
}

NodeId createPath(NodeId start, TextView path, bool& created)
{
    const Result found = walk(start, path, &created);
    check(found.status);
    return found.node;
}

Result setValue(NodeId node, TextView name, DWORD type, std::string_view data)
{
    const Result before = find({Lookup::eValue, name, 0, node});
    const bool isNew = before.status == ERROR_FILE_NOT_FOUND;
    require(isNew || before.status == ERROR_SUCCESS, before.status);
    Result written{.type = type, .data = std::string(data), .name = isNew ? Text(name) : before.name};
    const std::string key = folded(name);
    const std::string_view created = bytesOf(written.name);
    Query("INSERT INTO vals(key, folded, name, type, data, sum) VALUES(?1, ?2, ?3, ?4, ?5, ?6)"
          " ON CONFLICT(key, folded) DO UPDATE SET type = ?4, data = ?5, sum = ?6",
          node, key, created, std::int64_t{type}, data, sumOf(node, type, key, created, data))
        .run();
    return written;
}

void deleteValue(NodeId node, TextView name)
{
    check(find({Lookup::eValue, name, 0, node}).status);
    Query("DELETE FROM vals WHERE key = ?1 AND folded = ?2", node, folded(name)).run();
}

void deleteKey(NodeId node)
{
    const LSTATUS first = find({Lookup::eSubKeyAt, {}, 0, node}).status;
    require(first != ERROR_SUCCESS && !isRoot(node), ERROR_ACCESS_DENIED);
    require(first == ERROR_NO_MORE_ITEMS, first);
    Query("DELETE FROM vals WHERE key = ?1", node).run();
    Query("DELETE FROM keys WHERE id = ?1", node).run();
}

void deleteTree(NodeId node, bool withItself)
{
    require(exists(node), ERROR_KEY_DELETED);
    require(!withItself || !isRoot(node), ERROR_ACCESS_DENIED);
    for (const char* const sql :
         {"WITH RECURSIVE below(id) AS (SELECT ?1 UNION SELECT keys.id FROM below JOIN keys"
          " ON keys.parent = below.id WHERE keys.id > below.id) DELETE FROM vals WHERE key IN below",
          "WITH RECURSIVE below(id) AS (SELECT ?1 UNION SELECT keys.id FROM below JOIN keys"
          " ON keys.parent = below.id WHERE keys.id > below.id) DELETE FROM keys WHERE parent IN below"}) {
        Query(sql, node).run();
    }
    if (withItself) {
        Query("DELETE FROM keys WHERE id = ?1", node).run();
    }
}

} // namespace winhost::registry

// A key's number is higher than its parent's and is almost never reused. `shape` has one row, which contains
// the highest number so far. Undoing a change frees the numbers that the change assigned. Each new number
// exceeds the last by a random step, so that a freed number is unlikely to be assigned again. `name` is the
// name as it was given at creation, in UTF-16. `folded` is a form of the name that ignores case; it is used
// to find and sort keys and values.
const winhost::database::Content winhost::database::content = {
    "registry.db",
    "CREATE TABLE keys(parent INTEGER NOT NULL, folded BLOB NOT NULL, id INTEGER NOT NULL UNIQUE, name BLOB "
    "NOT NULL,"
    " sum INTEGER NOT NULL, PRIMARY KEY(parent, folded)) WITHOUT ROWID;"
    "CREATE TABLE vals(key INTEGER NOT NULL, folded BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, sum INTEGER NOT NULL, PRIMARY KEY(key, folded)) WITHOUT ROWID;"
    "CREATE TABLE shape(last INTEGER NOT NULL)",
    winhost::registry::createFirstKeys};
