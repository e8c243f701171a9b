// The host's store under what may happen to its files, disk and processes. A scenario is a script of steps,
// each of which says a status: the client below tells what they are.
#include "process.h"

#include "registry/names.h"

#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <pwd.h>
#include <random>
#include <sched.h>
#include <shlobj.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <thread>
#include <utility>
#include <winhost/changes.h>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

// ---- In place of the system's calls: what a write of the store meets, and the user's home

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isAddressSanitized = true; // whose own memory takes terabytes of addresses
#else
constexpr bool isAddressSanitized = false;
#endif

int nextWrite = 0; // an error, or a signal below 0
std::string passwdFolder;

} // namespace

extern "C" __attribute__((visibility("default"))) ssize_t pwrite64(int file, const void* data,
                                                                   std::size_t size, off64_t at)
{
    using Write = decltype(&pwrite64);
    static const auto real = reinterpret_cast<Write>(dlsym(RTLD_NEXT, "pwrite64"));
    const int met = std::exchange(nextWrite, 0);
    if (met < 0) {
        raise(-met);
    }
    errno = met;
    return met > 0 ? -1 : real(file, data, size, at);
}

extern "C" __attribute__((visibility("default"))) int getpwuid_r(uid_t, passwd* entry, char*, std::size_t,
                                                                 passwd** found)
{
    entry->pw_dir = passwdFolder.data();
    *found = entry;
    return 0;
}

namespace {

// ---- The client

constexpr DWORD dataSize = 20000;

/// Value n's data: the same byte all over.
LSTATUS set(int number, int content)
{
    HKEY opened = nullptr;
    const LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Disk", 0, nullptr, 0, KEY_WRITE,
                                           nullptr, &opened, nullptr);
    const OwnedKey key(opened);
    const std::vector<BYTE> data(dataSize, static_cast<BYTE>(content));
    return status != ERROR_SUCCESS
               ? status
               : RegSetValueExW(opened, Wide(std::to_string(number)), 0, REG_BINARY, data.data(), dataSize);
}

/// ERROR_MORE_DATA for what is not whole.
LSTATUS get(int number)
{
    HKEY opened = nullptr;
    LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Disk", 0, KEY_READ, &opened);
    const OwnedKey key(opened);
    std::vector<BYTE> data(dataSize);
    DWORD size = dataSize;
    status = status != ERROR_SUCCESS ? status
                                     : RegQueryValueExW(opened, Wide(std::to_string(number)), nullptr,
                                                        nullptr, data.data(), &size);
    const bool isWhole = size == dataSize && std::count(data.begin(), data.end(), data[0]) == dataSize;
    return status != ERROR_SUCCESS || isWhole ? status : ERROR_MORE_DATA;
}

struct ReadsAtItsEnd
{
    ~ReadsAtItsEnd() { *result |= get(1); }
    std::atomic<LSTATUS>* result;
};

LSTATUS readInThreads(int count)
{
    std::atomic<LSTATUS> result = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&result] {
            thread_local ReadsAtItsEnd last{&result};
            result |= get(1);
            last.result = &result;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return result;
}

/// Forks; both go on, the parent when the child has ended.
LSTATUS split(bool childGoesOn)
{
    const pid_t child = fork();
    if (child == 0 && !childGoesOn) {
        std::exit(0);
    }
    int status = 0;
    return child != 0 && waitpid(child, &status, 0) == child ? status : 0;
}

LSTATUS limit(__rlimit_resource what, rlim_t most)
{
    const rlimit wanted = {most, most};
    return setrlimit(what, &wanted);
}

LSTATUS step(char what, int n)
{
    static int content = getpid();
    switch (what) {
    case 's': // sets value n
        return set(n, ++content);
    case 'g': // gets it
        return get(n);
    case 'f': { // sets values up to n, until an error
        LSTATUS status = ERROR_SUCCESS;
        for (int i = 2; i < n && status == ERROR_SUCCESS; ++i) {
            status = set(i, ++content);
        }
        return status;
    }
    case 'r': // sets value 1 n times
        while (n-- > 0) {
            if (const LSTATUS status = set(1, ++content)) {
                return status;
            }
        }
        return 0;
    case 't': // gets value 1 in n threads, and again as each ends
        return readInThreads(n);
    case 'k': // forks; the child goes on for n = 1
        return split(n == 1);
    case 'e': // the next write fails with errno n
        nextWrite = n;
        return 0;
    case 'z': // the next write stops the process
        nextWrite = -SIGSTOP;
        return 0;
    case 'a': // n GB of addresses
        return isAddressSanitized ? 0 : limit(RLIMIT_AS, rlim_t(n) << 30);
    case 'x': // n KB of a file
        return limit(RLIMIT_FSIZE, rlim_t(n) << 10);
    case 'h': { // no home in the environment; 1 where the shell folders are not the user's
        wchar_t path[MAX_PATH];
        unsetenv("HOME");
        unsetenv("XDG_DATA_HOME");
        SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path);
        return utf8(path) != windowsPath(passwdFolder + "/.local/share");
    }
    case 'l': { // opens key l of that of the values, and leaves it open
        HKEY key = nullptr;
        return RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Disk\\l", 0, KEY_READ, &key);
    }
    case 'd': // deletes the key of the values with all below it
        return RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Disk");
    default: { // waits to be told
        say("\n");
        char told = 0;
        return read(STDIN_FILENO, &told, 1) == 1 ? 0 : 1;
    }
    }
}

