// The host's store under what may happen to its files, disk and processes. A scenario is a script of steps in
// a process of its own, which says the status of each.
#include "support/test.h"

#include "registry/names.h"

#include <csignal>
#include <deque>

#include <pwd.h>
#include <random>
#include <shlobj.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isAddressSanitized = true; // whose own memory takes terabytes of addresses
#else
constexpr bool isAddressSanitized = false;
#endif

const bool isStressed = std::getenv("RKUINFO_STRESS") != nullptr; // by the full amounts

// ---- Processes

int talk = -1; // a script's end

/// What a script says: its steps' statuses.
const struct Say
{
    const Say& operator<<(LSTATUS status) const { return dprintf(talk, "%d ", status), *this; }
} say;

/// Ends a line, and waits to be told.
bool pause()
{
    char told = '\n';
    return write(talk, &told, 1) == 1 && read(talk, &told, 1) == 1;
}

/// A script in a new process, with the store in a folder.
class Process
{
public:
    Process(const fs::path& folder, const std::function<void()>& script)
    {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        m_process = fork();
        talk = ends[m_process == 0 ? 1 : 0];
        m_talk = ends[0];
        close(ends[m_process == 0 ? 0 : 1]);
        if (m_process == 0) {
            setenv("XDG_DATA_HOME", folder.c_str(), 1);
            script();
            std::fflush(stdout);
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() { close(m_talk); }

    void kill() const { ::kill(m_process, SIGKILL); }
    void tell() const { EXPECT_EQ(write(m_talk, "\n", 1), 1); }

    /// What it says, up to a line's end or its own.
    std::string read() const
    {
        std::string text;
        for (char each = 0; ::read(m_talk, &each, 1) == 1 && each != '\n';) {
            text += each;
        }
        return text;
    }

    /// The exit code, or the negative signal; of one that stops too.
    int wait(int options = 0) const
    {
        int status = 0;
        waitpid(m_process, &status, options);
        return WIFEXITED(status) ? WEXITSTATUS(status) : WIFSTOPPED(status) ? -SIGSTOP : -WTERMSIG(status);
    }

private:
    pid_t m_process = 0;
    int m_talk = -1;
};

std::string played(const fs::path& folder, const std::function<void()>& script)
{
    const Process process(folder, script);
    const std::string said = process.read();
    const int ended = process.wait();
    return ended == 0 ? said : said + "ended by " + std::to_string(ended);
}

fs::path freshFolder(const std::string& name)
{
    fs::remove_all(scratchFolder() / name);
    fs::create_directories(scratchFolder() / name);
    return scratchFolder() / name;
}

// ---- Steps

constexpr LSTATUS isWrong = -1; // answered, but not what was set

std::size_t length = 5000;

/// Runs call(key, name) for value n; a key has a hundred of them.
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

/// A value's data: its number, its length and its content, over and over.
LSTATUS set(int n, int content = static_cast<int>(std::random_device()()))
{
    std::vector<int> data(length, content);
    data[0] = n;
    data[1] = static_cast<int>(length);
    return onValue(n, true, [&](HKEY key, LPCWSTR name) {
        return RegSetValueExW(key, name, 0, REG_BINARY, reinterpret_cast<const BYTE*>(data.data()),
                              static_cast<DWORD>(length * sizeof n));
    });
}

LSTATUS get(int n, int* content = nullptr)
{
    return onValue(n, false, [&](HKEY key, LPCWSTR name) {
        static thread_local int data[5000];
        std::fill_n(data, 3, 0);
        DWORD type = 0, size = sizeof data;
        const LSTATUS status =
            RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
        const bool isWhole = type == REG_BINARY && data[0] == n && data[1] > 2 &&
                             DWORD(data[1]) == size / 4 && std::equal(data + 3, data + data[1], data + 2);
        if (content != nullptr) {
            *content = data[2];
        }
        wchar_t any[64];
        DWORD nameLength = 64;
        const bool isNamed =
            enumerate(true, key, static_cast<DWORD>(n % 100), any, &nameLength) != ERROR_SUCCESS ||
            (nameLength == 4 && utf8(any) >= "1000" && utf8(any) < "1100");
        return !isNamed || (status == ERROR_SUCCESS && !isWhole) ? isWrong : status;
    });
}

/// Sets the values below n, until an error.
LSTATUS fill(int n)
{
    LSTATUS status = ERROR_SUCCESS;
    for (int i = 0; i < n && status == ERROR_SUCCESS; ++i) {
        status = set(i);
    }
    return status;
}

/// Gets them, and says how many are right, missing, refused and wrong.
void count(int n)
{
    int right = 0, missing = 0, refused = 0, wrong = 0;
    for (int i = 0; i < n; ++i) {
        const LSTATUS status = get(i);
        ++(status == ERROR_SUCCESS          ? right
           : status == ERROR_FILE_NOT_FOUND ? missing
           : status == isWrong              ? wrong
                                            : refused);
    }
    say << right << missing << refused << wrong;
}

/// Gets value 1 in as many threads, and again as each ends.
LSTATUS getInThreads(int count)
{
    struct GetsAtItsEnd
    {
        ~GetsAtItsEnd() { EXPECT_EQ(get(1), ERROR_SUCCESS); }
    };
    std::atomic<LSTATUS> result = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&] {
            thread_local const GetsAtItsEnd last;
            result |= get(1);
        });
    }
    threads.clear();
    return result;
}

