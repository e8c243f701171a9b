#include "support/child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace testing_support {

namespace {

/// The boxes that the host's message box printed: a caption and a text, separated by a colon, on a line each.
std::vector<ShownBox> boxesIn(const std::filesystem::path& file)
{
    std::vector<ShownBox> boxes;
    std::ifstream errors(file);
    for (std::string line; std::getline(errors, line);) {
        if (const std::size_t colon = line.find(": "); colon != std::string::npos) {
            boxes.push_back({line.substr(0, colon), line.substr(colon + 2)});
        }
    }
    return boxes;
}

} // namespace

ChildResult runIn(const std::filesystem::path& folder, const std::filesystem::path& program,
                  const std::vector<std::string>& arguments, const ChildOptions& options)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const auto open = [&](int descriptor, const char* file, int flags) {
        posix_spawn_file_actions_addopen(&actions, descriptor, (folder / file).c_str(), flags, 0600);
    };
    open(STDIN_FILENO, "in", O_RDONLY);
    open(STDOUT_FILENO, "out", O_WRONLY | O_CREAT);
    open(STDERR_FILENO, "err", O_WRONLY | O_CREAT);
    if (!options.workingFolder.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, options.workingFolder.c_str());
    }
    std::vector<std::string> words = {program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    pid_t child = 0;
    const int error = posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + program.string());
    }
    int status = 0;
    waitpid(child, &status, 0);
    ChildResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.boxes = boxesIn(folder / "err");
    return result;
}

} // namespace testing_support
