#include "support/child.h"

namespace testing_support {

ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const std::string& input)
{
    const std::filesystem::path folder = scratchFolder();
    writeFile(folder / "in", input);
    const int exitCode = runOnFiles(program, arguments);
    ChildResult result = {exitCode, readFile(folder / "out"), readFile(folder / "err")};
    std::erase(result.output, '\r'); // in text mode, Windows adds \r to each line
    std::erase(result.errors, '\r');
    return result;
}

} // namespace testing_support
