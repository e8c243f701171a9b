// Which registry calls each operation makes, in which order: a call more is a message more to another process
// on Windows, and each is one that the documentation of the operation names.
#include "store/store.h"

#include <functional>

namespace {

using namespace testing_support;

/// A handler that notes its call.
auto noting(std::string& calls, const char* call)
{
    return [&calls, call](auto real, auto... arguments) {
        calls += (calls.empty() ? "" : " ") + std::string(call);
        return real(arguments...);
    };
}

class RegistryCalls : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        m_number.setInt(1);
        ASSERT_EQ(CreateConfigReg(), eOk);
        ASSERT_EQ(m_config.setValue(eSettings, L"Display/Frames", m_number), eOk);
        ASSERT_EQ(m_config.setValue(eSettings, L"Display/Colors/Red", m_number), eOk);
    }

    VelaVariant m_number;
    std::string m_calls;
    const Patch m_patches[10] = {
        intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(noting(m_calls, "open")),
        intercept<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(noting(m_calls, "create")),
        intercept<"RegCloseKey", decltype(RegCloseKey)>(noting(m_calls, "close")),
        intercept<"RegQueryValueExW", decltype(RegQueryValueExW)>(noting(m_calls, "query")),
        intercept<"RegSetValueExW", decltype(RegSetValueExW)>(noting(m_calls, "set")),
        intercept<"RegQueryInfoKeyW", decltype(RegQueryInfoKeyW)>(noting(m_calls, "info")),
        intercept<"RegEnumKeyExW", decltype(RegEnumKeyExW)>(noting(m_calls, "key")),
        intercept<"RegEnumValueW", decltype(RegEnumValueW)>(noting(m_calls, "value")),
        intercept<"RegDeleteValueW", decltype(RegDeleteValueW)>(noting(m_calls, "delete")),
        intercept<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(noting(m_calls, "deleteKey"))};
};

TEST_F(RegistryCalls, AreThoseOfTheOperation)
{
    TarvoConfig::ItemIterator items;
    TarvoConfig::ValueIterator values;
    wchar_t name[64];
    long length = 64;
    const struct
    {
        const char* operation;
        std::function<void()> run;
        const char* expected;
    } steps[] = {
        {"getValue", [&] { m_config.getValue(eSettings, L"Display/Frames", m_number); },
         "open query query close"},
        {"getValue, missing", [&] { m_config.getValue(eSettings, L"Display/None", m_number); },
         "open query close"},
        {"getValue, no key", [&] { m_config.getValue(eSettings, L"None/None", m_number); }, "open"},
        {"setValue", [&] { m_config.setValue(eSettings, L"Display/Frames", m_number); }, "open set close"},
        {"setValue, no key", [&] { m_config.setValue(eSettings, L"New/Frames", m_number); },
         "open create set close"},
        {"isItemExist", [&] { m_config.isItemExist(eSettings, L"Display"); }, "open close"},
        {"addItem", [&] { m_config.addItem(eSettings, L"Display"); }, "open close"},
        {"findItem", [&] { m_config.findItem(eSettings, L"Display", values); }, "open info"},
        {"key", [&] { values.key(name, length); }, "value"},
        {"value", [&] { values.value(m_number); }, "value query query"},
        {"setValue of the iterator", [&] { values.setValue(m_number); }, "value set"},
        {"step", [&] { values.step(); }, ""},
        {"end of a walk", [&] { values = TarvoConfig::ValueIterator(); }, "close"},
        {"findItem of items", [&] { m_config.findItem(eSettings, L"Display", items); }, "open info"},
        {"name", [&] { items.name(name, length = 64); }, "key"},
        {"getValue by iterator", [&] { m_config.getValue(items, L"Red", m_number); },
         "key open query query close"},
        {"setValue by iterator", [&] { m_config.setValue(items, L"Red", m_number); }, "key open set close"},
        {"end of the items", [&] { items = TarvoConfig::ItemIterator(); }, "close"},
        {"removeValue", [&] { m_config.removeValue(eSettings, L"Display", L"Frames"); }, "open delete close"},
        {"CreateConfigReg", [] { CreateConfigReg(); },
         "open close open set close open close open set close open query query close open set close"},
    };
    for (const auto& step : steps) {
        m_calls.clear();
        step.run();
        EXPECT_EQ(m_calls, step.expected) << step.operation;
    }
}

TEST_F(RegistryCalls, AReadOfAnIntegerIntoOneAllocatesNothing)
{
    int blocks = 0;
    const Patch counting = countBlocks(blocks, libraryModule);
    EXPECT_EQ(m_config.getValue(eSettings, L"Display/Frames", m_number), eOk);
    EXPECT_EQ(blocks, 0);
}

} // namespace
