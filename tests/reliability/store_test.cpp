// Tests the host's store with damaged files, full or read-only disks and killed processes.
#include "support/test.h"

#include <winhost/changes.h>

#include <csignal>
#include <deque>
#include <fcntl.h>
#include <pwd.h>
#include <random>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

const bool isStressed = std::getenv("RKUINFO_STRESS") != nullptr; // makes the tests run longer

// ---- Steps that a child process runs by name

constexpr LSTATUS isWrong = 1; // returned by get() if the data is wrong

int talk = -1; // this process's end of the socket that transfers steps and results
std::size_t length = 5000;

/// Calls call(key, name) for value number n. Each key contains 100 values.
template <typename Call>
LSTATUS onValue(int n, bool makesKey, Call call)
{
    const Wide path("Software\\Disk\\" + std::to_string(n / 100));
    HKEY opened = nullptr;
    const LSTATUS status = makesKey ? RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_WRITE,
                                                      nullptr, &opened, nullptr)
                                    : RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &opened);
    const OwnedKey key(opened);
    return status != ERROR_SUCCESS ? status : call(opened, Wide(std::to_string(1000 + n % 100)));
}

/// Sets value number n to an array of integers: n, the array's length, and copies of `content`.
LSTATUS setTo(int n, int content)
{
    std::vector<int> data(length, content);
    data[0] = n;
    data[1] = static_cast<int>(length);
    return onValue(n, true, [&](HKEY key, LPCWSTR name) {
        return RegSetValueExW(key, name, 0, REG_BINARY, reinterpret_cast<const BYTE*>(data.data()),
                              static_cast<DWORD>(length * sizeof n));
    });
}

LSTATUS set(int n)
{
    return setTo(n, static_cast<int>(std::random_device()() / 2));
}

/// Reads value number n. On success, returns `content` if it is negative, otherwise 0; on failure, returns a
/// positive error code.
LSTATUS get(int n)
{
    static thread_local int data[5000];
    const LSTATUS status = onValue(n, false, [n](HKEY key, LPCWSTR name) {
        std::fill_n(data, 3, 0);
        DWORD type = 0, size = sizeof data, room = 64;
        const LSTATUS answer =
            RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
        const bool isWhole = type == REG_BINARY && data[0] == n && data[1] > 2 &&
                             DWORD(data[1]) == size / 4 && std::equal(data + 3, data + data[1], data + 2);
        wchar_t any[64] = L"1000"; // a valid name, in case enumerate() finds none
        enumerate(true, key, static_cast<DWORD>(n % 100), any, &room);
        const bool isNamed = utf8(any).size() == 4 && utf8(any).starts_with("10");
        return !isNamed || (answer == ERROR_SUCCESS && !isWhole) ? isWrong : answer;
    });
    return status == ERROR_SUCCESS ? std::min(data[2], 0) : status;
}

/// Sets values 0 to n - 1; stops at the first error.
LSTATUS fill(int n)
{
    LSTATUS status = ERROR_SUCCESS;
    for (int i = 0; i < n && status == ERROR_SUCCESS; ++i) {
        status = set(i);
    }
    return status;
}

/// Reads values 0 to n - 1, and prints how many are correct and how many are wrong.
LSTATUS count(int n)
{
    std::map<LSTATUS, int> values;
    for (int i = 0; i < n; ++i) {
        ++values[get(i)];
    }
    dprintf(talk, "%d %d ", values[ERROR_SUCCESS], values[isWrong]);
    return ERROR_SUCCESS;
}