int play(const std::vector<std::string>& arguments)
{
    std::istringstream words(arguments[0]);
    std::string word;
    words >> word;
    shareWithChildren("XDG_DATA_HOME", word);
    passwdFolder = fs::path(word).parent_path().parent_path();
    while (words >> word) {
        say(std::to_string(step(word[0], std::stoi("0" + word.substr(1)))) + ' ');
    }
    return 0;
}

const ChildPart client("client", play);

std::string played(const fs::path& folder, const std::string& script)
{
    const Process process("client", folder.string() + ' ' + script);
    std::string said = process.read(false);
    const int ended = process.wait();
    return ended == 0 ? said : said + "ended by " + std::to_string(ended);
}

fs::path freshFolder(const std::string& name)
{
    fs::create_directories(scratchFolder() / name);
    return scratchFolder() / name;
}

// ---- Processes

TEST(Store, GoesOnAfterWhatHappensToAProcess)
{
    const struct
    {
        const char* script;
        const char* said;
    } rows[] = {
        {"s1 k g1 s1 g1", "0 0 0 0 0 "},          // a child that only ends
        {"s1 k1 g1 s1 g1", "0 0 0 0 0 0 0 0 0 "}, // a child that goes on
        {"s1 e5 s1 s1 g1", "0 0 1016 0 0 "},      // EIO
        {"s1 e28 s1 s1 g1", "0 0 112 0 0 "},      // ENOSPC
        {"s1 t3000 s1", "0 0 0 "},                // as many threads
        {"a8 s1 g1 t100", "0 0 0 0 "},            // 8 GB of addresses
        {"x400 s1 f400 g1 g2", "0 0 112 0 0 "},   // a file of 400 KB at most
        {"h s1 g1", "0 0 0 "},                    // the folder that the system has for the user
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.script);
        const fs::path folder = freshFolder("process/.local/share");
        const std::string said = played(folder, row.script);
        EXPECT_EQ(said.substr(said.size() - std::min(said.size(), std::strlen(row.said))), row.said);
        EXPECT_EQ(played(folder, "g1 s1"), "0 0 ");
        fs::remove_all(folder);
    }
}

TEST(Store, AStoppedWriterHoldsUpOnlyWriters)
{
    const fs::path folder = freshFolder("stopped");
    const Process stopped("client", folder.string() + " s1 z s1");
    EXPECT_EQ(stopped.wait(WUNTRACED), -SIGSTOP);
    EXPECT_EQ(played(folder, "g1 t20 s1 g1"), "0 0 167 0 "); // ERROR_LOCK_FAILED
    stopped.kill();
    EXPECT_EQ(stopped.wait(), -SIGKILL);
    EXPECT_EQ(played(folder, "g1 s1 g1"), "0 0 0 ");
}

TEST(Store, WorksInTwoProcessesOfOneNumber)
{
    const fs::path folder = freshFolder("numbers");
    // Leaks cannot be told there: the sanitizer looks for its own threads in /proc by their numbers.
    const std::string command = "ASAN_OPTIONS=detect_leaks=0 unshare --pid --fork --kill-child " +
                                thisProgram().string() + " --child client '" + folder.string() +
                                " s1 f9 g1' >>" + (folder / "said").string();
    if (std::system("unshare --pid --fork true") != 0) {
        GTEST_SKIP() << "NOT TESTED: another namespace is for root alone";
    }
    std::thread other([&] { EXPECT_EQ(std::system(command.c_str()), 0); });
    EXPECT_EQ(std::system(command.c_str()), 0);
    other.join();
    EXPECT_EQ(readFile(folder / "said").find_first_not_of("0 "), std::string::npos);
}

// ---- Files

