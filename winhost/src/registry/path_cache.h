// What paths led to, remembered by each thread until any process writes.
#pragma once

#include "registry/tree.h"

namespace winhost::registry {

/// As findPath.
LSTATUS findPathCached(const ReadTransaction& in, NodeId start, TextView path, NodeId& found);

} // namespace winhost::registry