/// Forks; the parent goes on when the child has ended.
LSTATUS split(bool childGoesOn)
{
    const pid_t child = fork();
    if (child == 0 && !childGoesOn) {
        std::exit(0);
    }
    int status = 0;
    return child != 0 && waitpid(child, &status, 0) == child ? status : 0;
}

/// Lets the store's next write meet something: an error, or a signal below 0.
LSTATUS meet(int what)
{
    static int next = 0;
    next = what;
    const auto writeOrFail = [](int file, const void* data, std::size_t size, off64_t at) {
        const int met = std::exchange(next, 0);
        if (met < 0) {
            raise(-met);
        }
        errno = met;
        return met > 0 ? -1 : pwrite64(file, data, size, at);
    };
    sqlite3_vfs* const vfs = sqlite3_vfs_find(nullptr);
    return vfs->xSetSystemCall(vfs, "pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(+writeOrFail));
}

LSTATUS limit(__rlimit_resource what, rlim_t most)
{
    const rlimit wanted = {most, most};
    return setrlimit(what, &wanted);
}

/// Leaves no home in the environment, but that of the system's list; 1 where the shell folders are elsewhere.
LSTATUS loseHome()
{
    static std::string home = fs::path(std::getenv("XDG_DATA_HOME")).parent_path().parent_path();
    static const Patch user = intercept<"getpwuid_r", decltype(getpwuid_r)>(
        [](auto, auto, passwd* entry, auto, auto, passwd** found) {
            entry->pw_dir = home.data();
            *found = entry;
            return 0;
        },
        "libwinhost.so");
    unsetenv("HOME");
    unsetenv("XDG_DATA_HOME");
    wchar_t path[MAX_PATH];
    SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path);
    return utf8(path) != windowsPath(home + "/.local/share");
}

// ---- What happens to processes

TEST(Store, GoesOnAfterWhatHappensToAProcess)
{
    constexpr auto eightGB = isAddressSanitized ? RLIM_INFINITY : rlim_t{8} << 30;
    const std::pair<std::string, std::function<void()>> rows[] = {
        {"0 0 0 0 0 ", [] { say << set(1) << split(false) << get(1) << set(1) << get(1); }},
        {"0 0 0 0 0 0 0 0 0 ", [] { say << set(1) << split(true) << get(1) << set(1) << get(1); }},
        {"0 0 1016 0 0 ", [] { say << set(1) << meet(EIO) << set(1) << set(1) << get(1); }},
        {"0 0 112 0 0 ", [] { say << set(1) << meet(ENOSPC) << set(1) << set(1) << get(1); }},
        {"0 0 0 ", [] { say << set(1) << getInThreads(3000) << set(1); }},
        {"0 0 0 ", [] { say << limit(RLIMIT_AS, eightGB) << set(1) << getInThreads(100); }},
        {"0 0 112 0 0 ",
         [] { say << limit(RLIMIT_FSIZE, 400 << 10) << set(1) << fill(400) << get(1) << get(2); }},
        {"0 0 0 ", [] { say << loseHome() << set(1) << get(1); }},
    };
    for (const auto& [said, script] : rows) {
        SCOPED_TRACE(said);
        const fs::path folder = freshFolder("process/.local/share");
        EXPECT_EQ(played(folder, script), said);
        EXPECT_EQ(played(folder, [] { say << get(1) << set(1); }), "0 0 ");
    }
}