/// Continues an enumeration of the values 0 to 99, and prints the numbers of the next n values. At the end,
/// returns ERROR_NO_MORE_ITEMS; the next call starts again from 0.
LSTATUS walk(int n)
{
    static HKEY key = nullptr;
    static DWORD next = 0;
    LSTATUS status =
        key != nullptr ? 0 : RegOpenKeyExW(HKEY_CURRENT_USER, Wide("Software\\Disk\\0"), 0, KEY_READ, &key);
    for (; n > 0 && status == ERROR_SUCCESS; --n) {
        wchar_t name[8];
        DWORD room = 8;
        status = enumerate(true, key, next++, name, &room);
        if (status == ERROR_SUCCESS) {
            dprintf(talk, "%d ", std::stoi(utf8(name)) - 1000);
        } else {
            next = 0;
        }
    }
    return status;
}

/// Sets value i % 8 to -i, for i from `number` + 1 upwards, until this fails. Prints i after each success,
/// and the negated error code at the end.
LSTATUS setOn(int number)
{
    std::minstd_rand random(static_cast<unsigned>(number));
    LSTATUS status = ERROR_SUCCESS;
    while (status == ERROR_SUCCESS) {
        length = 3 + random() % (random() % 50 == 0 ? 4990 : 500);
        ++number;
        status = setTo(number % 8, -number);
        dprintf(talk, "%d ", status == ERROR_SUCCESS ? number : -status);
    }
    return status;
}

LSTATUS inThreads(int count, const std::function<LSTATUS()>& call)
{
    std::atomic<LSTATUS> result = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&] { result |= call(); });
    }
    threads.clear();
    return result;
}

/// Reads, writes and deletes values in eight keys from eight threads for a few seconds. Prints the number of
/// operations.
LSTATUS storm(int seconds)
{
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    std::atomic<int> done = 0;
    const LSTATUS status = inThreads(8, [&] {
        std::minstd_rand random(std::random_device{}());
        LSTATUS last = ERROR_SUCCESS;
        for (; last == ERROR_SUCCESS && Clock::now() < end; ++done) {
            const int value = static_cast<int>((1 + random() % 8) * 100 + random() % 8);
            const Wide key("Software\\Disk\\" + std::to_string(value / 100));
            const auto choice = random() % 200;
            last = choice > 100  ? get(value)
                   : choice > 20 ? set(value)
                   : choice > 1  ? onValue(value, true, RegDeleteValueW)
                                 : RegDeleteTreeW(HKEY_CURRENT_USER, key);
            last = last == ERROR_FILE_NOT_FOUND || last == ERROR_KEY_DELETED ? ERROR_SUCCESS : last;
        }
        return last;
    });
    dprintf(talk, "%d ", done.load());
    return status;
}

/// Forks. In mode 0, the child sets a value and exits, and then the parent continues. In mode 1, the child
/// continues, and the parent only waits for it. Mode 2 is mode 0 without the `pthread_atfork` handlers.
LSTATUS split(int mode)
{
    int status = 0;
    const pid_t child = mode == 2 ? _Fork() : fork();
    if (child == 0 && mode != 1) {
        std::exit(set(1));
    }
    if (child != 0 && (waitpid(child, &status, 0) != child || mode == 1)) {
        _exit(status == 0 ? 0 : 1);
    }
    return status;
}

/// Makes the store's next write fail with an error or, if `error` is 0, hang.
LSTATUS meet(int error)
{
    static std::optional<int> next;
    next = error;
    const auto writeOrFail = [](auto write, auto... arguments) {
        const auto met = std::exchange(next, std::nullopt);
        if (met == 0) {
            dprintf(talk, "\n");
            pause();
        }
        errno = met.value_or(0);
        return met ? -1 : write(arguments...);
    };
    static const Patch write = intercept<"pwrite", decltype(pwrite)>(writeOrFail, "libwinhost.so");
    return 0;
}

/// Closes all descriptors, as a daemon does, and opens 20 documents. Returns how many documents have been
/// overwritten.
LSTATUS openDocuments(int)
{
    static std::vector<int> documents;
    if (documents.empty()) {
        for (int file = 3; file < 1024; ++file) {
            file == talk ? 0 : close(file);
        }
        for (int i = 0; i < 20; ++i) {
            documents.push_back(open(scratchFolder().c_str(), O_TMPFILE | O_RDWR, 0600));
            EXPECT_EQ(write(documents.back(), "text", 4), 4);
        }
    }
    return static_cast<LSTATUS>(std::count_if(documents.begin(), documents.end(),
                                              [](int file) { return lseek(file, 0, SEEK_END) != 4; }));
}

