// Prints the memory usage of this process.
#pragma once

#include <cstdio>
#include <cstring>

namespace bench {

/// Prints two numbers in kilobytes: the private pages that this process has written, and the mapped pages of
/// the store's file. Processes share the mapped pages, and the system can reclaim them.
inline void printMemory()
{
    std::FILE* const pages = std::fopen("/proc/self/smaps", "r");
    long own = 0;
    long store = 0;
    bool inStore = false;
    for (char line[4096 + 128]; pages != nullptr && std::fgets(line, sizeof line, pages) != nullptr;) {
        unsigned long start = 0;
        unsigned long end = 0;
        long size = 0;
        if (std::sscanf(line, "%lx-%lx ", &start, &end) == 2) {
            inStore = std::strstr(line, "/registry.db") != nullptr;
        } else if (inStore && std::sscanf(line, "Rss: %ld", &size) == 1) {
            store += size;
        } else if (!inStore && std::sscanf(line, "Private_Dirty: %ld", &size) == 1) {
            own += size;
        }
    }
    std::printf("%ld %ld\n", own, store);
}

} // namespace bench
