// Normalises and splits client paths in place.
#include "input.h"

#include "store/key_path.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const bool isWide = input.byte() % 2 != 0;
    const std::vector<wchar_t> text = input.restAsText(isWide);
    const std::size_t length = uinfo::length(text.data());

    std::vector<wchar_t> split = text;
    wchar_t* before = split.data();
    const wchar_t* const last = uinfo::splitKeyPath(before);
    require((last == nullptr) == (length == 0));
    if (last != nullptr) {
        const std::size_t parts = uinfo::length(last) + (before == nullptr ? 0 : uinfo::length(before) + 1);
        require(parts <= length);
        require(std::find(last, last + uinfo::length(last), L'/') == last + uinfo::length(last));
        require(uinfo::length(last) == 0 || last[0] != L'\\');
    }

    std::vector<wchar_t> trimmed = text;
    const wchar_t* const found = uinfo::trimBackslashes(uinfo::toBackslashes(trimmed.data()));
    require((found == nullptr) == (length == 0));
    require(found == nullptr || (found[0] != L'\\' && uinfo::length(found) <= length));

    uinfo::ClientPath copy;
    require(copy.assign(text.data()) == (length < uinfo::pathCapacity));
    return 0;
}
