#include "registry/tree.h"

#include "registry/cache.h"
#include "registry/names.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace winhost::registry {

namespace {

Statement keyByName{"SELECT id, name, sum FROM keys WHERE parent = ?1 AND folded = ?2"};
Statement keyByNumber{"SELECT 1 FROM keys WHERE id = ?1"};
Statement subKeysFrom{"SELECT folded, name, sum, id, x'' FROM keys WHERE parent = ?1 AND folded >= ?2"
                      " ORDER BY folded LIMIT ?3 OFFSET ?4"};
Statement subKeyMeasure{"SELECT count(*), max(length(name)), 0 FROM keys WHERE parent = ?1"};
Statement addKey{"INSERT INTO keys(parent, folded, id, name, sum) VALUES(?1, ?2, ?3, ?4, ?5)"};
Statement removeKey{"DELETE FROM keys WHERE id = ?1"};
Statement removeKeysBelow{
    "WITH RECURSIVE below(id) AS (SELECT ?1 UNION SELECT keys.id FROM below JOIN keys"
    " ON keys.parent = below.id WHERE keys.id > below.id) DELETE FROM keys WHERE parent IN below"};

Statement valueByName{"SELECT name, type, data, sum FROM vals WHERE key = ?1 AND folded = ?2"};
Statement valuesFrom{"SELECT folded, name, sum, type, data FROM vals WHERE key = ?1 AND folded >= ?2"
                     " ORDER BY folded LIMIT ?3 OFFSET ?4"};
Statement valueMeasure{"SELECT count(*), max(length(name)), max(length(data)) FROM vals WHERE key = ?1"};
Statement putValue{"INSERT INTO vals(key, folded, name, type, data, sum) VALUES(?1, ?2, ?3, ?4, ?5, ?6)"
                   " ON CONFLICT(key, folded) DO UPDATE SET type = ?4, data = ?5, sum = ?6"};
Statement removeValue{"DELETE FROM vals WHERE key = ?1 AND folded = ?2"};
Statement removeValues{"DELETE FROM vals WHERE key = ?1"};
Statement removeValuesBelow{
    "WITH RECURSIVE below(id) AS (SELECT ?1 UNION SELECT keys.id FROM below JOIN keys"
    " ON keys.parent = below.id WHERE keys.id > below.id) DELETE FROM vals WHERE key IN below"};

Statement shape{"SELECT last FROM shape"};
Statement firstShape{"INSERT INTO shape VALUES(abs(random() / 4) + ?1)"}; // no key of another store's number
Statement nextShape{"UPDATE shape SET last = last + 1"};

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

/// Of a query without a row: why it failed, else what that means.
LSTATUS statusOr(const Query& query, LSTATUS status)
{
    return query.status() != ERROR_SUCCESS ? query.status() : status;
}

/// ERROR_KEY_DELETED when the key is no more.
LSTATUS existence(NodeId node)
{
    Query query(keyByNumber);
    return isRoot(node) || query.with(node).next() ? ERROR_SUCCESS : statusOr(query, ERROR_KEY_DELETED);
}

/// What a search in a key without a result means.
LSTATUS missing(const Query& query, NodeId node, LSTATUS status)
{
    const LSTATUS failed = statusOr(query, existence(node));
    return failed != ERROR_SUCCESS ? failed : status;
}

/// Takes the next component off a path. False at its end.
bool takeComponent(TextView& path, TextView& component)
{
    path.remove_prefix(std::min(path.find_first_not_of(L'\\'), path.size()));
    component = path.substr(0, path.find(L'\\'));
    path.remove_prefix(component.size());
    return !component.empty();
}

/// The length of a path without its last component.
std::size_t lengthAbove(TextView path)
{
    const std::size_t last = path.find_last_not_of(L'\\');
    const std::size_t separator = last == TextView::npos ? last : path.find_last_of(L'\\', last);
    return separator == TextView::npos ? 0 : path.find_last_not_of(L'\\', separator) + 1;
}

LSTATUS findSubKey(NodeId parent, TextView name, NodeId& found)
{
    if (name.size() > longestKeyName) {
        return ERROR_INVALID_PARAMETER;
    }
    const std::string asked = folded(name);
    Query query(keyByName);
    if (!query.with(parent).with(asked).next()) {
        return statusOr(query, ERROR_FILE_NOT_FOUND);
    }
    found = query.number(0);
    // A key that is older than its parent would make a tree that contains itself.
    const bool isRight = found > parent && sumOf(parent, found, asked, query.bytes(1), {}) == query.number(2);
    return isRight ? ERROR_SUCCESS : ERROR_REGISTRY_CORRUPT;
}

/// From the longest part of the path that is remembered.
LSTATUS walkPath(NodeId start, TextView path, NodeId& found)
{
    std::size_t known = path.size();
    Answer above;
    above.node = start;
    const auto take = [&](const Answer& answer) { above = answer; };
    while (known != 0 && !cache().recall({Question::ePath, start, path.substr(0, known)}, take)) {
        known = lengthAbove(path.substr(0, known));
    }
    TextView rest = path.substr(known);
    for (TextView component; above.status == ERROR_SUCCESS && takeComponent(rest, component);) {
        const std::uint64_t tag = cache().tagOf(Question::ePath);
        above.status = findSubKey(above.node, component, above.node);
        if (above.status == ERROR_SUCCESS) {
            const TextView walked = path.substr(0, path.size() - rest.size());
            cache().remember({Question::ePath, start, walked}, tag, above);
        }
    }
    found = above.node;
    return above.status;
}

LSTATUS findKey(NodeId start, TextView path, NodeId& found)
{
    const LSTATUS status = path.starts_with(L'\\') ? ERROR_BAD_PATHNAME : walkPath(start, path, found);
    const LSTATUS exists = status == ERROR_SUCCESS && !path.empty() ? status : existence(start);
    return exists != ERROR_SUCCESS ? exists : status;
}

LSTATUS findValue(NodeId node, TextView name, Answer& found)
{
    const bool mayBe = name.size() <= longestValueName;
    const std::string asked = mayBe ? folded(name) : std::string();
    Query query(valueByName);
    if (!mayBe || !query.with(node).with(asked).next()) {
        return missing(query, node, ERROR_FILE_NOT_FOUND);
    }
    found.name = textOf(query.bytes(0));
    found.type = static_cast<DWORD>(query.number(1));
    found.data = query.bytes(2);
    const bool isRight = sumOf(node, found.type, asked, query.bytes(0), found.data) == query.number(3);
    return isRight ? ERROR_SUCCESS : ERROR_REGISTRY_CORRUPT;
}

/// The entry at an index, and for one who goes through a list in order those behind it, which are remembered.
LSTATUS findAt(const Question& question, Answer& found)
{
    constexpr std::int64_t readAhead = 64;
    const bool ofKeys = question.kind == Question::eSubKeyAt;
    const std::uint64_t tag = cache().tagOf(question.kind);
    Question at = question;
    --at.index;
    std::string from; // the least that is behind the entry before
    bool inOrder = false;
    cache().recall(at, [&](const Answer& before) {
        inOrder = question.index != 0 && before.status == ERROR_SUCCESS;
        from = inOrder ? folded(before.name) + '\0' : from;
    });
    Query query(ofKeys ? subKeysFrom : valuesFrom);
    query.with(question.node).with(from);
    query.with(inOrder ? readAhead : 1).with(std::int64_t{inOrder ? 0 : question.index});
    std::string last = from;
    for (at = question; query.next(); ++at.index) {
        const std::string_view foldedName = query.bytes(0);
        Answer answer;
        answer.name = textOf(query.bytes(1));
        answer.type = static_cast<DWORD>(query.number(3));
        answer.data = query.bytes(4);
        const bool isRight =
            foldedName >= last &&
            query.number(2) == sumOf(question.node, query.number(3), foldedName, query.bytes(1), answer.data);
        if (!isRight) {
            return at.index == question.index ? ERROR_REGISTRY_CORRUPT : ERROR_SUCCESS;
        }
        last.assign(foldedName) += '\0';
        cache().remember(at, tag, answer);
        if (!ofKeys) { // who asks for a value's name asks for its data next
            cache().remember({Question::eValue, question.node, answer.name}, tag, answer);
        }
        if (at.index == question.index) {
            found = std::move(answer);
        }
    }
    const bool isFound = query.status() == ERROR_SUCCESS && at.index != question.index;
    return isFound ? ERROR_SUCCESS : missing(query, question.node, ERROR_NO_MORE_ITEMS);
}

/// What a path's answer is remembered under.
void learnShape()
{
    const std::uint64_t version = storeVersion();
    if (version == 0 || cache().tagOf(Question::ePath) != 0) {
        return;
    }
    Query query(shape);
    if (query.next() && storeVersion() == version) {
        cache().learnShape(version, static_cast<std::uint64_t>(query.number(0)));
    }
}

LSTATUS add(NodeId parent, TextView name, NodeId& id)
{
    if (const LSTATUS status = Query(nextShape).run()) {
        return status;
    }
    Query last(shape);
    if (!last.next() || last.number(0) <= parent) {
        return statusOr(last, ERROR_REGISTRY_CORRUPT);
    }
    id = last.number(0);
    const std::string key = folded(name);
    const std::int64_t sum = sumOf(parent, id, key, bytesOf(name), {});
    return Query(addKey).with(parent).with(key).with(id).with(bytesOf(name)).with(sum).run();
}

/// Each for the key, up to the first that fails.
LSTATUS runAll(NodeId node, std::initializer_list<Statement*> statements)
{
    LSTATUS status = Query(nextShape).run();
    for (Statement* const each : statements) {
        status = status != ERROR_SUCCESS ? status : Query(*each).with(node).run();
    }
    return status;
}

} // namespace

