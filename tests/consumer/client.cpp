// A C++20 program that starts the library, and uses the store and the module.
#include "consumer.h"

#include <RkUInfo.hpp>

#include <memory>

namespace {

using rkuinfo::utf8;

struct Recorder final : VelaCrashRecorder
{
    void beginSession() override {}
    void endSession() override {}
    void recordText(const wchar_t*) override {}
    void recordException(RkException*) override { ++recorded; }

    int recorded = 0;
};

constexpr TarvoConfig::Path settings = TarvoConfig::eSettings;

void useStore()
{
    const rkuinfo::Text text = rkuinfo::utf16("Gr\xc3\xbcn"); // allocated in the library, freed here
    check(!rkuinfo::set(settings, L"View/Text", text) &&
              rkuinfo::get<rkuinfo::Text>(settings, L"View/Text") == text &&
              std::ranges::distance(rkuinfo::values(settings, L"View")) == 1,
          "a setting by the C++20 header");
}

/// Calls a function and returns the `Exception*` that it throws, or null if it throws nothing.
template <typename Exception>
Exception* caught(void (*throwing)())
{
    try {
        throwing();
    } catch (Exception* exception) {
        return exception;
    }
    return nullptr;
}

void useModule(const ModuleCalls& module)
{
    check(module.config() == velaConfig(), "one configuration object");
    VelaVariant value;
    value.setInt(1);
    module.fill(value);
    check(utf8(value.getString()) == "from the module", "a value filled by the module");
    Recorder recorder;
    VelaCrashRecorder* const before = velaSetCrashRecorder(&recorder);
    const std::unique_ptr<TarvoConfigException> thrown(
        caught<TarvoConfigException>(module.throwConfigException));
    check(thrown && thrown->isExitProcess() == 1 && thrown->number() == 7 &&
              utf8(thrown->description()) + utf8(thrown->text()) == "messagecontext",
          "the module's exception, by its own class");
    const std::unique_ptr<RkException> base(caught<RkException>(module.throwStatus));
    check(base && base->code() == Vela::eInvalidInput && dynamic_cast<RkErrorStatus*>(base.get()) != nullptr,
          "the module's status, by its base class");
    velaSetCrashRecorder(before);
    check(recorder.recorded == 1, "the crash recorder saw the status");
}

} // namespace

int main()
{
    check(!InitVelaConfig(L"Consumer", L"Sample", L"en-US", nullptr) && !CreateConfigReg(), "start-up");
    check(utf8(velaConfig()->companyName()) == "Consumer" && velaConfig()->language().velaLanguage() == 1033,
          "company and language");
    useStore();
    ITarvoProduct& product = *velaGetProduct();
    product.setSharedValueC(5);
    check(utf8(product.productName()) == "Sample" && product.productNumber() == 27 &&
              product.getSharedValueC() == 5,
          "the product's first and last slots");
    useModule(*moduleCalls());
    check(!velaConfig()->removeItem(TarvoConfig::eProductRoot, nullptr), "the tree removed");
}
