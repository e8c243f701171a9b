// Redirects a test process to a separate home and registry, and starts its child processes.
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

/// Runs a program in the folder that contains it, with `input` as stdin. Waits until the program exits.
ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const std::string& input = {});

/// Runs a program with the scratch folder's files "in", "out" and "err" as stdin, stdout and stderr.
/// Returns the exit code.
int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments);

/// Sets an environment variable, which the children of this process inherit.
void shareWithChildren(const char* variable, const std::string& value);

/// Redirects this process to an empty home and registry. On Windows, leaveHome() ends the redirection and
/// deletes the redirected registry; on Linux, it does nothing.
void joinHome();
void leaveHome();

/// Returns the company name by which a child process finds this process's registry. On Windows the name
/// contains a key path, because a child's registry is not redirected.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
