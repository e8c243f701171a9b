#include "support/child.h"

namespace testing_support {

ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options)
{
    const std::filesystem::path folder = scratchFolder();
    writeFile(folder / "in", options.input);
    const int exitCode =
        runOnFiles(program, arguments,
                   options.workingFolder.empty() ? std::filesystem::current_path() : options.workingFolder);
    ChildResult result = {exitCode, readFile(folder / "out"), readFile(folder / "err")};
    std::erase(result.output, '\r'); // written in text mode
    std::erase(result.errors, '\r');
    return result;
}

} // namespace testing_support
