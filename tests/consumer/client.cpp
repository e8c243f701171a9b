// A program of an application: starts the library up, works with the store and with a module of its own.
#include "check.h"
#include "memory.h"
#include "module.h"

#include <cstring>

namespace {

constexpr TarvoConfig::Path settings = TarvoConfig::eSettings;

class Recorder : public VelaCrashRecorder
{
public:
    void beginSession() override {}
    void endSession() override {}
    void recordText(const wchar_t* /*text*/) override {}
    void recordException(RkException* exception) override { last = exception->code(); }

    std::int32_t last = 0;
};

void startUp()
{
    check(InitVelaConfig(L"Consumer", L"Sample", L"en-US", nullptr) == TarvoConfig::eOk, "start-up");
    check(CreateConfigReg() == TarvoConfig::eOk, "the user's tree");
    check(equal(velaConfig()->companyName(), L"Consumer") && velaConfig()->language().velaLanguage() == 1033,
          "company and language");
}

/// Stores a value, and reads it back: filled in the library, freed here.
VelaVariant stored(const wchar_t* path, const VelaVariant& value)
{
    VelaVariant read;
    check(velaConfig()->setValue(settings, path, value) == TarvoConfig::eOk &&
              velaConfig()->getValue(settings, path, read) == TarvoConfig::eOk,
          "a setting stored and read");
    return read;
}

void storeEachType()
{
    VelaVariant value;
    value.setInt(-7);
    check(stored(L"View/Int", value).getInt() == -7, "an integer");
    value.setInt64(-(INT64_C(1) << 40));
    check(stored(L"View/Int64", value).getInt64() == -(INT64_C(1) << 40), "a long integer");
    value.setBinary("\0\1\2", 3);
    check(std::memcmp(stored(L"View/Binary", value).getBinary(), "\0\1\2", 3) == 0, "bytes");
    constexpr double number = 1.25;
    value.setDouble(number);
    const VelaVariant bytes = stored(L"View/Double", value); // which the store has without their type
    check(bytes.blockSize() == 12 && std::memcmp(bytes.getBinary(), &number, sizeof number) == 0, "a number");
    value.setString(L"Gr\u00fcn");
    check(equal(stored(L"View/String", value).getString(), L"Gr\u00fcn"), "a text");
}

void walk()
{
    TarvoConfig::ItemIterator items;
    wchar_t name[16] = {};
    long size = 16;
    check(velaConfig()->findItem(settings, nullptr, items) == TarvoConfig::eOk, "the settings' items");
    {
        const TarvoConfig::ItemIterator copy(items);
        items = TarvoConfig::ItemIterator();
        check(copy.name(name, size) == TarvoConfig::eOk && equal(name, L"View"), "an item, by a copy");
    }
    TarvoConfig::ValueIterator first;
    check(velaConfig()->findItem(settings, L"View", first) == TarvoConfig::eOk, "an item's values");
    TarvoConfig::ValueIterator values;
    values = first;
    int count = 0;
    do {
        size = 16;
        count += values.key(name, size) == TarvoConfig::eOk ? 1 : 0;
    } while (values.step() == TarvoConfig::eOk);
    VelaVariant value;
    check(count == 5 && first.value(value) == TarvoConfig::eOk,
          "five values, and a copy that stands on its own");
}

void useProduct()
{
    ITarvoProduct* const product = velaGetProduct();
    check(equal(product->productName(), L"Sample") && equal(product->defaultProductName(), L"TARVO"),
          "the product's first slots");
    product->setSharedValueC(5);
    check(product->productNumber() == 27 && product->getSharedValueC() == 5, "its last slots");
}

void runOutOfMemory()
{
    Recorder recorder;
    VelaCrashRecorder* const before = velaSetCrashRecorder(&recorder);
    VelaVariant value;
    try {
        const RefusedMemory refused;
        velaConfig()->getValue(settings, L"View/String", value);
        check(false, "memory refused");
    } catch (RkErrorStatus* exception) {
        check(exception->code() == Vela::eOutOfMemory, "the library's own exception, by its class");
        delete exception;
    }
    try {
        const RefusedMemory refused;
        velaConfig()->getValue(settings, L"View/String", value);
        check(false, "memory refused");
    } catch (RkException* exception) {
        check(dynamic_cast<RkErrorStatus*>(exception) != nullptr, "and by its base class");
        delete exception;
    }
    check(recorder.last == Vela::eOutOfMemory, "the crash recorder saw it");
    check(velaSetCrashRecorder(before) == &recorder, "the crash recorder removed");
}

void useModule(const ModuleCalls& module)
{
    check(module.config() == velaConfig(), "one configuration object");
    module.share(1234);
    check(velaGetProduct()->getSharedValueB() == 1234, "one product object");
    {
        VelaVariant value;
        value.setInt(1);
        module.fill(value);
        check(equal(value.getString(), L"from the module"), "a value filled by the module");
    }
    try {
        module.throwConfigException();
        check(false, "an exception thrown");
    } catch (TarvoConfigException* exception) {
        check(exception->isExitProcess() == 1 && equal(exception->description(), L"message"),
              "the module's exception, by its own class");
        delete exception;
    }
    try {
        module.throwStatus();
        check(false, "a status thrown");
    } catch (RkException* exception) {
        check(exception->code() == Vela::eInvalidInput, "the module's status, by its base class");
        check(dynamic_cast<RkErrorStatus*>(exception) != nullptr &&
                  dynamic_cast<TarvoConfigException*>(exception) == nullptr,
              "what it is, by a dynamic cast");
        delete exception;
    }
}

} // namespace

int main(int argc, char** argv)
{
    startUp();
    storeEachType();
    walk();
    useProduct();
    runOutOfMemory();
    const LoadedModule module(argc == 2 ? argv[1] : "");
    check(module.calls() != nullptr, "the module loaded");
    if (module.calls() != nullptr) {
        useModule(*module.calls());
    }
    check(velaConfig()->removeItem(TarvoConfig::eProductRoot, nullptr) == TarvoConfig::eOk,
          "the tree removed");
    return failures() == 0 ? 0 : 1;
}
