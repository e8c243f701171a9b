// The commands. Each function adds its own to the command line; a command runs once that has been read whole.
#pragma once

#include "session.h"

namespace CLI {
class App;
}

void addShow(CLI::App& app, Session& session);
void addStoreCommands(CLI::App& app, Session& session); // get, set, list, tree, rm
void addTransfer(CLI::App& app, Session& session);      // export, import
void addProvision(CLI::App& app, Session& session);
void addLanguages(CLI::App& app, Session& session);
void addDoctor(CLI::App& app, Session& session);
