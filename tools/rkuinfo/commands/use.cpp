// rkuinfo use and provision: the commands that record the names given as options.
#include "commands/command.h"

#include "installation/names.h"
#include "model/system.h"

namespace {

using rkuinfo::Argument;

void use(Session& session)
{
    const Installation installation(session);
    const Text profiles = installation.path(TarvoConfig::eProfilesRoot);
    const Text profile = rkuinfo::text(installation.profile().value());
    Tree names;
    const auto record = [&names](const Text& key, const wchar_t* value, const Text& text) {
        const Text name = rkuinfo::text(value);
        names[{key, name}] = textValue(name, text);
    };
    record(installation.companyRoot, uinfo::currentProductValue, rkuinfo::text(installation.product.value()));
    record(installation.path(TarvoConfig::eVersionRoot), uinfo::currentLanguageValue,
           installation.language());
    record(profiles, L"", profile);
    if (session.has("--profile") || !equalIgnoringCase(profile, rkuinfo::text(uinfo::defaultProfile))) {
        names.try_emplace({joinedKey(profiles, profile)});
    }
    inTransaction([&names] { carryOut({}, compare({}, names)); });
    print(shown(utf8(installation.product.value())) + ' ' + utf8(installation.language()) + ' ' +
          shown(profile));
}

/// Starts the library, so that the new tree is the same as one that an application creates.
void provision(Session& session)
{
    if (session.has("--program")) {
        throw Failure("provision does not accept --program: run the program's copy of rkuinfo", {},
                      exitUsage);
    }
    const Argument company(utf16(session["--company"]));
    const Argument product(utf16(session["--product"]));
    const Argument profile(utf16(session["--profile"]));
    const Argument language(Installation(session).language());
    const TarvoConfig::Error error = InitVelaConfig(company, product, language, profile);
    if (error != TarvoConfig::eOk) {
        throw Failure("start-up: " + make_error_code(error).message());
    }
    const Text root = rkuinfo::text(GetRegistryProductNameRootKey);
    if (CreateConfigReg() != TarvoConfig::eOk) {
        const Value none;
        carryOut(root, {{{}, nullptr, &none}}); // throws why
        throw Failure(utf8(root) + ": not created");
    }
    print(shown(root));
}

const Command useCommand("use", "", "Choose the product, language and profile for the next start",
                         "Omitted names do not change. A profile that does not exist is created.", use);
const Command provisionCommand("provision", "", "Create the current user's tree, as an application does",
                               "Starts the library, which records the product, language and profile.",
                               provision);

} // namespace
