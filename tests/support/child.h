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

/// Runs a program in its folder, with this standard input, and waits until it exits.
ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const std::string& input = {});

/// Runs a program with the file "in" of the scratch folder as stdin, and with "out" and "err" as stdout and
/// stderr. Returns the exit code.
int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments);

} // namespace testing_support