Answer find(const Question& question)
{
    Answer found;
    if (cache().recall(question, [&](const Answer& answer) { found = answer; })) {
        return found;
    }
    if (question.kind == Question::ePath) {
        learnShape();
    }
    const std::uint64_t tag = cache().tagOf(question.kind);
    switch (question.kind) {
    case Question::ePath:
        found.status = findKey(question.node, question.text, found.node);
        break;
    case Question::eValue:
        found.status = findValue(question.node, question.text, found);
        break;
    default:
        found.status = findAt(question, found);
        break;
    }
    if (found.status == ERROR_SUCCESS || found.status == ERROR_FILE_NOT_FOUND ||
        found.status == ERROR_NO_MORE_ITEMS) {
        cache().remember(question, tag, found);
    }
    return found;
}

LSTATUS measure(NodeId node, Measure& subKeys, Measure& values)
{
    for (const auto& [statement, out] : {std::pair(&subKeyMeasure, &subKeys), {&valueMeasure, &values}}) {
        Query query(*statement);
        if (!query.with(node).next()) {
            return query.status();
        }
        *out = {query.number(0), query.number(1), query.number(2)};
    }
    return subKeys.count + values.count != 0 ? ERROR_SUCCESS : existence(node);
}

LSTATUS createFirstKeys()
{
    NodeId last = 0;
    bool created = false;
    LSTATUS status = Query(firstShape).with(localMachineId).run();
    if (status == ERROR_SUCCESS) {
        status = createPath(currentUserId, L"Software", last, created);
    }
    constexpr TextView products = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
    return status != ERROR_SUCCESS ? status : createPath(localMachineId, products, last, created);
}

