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
    const Wide longText(std::string(300, 't'));
    const std::string longest(259, 't');
    const auto texts = [](const RkException& exception) {
        return utf8(exception.text()) + '|' + utf8(exception.description()) +
               std::to_string(exception.number());
    };
    EXPECT_EQ(texts(RkException(nullptr, -1)), "|-1");
    EXPECT_EQ(texts(RkException(longText, -1)), longest + '|' + longest + "-1");
    EXPECT_EQ(texts(RkExceptionWithMsg(L"a", 1, longText)), "a|" + longest + '1');
    EXPECT_EQ(texts(RkExceptionWithMsg(L"a", 1, nullptr)), "a|1");
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
