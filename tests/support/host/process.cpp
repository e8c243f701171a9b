#include "support/child.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

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
    std::vector<std::string> words = {program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open((folder / "in").c_str(), O_RDONLY), STDIN_FILENO);
        dup2(creat((folder / "out").c_str(), 0600), STDOUT_FILENO);
        dup2(creat((folder / "err").c_str(), 0600), STDERR_FILENO);
        if (options.workingFolder.empty() || chdir(options.workingFolder.c_str()) == 0) {
            execv(argv[0], argv.data());
        }
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ChildResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.boxes = boxesIn(folder / "err");
    return result;
}

} // namespace testing_support