TEST(Store, AStoppedWriterHoldsUpOnlyWriters)
{
    const fs::path folder = freshFolder("stopped");
    const Process stopped(folder, [] { say << set(1) << meet(-SIGSTOP) << set(1); });
    EXPECT_EQ(stopped.wait(WUNTRACED), -SIGSTOP);
    const auto use = [] { say << get(1) << getInThreads(20) << set(1) << get(1); };
    EXPECT_EQ(played(folder, use), "0 0 167 0 "); // ERROR_LOCK_FAILED
    stopped.kill();
    EXPECT_EQ(stopped.wait(), -SIGKILL);
    EXPECT_EQ(played(folder, use), "0 0 0 0 ");
}

TEST(Store, WorksInTwoProcessesOfOneNumber)
{
    const auto script = [] {
        if (unshare(CLONE_NEWPID) == 0 && split(true) == 0 && getpid() == 1) {
            say << set(1) << fill(9) << get(1);
        }
    };
    const fs::path folder = freshFolder("numbers");
    const Process one(folder, script);
    const Process other(folder, script);
    const std::string said = one.read();
    if (said.empty()) {
        GTEST_SKIP() << "NOT TESTED: another namespace is for root alone";
    }
    EXPECT_EQ(said + other.read(), "0 0 0 0 0 0 ");
    EXPECT_EQ(one.wait() + other.wait(), 0);
}

// ---- Files

TEST(Store, FollowsItsFiles)
{
    const fs::path other = freshFolder("other");
    ASSERT_EQ(played(other, [] { say << set(1) << set(2); }), "0 0 ");
    const fs::path folder = scratchFolder() / "moving";
    const fs::path store = folder / "winhost";
    const std::function<void()> changes[] = {
        [&] { fs::remove_all(store); },
        [&] { fs::rename(store, folder / "elsewhere"); },
        [&] { fs::remove(store / "registry.db"); },
        [&] { fs::remove(store / "registry.db-wal"); },
        [&] { fs::remove(store / "registry.db-shm"); },
        [&] { fs::rename(store, folder / "before"), fs::copy(other / "winhost", store); },
    };
    for (const auto& change : changes) {
        freshFolder("moving");
        const Process process(folder, [] {
            say << set(1), pause();
            say << get(3) << set(1) << set(1) << get(1), pause();
            get(1);
        });
        process.read();
        change();
        process.tell();
        const std::string said = process.read();
        const bool works = said.ends_with(" 0 0 ");
        EXPECT_TRUE(works || said.find("1015 ") != std::string::npos) << said;
        EXPECT_EQ(played(folder, [] { say << get(1); }),
                  works ? "0 " : "1015 "); // a new process sees the write
        process.tell();
        EXPECT_EQ(process.wait(), 0);
    }
}

