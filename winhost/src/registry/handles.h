// The keys that the process has open. A handle names a slot and the slot's turn, so that one that was closed,
// or that never was one, is found out.
#pragma once

#include "registry/tree.h"

namespace winhost::registry {

bool isPredefined(HKEY key);

/// ERROR_INVALID_HANDLE, or ERROR_ACCESS_DENIED when a needed right was not asked for at opening.
LSTATUS resolve(HKEY key, REGSAM needed, NodeId& node);
LSTATUS openHandle(NodeId node, REGSAM access, HKEY& key);
LSTATUS closeHandle(HKEY key);

/// Around a fork.
void lockHandles();
void unlockHandles();

} // namespace winhost::registry
