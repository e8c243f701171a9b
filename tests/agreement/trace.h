// Calls of the system at random, and what they answer. A seed makes the same calls on every system, so equal
// traces mean that the systems agree: digests.txt has what Wine and winhost both give. No expression chooses
// twice, since compilers differ in what they evaluate first. Where winhost deliberately differs
// (winhost/README.md) the calls stay away, said there with "differs".
#pragma once

#include <concepts>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace agreement {

using Text = std::u16string; // of which no library takes the size to be another

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

    /// A number below a limit, the same everywhere.
    std::uint32_t below(std::size_t limit)
    {
        m_random = m_random * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>((m_random >> 33) % limit);
    }
    bool oneIn(std::size_t many) { return below(many) == 0; }
    auto& oneOf(auto& all) { return all[below(std::size(all))]; }

    /// One of the words that "|" separates.
    Text word(std::u16string_view words);

    /// Adds numbers, texts and bytes of a call or of its answer; each call has a line.
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

/// Holds the traces of some calls, seed by seed, to their stored digests.
void expectAgreement(const std::string& area, void (*calls)(Trace& trace));

} // namespace agreement
