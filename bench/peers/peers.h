// What a user of a Linux host would keep settings in instead, each with 1,000 entries in a folder of its own.
// Narrow text alone crosses here: these are built with the host's own wchar_t.
#pragma once

#include <memory>
#include <string>

namespace bench {

class Peer
{
public:
    Peer() = default;
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    virtual ~Peer() = default;
    /// Reads one integer.
    virtual int read() = 0;
    /// Reads the next of all the others; 0 where this is not measured.
    virtual int readNext() { return 0; }
    /// Writes it so that it outlives the process, and gives success; false where a peer has no such thing.
    virtual bool write(int) { return false; }
};

std::unique_ptr<Peer> openQSettings(const std::string& folder);
std::unique_ptr<Peer> openSqlite(const std::string& folder);
std::unique_ptr<Peer> openKeyFile(const std::string& folder);
std::unique_ptr<Peer> openDconf(const std::string& folder);

inline constexpr int peerEntries = 1000;

} // namespace bench
