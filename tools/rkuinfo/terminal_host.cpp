#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

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
