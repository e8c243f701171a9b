// The host's store under what may happen to its files, disk and processes. A scenario is a script of steps,
// each of which says a status: the client below tells what they are.
#include "process.h"

#include "registry/names.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <pwd.h>
#include <random>
#include <shlobj.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <thread>
#include <utility>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isAddressSanitized = true; // whose own memory takes terabytes of addresses
#else
constexpr bool isAddressSanitized = false;
#endif

/// Whether the full amounts are asked for.
bool stressed()
{
    return std::getenv("RKUINFO_STRESS") != nullptr;
}

// ---- The client

constexpr LSTATUS wrong = -1; // answered, but not what was set

std::size_t length = 5000;
std::string home;  // of the user
int nextWrite = 0; // what the store's next write meets: an error, or a signal below 0

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
LSTATUS set(int n, int content)
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
        std::vector<int> data(5000);
        DWORD type = 0, size = 20000;
        const LSTATUS status =
            RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
        data.resize(std::max<DWORD>(size / 4, 3));
        const bool isWhole = type == REG_BINARY && data[0] == n && data[1] == static_cast<int>(size / 4) &&
                             std::equal(data.begin() + 3, data.end(), data.begin() + 2);
        if (content != nullptr) {
            *content = data[2];
        }
        wchar_t any[64];
        DWORD nameLength = 64;
        const bool isNamed =
            enumerate(true, key, static_cast<DWORD>(n % 100), any, &nameLength) != ERROR_SUCCESS ||
            (nameLength == 4 && utf8(any) >= "1000" && utf8(any) < "1100");
        return !isNamed || (status == ERROR_SUCCESS && !isWhole) ? wrong : status;
    });
}

LSTATUS setAnew(int n)
{
    static std::atomic<int> content = getpid();
    return set(n, ++content);
}

/// Sets the values below n, until an error.
LSTATUS fill(int n)
{
    LSTATUS status = ERROR_SUCCESS;
    for (int i = 0; i < n && status == ERROR_SUCCESS; ++i) {
        status = setAnew(i);
    }
    return status;
}

/// Gets them, and says how many are right, missing, refused and wrong.
LSTATUS count(int n)
{
    int counts[4] = {};
    for (int i = 0; i < n; ++i) {
        const LSTATUS status = get(i);
        ++counts[status == ERROR_SUCCESS ? 0 : status == ERROR_FILE_NOT_FOUND ? 1 : status == wrong ? 3 : 2];
    }
    for (const int each : counts) {
        say(std::to_string(each) + ' ');
    }
    return counts[3];
}

/// Runs each in a thread of its own.
LSTATUS inThreads(int count, const std::function<LSTATUS(int)>& each)
{
    std::atomic<LSTATUS> result = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&, i] { result |= each(i); });
        }
    }
    return result;
}

