// PathAppendW and PathRemoveFileSpecW. Both treat a forward slash as an ordinary character.
#include "text.h"

#include <shlwapi.h>
#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

using winhost::Text;
using winhost::TextView;

bool isUnc(TextView path)
{
    return path.starts_with(L"\\\\");
}

bool hasDrive(TextView path)
{
    return path.size() >= 2 && path[1] == L':';
}

/// Returns the root of a path: the part that ".." never removes.
TextView rootOf(TextView path)
{
    if (hasDrive(path)) {
        return path.substr(0, path.substr(2).starts_with(L'\\') ? 3 : 0);
    }
    return path.substr(0, isUnc(path) ? 2 : path.starts_with(L'\\') ? 1 : 0);
}

/// Resolves "." and ".." without following links. A relative path becomes absolute when ".." removes its
/// first component: "a\..\b" becomes "\b". A final "." component is kept.
Text canonical(TextView path)
{
    if (path.empty()) {
        return L"\\";
    }
    Text root(rootOf(path));
    path.remove_prefix(root.size());
    std::vector<TextView> components;
    const std::size_t kept = isUnc(root) ? 1 : 0; // the server
    bool more = !path.empty();
    while (more) {
        const std::size_t end = path.find(L'\\');
        const TextView component = path.substr(0, end);
        more = end != TextView::npos;
        path.remove_prefix(more ? end + 1 : path.size());
        if (component == L"." && more) {
            continue;
        }
        const bool goesUp = component == L"..";
        if (goesUp && components.size() > kept) {
            components.pop_back();
            if (root.empty() && components.empty()) {
                root = L"\\";
            }
        } else if (!goesUp || root.empty()) {
            components.push_back(component);
        }
    }
    Text result = root;
    for (const TextView component : components) {
        if (result.size() > root.size()) {
            result += L'\\';
        }
        result += component;
    }
    if (result.size() == 2 && hasDrive(result)) {
        result += L'\\';
    }
    return result;
}

/// Appends the relative path `more` to `path`. Returns nothing if the joined path would be too long. If one
/// argument is empty, returns the other; if `more` is a full path, returns `more`. In both cases the result
/// is cut to 259 characters.
std::optional<Text> combined(TextView path, TextView more)
{
    constexpr std::size_t longest = MAX_PATH - 1;
    if (!isUnc(more)) {
        more.remove_prefix(std::min(more.find_first_not_of(L'\\'), more.size()));
    }
    if (isUnc(more) || hasDrive(more) || path.empty()) {
        return canonical(more.substr(0, longest));
    }
    if (more.empty()) {
        return canonical(path.substr(0, longest));
    }
    Text joined(path);
    if (joined.back() != L'\\') {
        joined += L'\\';
    }
    joined += more;
    return joined.size() <= longest ? std::optional(canonical(joined)) : std::nullopt;
}

} // namespace

BOOL PathAppendW(LPWSTR path, LPCWSTR more)
{
    if (path == nullptr || more == nullptr) {
        return FALSE;
    }
    const std::optional<Text> result = combined(path, more);
    winhost::copyText(result.value_or(Text()), path, MAX_PATH);
    return result ? TRUE : FALSE;
}

BOOL PathRemoveFileSpecW(LPWSTR path)
{
    if (path == nullptr) {
        return FALSE;
    }
    const TextView text(path);
    std::size_t cut = isUnc(text) ? 2 : text.starts_with(L'\\') ? 1 : 0;
    for (std::size_t i = cut; i < text.size(); ++i) {
        if (text[i] == L'\\') {
            cut = i;
        } else if (text[i] == L':') {
            if (text.substr(i + 1).starts_with(L'\\')) {
                ++i;
            }
            cut = i + 1;
        }
    }
    path[cut] = 0;
    return cut < text.size() ? TRUE : FALSE;
}
