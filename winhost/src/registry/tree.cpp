#include "registry/tree.h"

#include "registry/cache.h"
#include "registry/names.h"

#include <algorithm>

namespace winhost::registry {

namespace {

constexpr std::int64_t readAhead = 64;

#define BELOW                                                                                                \
    "WITH RECURSIVE below(id) AS (SELECT ?1 UNION SELECT keys.id FROM below JOIN keys ON keys.parent = "     \
    "below.id"                                                                                               \
    " WHERE keys.id > below.id) "

Statement keyByName{"SELECT id, name, sum FROM keys WHERE parent = ?1 AND folded = ?2"};
Statement parentOf{"SELECT parent FROM keys WHERE id = ?1"};
Statement valueByName{"SELECT name, type, data, sum FROM vals WHERE key = ?1 AND folded = ?2"};
Statement subKeysFrom{
    "SELECT folded, name, sum, id FROM keys WHERE parent = ?1 ORDER BY folded LIMIT ?3 OFFSET ?2"};
Statement subKeysBehind{"SELECT folded, name, sum, id FROM keys WHERE parent = ?1 AND folded > ?2"
                        " ORDER BY folded LIMIT ?3"};
Statement valuesFrom{
    "SELECT folded, name, sum, type, data FROM vals WHERE key = ?1 ORDER BY folded LIMIT ?3 OFFSET ?2"};
Statement valuesBehind{"SELECT folded, name, sum, type, data FROM vals WHERE key = ?1 AND folded > ?2"
                       " ORDER BY folded LIMIT ?3"};
Statement subKeyMeasure{"SELECT count(*), max(length(name)) FROM keys WHERE parent = ?1"};
Statement valueMeasure{"SELECT count(*), max(length(name)), max(length(data)) FROM vals WHERE key = ?1"};
Statement shape{"SELECT last FROM shape"};
Statement firstShape{"INSERT INTO shape VALUES(abs(random() / 4) + ?1)"}; // no key of another store's number
Statement nextShape{"UPDATE shape SET last = last + 1"};
Statement addKey{"INSERT INTO keys(parent, folded, id, name, sum) VALUES(?1, ?2, ?3, ?4, ?5)"};
Statement putValue{"INSERT INTO vals(key, folded, name, type, data, sum) VALUES(?1, ?2, ?3, ?4, ?5, ?6)"
                   " ON CONFLICT(key, folded) DO UPDATE SET type = ?4, data = ?5, sum = ?6"};
Statement removeValue{"DELETE FROM vals WHERE key = ?1 AND folded = ?2"};
Statement removeKey{"DELETE FROM keys WHERE id = ?1"};
Statement removeValues{"DELETE FROM vals WHERE key = ?1"};
Statement removeValuesBelow{BELOW "DELETE FROM vals WHERE key IN below"};
Statement removeKeysBelow{BELOW "DELETE FROM keys WHERE parent IN below"};

std::uint64_t sumOf(NodeId owner, std::int64_t number, std::string_view foldedName, std::string_view name,
                    std::string_view data)
{
    std::uint64_t sum = mix(static_cast<std::uint64_t>(owner), static_cast<std::uint64_t>(number));
    for (const std::string_view part : {foldedName, name, data}) {
        sum = mix(sum, part);
    }
    return sum;
}

bool isRoot(NodeId node)
{
    return node == currentUserId || node == localMachineId;
}

/// The parent; ERROR_KEY_DELETED when the key is no more.
LSTATUS findParent(NodeId node, NodeId& parent)
{
    parent = 0;
    if (isRoot(node)) {
        return ERROR_SUCCESS;
    }
    Query query(parentOf);
    if (query.with(node).next()) {
        parent = query.number(0);
        return ERROR_SUCCESS;
    }
    return query.status() != ERROR_SUCCESS ? query.status() : ERROR_KEY_DELETED;
}

/// What a search without a result means.
LSTATUS missing(const Query& query, NodeId node, LSTATUS status)
{
    NodeId parent = 0;
    const LSTATUS exists = query.status() != ERROR_SUCCESS ? query.status() : findParent(node, parent);
    return exists != ERROR_SUCCESS ? exists : status;
}

/// Takes the next component off a path. False at its end.
bool takeComponent(TextView& path, TextView& component)
{
    path.remove_prefix(std::min(path.find_first_not_of(L'\\'), path.size()));
    component = path.substr(0, path.find(L'\\'));
    path.remove_prefix(component.size());
    return !component.empty();
}

LSTATUS findSubKey(NodeId parent, TextView name, NodeId& found)
{
    if (name.size() > longestKeyName) {
        return ERROR_INVALID_PARAMETER;
    }
    const std::string asked = folded(name);
    Query query(keyByName);
    if (!query.with(parent).with(asked).next()) {
        return query.status() != ERROR_SUCCESS ? query.status() : ERROR_FILE_NOT_FOUND;
    }
    found = query.number(0);
    const auto sum = static_cast<std::uint64_t>(query.number(2));
    // A key that is older than its parent would make a tree that contains itself.
    return found > parent && sumOf(parent, found, asked, query.bytes(1), {}) == sum ? ERROR_SUCCESS
                                                                                    : ERROR_REGISTRY_CORRUPT;
}

void learnShape()
{
    const std::uint64_t version = storeVersion();
    if (version == 0 || cache().tagOf(Question::ePath) != 0) {
        return;
    }
    Query query(shape);
    if (query.next() && storeVersion() == version) {
        cache().learnShape(version, query.number(0));
    }
}

/// The length of a path without its last component.
std::size_t lengthAbove(TextView path)
{
    const std::size_t last = path.find_last_not_of(L'\\');
    const std::size_t separator = last == TextView::npos ? last : path.find_last_of(L'\\', last);
    return separator == TextView::npos ? 0 : path.find_last_not_of(L'\\', separator) + 1;
}

/// From the longest part of the path that is remembered.
LSTATUS walkPath(NodeId start, TextView path, NodeId& found)
{
    std::size_t known = path.size();
    LSTATUS status = ERROR_SUCCESS;
    const auto take = [&](const Answer& answer) {
        status = answer.status;
        found = answer.node;
    };
    found = start;
    while (known != 0 && !cache().recall(Question::path(start, path.substr(0, known)), take)) {
        known = lengthAbove(path.substr(0, known));
    }
    TextView rest = path.substr(known);
    for (TextView component; status == ERROR_SUCCESS && takeComponent(rest, component);) {
        const std::uint64_t tag = cache().tagOf(Question::ePath);
        status = findSubKey(found, component, found);
        if (status == ERROR_SUCCESS) {
            Answer answer;
            answer.node = found;
            cache().remember(Question::path(start, path.substr(0, path.size() - rest.size())), tag, answer);
        }
    }
    return status;
}

LSTATUS findKey(NodeId start, TextView path, NodeId& found)
{
    NodeId parent = 0;
    if (path.empty() || path.front() == L'\\') {
        found = start;
        const LSTATUS status = findParent(start, parent);
        return status != ERROR_SUCCESS || path.empty() ? status : ERROR_BAD_PATHNAME;
    }
    const LSTATUS status = walkPath(start, path, found);
    const LSTATUS exists = status == ERROR_SUCCESS ? status : findParent(start, parent);
    return exists != ERROR_SUCCESS ? exists : status;
}

LSTATUS findValue(NodeId node, TextView name, Found& found)
{
    const std::string asked = name.size() <= longestValueName ? folded(name) : std::string();
    Query query(valueByName);
    if (name.size() > longestValueName || !query.with(node).with(asked).next()) {
        return missing(query, node, ERROR_FILE_NOT_FOUND);
    }
    found.name = textOf(query.bytes(0));
    found.answer.type = static_cast<DWORD>(query.number(1));
    found.data = query.bytes(2);
    return sumOf(node, found.answer.type, asked, query.bytes(0), found.data) ==
                   static_cast<std::uint64_t>(query.number(3))
               ? ERROR_SUCCESS
               : ERROR_REGISTRY_CORRUPT;
}

/// The entry at an index, and for one who goes through a list in order those behind it, which are remembered.
LSTATUS findAt(const Question& question, Found& found)
{
    const bool ofKeys = question.kind == Question::eSubKeyAt;
    const std::uint64_t tag = cache().tagOf(question.kind);
    Question at = question;
    --at.index;
    std::string last;
    bool inOrder = false;
    cache().recall(at, [&](const Answer& before) {
        inOrder = question.index != 0 && before.status == ERROR_SUCCESS;
        last = folded(before.name);
    });
    Query query(ofKeys ? (inOrder ? subKeysBehind : subKeysFrom) : (inOrder ? valuesBehind : valuesFrom));
    query.with(question.node);
    if (inOrder) {
        query.with(last).with(readAhead);
    } else {
        query.with(std::int64_t{question.index}).with(1);
    }
    DWORD count = 0;
    for (at = question; query.next(); ++at.index, ++count) {
        const std::string_view foldedName = query.bytes(0);
        const std::string_view data = ofKeys ? std::string_view() : query.bytes(4);
        const std::uint64_t sum = sumOf(question.node, query.number(3), foldedName, query.bytes(1), data);
        if (sum != static_cast<std::uint64_t>(query.number(2)) || (inOrder && foldedName <= last)) {
            return count == 0 ? ERROR_REGISTRY_CORRUPT : ERROR_SUCCESS;
        }
        last = foldedName;
        const Text name = textOf(query.bytes(1));
        Answer answer;
        answer.name = name;
        answer.type = ofKeys ? 0 : static_cast<DWORD>(query.number(3));
        answer.data = data;
        cache().remember(at, tag, answer);
        if (!ofKeys) { // who asks for a value's name asks for its data next
            answer.name = {};
            cache().remember(Question::value(question.node, name), tag, answer);
        }
        if (count == 0) {
            found.answer.type = answer.type;
            found.name = name;
            found.data = data;
        }
    }
    if (query.status() != ERROR_SUCCESS || count == 0) {
        return missing(query, question.node, ERROR_NO_MORE_ITEMS);
    }
    return ERROR_SUCCESS;
}

LSTATUS add(NodeId parent, TextView name, NodeId& id)
{
    if (const LSTATUS status = Query(nextShape).run()) {
        return status;
    }
    {
        Query last(shape);
        if (!last.next()) {
            return last.status() != ERROR_SUCCESS ? last.status() : ERROR_REGISTRY_CORRUPT;
        }
        id = last.number(0);
    }
    if (id <= parent) {
        return ERROR_REGISTRY_CORRUPT;
    }
    const std::string key = folded(name);
    const auto sum = static_cast<std::int64_t>(sumOf(parent, id, key, bytesOf(name), {}));
    return Query(addKey).with(parent).with(key).with(id).with(bytesOf(name)).with(sum).run();
}

LSTATUS runBoth(NodeId node, Statement& first, Statement& second)
{
    for (Statement* const each : {&first, &second}) {
        if (const LSTATUS status = Query(*each).with(node).run()) {
            return status;
        }
    }
    return ERROR_SUCCESS;
}

} // namespace

void find(const Question& question, Found& found)
{
    learnShape();
    const std::uint64_t tag = cache().tagOf(question.kind);
    LSTATUS& status = found.answer.status;
    switch (question.kind) {
    case Question::ePath:
        status = findKey(question.node, question.text, found.answer.node);
        break;
    case Question::eValue:
        status = findValue(question.node, question.text, found);
        break;
    default:
        status = findAt(question, found);
        break;
    }
    found.answer.name = found.name;
    found.answer.data = found.data;
    if (status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND || status == ERROR_NO_MORE_ITEMS) {
        cache().remember(question, tag, found.answer);
    }
}

LSTATUS measure(NodeId node, Measure& out)
{
    Query keys(subKeyMeasure);
    Query values(valueMeasure);
    if (!keys.with(node).next() || !values.with(node).next()) {
        return keys.status() != ERROR_SUCCESS ? keys.status() : values.status();
    }
    constexpr std::int64_t unit = sizeof(wchar_t);
    out = {keys.number(0), keys.number(1) / unit, values.number(0), values.number(1) / unit,
           values.number(2)};
    return out.subKeys + out.values != 0 ? ERROR_SUCCESS : missing(keys, node, ERROR_SUCCESS);
}

LSTATUS createFirstKeys()
{
    const std::pair<NodeId, const wchar_t*> paths[] = {
        {currentUserId, L"Software"},
        {localMachineId, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall"},
    };
    if (const LSTATUS status = Query(firstShape).with(localMachineId).run()) {
        return status;
    }
    for (const auto& [root, path] : paths) {
        NodeId last = 0;
        bool created = false;
        if (const LSTATUS status = createPath(root, path, last, created)) {
            return status;
        }
    }
    return ERROR_SUCCESS;
}

LSTATUS createPath(NodeId start, TextView path, NodeId& found, bool& created)
{
    created = false;
    found = start;
    NodeId parent = 0;
    LSTATUS status = findParent(start, parent);
    if (status == ERROR_SUCCESS && path.starts_with(L'\\')) {
        status = ERROR_BAD_PATHNAME;
    }
    for (TextView component; status == ERROR_SUCCESS && takeComponent(path, component);) {
        parent = found;
        status = findSubKey(parent, component, found);
        if (status == ERROR_FILE_NOT_FOUND) {
            status = add(parent, component, found);
            created = true;
        }
    }
    return status;
}

LSTATUS setValue(NodeId node, TextView name, DWORD type, std::string_view data)
{
    Found existing;
    const LSTATUS status = findValue(node, name, existing);
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
        return status;
    }
    const std::string key = folded(name);
    const std::string_view created = status == ERROR_SUCCESS ? bytesOf(existing.name) : bytesOf(name);
    const auto sum = static_cast<std::int64_t>(sumOf(node, type, key, created, data));
    return Query(putValue)
        .with(node)
        .with(key)
        .with(created)
        .with(std::int64_t{type})
        .with(data)
        .with(sum)
        .run();
}

LSTATUS deleteValue(NodeId node, TextView name)
{
    Found existing;
    const LSTATUS status = findValue(node, name, existing);
    const std::string key = folded(name.substr(0, longestValueName));
    return status != ERROR_SUCCESS ? status : Query(removeValue).with(node).with(key).run();
}

LSTATUS deleteKey(NodeId node)
{
    Measure content;
    LSTATUS status = measure(node, content);
    if (status == ERROR_SUCCESS && (isRoot(node) || content.subKeys != 0)) {
        status = ERROR_ACCESS_DENIED;
    }
    if (status == ERROR_SUCCESS) {
        status = Query(nextShape).run();
    }
    return status != ERROR_SUCCESS ? status : runBoth(node, removeValues, removeKey);
}

LSTATUS deleteContent(NodeId node)
{
    NodeId parent = 0;
    LSTATUS status = findParent(node, parent);
    if (status == ERROR_SUCCESS) {
        status = Query(nextShape).run();
    }
    return status != ERROR_SUCCESS ? status : runBoth(node, removeValuesBelow, removeKeysBelow);
}

} // namespace winhost::registry
