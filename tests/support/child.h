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

/// The part of runProgram that differs by target: stdin is the file "in" of the scratch folder, and stdout
/// and stderr go to "out" and "err" there. Returns the exit code.
int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments);

} // namespace testing_support
