#include "store/codec.h"

#include "platform/text.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

struct FreeBlock
{
    void operator()(void* block) const { std::free(block); }
};

/// The buffer for the second query. VelaVariant::allocBlock allocates the buffer, so that a failed allocation
/// throws the same exception here as in a setter.
class Temporary
{
public:
    explicit Temporary(std::uint64_t size)
        : m_block(VelaVariant::allocBlock(
              VelaVariant::eBinary, static_cast<std::int32_t>(std::clamp<std::uint64_t>(size, 1, INT32_MAX))))
    {
    }

    BYTE* bytes() const { return static_cast<BYTE*>(m_block.get()) + sizeof(std::int32_t); }

private:
    std::unique_ptr<void, FreeBlock> m_block;
};

bool query(HKEY key, const wchar_t* valueName, DWORD expectedType, BYTE* data, DWORD& size)
{
    DWORD type = REG_NONE;
    return RegQueryValueExW(key, valueName, nullptr, &type, data, &size) == ERROR_SUCCESS &&
           type == expectedType;
}

template <typename Integer>
bool queryInteger(HKEY key, const wchar_t* valueName, DWORD type, Integer& value)
{
    value = 0;
    DWORD size = sizeof value;
    return query(key, valueName, type, reinterpret_cast<BYTE*>(&value), size);
}

bool readBinary(HKEY key, const wchar_t* valueName, DWORD size, VelaVariant& value)
{
    const Temporary data(size);
    if (!query(key, valueName, REG_BINARY, data.bytes(), size)) {
        return false;
    }
    value.setBinary(data.bytes(), static_cast<std::int32_t>(size));
    return true;
}

bool readText(HKEY key, const wchar_t* valueName, DWORD size, VelaVariant& value)
{
    // The string may grow between the two queries. Three zero bytes follow it, because its size may be odd.
    constexpr std::uint64_t terminator = 3;
    const std::uint64_t offered = std::min<std::uint64_t>(2 * std::uint64_t{size} + 2, UINT32_MAX);
    const Temporary text(offered + terminator);
    size = static_cast<DWORD>(offered);
    if (!query(key, valueName, REG_SZ, text.bytes(), size)) {
        return false;
    }
    std::memset(text.bytes() + size, 0, terminator);
    value.setString(reinterpret_cast<const wchar_t*>(text.bytes()));
    return true;
}

TarvoConfig::Error write(HKEY key, const wchar_t* valueName, DWORD type, const void* data, std::size_t size)
{
    const LSTATUS status =
        RegSetValueExW(key, valueName, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
    return status == ERROR_SUCCESS ? TarvoConfig::eOk : TarvoConfig::eRegistryError;
}

} // namespace

namespace uinfo {

TarvoConfig::Error readValueFromKey(HKEY key, const wchar_t* valueName, VelaVariant& value)
{
    DWORD type = REG_NONE;
    DWORD size = 0;
    if (RegQueryValueExW(key, valueName, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return TarvoConfig::eNotFound;
    }
    bool read = false;
    switch (type) {
    case REG_DWORD: {
        std::int32_t number = 0;
        read = queryInteger(key, valueName, REG_DWORD, number);
        if (read) {
            value.setInt(number);
        }
        break;
    }
    case REG_QWORD: {
        std::int64_t number = 0;
        read = queryInteger(key, valueName, REG_QWORD, number);
        if (read) {
            value.setInt64(number);
        }
        break;
    }
    case REG_BINARY:
        read = readBinary(key, valueName, size, value);
        break;
    case REG_SZ:
        read = readText(key, valueName, size, value);
        break;
    default:
        break;
    }
    return read ? TarvoConfig::eOk : TarvoConfig::eWrongType;
}

TarvoConfig::Error writeValueToKey(HKEY key, const wchar_t* valueName, const VelaVariant& value)
{
    switch (value.type()) {
    case VelaVariant::eInt: {
        const std::int32_t number = value.getInt();
        return write(key, valueName, REG_DWORD, &number, sizeof number);
    }
    case VelaVariant::eInt64: {
        const std::int64_t number = value.getInt64();
        return write(key, valueName, REG_QWORD, &number, sizeof number);
    }
    case VelaVariant::eDouble: {
        const double number = value.getDouble();
        return write(key, valueName, REG_BINARY, &number, sizeof number);
    }
    case VelaVariant::eBinary:
        if (value.getBinary() == nullptr) {
            return TarvoConfig::eOk;
        }
        return write(key, valueName, REG_BINARY, value.getBinary(),
                     static_cast<std::size_t>(value.blockSize()) - sizeof(std::int32_t));
    case VelaVariant::eString:
        return write(key, valueName, REG_SZ, value.getString(),
                     (length(value.getString()) + 1) * sizeof(wchar_t));
    case VelaVariant::eNull:
        break;
    }
    return TarvoConfig::eOk;
}

} // namespace uinfo
