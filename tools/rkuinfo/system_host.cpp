#include "system.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

void prepareStreams() {}

std::optional<std::size_t> terminalColumns()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) {
        return std::nullopt;
    }
    constexpr std::size_t usual = 80; // for a terminal that does not tell
    return size.ws_col > 0 ? size.ws_col : usual;
}

bool isBarred(const std::string& name)
{
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return access((program.parent_path() / name).c_str(), R_OK) != 0 && errno == EACCES;
}
