#include "store/key_path.h"

#include "config/access.h"

namespace {

/// Replaces every '/' with '\' and returns a pointer to the terminator.
wchar_t* turnSlashes(wchar_t* text)
{
    for (;; ++text) {
        if (*text > L'/') {
            continue; // most characters
        }
        if (*text == L'/') {
            *text = L'\\';
        } else if (*text == 0) {
            return text;
        }
    }
}

/// Removes trailing backslashes in place and updates `end`, which must point to the terminator. Returns a
/// pointer past the leading backslashes.
wchar_t* trim(wchar_t* text, wchar_t*& end)
{
    while (*text == L'\\') {
        ++text;
    }
    while (end > text + 1 && end[-1] == L'\\') {
        --end;
    }
    *end = 0;
    return text;
}

} // namespace

namespace uinfo {

wchar_t* toBackslashes(wchar_t* text)
{
    if (text != nullptr) {
        turnSlashes(text);
    }
    return text;
}

wchar_t* trimBackslashes(wchar_t* text)
{
    if (isEmpty(text)) {
        return nullptr;
    }
    wchar_t* end = text + length(text);
    return trim(text, end);
}

wchar_t* splitKeyPath(wchar_t*& text)
{
    if (isEmpty(text)) {
        return nullptr;
    }
    wchar_t* end = turnSlashes(text);
    wchar_t* const trimmed = trim(text, end);
    while (end > trimmed) {
        if (*--end == L'\\') {
            *end = 0;
            text = trimmed;
            return end + 1;
        }
    }
    text = nullptr;
    return trimmed;
}

bool KeyPath::assignRoot(const TarvoConfig& config, TarvoConfig::Path root)
{
    return ConfigAccess::appendRoot(config, root, m_path) && !m_path.empty();
}

bool KeyPath::assign(const TarvoConfig& config, TarvoConfig::Path root, const wchar_t* subPath)
{
    ClientPath copy;
    if (!assignRoot(config, root) || !copy.assign(subPath)) {
        return false;
    }
    return copy.empty() || join(copy.normalise(), longestChangePath);
}

} // namespace uinfo
