// rkuinfo provision.
#include "commands.h"

#include "installation.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

void addProvision(CLI::App& app, Session& session)
{
    CLI::App* const command = app.add_subcommand("provision", "Create the current user's tree");
    command->callback([&session] {
        startUp(session);
        const std::string root = shown(rkuinfo::text(GetRegistryProductNameRootKey));
        require(CreateConfigReg(), root);
        fmt::print("{}\n", root);
    });
}
