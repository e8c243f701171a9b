// The keys that the process has open. A handle names a slot and the slot's turn, so that one that was closed,
// or that never was one, is found out. Looking a handle up takes no lock.
#pragma once

#include "registry/tree.h"

#include <mutex>

namespace winhost::registry {

/// How far a handle's two enumerations have come.
struct Positions
{
    std::mutex mutex;
    Position subKeys;
    Position values;
};

struct OpenKey
{
    NodeId node = 0;
    Positions* positions = nullptr;
};

bool isPredefined(HKEY key);

/// ERROR_INVALID_HANDLE, or ERROR_ACCESS_DENIED when a needed right was not asked for at opening.
LSTATUS resolve(HKEY key, REGSAM needed, OpenKey& opened);
LSTATUS openHandle(NodeId node, REGSAM access, HKEY& key);
LSTATUS closeHandle(HKEY key);

} // namespace winhost::registry
