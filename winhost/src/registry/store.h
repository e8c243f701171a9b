// The registry's database, for one call.
#pragma once

#include "database/database.h"

#include <atomic>

namespace winhost::registry {

using database::check;
using database::Failure;
using database::outcome;
using database::Query;

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

/// How often this process has changed it.
inline std::atomic<std::uint64_t> ownChanges = 0;

/// At the end of the process.
void leaveStore();

class Access
{
public:
    enum Purpose
    {
        eReading,
        eChangingKeys,  ///< undone unless committed
        eChangingValues ///< the same, where no key comes or goes
    };

    explicit Access(Purpose purpose);
    ~Access();
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    void commit();

private:
    database::Lock m_lock;
    Purpose m_purpose;
    bool m_isCommitted = false;
};

} // namespace winhost::registry
