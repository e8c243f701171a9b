// A program of an application, in C++20: starts the library up, works with the store and with a module.
#include "consumer.h"

#include "../support/recorder.h"

#include <RkUInfo.hpp>

#include <memory>

namespace {

using rkuinfo::utf8;

constexpr TarvoConfig::Path settings = TarvoConfig::eSettings;

/// Stores a value, and reads it back: filled in the library, freed here.
template <typename T>
bool isKept(const wchar_t* path, const T& value)
{
    return !rkuinfo::set(settings, path, value) && rkuinfo::get<T>(settings, path) == value;
}

void useStore()
{
    check(isKept(L"View/Int", -7) && isKept(L"View/Int64", -(INT64_C(1) << 40)) &&
              isKept(L"View/Double", 1.25) && isKept(L"View/Text", rkuinfo::utf16("Gr\xc3\xbcn")) &&
              isKept(L"View/Bytes", rkuinfo::Bytes{std::byte(0), std::byte(1)}),
          "a setting of each type");
    check(std::ranges::distance(rkuinfo::values(settings, L"View")) == 5, "five values by a range");
    TarvoConfig::ItemIterator item;
    wchar_t name[16] = {};
    long size = 16;
    check(!velaConfig()->findItem(settings, nullptr, item) &&
              !TarvoConfig::ItemIterator(item).name(name, size) && utf8(name) == "View",
          "an item, by a copy");
}

/// Catches by one class what the module throws of that or of one below it.
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
    const testing_support::Recorder recorder;
    const std::unique_ptr<TarvoConfigException> thrown(
        caught<TarvoConfigException>(module.throwConfigException));
    check(thrown && thrown->isExitProcess() == 1 && thrown->number() == 7 &&
              utf8(thrown->description()) + utf8(thrown->text()) == "messagecontext",
          "the module's exception, by its own class");
    const std::unique_ptr<RkException> base(caught<RkException>(module.throwStatus));
    check(base && base->code() == Vela::eInvalidInput && dynamic_cast<RkErrorStatus*>(base.get()) != nullptr,
          "the module's status, by its base class");
    check(recorder.recorded.size() == 1, "the crash recorder saw the status");
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