std::string storeFile(const std::string& suffix)
{
    return scratchFolder() / "store/.local/share/winhost" / ("registry.db" + suffix);
}

int openFile(const std::string& suffix)
{
    return open(storeFile(suffix).c_str(), O_RDWR | O_CREAT, 0600);
}

/// Opens the store's file and its index. If `byte` is 0, closes both files. Otherwise, locks that byte of
/// both files until the process exits; if `byte` is 1, also locks all later bytes.
LSTATUS openStore(int byte)
{
    int result = 0;
    for (const char* const suffix : {"", "-shm"}) {
        const int opened = openFile(suffix);
        struct flock all = {};
        all.l_type = F_WRLCK;
        all.l_start = byte;
        all.l_len = byte == 1 ? 0 : 1;
        result |= byte != 0 ? fcntl(opened, F_SETLK, &all) : close(opened);
    }
    return result;
}

/// Begins a read transaction with the program's own SQLite. The next call closes the store.
LSTATUS useSqlite(int)
{
    static sqlite3* database = nullptr;
    return database != nullptr
               ? sqlite3_close(std::exchange(database, nullptr))
               : sqlite3_open(storeFile("").c_str(), &database) +
                     sqlite3_exec(database, "BEGIN; SELECT * FROM vals", nullptr, nullptr, nullptr);
}

/// Copies the store to the file `copy` with the program's own SQLite.
LSTATUS copyStore(int)
{
    sqlite3* database = nullptr;
    const std::string sql = "VACUUM INTO '" + (scratchFolder() / "store/.local/share/copy").string() + "'";
    return sqlite3_open(storeFile("").c_str(), &database) +
           sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) + sqlite3_close(database);
}

/// Acquires a write lease on the store's file, or a read lease on its log. Keeps the lease when another
/// process opens the file.
LSTATUS lease(int isLog)
{
    signal(SIGIO, SIG_IGN);
    const int file = open(storeFile(isLog != 0 ? "-wal" : "").c_str(), O_RDONLY);
    return fcntl(file, F_SETLEASE, isLog != 0 ? F_RDLCK : F_WRLCK);
}

/// Unsets the variables that contain the home folder, so that only getpwuid_r returns it.
LSTATUS loseHome(int)
{
    static std::string home = fs::path(std::getenv("XDG_DATA_HOME")).parent_path().parent_path();
    static const Patch user = intercept<"getpwuid_r", decltype(getpwuid_r)>(
        [](auto, auto, passwd* entry, auto, auto, passwd** found) {
            entry->pw_dir = home.data();
            *found = entry;
            return 0;
        },
        "libwinhost.so");
    return unsetenv("HOME") + unsetenv("XDG_DATA_HOME");
}

LSTATUS refuseMaps(int)
{
    const auto refuse = [](auto...) { return errno = ENOMEM, MAP_FAILED; };
    static const Patch map = intercept<"mmap", decltype(mmap)>(refuse, "libwinhost.so");
    return 0;
}

/// Passes null for results that are required. Returns how many calls did not report an error.
LSTATUS passNulls(int)
{
    constexpr LSTATUS bad = ERROR_INVALID_PARAMETER;
    return (RegCreateKeyExW(HKEY_CURRENT_USER, L"a", 0, nullptr, 0, 0, nullptr, nullptr, nullptr) != bad) +
           (RegEnumKeyExW(HKEY_CURRENT_USER, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr) !=
            bad) +
           (CompareStringOrdinal(nullptr, 0, L"", 0, FALSE) != 0 || GetLastError() != bad) +
           (GetPrivateProfileStringW(L"S", L"a", L"b", nullptr, 9, L"a.ini") != 0 ? 1 : 0);
}

