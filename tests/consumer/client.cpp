// A program of an application: starts the library up, stores a setting and works with a module of its own.
#include "module.h"

#include <cstdio>

namespace {

int failures = 0;

void check(bool holds, const char* what)
{
    std::printf("%s: %s\n", holds ? "ok" : "FAILED", what);
    failures += holds ? 0 : 1;
}

bool equal(const wchar_t* left, const wchar_t* right)
{
    while (*left != 0 && *left == *right) {
        ++left;
        ++right;
    }
    return *left == *right;
}

void storeAndRead()
{
    check(InitVelaConfig(L"Consumer", L"Sample", L"en-US", nullptr) == TarvoConfig::eOk, "start-up");
    check(CreateConfigReg() == TarvoConfig::eOk, "the user's tree");
    VelaVariant written;
    written.setString(L"a setting");
    check(velaConfig()->setValue(TarvoConfig::eSettings, L"View/Title", written) == TarvoConfig::eOk,
          "a setting stored");
    bool same = true;
    for (int i = 0; i < 1000; ++i) {
        VelaVariant read; // filled in the library, freed here
        same = velaConfig()->getValue(TarvoConfig::eSettings, L"View\\Title", read) == TarvoConfig::eOk &&
               equal(read.getString(), L"a setting") && same;
    }
    check(same, "the setting read, and its block freed by the client");
    check(velaConfig()->removeItem(TarvoConfig::eProductRoot, nullptr) == TarvoConfig::eOk,
          "the tree removed");
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
        delete exception;
    }
}

} // namespace

int main(int argc, char** argv)
{
    storeAndRead();
    const GetModuleCalls moduleCalls = argc == 2 ? loadModule(argv[1], "moduleCalls") : nullptr;
    check(moduleCalls != nullptr, "the module loaded");
    if (moduleCalls != nullptr) {
        useModule(*moduleCalls());
    }
    return failures == 0 ? 0 : 1;
}
