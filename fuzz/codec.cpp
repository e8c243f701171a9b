// Reads values from a simulated registry, which returns an arbitrary type, size and error for each query.
#include "input.h"

#include "store/codec.h"

#include <memory>

namespace {

Input* registry = nullptr;

} // namespace

LSTATUS RegQueryValueExW(HKEY, LPCWSTR, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size)
{
    const std::uint8_t kind = registry->byte();
    *type = kind % 16 == 15 ? 0xFFFFFFFF : kind % 12;
    const std::string_view bytes = registry->bytes(std::size_t{registry->byte()} << (kind / 64));
    const bool fits = data == nullptr || bytes.size() <= *size;
    if (data != nullptr) {
        std::copy_n(bytes.data(), std::min<std::size_t>(bytes.size(), *size), data);
    }
    *size = static_cast<DWORD>(bytes.size());
    return kind % 32 == 31 ? ERROR_ACCESS_DENIED : fits ? ERROR_SUCCESS : ERROR_MORE_DATA;
}

LSTATUS RegSetValueExW(HKEY, LPCWSTR, DWORD, DWORD, const BYTE* data, DWORD size)
{
    const std::vector<BYTE> read(data, data + size);
    return ERROR_SUCCESS;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    registry = &input;
    VelaVariant value;
    for (int i = 0; i < 4; ++i) {
        value.setInt(i);
        const bool isRead = uinfo::readValueFromKey(nullptr, L"name", value) == TarvoConfig::eOk;
        require(isRead || value.getInt() == i);
        uinfo::writeValueToKey(nullptr, L"name", value);
    }
    return 0;
}
