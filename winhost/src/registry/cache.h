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

/// One of entriesAt, of which the thread remembers the last stretch in each list. A value that is enumerated
/// is remembered as one that was found: who asks for its name asks for its data next.
LSTATUS entryAtCached(const ReadTransaction& in, List list, NodeId node, DWORD index, Position& position,
                      Entry& entry);

} // namespace winhost::registry
