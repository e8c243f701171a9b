#include "registry/handles.h"

#include <cstdint>
#include <memory_resource>
#include <unordered_map>

namespace winhost::registry {

namespace {

struct Opened
{
    NodeId node;
    REGSAM access;
};

/// Its blocks are used again, so that opening a key asks the heap for none.
struct Table
{
    std::mutex mutex;
    std::pmr::unsynchronized_pool_resource pool;
    std::pmr::unordered_map<HKEY, Opened> keys{&pool};
    std::uintptr_t last = std::uintptr_t{1} << 32; // a multiple of 4, as no predefined key is
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
    const auto found = table().keys.find(key);
    if (found == table().keys.end()) {
        return ERROR_INVALID_HANDLE;
    }
    node = found->second.node;
    return (found->second.access & needed) == needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

HKEY openHandle(NodeId node, REGSAM access)
{
    const std::lock_guard<std::mutex> lock(table().mutex);
    const auto key = reinterpret_cast<HKEY>(table().last += 4);
    table().keys.emplace(key, Opened{node, access});
    return key;
}

LSTATUS closeHandle(HKEY key)
{
    if (isPredefined(key)) {
        return ERROR_SUCCESS;
    }
    const std::lock_guard<std::mutex> lock(table().mutex);
    return table().keys.erase(key) != 0 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

std::mutex& handlesMutex()
{
    return table().mutex;
}

} // namespace winhost::registry
