// The seam between the library and the system: the calls that a module imports, replaced for a while.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

namespace testing_support {

/// The module under test and this program's own.
extern const char* const libraryModule;
extern const char* const programModule;

/// Where a loaded module keeps the addresses of a function that it imports, named as in the source
/// ("RegCloseKey", "RkLocker::lock"); they can be written. Throws
/// std::runtime_error when the module imports no such function.
std::vector<void**> importSlots(const char* module, const char* function);

/// A function's name as a template's argument: each replaced function has a state of its own.
template <std::size_t Size>
struct Name
{
    consteval Name(const char (&literal)[Size]) { std::copy_n(literal, Size, text); }
    char text[Size];
};

/// Holds while a function is replaced.
using Patch = std::shared_ptr<void>;

template <Name name, typename Handler, typename Result, typename... Arguments>
Patch replaceImport(const char* module, Handler handler, std::type_identity<Result(Arguments...)>)
{
    struct State
    {
        Handler handler;
        Result (*real)(Arguments...);
    };
    static State* active = nullptr;
    Result (*const call)(Arguments...) = [](Arguments... arguments) -> Result {
        return active->handler(active->real, arguments...);
    };
    const std::vector<void**> slots = importSlots(module, name.text);
    void* const original = *slots.front();
    State* const before = active;
    active = new State{handler, reinterpret_cast<Result (*)(Arguments...)>(original)};
    for (void** const slot : slots) {
        *slot = reinterpret_cast<void*>(call);
    }
    return {active, [=](State* state) {
                std::for_each(slots.begin(), slots.end(), [=](void** slot) { *slot = original; });
                active = before;
                delete state;
            }};
}

/// Hands a module's calls of one function to handler(real, arguments...):
/// intercept<"RegCloseKey", decltype(RegCloseKey)>([&](auto real, HKEY key) { return real(key); })
template <Name name, typename Signature, typename Handler>
[[nodiscard]] Patch intercept(Handler handler, const char* module = libraryModule)
{
    return replaceImport<name>(module, handler, std::type_identity<Signature>());
}

} // namespace testing_support
