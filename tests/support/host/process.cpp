#include "support/child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <stdexcept>

namespace testing_support {

namespace {

/// The boxes that the host's message box printed: a caption and a text, separated by a colon, on a line each.
std::vector<ShownBox> boxesIn(const std::string& errors);

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

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, (folder / "in").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, (folder / "out").c_str(), O_WRONLY | O_CREAT,
                                     0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (folder / "err").c_str(), O_WRONLY | O_CREAT,
                                     0600);
    if (!options.workingFolder.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, options.workingFolder.c_str());
    }
    std::string name = program.string();
    std::vector<std::string> copies = arguments;
    std::vector<char*> argv = {name.data()};
    for (std::string& argument : copies) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    pid_t child = 0;
    const int error = posix_spawn(&child, name.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + name);
    }
    int status = 0;
    waitpid(child, &status, 0);

    ChildResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.output = readFile(folder / "out");
    result.errors = readFile(folder / "err");
    result.boxes = boxesIn(result.errors);
    return result;
}

namespace {

std::vector<ShownBox> boxesIn(const std::string& errors)
{
    std::vector<ShownBox> boxes;
    std::size_t start = 0;
    while (start < errors.size()) {
        const std::size_t end = std::min(errors.find('\n', start), errors.size());
        const std::string line = errors.substr(start, end - start);
        if (const std::size_t colon = line.find(": "); colon != std::string::npos) {
            boxes.push_back({line.substr(0, colon), line.substr(colon + 2)});
        }
        start = end + 1;
    }
    return boxes;
}

} // namespace

} // namespace testing_support
