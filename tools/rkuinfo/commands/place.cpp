// The keys that commands name.
#include "commands/command.h"

#include <algorithm>

std::vector<Parameter> Place::parameters()
{
    return {{"SUBTREE", "", &subtree,
             "where: "
             "product-root ... user-config, see rkuinfo --help",
             true},
            {"KEY", "", &key, "a key below the subtree's own, / or \\ between its parts"}};
}

Text Place::path(const Installation& installation) const
{
    const Text root = installation.path(subtreePath(chosen(subtree, subtreeNames(), "subtree")));
    const Text below = normalised(key);
    Text path = below.empty() ? root : joinedKey(root, below);
    checkPath(path, told());
    return path;
}

std::string Place::told() const
{
    return key.empty() ? subtree : subtree + ' ' + shown(utf16(key));
}

void Place::notFound() const
{
    throw Failure(told() + ": not found");
}

Text normalised(const std::string& key)
{
    Text path = utf16(key);
    std::ranges::replace(path, Text::value_type('/'), Text::value_type('\\'));
    const std::size_t start = path.find_first_not_of(Text::value_type('\\'));
    return start == Text::npos
               ? Text()
               : path.substr(start, path.find_last_not_of(Text::value_type('\\')) - start + 1);
}

ValuePlace splitValue(const std::string& path)
{
    const Text whole = normalised(path);
    const std::size_t end = whole.rfind(Text::value_type('\\'));
    return end == Text::npos ? ValuePlace{{}, whole}
                             : ValuePlace{whole.substr(0, end), whole.substr(end + 1)};
}

void checkPath(const Text& path, const std::string& told)
{
    constexpr std::size_t longestPath = 1020; // that an application can read
    constexpr std::size_t longestKey = 255;
    bool fits = path.size() <= longestPath;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find(Text::value_type('\\'), start), path.size());
        fits = fits && end - start <= longestKey;
        start = end + 1;
    }
    if (!fits) {
        throw Failure(told + ": name too long: a path has at most 1020 characters, a key 255");
    }
}
