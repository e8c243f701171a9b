#include "support/child.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& workingFolder)
{
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open((scratchFolder() / "in").c_str(), O_RDONLY), STDIN_FILENO);
        dup2(creat((scratchFolder() / "out").c_str(), 0600), STDOUT_FILENO);
        dup2(creat((scratchFolder() / "err").c_str(), 0600), STDERR_FILENO);
        if (chdir(workingFolder.c_str()) == 0) {
            execv(argv[0], argv.data());
        }
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace testing_support
