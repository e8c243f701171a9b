#include "registry/cache.h"

#include <algorithm>
#include <cstring>

namespace winhost::registry {

namespace {

constexpr std::size_t slotCount = 32;
constexpr std::size_t longestPath = 160;
constexpr std::size_t longestName = 64;

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
    thread_local LastValue last;
    if (last.version == in.version() && last.node == node && last.name.is(name)) {
        value = last.value;
        return ERROR_SUCCESS;
    }
    const LSTATUS status = findValue(in.get(), node, name, value);
    if (status == ERROR_SUCCESS && name.size() <= longestName) {
        last.version = in.version();
        last.node = node;
        last.value = value;
        last.name.assign(name);
    }
    return status;
}

} // namespace winhost::registry
