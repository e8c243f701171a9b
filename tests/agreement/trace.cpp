#include "agreement/trace.h"

#include "support/scratch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace agreement {

Text Trace::word(std::u16string_view words)
{
    std::size_t start = 0;
    for (auto left = below(static_cast<std::size_t>(std::ranges::count(words, u'|')) + 1); left > 0; --left) {
        start = words.find(u'|', start) + 1;
    }
    return Text(words.substr(start, words.find(u'|', start) - start));
}

void Trace::addUnits(const Text& units)
{
    std::ostringstream out;
    for (const char16_t unit : units) {
        if (unit > u' ' && unit < u'\x7F' && unit != u'<') {
            out << static_cast<char>(unit);
        } else {
            out << '<' << std::hex << static_cast<unsigned>(unit) << '>';
        }
    }
    text += " '" + out.str() + '\'';
}

void expectAgreement(const std::string& area, void (*calls)(Trace& trace))
{
    const std::string stored = testing_support::readFile(RKUINFO_AGREEMENT "/digests.txt");
    const auto folder = testing_support::thisProgram().parent_path().parent_path() / "agreement";
    const bool isStress = std::getenv("RKUINFO_STRESS") != nullptr;
    for (unsigned seed = isStress ? 3 : 1; seed <= (isStress ? 42U : 2U); ++seed) {
        Trace trace(seed);
        calls(trace);
        std::uint64_t digest = 14695981039346656037U;
        for (const char unit : trace.text) {
            digest = (digest ^ static_cast<unsigned char>(unit)) * 1099511628211U;
        }
        const std::string name = area + '-' + std::to_string(seed);
        const std::string row = name + ' ' + std::to_string(digest) + '\n';
        testing_support::writeFile(folder / name, trace.text);
        EXPECT_TRUE(isStress || stored.find(row) != std::string::npos)
            << row << "is not in digests.txt. To find the difference, run diff -r " << folder.string()
            << " and the same folder of the other system's build";
    }
}

} // namespace agreement
