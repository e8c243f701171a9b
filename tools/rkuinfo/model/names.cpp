#include "model/names.h"

#include "text/print.h"
#include "text/text.h"

#include <algorithm>

namespace {

constexpr Subtree allSubtrees[] = {
    {TarvoConfig::eProductRoot, "product-root"},        {TarvoConfig::eVersionRoot, "version-root"},
    {TarvoConfig::eLanguageRoot, "language-root"},      {TarvoConfig::eProfilesRoot, "profiles-root"},
    {TarvoConfig::eCurrentProfile, "current-profile"},  {TarvoConfig::eApplications, "applications"},
    {TarvoConfig::eRecentFileList, "recent-file-list"}, {TarvoConfig::eSettings, "settings"},
    {TarvoConfig::eUserConfig, "user-config"},
};

std::string plain(std::string_view word)
{
    std::string letters;
    for (const char c : word) {
        if (c != '-') {
            letters += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        }
    }
    return letters;
}

} // namespace

std::span<const Subtree> subtrees()
{
    return allSubtrees;
}

std::vector<std::string> subtreeNames()
{
    std::vector<std::string> names;
    for (const Subtree& subtree : allSubtrees) {
        names.emplace_back(subtree.name);
    }
    return names;
}

std::vector<std::string> typeNames()
{
    return {"int", "int64", "double", "binary", "string"};
}

std::string chosen(const std::string& word, const std::vector<std::string>& names, const std::string& what)
{
    const std::string wanted = plain(word);
    std::vector<std::string> plainNames;
    for (const std::string& name : names) {
        if (wanted == plain(name) || wanted == 'e' + plain(name)) {
            return name;
        }
        plainNames.push_back(plain(name));
    }
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    const auto meant = std::ranges::find(plainNames, nearest(wanted, plainNames));
    throw Failure(
        "'" + shown(utf16(word)) + "' is no " + what + ": " +
            (meant == plainNames.end()
                 ? "there are " + list
                 : "did you mean " + names[static_cast<std::size_t>(meant - plainNames.begin())] + "?"),
        exitUsage);
}

TarvoConfig::Path subtreePath(std::string_view name)
{
    return std::ranges::find(allSubtrees, name, &Subtree::name)->path;
}
