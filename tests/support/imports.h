// The seam between the library and the system: the calls that a module imports, replaced for a while.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace testing_support {

/// The module under test and this program's own.
extern const char* const libraryModule;
inline constexpr const char* programModule = nullptr;

/// Whether a module's symbol is a function ("velaConfig", "RkLocker::lock", "RkLocker::~RkLocker"), whatever
/// its arguments, or has that very name, as "malloc" has.
bool isNameOf(std::string_view symbol, std::string_view function);

/// Where a loaded module keeps the addresses of a function that it imports, named as in the source
/// ("RegCloseKey", "RkLocker::lock"); they can be written.
std::vector<void**> importSlots(const char* module, const char* function);

/// A function's name as a template's argument: each replaced function has a state of its own.
struct Name
{
    constexpr Name(const char* name) { std::string_view(name).copy(text, sizeof text - 1); }
    char text[32] = {};
};

/// Whether a module's heap operators are its own, over the malloc that it imports, as Visual C++ has them.
#ifdef _MSC_VER
inline constexpr bool hasOwnHeapOperators = true;
#else
inline constexpr bool hasOwnHeapOperators = false;
#endif
/// Where a module asks for an array's memory.
inline constexpr const char* arrayNew = hasOwnHeapOperators ? "malloc"
                                        : sizeof(long) == 8 ? "_Znam"
                                                            : "_Znay";

/// Holds while a function is replaced.
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
    for (void** const slot : slots) { // last: it may be malloc, for which this program asks too
        *slot = reinterpret_cast<void*>(call);
    }
    return patch;
}

/// Hands a module's calls of one function to handler(real, arguments...):
/// intercept<"RegCloseKey", decltype(RegCloseKey)>([&](auto real, HKEY key) { return real(key); })
template <Name name, typename Signature, typename Handler>
[[nodiscard]] Patch intercept(Handler handler, const char* module = libraryModule)
{
    return replaceImport<name>(module, handler, static_cast<Signature*>(nullptr));
}

} // namespace testing_support
