// SQLite with prepared statements and a write-ahead log. Like winhost's registry, it does not flush
// each commit to disk.
#include "peers.h"

#include <sqlite3.h>

#include <stdexcept>

namespace {

class Table final : public bench::Peer
{
public:
    explicit Table(const std::string& folder)
    {
        check(sqlite3_open((folder + "/settings.db").c_str(), &m_database));
        run("PRAGMA journal_mode = WAL");
        run("PRAGMA synchronous = NORMAL");
        run("CREATE TABLE settings (path TEXT PRIMARY KEY, value) WITHOUT ROWID");
        run("BEGIN");
        for (int i = 1; i < bench::peerEntries; ++i) {
            run("INSERT INTO settings VALUES ('Display/Setting" + std::to_string(i) + "', " +
                std::to_string(i) + ")");
        }
        run("INSERT INTO settings VALUES ('Display/Frames', 60)");
        run("COMMIT");
        prepare("SELECT value FROM settings WHERE path = ?1", m_select);
        prepare("UPDATE settings SET value = ?2 WHERE path = ?1", m_update);
    }

    ~Table() override
    {
        sqlite3_finalize(m_select);
        sqlite3_finalize(m_update);
        sqlite3_close(m_database);
    }

    int read() override
    {
        const int number = sqlite3_step(m_select) == SQLITE_ROW ? sqlite3_column_int(m_select, 0) : -1;
        sqlite3_reset(m_select);
        return number;
    }

    bool write(int number) override
    {
        sqlite3_bind_int(m_update, 2, number);
        const bool done = sqlite3_step(m_update) == SQLITE_DONE;
        return sqlite3_reset(m_update) == SQLITE_OK && done;
    }

private:
    static void check(int result)
    {
        if (result != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errstr(result));
        }
    }

    void run(const std::string& sql)
    {
        check(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr));
    }

    void prepare(const char* sql, sqlite3_stmt*& statement)
    {
        check(sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr));
        check(sqlite3_bind_text(statement, 1, "Display/Frames", -1, nullptr));
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_select = nullptr;
    sqlite3_stmt* m_update = nullptr;
};

} // namespace

std::unique_ptr<bench::Peer> bench::openSqlite(const std::string& folder)
{
    return std::make_unique<Table>(folder);
}
