// Key paths as clients write them, and the full key paths that the store opens.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

/// Turns every '/' into '\' in place; gives its argument.
wchar_t* toBackslashes(wchar_t* text);

/// Cuts trailing backslashes in place and gives the text behind the leading ones; null for null or empty.
wchar_t* trimBackslashes(wchar_t* text);

/// Normalises text and splits it at its last backslash, in place: text becomes what is before it, or null,
/// and the result is what is behind it. Null or empty gives null and leaves text alone.
wchar_t* splitKeyPath(wchar_t*& text);

/// A private copy of a client's path, which normalise and split change in place.
class ClientPath
{
public:
    /// False if the path has 1024 characters or more. Null counts as empty.
    bool assign(const wchar_t* path)
    {
        m_isEmpty = isEmpty(path);
        return BoundedText(m_text, pathCapacity).append(path);
    }

    /// Whether the path was empty as the client wrote it.
    bool empty() const { return m_isEmpty; }

    /// The whole path as one sub-path.
    const wchar_t* normalise() { return trimBackslashes(toBackslashes(m_text)); }

    /// Its key part, null for the subtree's own key, and the name behind it, null for a key's default value.
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
        // The name follows the separator that ends the key part.
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
    /// Starts with the subtree's root; false when it has none.
    bool assignRoot(const TarvoConfig& config, TarvoConfig::Path root);

    /// Appends '\' and a sub-path, however short; false when root and sub-path pass the limit.
    bool join(const wchar_t* subPath, std::size_t limit) { return join(subPath, length(subPath), limit); }
    bool join(const wchar_t* subPath, std::size_t count, std::size_t limit)
    {
        return m_path.appendComponentPart(subPath, count, limit + 1); // the limit leaves out the separator
    }

    /// Appends a key part, if there is one.
    bool join(const ClientPath::Parts& parts, std::size_t limit)
    {
        return parts.keyLength == 0 || join(parts.key, parts.keyLength, limit);
    }

    /// The root, then the client's sub-path, if any, normalised and joined. The limit is that of every
    /// operation that changes the tree.
    bool assign(const TarvoConfig& config, TarvoConfig::Path root, const wchar_t* subPath);

    const wchar_t* text() const { return m_path.text(); }

private:
    PathBuffer m_path;
};

} // namespace uinfo
