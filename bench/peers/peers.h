// Other settings stores on Linux, each with 1,000 entries. The interface uses only narrow strings, because
// the peers are compiled with the host's native wchar_t.
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
    /// Cycles through the entries that read() does not use, and reads one per call.
    virtual int readNext() { return 0; }
    /// Writes the integer so that it outlives the process. Returns false on failure.
    virtual bool write(int) { return false; }
};

std::unique_ptr<Peer> openQSettings(const std::string& folder);
std::unique_ptr<Peer> openSqlite(const std::string& folder);
std::unique_ptr<Peer> openKeyFile(const std::string& folder);
std::unique_ptr<Peer> openDconf(const std::string& folder);

inline constexpr int peerEntries = 1000;

} // namespace bench
