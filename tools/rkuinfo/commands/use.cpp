// rkuinfo use.
#include "commands/command.h"

#include "model/value.h"

namespace {

void use(Session& session)
{
    const Installation installation(session);
    const Text language = installation.language();
    const Text profile = installation.profile();
    const auto remember = [](const Text& key, const char* name, const Text& text) {
        Key::make(key).set(textValue(utf16(name), text));
    };
    remember(utf16("Software\\") + installation.company, "CurProduct", installation.product);
    remember(installation.versionRoot(), "CurVer", language);
    remember(installation.path(TarvoConfig::eProfilesRoot), "", profile);
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
