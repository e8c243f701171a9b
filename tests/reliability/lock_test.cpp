// The locks, and what is worked out once.
#include "support/test.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using namespace testing_support;

TEST(Locks, LetOneThreadInAtATime)
{
    RkLocker locker;
    std::atomic<bool> isThere = false;
    std::atomic<bool> isIn = false;
    locker.lock();
    std::thread other([&] {
        isThere = true;
        locker.lock();
        isIn = true;
        locker.unlock();
    });
    while (!isThere) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(isIn);
    locker.unlock();
    other.join();
    EXPECT_TRUE(isIn);
    locker.lock(); // it has left
    locker.unlock();
}

TEST(Locks, PublishTheTextOfWhoComesFirst)
{
    const Patch later = pretendExecutable("C:\\Later\\app.exe");
    int held = 0;
    const Patch acquire = intercept<"AcquireSRWLockExclusive", decltype(AcquireSRWLockExclusive)>(
        [&](auto real, SRWLOCK* lock) {
            static bool isFirst = true;
            if (std::exchange(isFirst, false)) {
                const Patch first = pretendExecutable("C:\\First\\app.exe");
                velaGetProduct()->userDataCachePath();
            }
            real(lock);
            ++held;
        });
    const Patch release = intercept<"ReleaseSRWLockExclusive", decltype(ReleaseSRWLockExclusive)>(
        [&](auto real, SRWLOCK* lock) {
            --held;
            real(lock);
        });
    EXPECT_EQ(utf8(velaGetProduct()->userDataCachePath()), "C:\\First\\UserDataCache");
    EXPECT_EQ(held, 0);
}

TEST(Locks, GiveThreadsThatComeFirstTogetherTheSame) // ThreadSanitizer sees what they share
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    std::string seen[8];
    std::atomic<int> arrived = 0;
    std::vector<std::thread> threads; // libc++ has no jthread yet
    for (std::string& each : seen) {
        threads.emplace_back([&] {
            for (++arrived; arrived < 8;) {
                std::this_thread::yield();
            }
            wchar_t path[1024] = {};
            GetProgramPath(path, 1024);
            each = utf8(path) + utf8(GetCurrentLanguageLocalName()) + utf8(velaGetProduct()->helpFilePath()) +
                   utf8(velaGetProduct()->userDataCachePath()) + utf8(GetVelaArchitectrueCommandNamePrefix());
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& each : seen) {
        EXPECT_EQ(each, seen[0]);
    }
    EXPECT_NE(seen[0].find("English"), std::string::npos) << seen[0];
}

} // namespace
