// The locks, and what is worked out once.
#include "support/test.h"

#include <future>
#include <latch>

namespace {

TEST(Locks, LetOneThreadInAtATime)
{
    RkLocker locker;
    std::latch both(2);
    locker.lock();
    const std::future<void> other = std::async(std::launch::async, [&] {
        both.arrive_and_wait();
        locker.lock();
        locker.unlock();
    });
    both.arrive_and_wait();
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    locker.unlock();
    other.wait();
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
            ++held;
            real(lock);
        });
    const Patch release = intercept<"ReleaseSRWLockExclusive", decltype(ReleaseSRWLockExclusive)>(
        [&](auto real, SRWLOCK* lock) { --held, real(lock); });
    EXPECT_EQ(utf8(velaGetProduct()->userDataCachePath()), "C:\\First\\UserDataCache");
    EXPECT_EQ(held, 0);
}

TEST(Locks, GiveThreadsThatComeFirstTogetherTheSame) // ThreadSanitizer sees what they share
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    std::latch all(8);
    std::future<std::string> seen[8];
    for (auto& each : seen) {
        each = std::async(std::launch::async, [&all] {
            wchar_t path[1024] = {};
            all.arrive_and_wait();
            GetProgramPath(path, 1024);
            return utf8(path) + utf8(GetCurrentLanguageLocalName()) + utf8(velaGetProduct()->helpFilePath()) +
                   utf8(velaGetProduct()->userDataCachePath()) + utf8(GetVelaArchitectrueCommandNamePrefix());
        });
    }
    const std::string first = seen[0].get();
    EXPECT_NE(first.find("English"), std::string::npos) << first;
    for (int i = 1; i < 8; ++i) {
        EXPECT_EQ(seen[i].get(), first);
    }
}

} // namespace
