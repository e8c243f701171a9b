#include "registry/path_cache.h"

#include <algorithm>
#include <cstring>

namespace winhost::registry {

namespace {

constexpr std::size_t slotCount = 32;
constexpr std::size_t longestPath = 160;

struct Slot
{
    std::size_t version; // 0: unused
    NodeId start;
    NodeId found;
    std::size_t length;
    wchar_t path[longestPath];
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
    if (slot.version == in.version() && slot.start == start && slot.length == path.size() &&
        std::memcmp(slot.path, path.data(), path.size() * sizeof(wchar_t)) == 0) {
        found = slot.found;
        return ERROR_SUCCESS;
    }
    const LSTATUS status = findPath(in.get(), start, path, found);
    if (status == ERROR_SUCCESS) {
        slot.version = in.version();
        slot.start = start;
        slot.found = found;
        slot.length = path.copy(slot.path, longestPath);
    }
    return status;
}

} // namespace winhost::registry
