#include "store/key_path.h"

namespace uinfo {

wchar_t* toBackslashes(wchar_t* text)
{
    if (text != nullptr) {
        for (wchar_t* at = text; *at != 0; ++at) {
            if (*at == L'/') {
                *at = L'\\';
            }
        }
    }
    return text;
}

wchar_t* trimBackslashes(wchar_t* text)
{
    if (isEmpty(text)) {
        return nullptr;
    }
    while (*text == L'\\') {
        ++text;
    }
    wchar_t* end = text + length(text);
    while (end > text + 1 && end[-1] == L'\\') {
        --end;
    }
    *end = 0;
    return text;
}

wchar_t* splitKeyPath(wchar_t*& text)
{
    if (isEmpty(text)) {
        return nullptr;
    }
    wchar_t* const trimmed = trimBackslashes(toBackslashes(text));
    wchar_t* last = trimmed + length(trimmed);
    while (last > trimmed && *last != L'\\') {
        --last;
    }
    if (*last != L'\\') {
        text = nullptr;
        return trimmed;
    }
    *last = 0;
    text = trimmed;
    return last + 1;
}

bool KeyPath::assignRoot(const TarvoConfig& config, TarvoConfig::Path root)
{
    config.getRegRootPath(root, m_path.data());
    m_path.measure();
    return !m_path.empty();
}

bool KeyPath::join(const wchar_t* subPath, std::size_t limit)
{
    return m_path.length() + length(subPath) <= limit && m_path.appendComponent(subPath);
}

bool KeyPath::assign(const TarvoConfig& config, TarvoConfig::Path root, const wchar_t* subPath)
{
    ClientPath copy;
    if (!assignRoot(config, root) || !copy.assign(subPath)) {
        return false;
    }
    return copy.text() == nullptr || join(trimBackslashes(toBackslashes(copy.text())), longestChangePath);
}

} // namespace uinfo