TEST(Store, FollowsItsFiles)
{
    const fs::path other = freshFolder("other");
    ASSERT_EQ(played(other, "s1 s2"), "0 0 ");
    const fs::path folder = freshFolder("moving");
    const fs::path store = folder / "winhost";
    const std::function<void()> changes[] = {
        [&] { fs::remove_all(store); },
        [&] { fs::rename(store, folder / "elsewhere"); },
        [&] { fs::remove(store / "registry.db"); },
        [&] { fs::remove(store / "registry.db-wal"); },
        [&] { fs::remove(store / "registry.db-shm"); },
        [&] {
            fs::rename(store, folder / "before");
            fs::copy(other / "winhost", store);
        },
    };
    for (const auto& change : changes) {
        const Process process("client", folder.string() + " s1 w g3 s1 s1 g1 w g1");
        process.read(true);
        change();
        process.tell();
        const std::string said = process.read(true);
        EXPECT_TRUE(said.ends_with(" 0 0 ") || said.find("1015 ") != std::string::npos) << said;
        EXPECT_EQ(played(folder, "g1"),
                  said.ends_with(" 0 0 ") ? "0 " : "1015 "); // a new process sees the write
        process.tell();
        process.read(false);
        EXPECT_EQ(process.wait(), 0);
        fs::remove_all(folder);
        freshFolder("moving");
    }
}

/// Runs SQL on the store at a folder; the first number that it answers.
std::int64_t ask(const fs::path& folder, const std::string& sql)
{
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
}

TEST(Store, RefusesATreeThatContainsItself)
{
    using winhost::registry::mix;
    const fs::path folder = freshFolder("looped");
    ASSERT_EQ(played(folder, "s1"), "0 ");
    const std::int64_t parent = ask(folder, "SELECT max(id) FROM keys WHERE name = x'4400690073006B00'");
    std::uint64_t sum = mix(std::uint64_t(parent), 1); // the user's root, as its own key Software\\Disk\\l
    for (const std::string_view part : {std::string_view("\0l", 2), {"l\0", 2}, {}}) {
        sum = mix(sum, part);
    }
    ask(folder, "INSERT INTO keys VALUES(" + std::to_string(parent) + ", x'006C', 1, x'6C00', " +
                    std::to_string(std::int64_t(sum)) + ")");
    EXPECT_EQ(played(folder, "l d g1"), "1015 0 2 ");
    EXPECT_EQ(ask(folder, "SELECT count(*) FROM keys WHERE parent = 1"), 1); // and takes nothing above along
}

TEST(Store, IsTheUsersAlone)
{
    const fs::path folder = freshFolder("owned") / "new";
    umask(0);
    ASSERT_EQ(played(folder, "s1"), "0 ");
    EXPECT_EQ(fs::status(folder / "winhost").permissions(), fs::perms(0700));
    for (const auto& entry : fs::directory_iterator(folder / "winhost")) {
        EXPECT_EQ(entry.status().permissions(), fs::perms(0600)) << entry.path();
    }
    if (geteuid() != 0 || chown((folder / "winhost").c_str(), 12345, 12345) != 0) {
        GTEST_SKIP() << "NOT TESTED: giving files away is for root alone";
    }
    EXPECT_EQ(played(folder, "g1 s1"), "5 5 ");
}

TEST(Store, DoesNotGrowUnderAStoppedReader)
{
    const fs::path folder = freshFolder("growing");
    ASSERT_EQ(played(folder, "s1 f20"), "0 0 ");
    const Process reader("client", folder.string() + " g1 w");
    reader.read(true);
    const int rewrites = stressed() ? 100000 : 3000;
    played(folder, "r" + std::to_string(rewrites));
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
    Disk()
    {
        fs::create_directories(m_folder);
        const std::string mount = "cd " + scratchFolder().string() + " && " + GetParam() + " >/dev/null 2>&1";
        m_isMounted = std::system(mount.c_str()) == 0;
    }
    ~Disk() override
    {
        if (m_isMounted) {
            umount(m_folder.c_str());
        }
    }

    void fill() const
    {
        std::ofstream file(m_folder / "ballast", std::ios::app);
        for (const int size : {65536, 512, 1}) {
            while (file.write(std::string(std::size_t(size), 'x').data(), std::streamsize(size)).flush()) {
            }
            file.clear();
        }
        file.close();
        sync();
    }

    const fs::path m_folder = scratchFolder() / "disk";
    bool m_isMounted = false;
};

