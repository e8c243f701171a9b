#include "support/child.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

int runIn(const std::filesystem::path& folder, const std::filesystem::path& program,
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
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace testing_support
