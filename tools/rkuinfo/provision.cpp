// rkuinfo provision.
#include "commands.h"
#include "installation.h"

void provision(Session& session)
{
    startUp(session);
    const std::string root = shown(rkuinfo::text(GetRegistryProductNameRootKey));
    require(CreateConfigReg(), root);
    print(root);
}
