// What lookups led to, remembered by each thread until any process writes: the number of the last committed
// write is a part of what is remembered, and a number stands for one content of the file that the process has
// open until it ends.
#pragma once

#include "registry/tree.h"

namespace winhost::registry {

/// As findPath.
LSTATUS findPathCached(const ReadTransaction& in, NodeId start, TextView path, NodeId& found);

/// As findValue. Only the last value is remembered: who asks for its size asks for its data next.
LSTATUS findValueCached(const ReadTransaction& in, NodeId node, TextView name, Entry& value);

} // namespace winhost::registry
