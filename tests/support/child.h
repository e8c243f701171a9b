// Processes that a test starts.
#pragma once

#include "support/scratch.h"

#include <filesystem>
#include <string>
#include <vector>

namespace testing_support {

struct ChildResult
{
    int exitCode = -1;
    std::string output; ///< of stdout
    std::string errors; ///< of stderr
};

struct ChildOptions
{
    std::filesystem::path workingFolder; ///< empty: this process's own
    std::string input;                   ///< what is typed
};

/// Runs a program to its end.
ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options = {});

/// What runProgram does on each target, up to the exit code: the scratch folder has the file "in" for stdin
/// and receives "out" and "err".
int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& workingFolder);

} // namespace testing_support