/// Gets value 1, and again as the thread ends.
LSTATUS getTwice(int)
{
    struct GetsAtItsEnd
    {
        ~GetsAtItsEnd() { EXPECT_EQ(get(1), ERROR_SUCCESS); }
    };
    thread_local const GetsAtItsEnd last;
    return get(1);
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

/// Lets the store's next write meet something.
LSTATUS meet(int what)
{
    nextWrite = what;
    const auto writeOrFail = [](int file, const void* data, std::size_t size, off64_t at) {
        const int met = std::exchange(nextWrite, 0);
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

/// Leaves no home in the environment; 1 where the shell folders are not the user's then.
LSTATUS loseHome(int)
{
    wchar_t path[MAX_PATH];
    unsetenv("HOME");
    unsetenv("XDG_DATA_HOME");
    SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path);
    return utf8(path) != windowsPath(home + "/.local/share");
}

bool isTold()
{
    char told = 0;
    return read(STDIN_FILENO, &told, 1) == 1;
}

/// Sets number after number, each in one of eight values, and says it then.
LSTATUS writeOn(int number)
{
    std::minstd_rand random(static_cast<unsigned>(number));
    for (LSTATUS status = ERROR_SUCCESS; status == ERROR_SUCCESS;) {
        length = 3 + random() % (random() % 50 == 0 ? 4990 : 500);
        ++number;
        status = set(number % 8, number);
        say(std::to_string(status == ERROR_SUCCESS ? number : -status) + '\n');
    }
    return 0;
}

/// Whenever it is told: says the content of value 800, and sets the next one.
LSTATUS answer(int)
{
    for (int content = 0; isTold();) {
        say(get(800, &content) == ERROR_SUCCESS && set(800, content + 1) == ERROR_SUCCESS
                ? std::to_string(content) + '\n'
                : "failed\n");
    }
    return 0;
}

/// Does anything to values in eight keys, for n seconds in eight threads.
LSTATUS storm(int n)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(n);
    std::atomic<int> done = 0;
    const LSTATUS result = inThreads(8, [&](int thread) {
        std::minstd_rand random(static_cast<unsigned>(getpid() * 8 + thread));
        LSTATUS status = ERROR_SUCCESS;
        for (; status == ERROR_SUCCESS && std::chrono::steady_clock::now() < end; ++done) {
            const int value = static_cast<int>(random() % 8 * 100 + random() % 8);
            const auto choice = random() % 200;
            status = choice > 100  ? get(value)
                     : choice > 20 ? setAnew(value)
                     : choice > 1  ? onValue(value, true, RegDeleteValueW)
                                   : RegDeleteTreeW(HKEY_CURRENT_USER,
                                                    Wide("Software\\Disk\\" + std::to_string(value / 100)));
            const bool isGone = status == ERROR_FILE_NOT_FOUND || status == ERROR_KEY_DELETED;
            status = isGone ? ERROR_SUCCESS : status;
        }
        return status;
    });
    say(std::to_string(done) + ' ');
    return result;
}

const std::map<std::string, std::function<LSTATUS(int)>> steps = {
    {"set", setAnew},
    {"get", [](int n) { return get(n); }},
    {"fill", fill},
    {"count", count},
    {"threads", [](int n) { return inThreads(n, getTwice); }},
    {"wait", [](int) { return say("\n"), isTold() ? 0 : 1; }},
    {"fork", [](int) { return split(false); }},   // a child that only ends
    {"both", [](int) { return split(true); }},    // one that goes on
    {"fail", meet},                               // the next write fails with errno n
    {"stop", [](int) { return meet(-SIGSTOP); }}, // the next write stops the process
    {"homeless", loseHome},
    {"file", [](int n) { return limit(RLIMIT_FSIZE, rlim_t(n) << 10); }}, // of n KB at most
    {"memory", [](int n) { return isAddressSanitized ? 0 : limit(RLIMIT_AS, rlim_t(n) << 30); }}, // of n GB
    {"length", [](int n) { return length = std::size_t(n), 0; }},
    {"open",
     [](int) {
         HKEY key = nullptr; // stays open
         return RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Disk\\l", 0, KEY_READ, &key);
     }},
    {"delete", [](int) { return RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Disk"); }},
    {"write", writeOn},
    {"answer", answer},
    {"storm", storm},
};

int play(const std::vector<std::string>& arguments)
{
    std::istringstream words(arguments[0]);
    std::string word;
    words >> word;
    shareWithChildren("XDG_DATA_HOME", word);
    home = fs::path(word).parent_path().parent_path();
    const Patch user = intercept<"getpwuid_r", decltype(getpwuid_r)>(
        [](auto, auto, passwd* entry, auto, auto, passwd** found) {
            entry->pw_dir = home.data();
            *found = entry;
            return 0;
        },
        "libwinhost.so");
    while (words >> word) {
        const std::size_t number = std::min(word.find_first_of("0123456789"), word.size());
        say(std::to_string(steps.at(word.substr(0, number))(std::stoi("0" + word.substr(number)))) + ' ');
    }
    return 0;
}

const ChildPart client("client", play);

std::string played(const fs::path& folder, const std::string& script)
{
    const Process process("client", folder.string() + ' ' + script);
    const std::string said = process.read(false);
    const int ended = process.wait();
    return ended == 0 ? said : said + "ended by " + std::to_string(ended);
}

fs::path freshFolder(const std::string& name)
{
    fs::remove_all(scratchFolder() / name);
    fs::create_directories(scratchFolder() / name);
    return scratchFolder() / name;
}

// ---- Processes

TEST(Store, GoesOnAfterWhatHappensToAProcess)
{
    const std::pair<const char*, std::string> rows[] = {
        {"set1 fork get1 set1 get1", "0 0 0 0 0 "},
        {"set1 both get1 set1 get1", "0 0 0 0 0 0 0 0 0 "}, // of the child, then of the parent
        {"set1 fail5 set1 set1 get1", "0 0 1016 0 0 "},     // EIO
        {"set1 fail28 set1 set1 get1", "0 0 112 0 0 "},     // ENOSPC
        {"set1 threads3000 set1", "0 0 0 "},
        {"memory8 set1 get1 threads100", "0 0 0 0 "},
        {"file400 set1 fill400 get1 get2", "0 0 112 0 0 "},
        {"homeless set1 get1", "0 0 0 "}, // in the folder that the system has for the user
    };
    for (const auto& [script, said] : rows) {
        const fs::path folder = freshFolder("process/.local/share");
        EXPECT_TRUE(("0 " + played(folder, script)).ends_with(said)) << script;
        EXPECT_EQ(played(folder, "get1 set1"), "0 0 ") << script;
    }
}

TEST(Store, AStoppedWriterHoldsUpOnlyWriters)
{
    const fs::path folder = freshFolder("stopped");
    const Process stopped("client", folder.string() + " set1 stop set1");
    EXPECT_EQ(stopped.wait(WUNTRACED), -SIGSTOP);
    EXPECT_EQ(played(folder, "get1 threads20 set1 get1"), "0 0 167 0 "); // ERROR_LOCK_FAILED
    stopped.kill();
    EXPECT_EQ(stopped.wait(), -SIGKILL);
    EXPECT_EQ(played(folder, "get1 set1 get1"), "0 0 0 ");
}

TEST(Store, WorksInTwoProcessesOfOneNumber)
{
    if (std::system("unshare --pid --fork true") != 0) {
        GTEST_SKIP() << "NOT TESTED: another namespace is for root alone";
    }
    const fs::path folder = freshFolder("numbers");
    // Leaks cannot be told there: the sanitizer looks for its own threads in /proc by their numbers.
    const std::string command = "ASAN_OPTIONS=detect_leaks=0 unshare --pid --fork --kill-child " +
                                thisProgram().string() + " --child client '" + folder.string() +
                                " set1 fill9 get1' >>" + (folder / "said").string();
    {
        const std::jthread other([&] { EXPECT_EQ(std::system(command.c_str()), 0); });
        EXPECT_EQ(std::system(command.c_str()), 0);
    }
    EXPECT_EQ(readFile(folder / "said").find_first_not_of("0 "), std::string::npos);
}

// ---- Files

TEST(Store, FollowsItsFiles)
{
    const fs::path other = freshFolder("other");
    ASSERT_EQ(played(other, "set1 set2"), "0 0 ");
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
        const Process process("client", folder.string() + " set1 wait get3 set1 set1 get1 wait get1");
        process.read(true);
        change();
        process.tell();
        const std::string said = process.read(true);
        const bool works = said.ends_with(" 0 0 ");
        EXPECT_TRUE(works || said.find("1015 ") != std::string::npos) << said;
        EXPECT_EQ(played(folder, "get1"), works ? "0 " : "1015 "); // a new process sees the write
        process.tell();
        process.read(false);
        EXPECT_EQ(process.wait(), 0);
    }
}

TEST(Store, RefusesATreeThatContainsItself)
{
    const fs::path folder = freshFolder("looped");
    ASSERT_EQ(played(folder, "set1"), "0 ");
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
    EXPECT_EQ(played(folder, "open delete get1"), "1015 0 2 ");
    EXPECT_EQ(ask("SELECT count(*) FROM keys WHERE parent = 1"), 1); // and takes nothing above along
}

TEST(Store, IsTheUsersAlone)
{
    const fs::path folder = freshFolder("owned") / "new";
    umask(0);
    ASSERT_EQ(played(folder, "set1"), "0 ");
    EXPECT_EQ(fs::status(folder / "winhost").permissions(), fs::perms(0700));
    for (const auto& entry : fs::directory_iterator(folder / "winhost")) {
        EXPECT_EQ(entry.status().permissions(), fs::perms(0600)) << entry.path();
    }
    if (geteuid() != 0 || chown((folder / "winhost").c_str(), 12345, 12345) != 0) {
        GTEST_SKIP() << "NOT TESTED: giving files away is for root alone";
    }
    EXPECT_EQ(played(folder, "get1 set1"), "5 5 ");
}

TEST(Store, DoesNotGrowUnderAStoppedReader)
{
    const fs::path folder = freshFolder("growing");
    ASSERT_EQ(played(folder, "fill20"), "0 ");
    const Process reader("client", folder.string() + " get1 wait");
    reader.read(true);
    for (int rewritten = 0; rewritten < (stressed() ? 100000 : 3000); rewritten += 1000) {
        EXPECT_EQ(played(folder, "length5000 fill20"), "0 0 ");
    }
    std::uintmax_t size = 0;
    for (const auto& entry : fs::directory_iterator(folder / "winhost")) {
        size += entry.file_size();
    }
    EXPECT_LT(size, 12U << 20);
    reader.kill();
    reader.wait();
}

// ---- Disks

class Disk : public testing::TestWithParam<const char*>
{
protected:
    ~Disk() override { umount(m_folder.c_str()); }

    void fill() const
    {
        std::ofstream file(m_folder / "ballast", std::ios::app);
        for (const std::size_t size : {65536U, 512U, 1U}) {
            while (file.write(std::string(size, 'x').data(), std::streamsize(size)).flush()) {
            }
            file.clear();
        }
        file.close();
        sync();
    }

    const fs::path m_folder = freshFolder("disk");
};

TEST_P(Disk, FullOrReadOnlyKeepsWhatIsThere)
{
    const std::string command = "cd " + scratchFolder().string() + " && " + GetParam() + " >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) {
        GTEST_SKIP() << "NOT TESTED: needs root, and mkfs for " << GetParam();
    }
    fill();
    EXPECT_EQ(played(m_folder, "set1 get1"), "112 112 ");
    fs::remove(m_folder / "ballast");
    const std::string onAFullDisk = "get1 threads300 fill9999 get1";
    const Process running("client",
                          m_folder.string() + " set1 fill9 wait " + onAFullDisk + " wait get1 set1");
    running.read(true);
    fill();
    running.tell();
    EXPECT_EQ(running.read(true), "0 0 0 112 0 ");
    EXPECT_EQ(played(m_folder, onAFullDisk), "0 0 112 0 ");
    EXPECT_EQ(played(m_folder, "get1 get2"), "0 0 ");
    fs::remove(m_folder / "ballast");
    EXPECT_EQ(played(m_folder, "get1 set1 get1"), "0 0 0 ");
    running.tell();
    EXPECT_EQ(running.read(false), "0 0 0 ");
    EXPECT_EQ(running.wait(), 0);
    ASSERT_EQ(mount("none", m_folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(played(m_folder, "get1 set1 get1 threads20"), "0 5 0 0 "); // ERROR_ACCESS_DENIED
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

TEST(Storm, AKilledWriterLeavesEveryWriteWhole)
{
    const fs::path folder = std::getenv("XDG_DATA_HOME"); // of this process too, which reads all along
    const int kills = stressed() ? 600 : 50;
    std::minstd_rand random(2018);
    int finished = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const Process process("client", folder.string() + " count8 write" + std::to_string(finished));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 120000));
        process.kill();
        std::istringstream said(process.read(false));
        ASSERT_EQ(process.wait(), -SIGKILL);
        int counted[5] = {};
        for (int& each : counted) {
            said >> each;
        }
        EXPECT_TRUE(!said || counted[0] == std::min(finished, 8)) << "after kill " << kill;
        while (said >> finished) {
            ASSERT_GT(finished, 0);
        }
        for (int number = std::max(1, finished - 7); number <= finished; ++number) {
            int content = 0;
            ASSERT_EQ(get(number % 8, &content), ERROR_SUCCESS) << number;
            ASSERT_TRUE(content == number || (content == number + 8 && number == finished - 7)) << content;
        }
    }
    EXPECT_GT(finished, 0);
    std::cout << kills << " kills, " << finished << " writes, all whole\n";
}

TEST(Storm, ManyAtOnceDisturbNobody)
{
    const fs::path folder = std::getenv("XDG_DATA_HOME");
    const std::string seconds = stressed() ? "30" : "2";
    std::vector<std::unique_ptr<Process>> workers;
    for (int i = 0; i < 8; ++i) {
        workers.push_back(std::make_unique<Process>("client", folder.string() + " storm" + seconds));
    }
    const Process partner("client", folder.string() + " answer");
    int number = 0;
    for (const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::stoi(seconds));
         std::chrono::steady_clock::now() < end;) {
        ASSERT_EQ(set(800, ++number), ERROR_SUCCESS);
        partner.tell();
        ASSERT_EQ(partner.read(true), std::to_string(number)); // what was just written
        int content = 0;
        ASSERT_EQ(get(800, &content), ERROR_SUCCESS);
        ASSERT_EQ(content, ++number); // what the other has written since
    }
    partner.kill();
    partner.wait();
    for (const auto& each : workers) {
        const std::string said = each->read(false);
        EXPECT_TRUE(said.ends_with(" 0 ")) << said;
        EXPECT_EQ(each->wait(), 0);
        std::cout << said.substr(0, said.find(' ')) << " operations of 8 threads in " << seconds << " s\n";
    }
    std::cout << number << " handed over\n";
}

