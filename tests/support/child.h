// Processes that a test starts.
#pragma once

#include "support/scratch.h"

#include <filesystem>
#include <string>
#include <string_view>
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
    /// What is typed: lines of its standard input.
    std::vector<std::string> answers;
};

/// Runs a program to its end.
ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options = {});

/// What runProgram does on each target, up to the exit code: the folder has the file "in" for stdin and
/// receives "out" and "err".
int runIn(const std::filesystem::path& folder, const std::filesystem::path& program,
          const std::vector<std::string>& arguments, const ChildOptions& options);

/// A part of a test that runs in a process of its own, in this program or a copy of it.
class ChildPart
{
public:
    using Main = int (*)(const std::vector<std::string>& arguments);

    ChildPart(const char* name, Main main);

    /// Runs it in a program, such as an Application's.
    ChildResult run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                    const ChildOptions& options = {}) const;

private:
    const char* m_name;
};

/// Whether this process was started by ChildPart::run, and what it does then.
bool isChild(int argc, char** argv);
int runAsChild(int argc, char** argv);

} // namespace testing_support
