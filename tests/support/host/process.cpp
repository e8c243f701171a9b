// The home folder of a test process, and its child processes.
#include "support/child.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

void shareWithChildren(const char* variable, const std::string& value)
{
    setenv(variable, value.c_str(), 1);
}

void joinHome()
{
    const std::filesystem::path home = scratchFolder() / "home";
    std::filesystem::create_directories(home);
    shareWithChildren("HOME", home.string());
    shareWithChildren("XDG_CONFIG_HOME", (home / ".config").string());
    shareWithChildren("XDG_DATA_HOME", (home / ".local/share").string());
    shareWithChildren("XDG_DOCUMENTS_DIR", (home / "Documents").string());
}

void leaveHome() {}

std::string companyFromOutside(const std::string& company)
{
    return company; // a child process uses the same home folder, which contains the registry
}

int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments)
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
        if (chdir(program.parent_path().c_str()) == 0) {
            execv(argv[0], argv.data());
        }
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace testing_support
