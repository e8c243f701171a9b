// The keys that the process has open. A number is never given twice, so that a handle that was closed, or
// that never was one, is found out.
#pragma once

#include "registry/store.h"

#include <mutex>

namespace winhost::registry {

bool isPredefined(HKEY key);

/// ERROR_INVALID_HANDLE, or ERROR_ACCESS_DENIED when a needed right was not asked for at opening.
LSTATUS resolve(HKEY key, REGSAM needed, NodeId& node);
HKEY openHandle(NodeId node, REGSAM access);
LSTATUS closeHandle(HKEY key);

std::mutex& handlesMutex();

} // namespace winhost::registry
