// Locks, and values that are computed once.
#include "support/test.h"

#include <future>

namespace {

TEST(Locks, PublishTheResultOfTheFirstThread)
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

TEST(Locks, GiveConcurrentFirstCallersTheSameResult) // ThreadSanitizer reports data races here
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    std::atomic<int> missing = 8;
    std::future<std::string> seen[8];
    for (auto& each : seen) {
        each = std::async(std::launch::async, [&missing] {
            wchar_t path[1024] = {};
            for (--missing; missing > 0;) {
                std::this_thread::yield();
            }
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
