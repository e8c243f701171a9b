#include "registry/handles.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <new>

namespace winhost::registry {

namespace {

static_assert(sizeof(std::uintptr_t) == sizeof(std::uint64_t));

// A handle: the slot's turn above, which is odd while it is open; the slot's index times 4 below.
constexpr unsigned turnShift = 32;
constexpr unsigned indexShift = 2;
constexpr std::uint32_t none = UINT32_MAX;

struct Slot
{
    std::uint32_t turn = 0;
    std::uint32_t nextFree = none;
    REGSAM access = 0;
    NodeId node = 0;
};

struct Table
{
    std::mutex mutex;
    std::deque<Slot> slots;
    std::uint32_t firstFree = none;

    /// Null for what is no open key.
    Slot* find(HKEY key)
    {
        const auto number = reinterpret_cast<std::uintptr_t>(key);
        const std::size_t index = static_cast<std::uint32_t>(number) >> indexShift;
        const auto turn = static_cast<std::uint32_t>(number >> turnShift);
        const bool isHandle = turn % 2 == 1 && number % (1U << indexShift) == 0 && index < slots.size();
        return isHandle && slots[index].turn == turn ? &slots[index] : nullptr;
    }
};

/// Never destroyed: a key may be closed while the process ends.
Table& table()
{
    static Table* const created = new Table;
    return *created;
}

/// 0 for a key that is not predefined.
NodeId rootOf(HKEY key)
{
    return key == HKEY_CURRENT_USER ? currentUserId : key == HKEY_LOCAL_MACHINE ? localMachineId : 0;
}

} // namespace

bool isPredefined(HKEY key)
{
    return rootOf(key) != 0;
}

LSTATUS resolve(HKEY key, REGSAM needed, NodeId& node)
{
    node = rootOf(key);
    if (node != 0) {
        return ERROR_SUCCESS;
    }
    const std::lock_guard<std::mutex> lock(table().mutex);
    const Slot* const slot = table().find(key);
    if (slot == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    node = slot->node;
    return (slot->access & needed) == needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

LSTATUS openHandle(NodeId node, REGSAM access, HKEY& key)
{
    Table& all = table();
    const std::lock_guard<std::mutex> lock(all.mutex);
    if (all.firstFree == none) {
        if (all.slots.size() >= none >> indexShift) {
            return ERROR_NOT_ENOUGH_MEMORY;
        }
        all.slots.emplace_back();
        all.firstFree = static_cast<std::uint32_t>(all.slots.size() - 1);
    }
    const std::uint32_t index = all.firstFree;
    Slot& slot = all.slots[index];
    all.firstFree = slot.nextFree;
    slot = {slot.turn + 1, none, access, node};
    key =
        reinterpret_cast<HKEY>(std::uintptr_t{slot.turn} << turnShift | std::uintptr_t{index} << indexShift);
    return ERROR_SUCCESS;
}

LSTATUS closeHandle(HKEY key)
{
    if (isPredefined(key)) {
        return ERROR_SUCCESS;
    }
    Table& all = table();
    const std::lock_guard<std::mutex> lock(all.mutex);
    Slot* const slot = all.find(key);
    if (slot == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    ++slot->turn;
    slot->nextFree = all.firstFree;
    all.firstFree = static_cast<std::uint32_t>(
        static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(key)) >> indexShift);
    return ERROR_SUCCESS;
}

void lockHandles()
{
    table().mutex.lock();
}

void unlockHandles()
{
    table().mutex.unlock();
}

} // namespace winhost::registry
