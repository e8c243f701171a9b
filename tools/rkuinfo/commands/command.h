// A command: one file of this folder holds what it takes, its help and its run.
#pragma once

#include "model/installation.h"
#include "model/names.h"
#include "model/session.h"
#include "text/print.h"
#include "text/text.h"

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// A word or an option of a command, and where it is read to.
struct Parameter
{
    using Target = std::variant<bool*, std::string*, std::optional<std::string>*>;

    std::string name;  ///< "--file" for an option, "KEY" for a word
    std::string value; ///< "FILE", what an option takes; empty for a flag and a word
    Target target;
    std::string help;
    bool isRequired = false;
};

struct Command
{
    std::string name;
    std::string summary;
    std::vector<Parameter> parameters;
    std::string more; ///< what the help ends with
    std::function<void(Session&)> run;
};

Command showCommand();
Command getCommand();
Command setCommand();
Command listCommand();
Command treeCommand();
Command searchCommand();
Command rmCommand();
Command exportCommand();
Command importCommand();
Command diffCommand();
Command profilesCommand();
Command useCommand();
Command provisionCommand();
Command languagesCommand();
Command doctorCommand();

/// A key as a command names it: SUBTREE and the key below it.
struct Place
{
    std::string subtree;
    std::string key;

    /// The words to take it from; a required KEY has another name.
    std::vector<Parameter> parameters();

    /// Its path; throws for a subtree that is none, and for a path that no application could use.
    Text path(const Installation& installation) const;
    /// For messages.
    std::string told() const;
    [[noreturn]] void notFound() const;
};

/// The key part and the name of a value path.
struct ValuePlace
{
    Text key;
    Text name;
};
ValuePlace splitValue(const std::string& path);
/// The same key as the library takes it: '/' for '\', none at its ends.
Text normalised(const std::string& key);
/// Throws for a key path that no application could use.
void checkPath(const Text& path, const std::string& told);

inline Parameter jsonFlag(bool& json)
{
    return {"--json", "", &json, "print JSON"};
}