LSTATUS createPath(NodeId start, TextView path, NodeId& found, bool& created)
{
    created = false;
    found = start;
    LSTATUS status = existence(start);
    if (status == ERROR_SUCCESS && path.starts_with(L'\\')) {
        status = ERROR_BAD_PATHNAME;
    }
    for (TextView component; status == ERROR_SUCCESS && takeComponent(path, component);) {
        const NodeId parent = found;
        status = findSubKey(parent, component, found);
        if (status == ERROR_FILE_NOT_FOUND) {
            status = add(parent, component, found);
            created = true;
        }
    }
    return status;
}

LSTATUS setValue(NodeId node, TextView name, DWORD type, std::string_view data, Answer& written)
{
    written = find({Question::eValue, node, name});
    if (written.status == ERROR_FILE_NOT_FOUND) {
        written.status = ERROR_SUCCESS;
        written.name = name;
    }
    if (written.status != ERROR_SUCCESS) {
        return written.status;
    }
    written.type = type;
    written.data = data;
    const std::string key = folded(name);
    const std::string_view created = bytesOf(written.name);
    return Query(putValue)
        .with(node)
        .with(key)
        .with(created)
        .with(std::int64_t{type})
        .with(data)
        .with(sumOf(node, type, key, created, data))
        .run();
}

LSTATUS deleteValue(NodeId node, TextView name)
{
    const LSTATUS status = find({Question::eValue, node, name}).status;
    const std::string key = folded(name.substr(0, longestValueName));
    return status != ERROR_SUCCESS ? status : Query(removeValue).with(node).with(key).run();
}

LSTATUS deleteKey(NodeId node)
{
    const LSTATUS first = find({Question::eSubKeyAt, node}).status;
    if (first != ERROR_NO_MORE_ITEMS || isRoot(node)) {
        return first == ERROR_SUCCESS || first == ERROR_NO_MORE_ITEMS ? ERROR_ACCESS_DENIED : first;
    }
    return runAll(node, {&removeValues, &removeKey});
}

LSTATUS deleteTree(NodeId node, bool withItself)
{
    LSTATUS status = existence(node);
    if (status == ERROR_SUCCESS && withItself && isRoot(node)) {
        status = ERROR_ACCESS_DENIED;
    }
    status = status != ERROR_SUCCESS ? status : runAll(node, {&removeValuesBelow, &removeKeysBelow});
    return status != ERROR_SUCCESS || !withItself ? status : Query(removeKey).with(node).run();
}

} // namespace winhost::registry
