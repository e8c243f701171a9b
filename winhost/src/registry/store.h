// The registry's database, for one call.
#pragma once

#include "database/database.h"

namespace winhost::registry {

using database::check;
using database::Failure;
using database::outcome;

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

database::Database& store();

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
    database::Database::Lock m_lock;
    Purpose m_purpose;
    bool m_isCommitted = false;
};

/// In an Access.
class Query : public database::Query
{
public:
    template <typename... Arguments>
    explicit Query(const char* sql, const Arguments&... arguments)
        : database::Query(store(), sql, arguments...)
    {
    }
};

} // namespace winhost::registry
