// Other settings stores on Linux, each with 1,000 entries. The interface uses only narrow strings, because
// these stores are compiled with the host's native wchar_t.
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
    /// Reads the next entry on each call, and starts again after the last.
    virtual int readNext() { return 0; }
    /// Writes the integer to the file. Returns false on failure.
    virtual bool write(int) { return false; }
};

std::unique_ptr<Peer> openQSettings(const std::string& folder);
std::unique_ptr<Peer> openSqlite(const std::string& folder);
std::unique_ptr<Peer> openKeyFile(const std::string& folder);
std::unique_ptr<Peer> openDconf(const std::string& folder);

inline constexpr int peerEntries = 1000;

} // namespace bench
