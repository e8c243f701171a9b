#include "registry/cache.h"

#include <algorithm>
#include <cstring>

namespace winhost::registry {

namespace {

constexpr std::size_t slotCount = 32;
constexpr std::size_t longestPath = 160;
constexpr std::size_t longestName = 64;
constexpr DWORD stretchLength = 64;

template <std::size_t Capacity>
class Remembered
{
public:
    bool is(TextView text) const
    {
        return text.size() == m_length && std::equal(text.begin(), text.end(), m_units);
    }

    void assign(TextView text)
    {
        m_length = text.size();
        std::copy(text.begin(), text.end(), m_units);
    }

private:
    std::size_t m_length;
    wchar_t m_units[Capacity];
};

struct Slot
{
    std::size_t version; // 0: unused
    NodeId start;
    NodeId found;
    Remembered<longestPath> path;
};

struct LastValue
{
    std::size_t version; // 0: none
    NodeId node;
    Entry value; // points into the database, where a version's pages stay as they are while it can be read
    Remembered<longestName> name;
};

/// Entries of a list that follow each other.
struct Stretch
{
    std::size_t version; // 0: none
    NodeId node;
    DWORD first;
    DWORD count;
    Entry entries[stretchLength]; // as LastValue's
};

thread_local LastValue lastValue;

void rememberValue(const ReadTransaction& in, NodeId node, TextView name, const Entry& value)
{
    if (name.size() <= longestName) {
        lastValue.version = in.version();
        lastValue.node = node;
        lastValue.value = value;
        lastValue.name.assign(name);
    }
}

/// Paths differ at their ends.
std::size_t slotOf(NodeId start, TextView path)
{
    std::size_t hash = start + path.size();
    for (const wchar_t unit : path.substr(path.size() - std::min<std::size_t>(path.size(), 8))) {
        hash = hash * 31 + unit;
    }
    return hash % slotCount;
}

} // namespace

LSTATUS findPathCached(const ReadTransaction& in, NodeId start, TextView path, NodeId& found)
{
    if (path.empty() || path.size() > longestPath) {
        return findPath(in.get(), start, path, found);
    }
    thread_local Slot slots[slotCount];
    Slot& slot = slots[slotOf(start, path)];
    if (slot.version == in.version() && slot.start == start && slot.path.is(path)) {
        found = slot.found;
        return ERROR_SUCCESS;
    }
    const LSTATUS status = findPath(in.get(), start, path, found);
    if (status == ERROR_SUCCESS) {
        slot.version = in.version();
        slot.start = start;
        slot.found = found;
        slot.path.assign(path);
    }
    return status;
}

LSTATUS findValueCached(const ReadTransaction& in, NodeId node, TextView name, Entry& value)
{
    if (lastValue.version == in.version() && lastValue.node == node && lastValue.name.is(name)) {
        value = lastValue.value;
        return ERROR_SUCCESS;
    }
    const LSTATUS status = findValue(in.get(), node, name, value);
    if (status == ERROR_SUCCESS) {
        rememberValue(in, node, name, value);
    }
    return status;
}

LSTATUS entryAtCached(const ReadTransaction& in, List list, NodeId node, DWORD index, Position& position,
                      Entry& entry)
{
    thread_local Stretch ofSubKeys;
    thread_local Stretch ofValues;
    Stretch& stretch = list == List::eSubKeys ? ofSubKeys : ofValues;
    if (stretch.version != in.version() || stretch.node != node || index < stretch.first ||
        index - stretch.first >= stretch.count) {
        stretch.version = 0;
        if (const LSTATUS status = entriesAt(in.get(), list, node, index, position, stretch.entries,
                                             stretchLength, stretch.count)) {
            return status;
        }
        stretch.version = in.version();
        stretch.node = node;
        stretch.first = index;
    }
    entry = stretch.entries[index - stretch.first];
    if (list == List::eValues) {
        rememberValue(in, node, entry.name, entry);
    }
    return ERROR_SUCCESS;
}

} // namespace winhost::registry
