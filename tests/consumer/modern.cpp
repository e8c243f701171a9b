// The same in C++20: a program on the modern face, and a module of C++14.
#include "check.h"
#include "module.h"

#include <RkUInfo.hpp>

int main(int argc, char** argv)
{
    check(!InitVelaConfig(L"Consumer", L"Modern", L"en-US", nullptr), "start-up");
    CreateConfigReg();
    check(!rkuinfo::set(TarvoConfig::eSettings, L"Pen/Width", 3) &&
              !rkuinfo::set(TarvoConfig::eSettings, L"Pen/Name", L"Gr\u00fcn"),
          "settings stored");
    check(rkuinfo::get<std::int32_t>(TarvoConfig::eSettings, L"Pen/Width").value_or(0) == 3,
          "a setting read");
    int values = 0;
    for (const auto& value : rkuinfo::values(TarvoConfig::eSettings, L"Pen")) {
        values += value.name.empty() ? 0 : 1;
    }
    check(values == 2, "two values by a range");
    const LoadedModule module(argc == 2 ? argv[1] : "");
    check(module.calls() != nullptr && module.calls()->config() == velaConfig(), "one configuration object");
    try {
        module.calls()->throwConfigException();
    } catch (RkExceptionWithMsg* exception) {
        check(exception->number() == 7, "the module's exception");
        delete exception;
    }
    check(velaConfig()->removeItem(TarvoConfig::eProductRoot, nullptr) == TarvoConfig::eOk,
          "the tree removed");
    return failures() == 0 ? 0 : 1;
}
