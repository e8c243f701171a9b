// LoadStringW.
#include "modules.h"
#include "pe_resources.h"
#include "text.h"

#include <windows.h>

#include <cstdint>
#include <cstring>

INT LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, INT size)
{
    if (buffer == nullptr || size <= 0) {
        return 0;
    }
    const std::shared_ptr<const std::string> file = winhost::resourceFile(module);
    const winhost::Bytes bytes = file ? winhost::asBytes(*file) : winhost::Bytes();
    const winhost::StringResource string = winhost::findString(bytes, static_cast<std::uint16_t>(id));
    if (string.error != ERROR_SUCCESS) {
        SetLastError(string.error);
        return 0;
    }
    winhost::Text text(string.units.size() / sizeof(wchar_t), 0);
    if (!text.empty()) {
        std::memcpy(text.data(), string.units.data(), string.units.size());
    }
    return static_cast<INT>(winhost::copyText(text, buffer, static_cast<std::size_t>(size)));
}
