// The command line: what may stand on it, and which command it runs.
#pragma once

#include <string>
#include <vector>

/// Gives the exit code; throws Failure for a wrong command line, and what the command throws.
int runCommandLine(const std::vector<std::string>& words);