/// Opens files until only `room` more files can be opened.
LSTATUS openAll(int room)
{
    int last = 0;
    for (int each = 0; each >= 0; each = open("/dev/null", O_RDONLY)) {
        last = each;
    }
    while (room-- > 0) {
        close(last--);
    }
    return 0;
}

const std::map<std::string, std::function<LSTATUS(int)>> steps = {
    {"documents", openDocuments},
    {"open-store", openStore},
    {"lease", lease},
    {"sqlite", useSqlite},
    {"copy", copyStore},
    {"refuse-maps", refuseMaps},
    {"lose-home", loseHome},
    {"open-all", openAll},
    {"nulls", passNulls},
    {"start", [](int) { return startAcme(); }},
    {"begin", [](int) { return winhostBeginRegistryChanges(); }},
    {"end", winhostEndRegistryChanges},
    {"set", set},
    {"get", get},
    {"delete", [](int n) { return onValue(n, true, RegDeleteValueW); }},
    {"delete-all", [](int) { return RegDeleteTreeW(HKEY_CURRENT_USER, nullptr); }},
    {"walk", walk},
    {"fill", fill},
    {"count", count},
    {"set-on", setOn},
    {"storm", storm},
    {"fork", split},
    {"idle-child", [](int) { return fork() != 0 ? 0 : (closefrom(0), sleep(8), _exit(0), 0); }},
    {"meet", meet},
    {"length", [](int n) { return length = static_cast<std::size_t>(n), 0; }},
    {"threads", [](int n) { return inThreads(n, [] { return get(1); }); }}};

// ---- Processes

std::string readLine(int file)
{
    std::string text;
    for (char each = 0; read(file, &each, 1) == 1 && each != '\n';) {
        text += each;
    }
    return text;
}

/// A new process, whose store is in the given folder. The process runs steps such as "set 1, get 1" and
/// prints their results. The process must exit with 0 unless the test kills it.
class Process
{
public:
    explicit Process(const fs::path& folder)
    {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        m_process = fork();
        talk = ends[m_process == 0 ? 1 : 0];
        close(ends[m_process == 0 ? 0 : 1]);
        m_talk = ends[0];
        if (m_process == 0) {
            const bool hadFailed = testing::Test::HasFailure();
            setenv("XDG_DATA_HOME", folder.c_str(), 1);
            takeSteps();
            ExitProcess(testing::Test::HasFailure() && !hadFailed ? 1 : 0);
        }
    }
    ~Process()
    {
        // close() is not enough, because processes started after this one have inherited the socket.
        shutdown(m_talk, SHUT_RDWR);
        close(m_talk);
        int status = 0;
        waitpid(m_process, &status, 0);
        EXPECT_EQ(status, m_expected);
    }

    void tell(const std::string& line) const { dprintf(m_talk, "%s\n", line.c_str()); }
    std::string said() const { return readLine(m_talk); }
    std::string operator()(const std::string& line) const
    {
        tell(line);
        return said();
    }
    std::string kill()
    {
        m_expected = SIGKILL;
        ::kill(m_process, m_expected);
        siginfo_t ended = {};
        waitid(P_PID, static_cast<id_t>(m_process), &ended, WEXITED | WNOWAIT); // its files are closed now
        return said();
    }

private:
    static void takeSteps()
    {
        for (std::string line = readLine(talk); !line.empty(); line = readLine(talk)) {
            std::istringstream words(line);
            int n = 0;
            for (std::string step; words >> step >> n; words.ignore()) {
                dprintf(talk, "%d ", steps.at(step)(n));
            }
            dprintf(talk, "\n");
        }
    }

    pid_t m_process = 0;
    int m_talk = -1;
    int m_expected = 0;
};

