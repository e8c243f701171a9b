#include "model/session.h"

#include "model/system.h"
#include "text/print.h"

#include <cstdlib>
#include <string_view>

namespace {

bool isSet(const char* variable, std::string_view value)
{
    const char* const found = std::getenv(variable);
    return found != nullptr && (value.empty() ? *found != 0 : found == value);
}

std::string quoted(const std::string& word)
{
    return word.find_first_of(" \t\\'\"$&;()|<>*") == std::string::npos ? word : '"' + word + '"';
}

} // namespace

std::string Session::repeated() const
{
    std::string options;
    const auto add = [&options](const char* name, const std::string& value) {
        options += value.empty() ? "" : std::string(" --") + name + ' ' + quoted(value);
    };
    add("program", program);
    add("company", company);
    add("product", product);
    add("language", language);
    add("profile", profile);
    return options;
}

Layout Session::layout() const
{
    const std::optional<std::size_t> terminal = terminalColumns();
    const bool isColourful = terminal && !isSet("NO_COLOR", "") && !isSet("TERM", "dumb");
    return {columns > 0 ? std::optional(columns) : terminal,
            colour == "always" || (colour == "auto" && isColourful)};
}

void Session::complain(const std::string& sentence)
{
    printError(sentence);
    exitCode = exitFailed;
}
