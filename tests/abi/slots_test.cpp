// The virtual tables as a client of another compiler calls them: by slot.
#include "support/text.h"

#include <RkUInfo.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace {

using testing_support::utf8;
using testing_support::Wide;

/// What an entry of an object's virtual table answers.
template <typename Result, typename... Arguments>
Result call(const void* object, std::size_t entry, Arguments... arguments)
{
    void* const* const table = *static_cast<void* const* const*>(object);
    return reinterpret_cast<Result (*)(const void*, Arguments...)>(table[entry])(object, arguments...);
}

const wchar_t* text(const void* object, std::size_t entry)
{
    return call<const wchar_t*>(object, entry);
}

TEST(Slots, OfTheProductObject)
{
    const ITarvoProduct* const product = velaGetProduct();
    EXPECT_EQ(text(product, 0), velaConfig()->productName());
    EXPECT_EQ(utf8(text(product, 1)), "TARVO");
    EXPECT_EQ(text(product, 2), velaConfig()->companyName());
    EXPECT_EQ(utf8(text(product, 3)), "2018");
    EXPECT_EQ(utf8(text(product, 4)), utf8(velaGetProduct()->helpFilePath()));
    EXPECT_EQ(call<const TarvoLanguage*>(product, 5), &velaConfig()->language());
    const long numbers[] = {1, 27, 1, 1};
    for (std::size_t i = 0; i < std::size(numbers); ++i) {
        EXPECT_EQ(call<long>(product, 6 + i), numbers[i]) << "slot " << 6 + i;
    }
    EXPECT_EQ(utf8(text(product, 10)), "4.0");
    EXPECT_EQ(text(product, 11), GetVelaUserDataCachePath());
    for (std::size_t shared = 0; shared < 3; ++shared) {
        EXPECT_EQ(call<long>(product, 12 + 2 * shared), static_cast<long>(shared) - 1);
        call<void, long>(product, 13 + 2 * shared, 40 + static_cast<long>(shared));
        EXPECT_EQ(call<long>(product, 12 + 2 * shared), 40 + static_cast<long>(shared));
    }
}

/// The two entries of the virtual destructor come first.
TEST(Slots, OfTheExceptionFamily)
{
    const RkExceptionWithMsg withMessage(Wide("context"), 7, Wide("message"));
    const RkErrorStatus status(Vela::eOutOfMemory, Wide("context"), 7);
    EXPECT_EQ(utf8(text(&withMessage, 2)), "message");
    EXPECT_EQ(utf8(text(&status, 2)), "context");
    EXPECT_EQ(call<std::int32_t>(&withMessage, 3), 0);
    EXPECT_EQ(call<std::int32_t>(&status, 3), 6);
    EXPECT_EQ(utf8(text(&withMessage, 4)), "RkException");
    EXPECT_EQ(utf8(text(&status, 4)), "RkErrorStatus");

    const auto thrown = new TarvoConfigException(Wide("message"), 5, Wide("context"), 7);
    EXPECT_EQ(utf8(text(thrown, 2)), "message");
    call<void>(thrown, 1); // the one that deletes: a leak shows in a sanitised run
}

class Recorder final : public VelaCrashRecorder
{
public:
    void beginSession() override { m_called = 0; }
    void endSession() override { m_called = 1; }
    void recordText(const wchar_t* /*text*/) override { m_called = 2; }
    void recordException(RkException* /*exception*/) override { m_called = 3; }

    int called() const { return m_called; }

private:
    int m_called = -1;
};

TEST(Slots, OfTheCrashRecorder)
{
    const Recorder recorder;
    for (int slot = 0; slot < 4; ++slot) {
        call<void, const void*>(&recorder, static_cast<std::size_t>(slot), nullptr);
        EXPECT_EQ(recorder.called(), slot);
    }
}

} // namespace