/// Runs a command in the scratch folder.
bool shell(const std::string& command)
{
    const std::string there = "cd " + scratchFolder().string() + " && { " + command + "; } >said 2>&1";
    return std::system(there.c_str()) == 0;
}

// ---- Scripts

void play(const std::string& script)
{
    const fs::path folder = scratchFolder() / "store/.local/share";
    fs::remove_all(scratchFolder() / "store");
    fs::create_directories(folder);
    std::map<std::string, std::unique_ptr<Process>> processes;
    std::istringstream sentences(script);
    for (std::string sentence; std::getline(sentences >> std::ws, sentence, ';');) {
        SCOPED_TRACE(sentence);
        const std::string who = sentence.substr(0, sentence.find(' ')),
                          what = sentence.substr(who.size() + 1);
        if (who == "$") {
            EXPECT_TRUE(shell("cd store/.local/share && " + what));
            continue;
        }
        std::unique_ptr<Process>& process = processes[who];
        process = process != nullptr ? std::move(process) : std::make_unique<Process>(folder);
        if (what == "dies") {
            process->kill();
        } else if (what != "ends") {
            const std::size_t equals = what.find(" = ");
            EXPECT_EQ((*process)(what.substr(0, equals)), what.substr(equals + 3) + ' ');
        }
        if (what == "dies" || what == "ends" || who == "new") {
            processes.erase(who);
        }
    }
}

/// Returns the paragraphs of store_scripts.txt.
std::vector<std::string> scripts()
{
    std::istringstream lines(readFile(RKUINFO_STORE_SCRIPTS));
    std::vector<std::string> all(1);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) {
            all.emplace_back();
        } else if (!line.starts_with('#')) {
            all.back() += all.back().empty() ? line : ' ' + line;
        }
    }
    std::erase(all, "");
    return all;
}

using Script = testing::TestWithParam<std::size_t>; // the script's number, counting from 0

TEST_P(Script, LeavesAnIntactStore)
{
    const auto latest = Clock::now() + std::chrono::seconds(9);
    play(scripts().at(GetParam()) + "; new get 1, set 1 = 0 0");
    EXPECT_LT(Clock::now(), latest);
}

INSTANTIATE_TEST_SUITE_P(Played, Script, testing::Range(std::size_t(0), scripts().size()));

// ---- Files

TEST(Store, IsPrivateToTheUser)
{
    const fs::path folder = scratchFolder() / "owned";
    umask(0777);
    ASSERT_EQ(Process(folder)("set 1"), "0 ");
    EXPECT_TRUE(shell("! find owned/winhost -type f ! -perm 600 -o -type d ! -perm 700 | grep ."));
    if (!shell("chown 12345 owned/winhost")) {
        GTEST_SKIP() << "NOT TESTED: only root can change the owner of a file";
    }
    EXPECT_EQ(Process(folder)("get 1, set 1"), "5 5 ");
    ASSERT_TRUE(shell("rm -r owned/winhost && chown 12345 owned"));
    EXPECT_EQ(Process(folder)("get 1, set 1"), "2 5 ");
    EXPECT_TRUE(shell("test ! -e owned/winhost"));
}

// ---- Disks

using Disk = testing::TestWithParam<std::string>;

