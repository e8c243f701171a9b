#include "registry/memory.h"

#include <pthread.h>

#include <functional>
#include <new>
#include <utility>

namespace winhost::registry {

Memory& memory = *new Memory; // never destroyed: the program's destructors may use it

namespace {

constexpr unsigned turnShift = 32;
constexpr unsigned indexShift = 2;
constexpr std::size_t mostResults = 4096;

std::uint64_t hashOf(const Lookup& lookup)
{
    const std::uint64_t number = static_cast<std::uint64_t>(lookup.node) << 32 | lookup.index;
    return mix(mix(lookup.kind, number), std::hash<std::string_view>()(bytesOf(lookup.text)));
}

/// Compares text as bytes, which is faster than comparing code units.
bool isSame(const Lookup& a, const Lookup& b)
{
    return a.kind == b.kind && a.node == b.node && a.index == b.index && bytesOf(a.text) == bytesOf(b.text);
}

/// Identifies the enumeration of sub-keys or values with a handle.
std::uint64_t placeId(HKEY key, Lookup::Kind kind)
{
    return reinterpret_cast<std::uintptr_t>(key) * 4 + kind;
}

// ---- Fork: holds both locks, because the child cannot release a lock that another thread held

database::Lock held;

void beforeFork()
{
    held = database::hold();
    memory.mutex.lock();
}

void afterFork()
{
    memory.mutex.unlock();
    // Empties `held` before the lock is released, because another thread may fork immediately afterwards.
    const database::Lock ended = std::move(held);
}

void afterForkInChild()
{
    database::forsake();
    afterFork();
}

const int isPrepared = pthread_atfork(beforeFork, afterFork, afterForkInChild);

} // namespace

NodeId rootOf(HKEY key)
{
    return key == HKEY_CURRENT_USER ? currentUserId : key == HKEY_LOCAL_MACHINE ? localMachineId : 0;
}

Memory::Slot* Memory::find(HKEY key)
{
    const auto handle = reinterpret_cast<std::uintptr_t>(key);
    const std::size_t index = static_cast<std::uint32_t>(handle) >> indexShift;
    Slot* const slot = index < m_slots.size() ? &m_slots[index] : nullptr;
    return slot != nullptr && slot->handle == handle && slot->node != 0 ? slot : nullptr;
}

NodeId Memory::resolve(HKEY key, REGSAM needed)
{
    const Slot* const slot = find(key);
    const NodeId node = slot != nullptr ? slot->node : rootOf(key);
    require(node != 0, ERROR_INVALID_HANDLE);
    require(slot == nullptr || (slot->access & needed) == needed, ERROR_ACCESS_DENIED);
    return node;
}

HKEY Memory::open(NodeId node, REGSAM access)
{
    if (m_closed == m_slots.size()) {
        m_slots.push_back({m_closed << indexShift, 0, 0, m_closed + 1});
    }
    Slot& slot = m_slots[m_closed];
    m_closed = slot.nextClosed;
    slot = {slot.handle + (std::uintptr_t{1} << turnShift), node, access, 0};
    return reinterpret_cast<HKEY>(slot.handle);
}

LSTATUS Memory::close(HKEY key)
{
    if (Slot* const slot = find(key)) {
        slot->node = 0;
        m_places.erase(placeId(key, Lookup::eSubKeyAt));
        m_places.erase(placeId(key, Lookup::eValueAt));
        slot->nextClosed = std::exchange(m_closed, slot - m_slots.data());
        return ERROR_SUCCESS;
    }
    return rootOf(key) != 0 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

Memory::Place* Memory::placeBefore(HKEY key, const Lookup& lookup)
{
    const auto found =
        lookup.kind >= Lookup::eSubKeyAt ? m_places.find(placeId(key, lookup.kind)) : m_places.end();
    const bool isBefore = found != m_places.end() && found->second.isBefore(lookup.index);
    return isBefore ? &found->second : nullptr;
}

std::optional<Previous> Memory::previous(HKEY key, const Lookup& lookup)
{
    const Place* const place = placeBefore(key, lookup);
    return place != nullptr ? std::optional<Previous>({place->name, isOutdated(*place)}) : std::nullopt;
}

void Memory::advance(HKEY key, const Lookup& lookup, const Result& result, LSTATUS status, bool isOutdated)
{
    const bool isClosed = find(key) == nullptr && rootOf(key) == 0; // by another thread
    if (lookup.kind < Lookup::eSubKeyAt || status == ERROR_MORE_DATA || isClosed) {
        return;
    }
    if (status != ERROR_SUCCESS) {
        m_places.erase(placeId(key, lookup.kind));
        return;
    }
    Place& place = m_places[placeId(key, lookup.kind)];
    place.name = result.name; // if this throws, the place is unchanged
    place.epoch = m_epochs[1] - (isOutdated ? 1 : 0);
    place.index = lookup.index;
}

const Result* Memory::recall(HKEY key, const Lookup& lookup)
{
    const Place* const place = placeBefore(key, lookup);
    return place != nullptr && isOutdated(*place) ? nullptr : recall(lookup);
}

const Result* Memory::recall(const Lookup& lookup)
{
    if (m_version == 0 || database::contentVersion() != m_version) {
        return nullptr;
    }
    const auto found = m_results.find(hashOf(lookup));
    if (found == m_results.end() || !isSame(found->second.lookup, lookup)) {
        return nullptr;
    }
    const Entry& entry = found->second;
    const bool isValid = entry.epoch == m_epochs[lookup.kind == Lookup::ePath ? 0 : 1];
    return isValid ? &entry.result : nullptr;
}

void Memory::remember(const Lookup& lookup, const Result& result)
{
    constexpr std::size_t longest = 2400;
    const std::size_t size = bytesOf(lookup.text).size() + bytesOf(result.name).size() + result.data.size();
    if (m_version == 0 || database::contentVersion() != m_version || size > longest) {
        return;
    }
    const std::uint64_t hash = hashOf(lookup);
    if (m_results.size() >= mostResults && !m_results.contains(hash)) {
        m_results.clear();
    }
    try {
        Entry& entry = m_results[hash];
        entry.epoch = 0; // the entry is invalid until it is complete
        entry.text = lookup.text;
        entry.lookup = lookup;
        entry.lookup.text = entry.text;
        entry.result = result;
        entry.epoch = m_epochs[lookup.kind == Lookup::ePath ? 0 : 1];
    } catch (const std::bad_alloc&) { // the result is not cached
    }
}

void Memory::follow(std::uint64_t version, Change change)
{
    if (version != m_version) {
        m_version = version;
        m_epochs[0] += change == eValues ? 0 : 1;
        ++m_epochs[1];
    }
    if (change != eOthers) {
        m_places.clear(); // as on Windows, an index is a position among the remaining entries
    }
}

} // namespace winhost::registry
