#include "model/tree.h"

#include "model/system.h"
#include "model/value.h"
#include "text/print.h"

#include <algorithm>

namespace {

using Kind = Change::Kind;

template <typename Named>
auto findNamed(const std::vector<Named>& list, const Text& name)
{
    return std::ranges::find_if(list, [&](const Named& one) { return equalIgnoringCase(one.name, name); });
}

/// As an application sees it: a text ends at its terminator, or where its bytes do.
bool sameData(const Value& a, const Value& b)
{
    return a.sameData(b) || (a.type == REG_SZ && b.type == REG_SZ && textOf(a) == textOf(b));
}

void addRemoval(const Text& path, const Node& node, std::vector<Change>& out)
{
    for (const Node& key : node.keys) {
        addRemoval(joinedKey(path, key.name), key, out);
    }
    for (const Value& value : node.values) {
        out.push_back({Kind::removed, path, false, value, {}});
    }
    out.push_back({Kind::removed, path, true, {}, {}});
}

void addChanges(const Text& path, const Node* present, const Node& wanted, bool isWhole,
                std::vector<Change>& out)
{
    if (present == nullptr && wanted.isMade) {
        out.push_back({Kind::added, path, true, {}, {}});
    }
    static const Node none;
    const Node& before = present != nullptr ? *present : none;
    for (const Value& value : wanted.values) {
        const auto found = findNamed(before.values, value.name);
        if (found == before.values.end()) {
            out.push_back({Kind::added, path, false, {}, value});
        } else if (!sameData(*found, value)) {
            out.push_back({Kind::changed, path, false, *found, value});
        }
    }
    for (const Value& value : before.values) {
        const bool isAsked = std::ranges::any_of(
            wanted.removedValues, [&](const Text& name) { return equalIgnoringCase(name, value.name); });
        if (isAsked || (isWhole && findNamed(wanted.values, value.name) == wanted.values.end())) {
            out.push_back({Kind::removed, path, false, value, {}});
        }
    }
    for (const Node& key : wanted.keys) {
        const auto found = findNamed(before.keys, key.name);
        const Node* old = found == before.keys.end() ? nullptr : &*found;
        if (key.isRemoved && old != nullptr) {
            addRemoval(joinedKey(path, key.name), *old, out);
            old = nullptr;
        }
        addChanges(joinedKey(path, key.name), old, key, isWhole, out);
    }
    for (const Node& key : before.keys) {
        if (isWhole && findNamed(wanted.keys, key.name) == wanted.keys.end()) {
            addRemoval(joinedKey(path, key.name), key, out);
        }
    }
}

void carryOut(const Text& root, const Change& change)
{
    const Text path = change.key.empty() ? root : joinedKey(root, change.key);
    if (change.kind != Kind::removed) {
        const Key key = Key::make(path);
        if (!change.isKey) {
            key.set(change.after);
        }
    } else if (!change.isKey) {
        if (const std::optional<Key> key = Key::find(path, KEY_READ | KEY_WRITE)) {
            key->removeValue(change.before.name);
        }
    } else {
        const std::size_t end = path.rfind(Text::value_type('\\'));
        if (const std::optional<Key> parent = Key::find(path.substr(0, end), KEY_ALL_ACCESS)) {
            parent->removeKey(path.substr(end + 1));
        }
    }
}

Change inverse(const Change& change)
{
    const Kind kind = change.kind == Kind::added     ? Kind::removed
                      : change.kind == Kind::removed ? Kind::added
                                                     : Kind::changed;
    return {kind, change.key, change.isKey, change.after, change.before};
}

void takeBack(const Text& root, const std::vector<Change>& changes, std::size_t done, const Failure& reason)
{
    try {
        while (done > 0) {
            carryOut(root, inverse(changes[--done]));
        }
    } catch (const Failure& second) {
        throw Failure(std::string(reason.what()) +
                      "; a part was written and could not be taken back: " + second.what());
    }
}

} // namespace

Node& Node::below(const Text& keyName)
{
    const auto found =
        std::ranges::find_if(keys, [&](const Node& key) { return equalIgnoringCase(key.name, keyName); });
    if (found != keys.end()) {
        return *found;
    }
    keys.push_back({keyName, {}, {}, false, {}, false});
    return keys.back();
}

Node readTree(const Key& key)
{
    Node node;
    node.values = key.values();
    for (const Text& name : key.keys()) {
        if (const std::optional<Key> below = key.below(name)) {
            node.keys.push_back(readTree(*below));
            node.keys.back().name = name;
        }
    }
    return node;
}

std::vector<Change> changes(const Node& present, const Node& wanted, bool isWhole)
{
    std::vector<Change> found;
    addChanges({}, &present, wanted, isWhole, found);
    return found;
}

void apply(const Text& root, const std::vector<Change>& changes,
           const std::function<void(std::size_t)>& progress)
{
    const bool isTransaction = RegistryTransaction::begin();
    std::size_t done = 0;
    try {
        for (; done < changes.size(); ++done) {
            carryOut(root, changes[done]);
            progress(done + 1);
        }
    } catch (const Failure& failure) {
        if (isTransaction) {
            RegistryTransaction::end(false);
        } else {
            takeBack(root, changes, done, failure);
        }
        throw Failure(std::string(failure.what()) + "; nothing was changed");
    }
    if (isTransaction && !RegistryTransaction::end(true)) {
        throw Failure("the registry cannot be written" + registryPlace() + "; nothing was changed");
    }
}

void printChanges(const std::vector<Change>& changes)
{
    const auto told = [](const Value& value) {
        const std::string_view type = typeName(value);
        return type == "string" ? std::string(type) + ' ' + shown(textOf(value))
                                : (type.empty() ? "type " + std::to_string(value.type) : std::string(type)) +
                                      ' ' + dataText(value);
    };
    for (const Change& change : changes) {
        const char* const sign = change.kind == Kind::added     ? "+ "
                                 : change.kind == Kind::removed ? "- "
                                                                : "~ ";
        const std::string key = change.key.empty() ? "" : shown(change.key) + '\\';
        if (change.isKey) {
            print(sign + (key.empty() ? "the key itself" : key));
            continue;
        }
        const Value& value = change.kind == Kind::removed ? change.before : change.after;
        print(sign + key + (value.name.empty() ? "(default)" : shown(value.name)) + ": " +
              (change.kind == Kind::changed ? told(change.before) + " -> " : "") + told(value));
    }
}