TEST_P(Disk, FullOrReadOnlyLosesNoData)
{
    if (!shell("mkdir disk && " + GetParam())) {
        GTEST_SKIP() << "NOT TESTED: needs root, and mkfs for " << GetParam();
    }
    const Patch unmount(nullptr, [](auto) { shell("umount disk"); });
    const fs::path folder = scratchFolder() / "disk";
    const std::string fillUp = "cat /dev/zero >>disk/ballast; sync";
    const std::string useFull = "get 1, threads 300, fill 9999, get 1";
    const std::string use = "get 1, threads 20, set 1, get 1";
    shell(fillUp);
    EXPECT_EQ(Process(folder)("set 1, get 1"), "112 2 ");
    fs::remove(folder / "ballast");
    Process running(folder);
    EXPECT_EQ(running("set 1, fill 9"), "0 0 ");
    shell(fillUp);
    EXPECT_EQ(running(useFull), "0 0 112 0 ");
    EXPECT_EQ(Process(folder)(useFull), "0 0 112 0 ");
    fs::remove(folder / "ballast");
    EXPECT_EQ(running(use), "0 0 0 0 ");
    running.kill(); // its log remains, and is written back in mode "rw"
    for (const std::string mode : {"ro", "rw", "ro"}) {
        ASSERT_TRUE(shell("mount -o remount," + mode + " disk"));
        EXPECT_EQ(Process(folder)(use), mode == "rw" ? "0 0 0 0 " : "0 0 5 0 "); // ERROR_ACCESS_DENIED
    }
    EXPECT_FALSE(fs::exists(folder / "winhost/registry.db-wal"));
    Process reading(folder);
    EXPECT_EQ(reading("get 1, get 99999"), "0 2 ");
    ASSERT_TRUE(shell("mount -o remount,rw disk"));
    EXPECT_EQ(Process(folder)("set 99999"), "0 ");
    EXPECT_EQ(reading("get 99999"), "0 "); // the value is found although the log was removed
}

INSTANTIATE_TEST_SUITE_P(
    Full, Disk,
    testing::Values("mount -t tmpfs -o size=6m none disk",
                    "truncate -s 12M image && mkfs.ext3 -qF -b 1024 image && mount -o loop image disk",
                    "truncate -s 120M image && mkfs.btrfs -f image && mount -o loop image disk"));

// ---- Other files that winhost reads

TEST(Host, RefusesEndlessFiles)
{
    const fs::path ini = scratchFolder() / "large.ini";
    const auto read = [&ini] { return GetPrivateProfileIntW(L"s", L"k", 7, Wide(windowsPath(ini))); };
    writeFile(ini, "[s]\nk=5\n" + std::string((1U << 20) - 7, ';'));
    EXPECT_EQ(read(), 7U);
    EXPECT_EQ(GetLastError(), 223U); // ERROR_FILE_TOO_LARGE
    fs::remove(ini);
    ASSERT_EQ(mkfifo(ini.c_str(), 0600), 0);
    EXPECT_EQ(read(), 7U);
}

TEST(Host, RefusesFilesThatAreNotLibraries)
{
    fs::current_path(scratchFolder());
    fs::copy_file(thisProgram().parent_path() / libraryModule, "planted.dll");
    ASSERT_TRUE(shell("truncate -s 3G large.dll && ln -s loop loop"));
    const std::pair<std::string, DWORD> rows[] = {
        {"planted", ERROR_ACCESS_DENIED},
        {"Z:planted", ERROR_MOD_NOT_FOUND},
        {windowsPath(fs::absolute("large.dll")), ERROR_BAD_EXE_FORMAT},
        {windowsPath(fs::absolute("loop/a.dll")), ERROR_MOD_NOT_FOUND}};
    for (const auto& [name, error] : rows) {
        EXPECT_EQ(LoadLibraryW(Wide(name)), nullptr);
        EXPECT_EQ(GetLastError(), error) << name;
    }
}

// ---- Many processes

/// Returns what get() must return for values 0 to 7. `last` is the last number that setOn() stored.
std::string givenAfter(int last)
{
    std::string given;
    for (int n = 0; n < 8; ++n) {
        const int number = last - (last - n + 8) % 8;
        given += std::to_string(number > 0 ? -number : ERROR_FILE_NOT_FOUND) + ' ';
    }
    return given;
}

