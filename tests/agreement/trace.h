// Makes random calls to the system and records their results in a trace. The same seed produces the same
// calls on every system. digests.txt contains the digests of the traces that Wine and winhost must both
// produce. Draw at most one random number per expression, because compilers differ in the order of
// evaluation. The calls avoid the deliberate differences between winhost and Windows (winhost/README.md).
#pragma once

#include <concepts>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace agreement {

using Text = std::u16string; // std::wstring needs a 32-bit wchar_t in some libraries

inline const wchar_t* wide(const Text& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

inline Text utf16(const wchar_t* text)
{
    return reinterpret_cast<const char16_t*>(text);
}

class Trace
{
public:
    explicit Trace(std::uint64_t seed) : m_random(seed * 2654435769U + 1) {}

    /// Returns a random number below `limit`. The sequence of numbers is the same on every system.
    std::uint32_t below(std::size_t limit)
    {
        m_random = m_random * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>((m_random >> 33) % limit);
    }
    bool oneIn(std::size_t many) { return below(many) == 0; }
    auto& oneOf(auto& all) { return all[below(std::size(all))]; }

    /// Returns a random word from a list separated by "|".
    Text word(std::u16string_view words);

    /// Begins the trace line for a call. Each part is a number, a string or bytes; say() appends more.
    void start(const Text& call, const auto&... parts)
    {
        text += '\n';
        say(call, parts...);
    }
    void say(const auto&... parts) { (add(parts), ...); }

    std::string text;

private:
    void add(const std::integral auto& number) { text += ' ' + std::to_string(number); }
    void add(const auto& units) { addUnits({std::begin(units), std::end(units)}); }
    void addUnits(const Text& units);

    std::uint64_t m_random;
};

/// Compares the traces of some calls with their stored digests, for several seeds. If RKUINFO_STRESS is set,
/// writes the traces for other seeds to files instead, so that the traces of two systems can be compared.
void expectAgreement(const std::string& area, void (*calls)(Trace& trace));

} // namespace agreement
