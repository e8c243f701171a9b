// Processes that a test starts.
#pragma once

#include "support/scratch.h"

#include <filesystem>
#include <map>
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
    std::string input;                   ///< what is typed
};

/// Runs a program to its end.
ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options = {});

/// What runProgram does on each target, up to the exit code: the scratch folder has the file "in" for stdin
/// and receives "out" and "err".
int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& workingFolder);

/// A part of a test that runs in a process of its own, in this program or a copy of it.
class ChildPart
{
public:
    using Main = int (*)(const std::vector<std::string>& arguments);

    ChildPart(const std::string& name, Main main) : m_name(name) { all()[name] = main; }

    /// Runs it in a program, such as an Application's.
    ChildResult run(const std::filesystem::path& program, std::vector<std::string> arguments,
                    const ChildOptions& options = {}) const
    {
        arguments.insert(arguments.begin(), {std::string(option), m_name});
        return runProgram(program, arguments, options);
    }

    /// How a process is asked for a part: by this word and the part's name.
    static constexpr std::string_view option = "--child";
    static std::map<std::string, Main>& all();

private:
    std::string m_name;
};

} // namespace testing_support
