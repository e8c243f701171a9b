// What the base library gives: its lock, its exceptions and the crash recorder.
#include "support/recorder.h"
#include "support/text.h"

#include <RkOsBase.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
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

/// Calls a virtual function by its place in the object's table.
template <typename Result, typename Object, typename... Arguments>
Result callSlot(std::size_t slot, Object* object, Arguments... arguments)
{
    void** table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return reinterpret_cast<Result (*)(Object*, Arguments...)>(table[slot])(object, arguments...);
}

TEST(RkOsBase, ExceptionsKeepSlotsAndCutTexts)
{
    const Wide longText(300, L't');
    struct
    {
        std::unique_ptr<RkException> exception;
        std::string text, description;
        std::int32_t code;
        std::string className;
    } const rows[] = {
        {std::make_unique<RkException>(nullptr, -1), "", "", 0, "RkException"},
        {std::make_unique<RkException>(longText, -1), std::string(259, 't'), std::string(259, 't'), 0,
         "RkException"},
        {std::make_unique<RkExceptionWithMsg>(L"a", -1, longText), "a", std::string(259, 't'), 0,
         "RkException"},
        {std::make_unique<RkExceptionWithMsg>(L"a", -1, nullptr), "a", "", 0, "RkException"},
        {std::make_unique<RkErrorStatus>(Vela::eOutOfMemory, L"a", -1), "a", "a", 6, "RkErrorStatus"},
    };
    for (const auto& row : rows) { // the destructor has two entries
        EXPECT_EQ(utf8(callSlot<const wchar_t*>(2, row.exception.get())), row.description);
        EXPECT_EQ(callSlot<std::int32_t>(3, row.exception.get()), row.code);
        EXPECT_EQ(utf8(callSlot<const wchar_t*>(4, row.exception.get())), row.className);
        EXPECT_EQ(utf8(row.exception->text()), row.text);
        EXPECT_EQ(row.exception->number(), -1);
    }
}

TEST(RkOsBase, CrashRecorderIsTheOneInstalledLast)
{
    const Recorder first;
    {
        Recorder second;
        RkException exception(L"", 0);
        callSlot<void>(3, velaGetCrashRecorder(), &exception); // the fourth operation is recordException
        EXPECT_EQ(second.recorded, std::vector<RkException*>{&exception});
    }
    EXPECT_EQ(velaSetCrashRecorder(nullptr), &first);
    EXPECT_EQ(velaGetCrashRecorder(), nullptr);
}

} // namespace
