// Calls of the system at random, and what they answer. A seed makes the same calls on every system, so equal
// traces mean that the systems agree: digests.txt has what Wine and winhost both give. Where winhost
// deliberately differs (winhost/README.md) the calls stay away, said there with "differs".
#pragma once

#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

namespace agreement {

using Text = std::u16string; // of which no library takes the size to be another
using Bytes = std::vector<unsigned char>;

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

    template <typename List>
    const auto& oneOf(const List& all)
    {
        return all[below(std::size(all))];
    }

    /// One of the words that "|" separates.
    Text word(std::u16string_view words);

    /// Starts the line of the next call.
    void start(const Text& call);

    /// Numbers, texts and bytes of the call or of its answer.
    template <typename... Parts>
    void say(const Parts&... parts)
    {
        (sayOne(parts), ...);
    }

    std::vector<std::string> lines;

private:
    template <typename Part>
    void sayOne(const Part& part)
    {
        if constexpr (std::is_integral_v<Part>) {
            lines.back() += ' ' + std::to_string(part);
        } else {
            sayUnits({std::begin(part), std::end(part)});
        }
    }
    void sayUnits(const Text& units);

    std::uint64_t m_random;
};

/// Holds the traces of some calls, seed by seed, to their stored digests.
void expectAgreement(const std::string& area, void (*calls)(Trace& trace));

} // namespace agreement
