// rkuinfo use.
#include "commands/command.h"

#include "model/value.h"
#include "program/names.h"

namespace {

void use(Session& session)
{
    const Installation installation(session);
    const Text language = installation.language();
    const Text profile = installation.profile();
    const auto record = [](const Text& key, const wchar_t* name, const Text& text) {
        Key::make(key).set(textValue(rkuinfo::text(name), text));
    };
    record(installation.companyRoot(), uinfo::currentProductValue, installation.product);
    record(installation.path(TarvoConfig::eVersionRoot), uinfo::currentLanguageValue, language);
    record(installation.path(TarvoConfig::eProfilesRoot), L"", profile);
    print(shown(installation.product) + ' ' + shown(language) + ' ' + shown(profile));
}

} // namespace

Command useCommand()
{
    return {"use",
            "Make product, language and profile those of the next start",
            {},
            "What no option names stays. No other command but provision remembers what the options say.",
            use};
}
