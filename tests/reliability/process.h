// A part of a test program as a process that one can talk to, stop and kill.
#pragma once

#include "support/test.h"

#include <csignal>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

class Process
{
public:
    Process(const char* part, const std::string& argument)
    {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        const std::string program = thisProgram().string();
        m_process = fork();
        if (m_process == 0) {
            dup2(ends[1], STDIN_FILENO);
            dup2(ends[1], STDOUT_FILENO);
            execl(program.c_str(), program.c_str(), "--child", part, argument.c_str(), nullptr);
            _exit(1);
        }
        close(ends[1]);
        m_talk = ends[0];
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() { close(m_talk); }

    void kill() const { ::kill(m_process, SIGKILL); }
    void tell() const { EXPECT_EQ(write(m_talk, "\n", 1), 1); }

    /// Up to a line's end, or all.
    std::string read(bool line) const
    {
        std::string text;
        for (char each = 0; ::read(m_talk, &each, 1) == 1 && !(line && each == '\n');) {
            text += each;
        }
        return text;
    }

    /// The exit code, or the negative signal; of one that stops too.
    int wait(int options = 0) const
    {
        int status = 0;
        waitpid(m_process, &status, options);
        return WIFEXITED(status) ? WEXITSTATUS(status) : WIFSTOPPED(status) ? -SIGSTOP : -WTERMSIG(status);
    }

private:
    pid_t m_process = 0;
    int m_talk = -1;
};

inline void say(const std::string& text)
{
    EXPECT_EQ(write(STDOUT_FILENO, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

} // namespace testing_support