TEST(Storm, KilledWriterLosesNoFinishedWrite)
{
    const fs::path folder = scratchFolder() / "storm";
    const std::string getAll = "get 0, get 1, get 2, get 3, get 4, get 5, get 6, get 7";
    const Process reader(folder); // runs throughout, and reads after each kill
    const int kills = isStressed ? 600 : 30;
    std::minstd_rand random(2018);
    int finished = 0;
    for (int kill = 0; kill < kills; ++kill) {
        Process writer(folder);
        writer.tell("set-on " + std::to_string(finished));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 120000));
        std::istringstream said(writer.kill());
        for (int number = 0; said >> number; finished = number) {
            ASSERT_EQ(number, finished + 1);
        }
        const std::string given = reader(getAll);
        ASSERT_TRUE(given == givenAfter(finished) || given == givenAfter(finished + 1)) << given << finished;
        ASSERT_EQ(Process(folder)(getAll), given);
    }
    EXPECT_GT(finished, 0);
    std::cout << kills << " kills, " << finished << " writes, all complete\n";
}

TEST(Storm, ConcurrentProcessesDoNotInterfere)
{
    const fs::path folder = std::getenv("XDG_DATA_HOME"); // this process's own store is in this folder
    const int seconds = isStressed ? 30 : 1;
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    std::deque<Process> workers;
    for (int i = 0; i < 8; ++i) {
        workers.emplace_back(folder).tell("storm " + std::to_string(seconds));
    }
    const Process reader(folder);
    int number = 0;
    while (Clock::now() < end) {
        ASSERT_EQ(setTo(0, --number), ERROR_SUCCESS);
        ASSERT_EQ(reader("get 0"), std::to_string(number) + ' ');
    }
    for (const Process& each : workers) {
        const std::string said = each.said();
        EXPECT_TRUE(said.ends_with(" 0 ")) << said;
        std::cout << said << "(operations of 8 threads, status)\n";
    }
    std::cout << -number << " values read by another process at once\n";
}

// ---- Damage

/// Returns the bytes with one random change.
std::string damaged(std::string bytes, std::minstd_rand& random)
{
    constexpr std::size_t size = 4096;
    const auto any = [&random](std::size_t below) { return random() % below; };
    char* const page = bytes.data() + any(bytes.size() / size) * size;
    char* const other = bytes.data() + any(bytes.size() / size) * size;
    const std::function<void()> kinds[] = {
        [&] { bytes.resize(any(bytes.size())); },
        [&] { std::generate_n(page + any(size - 20), 1 + any(20), std::ref(random)); },
        [&] { std::generate_n(page, size, std::ref(random)); },
        [&] { std::fill_n(page, size, '\0'); },
        [&] { std::swap_ranges(page, page + size, other); },
    };
    kinds[any(5)]();
    return bytes;
}

TEST(Store, NeverReturnsWrongDataFromDamagedFiles)
{
    const fs::path folder = scratchFolder() / "damaged";
    ASSERT_EQ(Process(folder)("length 120, fill 500, count 500"), "0 0 500 0 0 ");
    Process ended(folder);
    ASSERT_EQ(ended("length 120, fill 250"), "0 0 ");
    ended.kill(); // its log remains
    std::map<fs::path, std::string> whole;
    for (const auto& entry : fs::directory_iterator(folder / "winhost")) {
        whole[entry.path()] = readFile(entry.path());
    }
    ASSERT_GT(whole.begin()->second.size(), 200000U); // the first file is the database
    std::minstd_rand random(2026);
    int allRight = 0;
    const int files = isStressed ? 2000 : 40;
    for (int file = 0; file < files; ++file) {
        int untilChanged = std::max(file % 5 - 2, 0); // the file to damage: usually 0, the database
        for (const auto& [path, bytes] : whole) {
            writeFile(path, untilChanged-- == 0 ? damaged(bytes, random) : bytes);
        }
        int right = 0, wrong = -1;
        std::istringstream(Process(folder)("count 500")) >> right >> wrong;
        EXPECT_EQ(wrong, 0) << "file " << file;
        allRight += right;
    }
    std::cout << files << " damaged files of 500 values: " << allRight << " values right, none wrong\n";
}

} // namespace
