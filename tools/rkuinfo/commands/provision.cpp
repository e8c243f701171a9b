// rkuinfo provision.
#include "commands/command.h"

#include <RkUInfo.hpp>

namespace {

using rkuinfo::Argument;

/// Null stands for a name that is not given.
const wchar_t* orNull(const Argument& text)
{
    const wchar_t* const name = text;
    return name == nullptr || *name == 0 ? nullptr : name;
}

void require(TarvoConfig::Error error, const std::string& subject)
{
    if (error != TarvoConfig::eOk) {
        throw Failure(subject + ": " + make_error_code(error).message());
    }
}

/// The one command that starts the library: the tree is what an application makes of it.
void provision(Session& session)
{
    if (!session.program.empty()) {
        throw Failure("provision starts the library, which knows the folder of its own program alone: "
                      "run the rkuinfo in that folder",
                      exitUsage);
    }
    const Installation installation(session);
    const Argument company(utf16(session.company));
    const Argument product(utf16(session.product));
    const Argument profile(utf16(session.profile));
    const Argument language(installation.language());
    require(InitVelaConfig(orNull(company), orNull(product), language, orNull(profile)), "start-up");
    const Text root = rkuinfo::text(GetRegistryProductNameRootKey);
    if (CreateConfigReg() != TarvoConfig::eOk) {
        Key::make(root); // tells why
        throw Failure(shown(root) + ": not created");
    }
    print(shown(root));
}

} // namespace

Command provisionCommand()
{
    return {"provision",
            "Create the current user's tree",
            {},
            "Starts the library as an application does, which remembers product, language and profile.",
            provision};
}
