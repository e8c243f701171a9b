// Normalises clients' paths and builds full key paths.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

/// Replaces every '/' with '\' in place and returns its argument.
wchar_t* toBackslashes(wchar_t* text);

/// Removes trailing backslashes in place and returns a pointer past the leading backslashes. Returns null if
/// `text` is null or empty.
wchar_t* trimBackslashes(wchar_t* text);

/// Normalises `text` and splits it at its last backslash, in place. Returns the last component, and sets
/// `text` to the part before the backslash, or to null if there is no backslash. If `text` is null or empty,
/// returns null and does not change `text`.
wchar_t* splitKeyPath(wchar_t*& text);

/// A copy of a client's path, which normalise() and split() change in place.
class ClientPath
{
public:
    /// Copies a path. Returns false if the path has 1024 characters or more. Null counts as empty.
    bool assign(const wchar_t* path)
    {
        m_isEmpty = isEmpty(path);
        return BoundedText(m_text, pathCapacity).append(path);
    }

    /// Returns whether the client's path is empty.
    bool empty() const { return m_isEmpty; }

    /// Returns the whole path without leading and trailing separators; null if the client's path is empty.
    const wchar_t* normalise() { return trimBackslashes(toBackslashes(m_text)); }

    /// The two parts of a path. A null key means the subtree's own key; a null name means the default value.
    struct Parts
    {
        const wchar_t* key;
        std::size_t keyLength;
        const wchar_t* name;
    };
    Parts split()
    {
        if (empty()) {
            return {};
        }
        wchar_t* key = m_text;
        const wchar_t* const name = splitKeyPath(key);
        // The separator before the name is not part of the key.
        return {key, key == nullptr ? 0 : static_cast<std::size_t>(name - 1 - key), name};
    }

private:
    wchar_t m_text[pathCapacity];
    bool m_isEmpty = true;
};

/// The full path of a key below a subtree's root, relative to HKEY_CURRENT_USER.
class KeyPath
{
public:
    /// Makes the path that of a subtree's root. Returns false if the root is not known, for example before
    /// start-up.
    bool assignRoot(const TarvoConfig& config, TarvoConfig::Path root);

    /// Appends '\' and a sub-path, which may be empty. Returns false if the root and the sub-path together
    /// exceed the limit.
    bool join(const wchar_t* subPath, std::size_t limit) { return join(subPath, length(subPath), limit); }
    bool join(const wchar_t* subPath, std::size_t count, std::size_t limit)
    {
        return m_path.appendComponentPart(subPath, count,
                                          limit + 1); // the limit does not count the separator
    }

    /// Appends the key part, if there is one.
    bool join(const ClientPath::Parts& parts, std::size_t limit)
    {
        return parts.keyLength == 0 || join(parts.key, parts.keyLength, limit);
    }

    /// Sets the path to a root and the normalised sub-path. Returns false if the path exceeds
    /// longestChangePath.
    bool assign(const TarvoConfig& config, TarvoConfig::Path root, const wchar_t* subPath);

    const wchar_t* text() const { return m_path.text(); }

private:
    PathBuffer m_path;
};

} // namespace uinfo
