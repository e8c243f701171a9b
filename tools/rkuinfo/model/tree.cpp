#include "model/tree.h"

#include "model/system.h"
#include "model/value.h"
#include "text/text.h"

#include <algorithm>
#include <csignal>
#include <memory>

namespace {

volatile std::sig_atomic_t isInterrupted = 0;

/// As an application sees it: a text ends at its terminator, and a number may be stored with fewer bytes.
bool sameData(const Value& a, const Value& b)
{
    return a.type == b.type && (a.data == b.data || (typeOf(a) != nullptr && typeOf(a) == typeOf(b) &&
                                                     dataText(a) == dataText(b)));
}

/// Adds a key and those above it.
void touch(Tree& tree, TextView path)
{
    while (tree.try_emplace({Text(path), std::nullopt}).second && !path.empty()) {
        path = parentKey(path);
    }
}

void eraseKey(Tree& tree, const Text& key)
{
    auto at = tree.lower_bound({key, std::nullopt});
    while (at != tree.end() && equalIgnoringCase(TextView(at->first.key).substr(0, key.size()), key) &&
           (at->first.key.size() == key.size() || at->first.key[key.size()] == separator)) {
        at = tree.erase(at);
    }
}

/// Stores values. Those of one key follow each other, so it is opened once.
class Writer
{
public:
    explicit Writer(const Text& root) : m_root(root) {}

    /// Null removes it.
    void write(const Name& name, const Value* value)
    {
        const Text path = joinedKey(m_root, name.key);
        if (name.isKey() && value == nullptr) {
            m_key.reset();
            if (const std::optional<Key> parent = Key::find(Text(parentKey(path)), KEY_ALL_ACCESS)) {
                parent->removeKey(Text(lastName(path)));
            }
            return;
        }
        if (!m_key || m_path != path) {
            m_key = value != nullptr ? Key::make(path) : Key::find(path, KEY_READ | KEY_WRITE);
            m_path = path;
        }
        if (name.isKey() || !m_key) {
            return;
        }
        if (value != nullptr) {
            m_key->set(*value);
        } else {
            m_key->removeValue(*name.value);
        }
    }

private:
    const Text& m_root;
    Text m_path;
    std::optional<Key> m_key;
};

} // namespace

bool isUsablePath(TextView path)
{
    constexpr std::size_t longestPath = 1020;
    constexpr std::size_t longestName = 255;
    bool isUsable = path.size() <= longestPath;
    for (; isUsable && !path.empty(); path = parentKey(path)) {
        isUsable =
            lastName(path).size() <= longestName && !lastName(path).empty() && path.front() != separator;
    }
    return isUsable;
}

bool LessName::operator()(const Name& left, const Name& right) const
{
    for (TextView a = left.key, b = right.key; !a.empty() || !b.empty();) {
        const std::size_t endA = std::min(a.find(separator), a.size());
        const std::size_t endB = std::min(b.find(separator), b.size());
        if (const int order = compareIgnoringCase(a.substr(0, endA), b.substr(0, endB)); order != 0) {
            return order < 0;
        }
        a.remove_prefix(std::min(endA + 1, a.size()));
        b.remove_prefix(std::min(endB + 1, b.size()));
    }
    return !right.isKey() && (left.isKey() || compareIgnoringCase(*left.value, *right.value) < 0);
}

Tree readTree(Key key, Losses* losses)
{
    struct Pending // its parent stays open, so that no path is too long to be opened
    {
        Text path;
        std::shared_ptr<const Key> parent;
    };
    Tree tree;
    std::vector<Pending> pending;
    const auto readKey = [&](const Text& path, const std::shared_ptr<const Key>& opened) {
        tree.try_emplace({path, std::nullopt});
        for (Value& value : opened->values(losses)) {
            tree.insert_or_assign({path, value.name}, std::move(value));
        }
        for (const Text& name : opened->keys(losses)) {
            pending.push_back({joinedKey(path, name), opened});
        }
        showProgress("read", tree.size());
    };
    readKey({}, std::make_shared<const Key>(std::move(key)));
    while (!pending.empty()) {
        const Pending next = std::move(pending.back());
        pending.pop_back();
        guard(losses, [&] {
            constexpr std::ptrdiff_t deepest = 510; // with names of one character, the longest usable path
            if (std::ranges::count(next.path, separator) >= deepest) {
                throw Failure("keys are nested more than 510 deep, which no application can read, below " +
                              utf8(TextView(next.path).substr(0, next.path.find(separator))));
            }
            if (std::optional<Key> below = next.parent->below(Text(lastName(next.path)))) {
                readKey(next.path, std::make_shared<const Key>(std::move(*below)));
            }
        });
    }
    finishProgress();
    return tree;
}

void edit(Tree& tree, const std::vector<Edit>& edits)
{
    for (const Edit& each : edits) {
        if (!each.isRemoval) {
            touch(tree, each.name.key);
            tree[each.name] = each.value;
        } else if (each.name.isKey()) {
            eraseKey(tree, each.name.key);
        } else {
            tree.erase(each.name);
        }
    }
}

std::vector<Change> compare(const Tree& before, const Tree& after)
{
    std::vector<Change> found;
    auto old = before.begin();
    auto now = after.begin();
    while (old != before.end() || now != after.end()) {
        const bool isOld = old != before.end() && (now == after.end() || !LessName()(now->first, old->first));
        const bool isNow = now != after.end() && (old == before.end() || !LessName()(old->first, now->first));
        if (!isOld || !isNow || !sameData(old->second, now->second)) {
            found.push_back({isNow ? now->first : old->first, isOld ? &old->second : nullptr,
                             isNow ? &now->second : nullptr});
        }
        old = isOld ? std::next(old) : old;
        now = isNow ? std::next(now) : now;
    }
    return found;
}

void carryOut(const Text& root, const std::vector<Change>& changes)
{
    std::signal(SIGINT, [](int /*signal*/) { isInterrupted = 1; }); // Ctrl-C undoes what was done
    Writer writer(root);
    std::size_t done = 0;
    try {
        for (; done < changes.size(); ++done) {
            if (isInterrupted != 0) {
                throw Failure("interrupted");
            }
            writer.write(changes[done].name, changes[done].after);
            showProgress("wrote", done + 1, changes.size());
        }
        finishProgress();
    } catch (const Failure& failure) {
        const std::string why = failure.what();
        try {
            for (; done > 0 && !hasTransactions(); --done) {
                writer.write(changes[done - 1].name, changes[done - 1].before);
            }
        } catch (const Failure& second) {
            throw Failure(why + "; a part was written and could not be undone: " + second.what());
        }
        throw Failure(why + "; nothing was changed");
    }
}

void printChanges(const std::vector<Change>& changes)
{
    const auto shownData = [](const Value& value) {
        const ValueType* const type = typeOf(value);
        return (type != nullptr ? std::string(type->name) : "type " + std::to_string(value.type)) + ' ' +
               shown(dataText(value));
    };
    for (const auto& [name, before, after] : changes) {
        std::string line = before == nullptr ? "+ " : after == nullptr ? "- " : "~ ";
        line += name.key.empty() ? "" : shown(name.key) + '\\';
        if (name.isKey()) {
            print(line + (name.key.empty() ? "the key itself" : ""));
        } else {
            print(line + (name.value->empty() ? "(default)" : shown(*name.value)) + ": " +
                  (before != nullptr ? shownData(*before) : "") +
                  (before != nullptr && after != nullptr ? " -> " : "") +
                  (after != nullptr ? shownData(*after) : ""));
        }
    }
}