TEST(Store, RefusesATreeThatContainsItself)
{
    const fs::path folder = freshFolder("looped");
    ASSERT_EQ(played(folder, [] { say << set(1); }), "0 ");
    const auto ask = [&folder](const std::string& sql) { // the first number that is answered
        std::int64_t answer = 0;
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open((folder / "winhost/registry.db").c_str(), &database), SQLITE_OK);
        const auto take = [](void* out, int, char** columns, char**) {
            *static_cast<std::int64_t*>(out) = std::stoll(columns[0]);
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), take, &answer, nullptr), SQLITE_OK);
        sqlite3_close(database);
        return answer;
    };
    using winhost::registry::mix;
    const std::int64_t parent = ask("SELECT max(id) FROM keys WHERE name = x'4400690073006B00'");
    std::uint64_t sum = mix(std::uint64_t(parent), 1); // the user's root, as its own key Software\\Disk\\l
    for (const std::string_view part : {std::string_view("\0l", 2), {"l\0", 2}, {}}) {
        sum = mix(sum, part);
    }
    ask("INSERT INTO keys VALUES(" + std::to_string(parent) + ", x'006C', 1, x'6C00', " +
        std::to_string(std::int64_t(sum)) + ")");
    const auto script = [] {
        HKEY key = nullptr;
        say << RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Disk\\l", 0, KEY_READ, &key)
            << RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Disk") << get(1);
    };
    EXPECT_EQ(played(folder, script), "1015 0 2 ");
    EXPECT_EQ(ask("SELECT count(*) FROM keys WHERE parent = 1"), 1); // and takes nothing above along
}

TEST(Store, IsTheUsersAlone)
{
    const fs::path folder = freshFolder("owned") / "new";
    umask(0);
    ASSERT_EQ(played(folder, [] { say << set(1); }), "0 ");
    EXPECT_EQ(fs::status(folder / "winhost").permissions(), fs::perms(0700));
    for (const auto& entry : fs::directory_iterator(folder / "winhost")) {
        EXPECT_EQ(entry.status().permissions(), fs::perms(0600)) << entry.path();
    }
    if (geteuid() != 0 || chown((folder / "winhost").c_str(), 12345, 12345) != 0) {
        GTEST_SKIP() << "NOT TESTED: giving files away is for root alone";
    }
    EXPECT_EQ(played(folder, [] { say << get(1) << set(1); }), "5 5 ");
}

TEST(Store, DoesNotGrowUnderAStoppedReader)
{
    const fs::path folder = freshFolder("growing");
    const Process reader(folder, [] { set(1), get(1), pause(); });
    reader.read();
    for (int i = 0; i < (isStressed ? 5000 : 150); ++i) {
        ASSERT_EQ(played(folder, [] { say << fill(20); }), "0 ");
    }
    std::uintmax_t size = 0;
    for (const auto& entry : fs::directory_iterator(folder / "winhost")) {
        size += entry.file_size();
    }
    EXPECT_LT(size, 12U << 20);
    reader.tell();
    EXPECT_EQ(reader.wait(), 0);
}

// ---- Disks

class Disk : public testing::TestWithParam<const char*>
{
protected:
    ~Disk() override { shell("umount disk"); }

    static bool shell(const std::string& command)
    {
        const std::string there = "cd " + scratchFolder().string() + " && { " + command + "; } >said 2>&1";
        return std::system(there.c_str()) == 0;
    }
    static void fillUp() { shell("cat /dev/zero >>disk/ballast; sync"); }

    const fs::path m_folder = freshFolder("disk");
};

TEST_P(Disk, FullOrReadOnlyKeepsWhatIsThere)
{
    if (!shell(GetParam())) {
        GTEST_SKIP() << "NOT TESTED: needs root, and mkfs for " << GetParam();
    }
    fillUp();
    EXPECT_EQ(played(m_folder, [] { say << set(1) << get(1); }), "112 112 ");
    fs::remove(m_folder / "ballast");
    const auto useAFullDisk = [] { say << get(1) << getInThreads(300) << fill(9999) << get(1); };
    const Process running(m_folder, [=] {
        say << set(1) << fill(9), pause();
        useAFullDisk(), pause();
        say << get(1) << set(1);
    });
    EXPECT_EQ(running.read(), "0 0 ");
    fillUp();
    running.tell();
    EXPECT_EQ(running.read(), "0 0 112 0 ");
    EXPECT_EQ(played(m_folder, useAFullDisk), "0 0 112 0 ");
    fs::remove(m_folder / "ballast");
    const auto use = [] { say << get(1) << set(1) << get(1) << getInThreads(20); };
    EXPECT_EQ(played(m_folder, use), "0 0 0 0 ");
    running.tell();
    EXPECT_EQ(running.read(), "0 0 ");
    EXPECT_EQ(running.wait(), 0);
    ASSERT_TRUE(shell("mount -o remount,ro disk"));
    EXPECT_EQ(played(m_folder, use), "0 5 0 0 "); // ERROR_ACCESS_DENIED
}

