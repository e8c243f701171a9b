// Replaces functions that a loaded module imports.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace testing_support {

/// The module under test, and this program.
extern const char* const libraryModule;
inline constexpr const char* programModule = nullptr;

/// Returns whether a symbol is the name of `function`, such as "malloc" or "RkLocker::lock". The symbol may
/// be decorated; its argument types are not compared.
bool isNameOf(std::string_view symbol, std::string_view function);

/// Returns the slots in which a loaded module stores the address of an imported function, and makes the slots
/// writable. Compares the names with isNameOf().
std::vector<void**> importSlots(const char* module, const char* function);

/// A function's name as a template argument: replaceImport() has separate state for each name.
struct Name
{
    constexpr Name(const char* name) { std::string_view(name).copy(text, sizeof text - 1); }
    char text[32] = {};
};

/// With Visual C++, each module contains its own operator new, which calls the module's import of malloc.
#ifdef _MSC_VER
inline constexpr bool hasOwnHeapOperators = true;
#else
inline constexpr bool hasOwnHeapOperators = false;
#endif
/// The imported function that new[] calls.
inline constexpr const char* arrayNew = hasOwnHeapOperators ? "malloc"
                                        : sizeof(long) == 8 ? "_Znam"
                                                            : "_Znay";

/// Restores the replaced function on destruction.
using Patch = std::shared_ptr<void>;

template <Name name, typename Handler, typename Result, typename... Arguments>
Patch replaceImport(const char* module, Handler handler, Result (*)(Arguments...))
{
    using Function = Result (*)(Arguments...);
    static std::pair<Handler, Function>* active = nullptr;
    const Function call = [](Arguments... arguments) -> Result {
        return active->first(active->second, arguments...);
    };
    const std::vector<void**> slots = importSlots(module, name.text);
    if (slots.empty()) {
        throw std::runtime_error(std::string("not imported: ") + name.text);
    }
    void* const original = *slots.front();
    auto* const before = std::exchange(active, new std::pair(handler, reinterpret_cast<Function>(original)));
    Patch patch(active, [=](auto* state) {
        for (void** const slot : slots) {
            *slot = original;
        }
        active = before;
        delete state;
    });
    // This loop must be last: it may replace malloc, and the lines above call malloc.
    for (void** const slot : slots) {
        *slot = reinterpret_cast<void*>(call);
    }
    return patch;
}

/// Replaces a function that a module imports. Each call of the function becomes handler(real, arguments...),
/// where `real` is the original function. Example:
/// intercept<"RegCloseKey", decltype(RegCloseKey)>([&](auto real, HKEY key) { return real(key); })
template <Name name, typename Signature, typename Handler>
[[nodiscard]] Patch intercept(Handler handler, const char* module = libraryModule)
{
    return replaceImport<name>(module, handler, static_cast<Signature*>(nullptr));
}

} // namespace testing_support