TEST_P(Disk, FullOrReadOnlyKeepsWhatIsThere)
{
    if (!m_isMounted) {
        GTEST_SKIP() << "NOT TESTED: needs root, and mkfs for " << GetParam();
    }
    fill();
    EXPECT_EQ(played(m_folder, "s1 g1"), "112 112 ");
    fs::remove(m_folder / "ballast");
    const Process running("client", m_folder.string() + " s1 f9 w g1 t300 f9999 g1 w g1 s1");
    running.read(true);
    fill();
    running.tell();
    EXPECT_EQ(running.read(true), "0 0 0 112 0 ");
    EXPECT_EQ(played(m_folder, "g1 t300 f9999 g1"), "0 0 112 0 ");
    EXPECT_EQ(played(m_folder, "g1 g2"), "0 0 ");
    fs::remove(m_folder / "ballast");
    EXPECT_EQ(played(m_folder, "g1 s1 g1"), "0 0 0 ");
    running.tell();
    EXPECT_EQ(running.read(false), "0 0 0 ");
    EXPECT_EQ(running.wait(), 0);
    ASSERT_EQ(mount("none", m_folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(played(m_folder, "g1 s1 g1 t20"), "0 5 0 0 "); // ERROR_ACCESS_DENIED
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

// ---- Damage

constexpr DWORD valueCount = 5000;
constexpr DWORD valuesOfKey = 100;

/// Makes or reads all values, a hundred to a key; says how many are right, missing, refused and wrong.
int goThrough(const std::vector<std::string>& arguments)
{
    const bool makes = arguments[0][0] == '+';
    shareWithChildren("XDG_DATA_HOME", arguments[0].substr(1));
    int counts[4] = {};
    wchar_t name[64];
    const bool isOne = makes && winhostBeginRegistryChanges() == ERROR_SUCCESS;
    for (DWORD i = 0; i < valueCount; ++i) {
        HKEY opened = nullptr;
        const Wide path("Software\\Damaged\\Key" + std::to_string(i / valuesOfKey));
        LSTATUS status = makes ? RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS,
                                                 nullptr, &opened, nullptr)
                               : RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &opened);
        const OwnedKey key(opened);
        const DWORD right = i * 7 + 1;
        const std::string rightName = "Value" + std::to_string(1000 + i % valuesOfKey);
        const Wide asked(rightName);
        if (makes) {
            status |= RegSetValueExW(opened, asked, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&right),
                                     sizeof right);
        }
        DWORD type = 0;
        DWORD found = 0;
        DWORD size = sizeof found;
        status = status != 0 ? status
                             : RegQueryValueExW(opened, asked, nullptr, &type,
                                                reinterpret_cast<BYTE*>(&found), &size);
        const bool isRight = type == REG_DWORD && found == right && size == sizeof found;
        ++counts[status == ERROR_SUCCESS ? (isRight ? 0 : 3) : status == ERROR_FILE_NOT_FOUND ? 1 : 2];
        DWORD length = 64;
        if (RegEnumValueW(opened, i % valuesOfKey, name, &length, nullptr, nullptr, nullptr, nullptr) ==
            ERROR_SUCCESS) {
            const std::string seen = utf8(name);
            counts[3] += seen.size() == rightName.size() && seen >= "Value1000" && seen < "Value1100" ? 0 : 1;
        }
    }
    if (isOne) {
        winhostEndRegistryChanges(TRUE);
    }
    for (const int count : counts) {
        say(std::to_string(count) + ' ');
    }
    return 0;
}

const ChildPart passage("passage", goThrough);

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
    {
        const Process maker("passage", '+' + folder.string());
        ASSERT_EQ(maker.read(false), "5000 0 0 0 ");
        ASSERT_EQ(maker.wait(), 0);
    }
    played(folder, "r400"); // the log is written back
    const std::string names[] = {"registry.db", "registry.db-wal", "registry.db-shm"};
    std::string whole[3];
    for (int i = 0; i < 3; ++i) {
        whole[i] = readFile(folder / "winhost" / names[i]);
    }
    ASSERT_GT(whole[0].size(), 200000U);
    std::minstd_rand random(2026);
    int files = 0;
    int sums[4] = {};
    for (; files < (stressed() ? 2000 : 60); ++files) {
        for (int i = 0; i < 3; ++i) {
            writeFile(folder / "winhost" / names[i],
                      files % 5 == i || (i == 0 && files % 5 > 2) ? damaged(whole[i], random) : whole[i]);
        }
        const Process reader("passage", '-' + folder.string());
        std::istringstream said(reader.read(false));
        EXPECT_EQ(reader.wait(), 0) << "file " << files;
        int counts[4] = {};
        said >> counts[0] >> counts[1] >> counts[2] >> counts[3];
        EXPECT_EQ(counts[3], 0) << "file " << files;
        for (int i = 0; i < 4; ++i) {
            sums[i] += counts[i];
        }
    }
    std::cout << files << " damaged files of 5000 values: " << sums[0] << " values right, " << sums[1]
              << " missing, " << sums[2] << " refused, " << sums[3] << " wrong\n";
}

} // namespace