INSTANTIATE_TEST_SUITE_P(
    Full, Disk,
    testing::Values("mount -t tmpfs -o size=6m none disk",
                    "truncate -s 12M image && mkfs.ext4 -qF image && mount -o loop image disk",
                    "truncate -s 120M image && mkfs.btrfs -f image && mount -o loop image disk"));

// ---- Other files that winhost reads

TEST(Host, ReadsNoFileWithoutAnEnd)
{
    const fs::path ini = scratchFolder() / "large.ini";
    for (const auto& [size, error] :
         {std::pair{std::size_t{1} << 20, 0}, {(std::size_t{1} << 20) + 1, 223}}) {
        writeFile(ini, "[s]\nk=5\n" + std::string(size - 8, ';'));
        EXPECT_EQ(GetPrivateProfileIntW(L"s", L"k", 7, Wide(windowsPath(ini))), error == 0 ? 5U : 7U);
        EXPECT_EQ(GetLastError(), DWORD(error)); // ERROR_FILE_TOO_LARGE
    }
    const fs::path userDirs = scratchFolder() / "home/.config/user-dirs.dirs";
    fs::create_directories(userDirs.parent_path());
    ASSERT_EQ(mkfifo(userDirs.c_str(), 0600), 0);
    unsetenv("XDG_DOCUMENTS_DIR");
    wchar_t path[MAX_PATH];
    EXPECT_EQ(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, path),
              HRESULT(0x80070002));
    EXPECT_TRUE(utf8(path).ends_with("\\home\\Documents")) << utf8(path);
}

// ---- Many processes

/// Sets number after number, each in one of eight values, and says it then.
void writeOn(int number)
{
    std::minstd_rand random(static_cast<unsigned>(number));
    for (LSTATUS status = ERROR_SUCCESS; status == ERROR_SUCCESS;) {
        length = 3 + random() % (random() % 50 == 0 ? 4990 : 500);
        ++number;
        status = set(number % 8, number);
        say << (status == ERROR_SUCCESS ? number : -status);
    }
}

TEST(Storm, AKilledWriterLeavesEveryWriteWhole)
{
    const fs::path folder = std::getenv("XDG_DATA_HOME"); // of this process too, which reads all along
    const int kills = isStressed ? 600 : 50;
    std::minstd_rand random(2018);
    int finished = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const Process process(folder, [finished] { writeOn(finished); });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 120000));
        process.kill();
        std::istringstream said(process.read());
        ASSERT_EQ(process.wait(), -SIGKILL);
        for (int number = 0; said >> number; finished = number) {
            ASSERT_EQ(number, finished + 1);
        }
        const auto check = [finished] {
            for (int number = std::max(1, finished - 7); number <= finished; ++number) {
                int content = 0;
                EXPECT_EQ(get(number % 8, &content), ERROR_SUCCESS) << number;
                EXPECT_TRUE(content == number || (content == number + 8 && number == finished - 7))
                    << content;
            }
        };
        check();
        ASSERT_EQ(played(folder, check), "") << "after kill " << kill;
    }
    EXPECT_GT(finished, 0);
    std::cout << kills << " kills, " << finished << " writes, all whole\n";
}

/// Does anything to values in eight keys; what else than that one is not there.
LSTATUS doAnything(std::minstd_rand& random)
{
    const int value = static_cast<int>(random() % 8 * 100 + random() % 8);
    const auto choice = random() % 200;
    const LSTATUS status =
        choice > 100  ? get(value)
        : choice > 20 ? set(value)
        : choice > 1
            ? onValue(value, true, RegDeleteValueW)
            : RegDeleteTreeW(HKEY_CURRENT_USER, Wide("Software\\Disk\\" + std::to_string(value / 100)));
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_KEY_DELETED ? ERROR_SUCCESS : status;
}

