#include "agreement/trace.h"

#include "support/scratch.h"

#include <gtest/gtest.h>

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
    const bool isStress = std::getenv("RKUINFO_STRESS") != nullptr;
    const std::string stored = testing_support::readFile(RKUINFO_AGREEMENT "/digests.txt");
    const auto folder = testing_support::thisProgram().parent_path().parent_path() / "agreement";
    for (unsigned seed = isStress ? 3 : 1; seed <= (isStress ? 20U : 2U); ++seed) {
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
            << row
            << "is not what digests.txt has; each number is of a tenth of the calls.\nTo see where: diff -r "
            << folder.string() << " and the same folder of the other system's build";
    }
}

} // namespace agreement
