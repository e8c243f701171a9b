#include "registry/handles.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace winhost::registry {

namespace {

// A handle: how often its slot was opened above, the slot's index times 4 below.
constexpr unsigned turnShift = 32;
constexpr unsigned indexShift = 2;

struct Slot
{
    std::uintptr_t handle; // the last that it had
    bool isOpen = false;
    REGSAM access = 0;
    NodeId node = 0;
};

struct Table
{
    /// Null for what is no open key.
    Slot* find(HKEY key)
    {
        const auto handle = reinterpret_cast<std::uintptr_t>(key);
        const std::size_t index = static_cast<std::uint32_t>(handle) >> indexShift;
        Slot* const slot = index < slots.size() ? &slots[index] : nullptr;
        return slot != nullptr && slot->isOpen && slot->handle == handle ? slot : nullptr;
    }

    std::mutex mutex;
    std::deque<Slot> slots;
    std::vector<Slot*> closed;
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

HKEY openHandle(NodeId node, REGSAM access)
{
    Table& all = table();
    const std::lock_guard<std::mutex> lock(all.mutex);
    if (all.closed.empty()) {
        all.closed.reserve(all.slots.size() + 1); // closing asks for no memory
        all.closed.push_back(&all.slots.emplace_back(Slot{all.slots.size() << indexShift}));
    }
    Slot& slot = *all.closed.back();
    all.closed.pop_back();
    slot = {slot.handle + (std::uintptr_t{1} << turnShift), true, access, node};
    return reinterpret_cast<HKEY>(slot.handle);
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
    slot->isOpen = false;
    all.closed.push_back(slot);
    return ERROR_SUCCESS;
}

std::mutex& handlesMutex()
{
    return table().mutex;
}

} // namespace winhost::registry
