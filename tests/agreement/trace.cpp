#include "agreement/trace.h"

#include "support/scratch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace agreement {

namespace {

/// Of each tenth of the lines.
std::string digests(const std::vector<std::string>& lines)
{
    constexpr std::size_t parts = 10;
    std::ostringstream all;
    std::size_t next = 0;
    for (std::size_t part = 1; part <= parts; ++part) {
        std::uint32_t digest = 2166136261U;
        for (; next < lines.size() * part / parts; ++next) {
            for (const char unit : lines[next] + '\n') {
                digest = (digest ^ static_cast<unsigned char>(unit)) * 16777619U;
            }
        }
        all << ' ' << std::hex << digest;
    }
    return all.str();
}

} // namespace

Text Trace::word(std::u16string_view words)
{
    std::size_t start = 0;
    for (auto left = below(static_cast<std::size_t>(std::ranges::count(words, u'|')) + 1); left > 0; --left) {
        start = words.find(u'|', start) + 1;
    }
    return Text(words.substr(start, words.find(u'|', start) - start));
}

void Trace::start(const Text& call)
{
    lines.push_back(std::to_string(lines.size() + 1));
    say(call);
}

void Trace::sayUnits(const Text& units)
{
    std::ostringstream text;
    for (const char16_t unit : units) {
        if (unit > u' ' && unit < u'\x7F' && unit != u'<') {
            text << static_cast<char>(unit);
        } else {
            text << '<' << std::hex << static_cast<unsigned>(unit) << '>';
        }
    }
    lines.back() += " '" + text.str() + '\'';
}

/// Under stress, of seeds that nothing is stored for: the traces of two systems are to be compared then.
void expectAgreement(const std::string& area, void (*calls)(Trace& trace))
{
    const std::string stored = testing_support::readFile(RKUINFO_AGREEMENT "/digests.txt");
    const auto folder = testing_support::thisProgram().parent_path().parent_path() / "agreement";
    const bool isStress = std::getenv("RKUINFO_STRESS") != nullptr;
    const unsigned first = isStress ? 3 : 1;
    const unsigned last = isStress ? 42 : 2;
    for (unsigned seed = first; seed <= last; ++seed) {
        Trace trace(seed);
        calls(trace);
        const std::string name = area + '-' + std::to_string(seed);
        std::string text;
        for (const std::string& line : trace.lines) {
            text += line + '\n';
        }
        testing_support::writeFile(folder / name, text);
        const std::string row = name + digests(trace.lines) + '\n';
        EXPECT_TRUE(isStress || stored.find(row) != std::string::npos)
            << row << "is not in digests.txt; each number is of a tenth of the calls.\nTo see where: diff -r "
            << folder.string() << " and the same folder of the other system's build";
    }
}

} // namespace agreement
