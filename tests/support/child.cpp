#include "support/child.h"

#include <atomic>
#include <map>

namespace testing_support {

namespace {

constexpr std::string_view childOption = "--child";

std::map<std::string, ChildPart::Main>& parts()
{
    static std::map<std::string, ChildPart::Main> all;
    return all;
}

} // namespace

ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options)
{
    static std::atomic<int> runs = 0;
    const std::filesystem::path folder = scratchFolder() / ("run" + std::to_string(++runs));
    std::string typed;
    for (const std::string& answer : options.answers) {
        typed += answer + '\n';
    }
    writeFile(folder / "in", typed);
    const int exitCode = runIn(folder, program, arguments, options);
    ChildResult result = {exitCode, readFile(folder / "out"), readFile(folder / "err")};
    std::erase(result.output, '\r'); // of a runtime's text mode
    std::erase(result.errors, '\r');
    return result;
}

ChildPart::ChildPart(const char* name, Main main) : m_name(name)
{
    parts().emplace(name, main);
}

ChildResult ChildPart::run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                           const ChildOptions& options) const
{
    std::vector<std::string> all = {std::string(childOption), m_name};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runProgram(program, all, options);
}

bool isChild(int argc, char** argv)
{
    return argc > 2 && argv[1] == childOption;
}

int runAsChild(int argc, char** argv)
{
    return parts().at(argv[2])({argv + 3, argv + argc});
}

} // namespace testing_support
