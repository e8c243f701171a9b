// The seam between the library and the system: the calls that a module imports, replaced for a while.
#pragma once

#include <vector>

namespace testing_support {

/// Replaces a function that a loaded module imports, for that module's calls alone, for its own life. Throws
/// std::runtime_error when the module imports no such function.
class ImportPatch
{
public:
    ImportPatch(const char* module, const char* function, void* replacement);
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;
    ~ImportPatch();

    /// What the module called before.
    void* original() const { return m_original; }

private:
    std::vector<void**> m_slots;
    void* m_original = nullptr;
};

/// Where a module keeps the addresses of a function that it imports; they are there and can be written.
std::vector<void**> importSlots(const char* module, const char* function);

/// The module under test and this program's own, as ImportPatch takes them.
extern const char* const libraryModule;
extern const char* const programModule;

template <typename Signature, typename Handler>
class Intercept;

/// Hands a module's calls of one function to handler(real, arguments...).
template <typename Result, typename... Arguments, typename Handler>
class Intercept<Result(Arguments...), Handler>
{
public:
    Intercept(const char* module, const char* function, Handler handler)
        : m_handler(handler), m_patch(module, function, reinterpret_cast<void*>(&Intercept::call))
    {
        s_active = this;
    }
    Intercept(const Intercept&) = delete;
    Intercept& operator=(const Intercept&) = delete;
    ~Intercept() = default;

private:
    static Result call(Arguments... arguments)
    {
        const auto real = reinterpret_cast<Result (*)(Arguments...)>(s_active->m_patch.original());
        return s_active->m_handler(real, arguments...);
    }

    static inline Intercept* s_active = nullptr; // one per signature and type: two of one lambda share it
    Handler m_handler;
    ImportPatch m_patch;
};

/// intercept<decltype(RegCloseKey)>("RegCloseKey", [&](auto real, HKEY key) { return real(key); })
template <typename Function, typename Handler>
[[nodiscard]] auto intercept(const char* function, Handler handler, const char* module = libraryModule)
{
    return Intercept<Function, Handler>(module, function, handler);
}

} // namespace testing_support