// ---- Damage

/// Another content at random.
std::string damaged(std::string bytes, std::minstd_rand& random)
{
    constexpr std::size_t page = 4096;
    const auto any = [&](std::size_t below) { return random() % std::max<std::size_t>(below, 1); };
    const std::size_t pages = bytes.size() / page;
    char* const one = bytes.data() + any(pages) * page;
    switch (any(5)) {
    case 0:
        std::fill_n(one, page, 0);
        break;
    case 1:
        std::generate_n(one, page, [&] { return static_cast<char>(random()); });
        break;
    case 2:
        std::swap_ranges(one, one + page, bytes.data() + any(pages) * page);
        break;
    case 3:
        for (std::size_t changes = 1 + any(20); changes-- > 0;) {
            bytes[any(bytes.size())] = static_cast<char>(random());
        }
        break;
    default:
        bytes.resize(any(bytes.size()));
    }
    return bytes;
}

TEST(Store, NeverAnswersFromADamagedFileWhatIsWrong)
{
    const fs::path folder = freshFolder("damaged");
    ASSERT_EQ(played(folder, "length4 fill5000 count5000"), "0 0 5000 0 0 0 0 ");
    const std::string names[] = {"registry.db", "registry.db-wal", "registry.db-shm"};
    std::string whole[3];
    std::ranges::transform(names, whole, [&](auto& name) { return readFile(folder / "winhost" / name); });
    ASSERT_GT(whole[0].size(), 200000U);
    std::minstd_rand random(2026);
    int sums[4] = {};
    const int files = stressed() ? 2000 : 60;
    for (int file = 0; file < files; ++file) {
        for (int i = 0; i < 3; ++i) {
            const bool isChanged = file % 5 == i || (i == 0 && file % 5 > 2);
            writeFile(folder / "winhost" / names[i], isChanged ? damaged(whole[i], random) : whole[i]);
        }
        std::istringstream said(played(folder, "count5000"));
        EXPECT_TRUE(said.str().ends_with(" 0 0 ")) << "file " << file << ": " << said.str(); // none is wrong
        for (int& sum : sums) {
            int each = 0;
            sum += said >> each ? each : 0;
        }
    }
    std::cout << files << " damaged files of 5000 values: " << sums[0] << " values right, " << sums[1]
              << " missing, " << sums[2] << " refused, " << sums[3] << " wrong\n";
}

} // namespace