TEST(Storm, ManyAtOnceDisturbNobody)
{
    using Clock = std::chrono::steady_clock;
    const fs::path folder = std::getenv("XDG_DATA_HOME");
    const auto end = Clock::now() + std::chrono::seconds(isStressed ? 30 : 2);
    const auto storm = [end] {
        std::atomic<int> done = 0;
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < 8; ++i) {
            threads.emplace_back([&, i] {
                for (std::minstd_rand random(static_cast<unsigned>(getpid()) * 8 + i); Clock::now() < end;
                     ++done) {
                    EXPECT_EQ(doAnything(random), ERROR_SUCCESS);
                }
            });
        }
        threads.clear();
        say << done;
    };
    std::deque<Process> workers;
    for (int i = 0; i < 8; ++i) {
        workers.emplace_back(folder, storm);
    }
    const Process partner(folder, [] {
        for (int content = 0; pause(); set(800, content + 1)) {
            say << get(800, &content) << content;
        }
    });
    int number = 0;
    for (partner.read(); Clock::now() < end;) {
        ASSERT_EQ(set(800, ++number), ERROR_SUCCESS);
        partner.tell();
        ASSERT_EQ(partner.read(), "0 " + std::to_string(number) + ' '); // what was just written
        int content = 0;
        ASSERT_EQ(get(800, &content), ERROR_SUCCESS);
        ASSERT_EQ(content, ++number); // what the other has written since
    }
    partner.kill();
    EXPECT_EQ(partner.wait(), -SIGKILL);
    for (const Process& each : workers) {
        std::cout << each.read() << "operations of 8 threads\n";
        EXPECT_EQ(each.wait(), 0);
    }
    std::cout << number << " handed over\n";
}

// ---- Damage

/// Another content at random: cut off, a few bytes changed, or a page zeroed, random or swapped.
std::string damaged(std::string bytes, std::minstd_rand& random)
{
    const auto any = [&](std::size_t below) { return random() % std::max<std::size_t>(below, 1); };
    const auto kind = any(5);
    if (kind == 0) {
        bytes.resize(any(bytes.size()));
    } else if (kind == 1) {
        for (std::size_t changes = 1 + any(20); changes-- > 0;) {
            bytes[any(bytes.size())] = static_cast<char>(random());
        }
    } else {
        constexpr std::size_t size = 4096;
        char* const page = bytes.data() + any(bytes.size() / size) * size;
        char* const other = bytes.data() + any(bytes.size() / size) * size;
        for (std::size_t i = 0; i < size; ++i) {
            page[i] = kind == 2   ? '\0'
                      : kind == 3 ? static_cast<char>(random())
                                  : std::exchange(other[i], page[i]);
        }
    }
    return bytes;
}

TEST(Store, NeverAnswersFromADamagedFileWhatIsWrong)
{
    const fs::path folder = freshFolder("damaged");
    ASSERT_EQ(played(folder, [] { length = 4, fill(5000), count(5000); }), "5000 0 0 0 ");
    const std::string names[] = {"registry.db", "registry.db-wal", "registry.db-shm"};
    std::string whole[3];
    std::ranges::transform(names, whole, [&](auto& name) { return readFile(folder / "winhost" / name); });
    ASSERT_GT(whole[0].size(), 200000U);
    std::minstd_rand random(2026);
    int sums[4] = {};
    const int files = isStressed ? 2000 : 60;
    for (int file = 0; file < files; ++file) {
        for (int i = 0; i < 3; ++i) {
            const bool isChanged = file % 5 == i || (i == 0 && file % 5 > 2);
            writeFile(folder / "winhost" / names[i], isChanged ? damaged(whole[i], random) : whole[i]);
        }
        std::istringstream said(played(folder, [] { count(5000); }));
        EXPECT_TRUE(said.str().ends_with(" 0 ")) << "file " << file << ": " << said.str(); // none is wrong
        for (int& sum : sums) {
            int each = 0;
            sum += said >> each ? each : 0;
        }
    }
    std::cout << files << " damaged files of 5000 values: " << sums[0] << " values right, " << sums[1]
              << " missing, " << sums[2] << " refused, " << sums[3] << " wrong\n";
}

} // namespace
