// Commands on the configuration store: get, set and list.
#pragma once

#include "command.h"

#include <string_view>

/// Empty for a command that is not one of them, or with wrong arguments. The words must outlive the command.
Command parseStoreCommand(std::string_view name, Words arguments);
