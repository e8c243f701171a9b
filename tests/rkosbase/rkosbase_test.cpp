// What the base library gives: its lock, its exceptions and the crash recorder.
#include "support/recorder.h"
#include "support/text.h"

#include <RkOsBase.h>
#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace testing_support;

TEST(RkOsBase, LockExcludesThreads)
{
    RkLocker locker;
    int counted = 0;
    const auto count = [&] {
        for (int round = 0; round < 20000; ++round) {
            locker.lock();
            ++counted;
            locker.unlock();
        }
    };
    std::thread threads[] = {std::thread(count), std::thread(count), std::thread(count)};
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(counted, 60000);
}

TEST(RkOsBase, ExceptionsCutTheirTexts)
{
    const Wide longText(300, L't');
    const std::string longest(259, 't');
    const auto check = [](const RkException& exception, const std::string& text,
                          const std::string& description) {
        EXPECT_EQ(utf8(exception.text()), text);
        EXPECT_EQ(utf8(exception.description()), description);
        EXPECT_EQ(exception.number(), -1);
    };
    check(RkException(nullptr, -1), "", "");
    check(RkException(longText, -1), longest, longest);
    check(RkExceptionWithMsg(L"a", -1, longText), "a", longest);
    check(RkExceptionWithMsg(L"a", -1, nullptr), "a", "");
    check(RkErrorStatus(Vela::eOutOfMemory, L"a", -1), "a", "a");
}

TEST(RkOsBase, CrashRecorderIsTheOneInstalledLast)
{
    const Recorder first;
    {
        const Recorder second;
        EXPECT_EQ(velaGetCrashRecorder(), &second);
    }
    EXPECT_EQ(velaSetCrashRecorder(nullptr), &first);
    EXPECT_EQ(velaGetCrashRecorder(), nullptr);
}

} // namespace
