// SPDX-License-Identifier: MIT
// VelaVariant: the typed value of every read and write of the configuration store.
#pragma once

#include "RkOsBase.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#pragma pack(push, 4)

/// A value: nothing, a 32-bit or 64-bit integer, a double, bytes or a wide string.
///
/// The data is in one block allocated by malloc and released by free: a 32-bit recorded size, which
/// includes its own 4 bytes, then the data. A block with a recorded size of less than 4 is ignored. Every
/// module that exchanges variants with the library must use the library's C runtime heap and this layout: 12
/// bytes, with the pointer right after the type.
///
/// Getters never convert: a getter for another type returns 0, the empty string or null. On failure, a
/// function allocates an RkErrorStatus, passes it to the process's crash recorder and throws a pointer to it;
/// the catcher deletes it. A copy has its own block. An object may be used by only one thread at a time.
class VelaVariant
{
public:
    enum VarType : std::int32_t
    {
        eNull = 0,   ///< nothing; never has a block
        eInt = 1,    ///< a 32-bit signed integer; its recorded size is 8
        eInt64 = 2,  ///< a 64-bit signed integer; its recorded size is 12
        eDouble = 3, ///< a 64-bit IEEE-754 double; its recorded size is 12
        eBinary = 4, ///< n bytes; the recorded size is n + 4; no block if n is 0
        eString = 5, ///< a string and its terminator; the recorded size is 2 * (length + 1) + 4
    };

    VelaVariant() noexcept : m_type(eNull), m_data(nullptr) {}

    /// Duplicates the block. Throws status code 6 if the allocation fails.
    VelaVariant(const VelaVariant& other) : m_type(other.m_type), m_data(duplicate(other.m_data)) {}

    /// Moves the block; the source becomes eNull.
    VelaVariant(VelaVariant&& other) noexcept : m_type(other.m_type), m_data(other.m_data)
    {
        other.m_type = eNull;
        other.m_data = nullptr;
    }

    /// Copies like the copy constructor; the target is unchanged if the copy throws.
    VelaVariant& operator=(const VelaVariant& other)
    {
        if (this != &other) {
            char* const copy = duplicate(other.m_data);
            adopt(other.m_type, copy);
        }
        return *this;
    }

    VelaVariant& operator=(VelaVariant&& other) noexcept
    {
        if (this != &other) {
            adopt(other.m_type, other.m_data);
            other.m_type = eNull;
            other.m_data = nullptr;
        }
        return *this;
    }

    ~VelaVariant() { releaseBlock(); }

    VarType type() const noexcept { return m_type; }

    /// Stores the number in place if the object is already an eInt with a block; otherwise, allocates a new
    /// block. Throws code 6 if the allocation fails; in that case the old block has been released, and the
    /// type is unchanged.
    void setInt(std::int32_t value) { setFixed(eInt, value); }
    /// Stores an eInt64; allocates memory and throws in the same cases as setInt.
    void setInt64(std::int64_t value) { setFixed(eInt64, value); }
    /// Stores an eDouble; allocates and throws as setInt does.
    void setDouble(double value) { setFixed(eDouble, value); }

    /// Copies a null-terminated string; a null pointer counts as an empty string. Throws code 3 for a string
    /// of 1,073,741,823 characters or more, and code 6 if the allocation fails. In both cases the object
    /// becomes an eString without a block. The string may be in this object's block.
    void setString(const wchar_t* text)
    {
        char* const old = m_data;
        m_data = nullptr;
        m_type = eString;
        const BlockGuard releaseOld(old);
        std::size_t length = 0;
        if (text != nullptr) {
            while (text[length] != 0) {
                ++length;
            }
        }
        if (length >= maxTextLength) {
            throwStatus(Vela::eInvalidInput);
        }
        const std::size_t bytes = 2 * (length + 1);
        m_data = newBlock(static_cast<std::int32_t>(bytes));
        if (length > 0) {
            std::memcpy(m_data + headerSize, text, bytes);
        } else {
            std::memset(m_data + headerSize, 0, bytes);
        }
    }

    /// Copies size bytes, which may be in this object's block. The object becomes an eBinary; it has no block
    /// if data is null, size is 0 or the function throws. Throws code 3 for a negative size and code 6 if the
    /// allocation fails.
    void setBinary(const void* data, std::int32_t size)
    {
        char* const old = m_data;
        m_data = nullptr;
        m_type = eBinary;
        const BlockGuard releaseOld(old);
        if (data == nullptr || size == 0) {
            return;
        }
        if (size < 0) {
            throwStatus(Vela::eInvalidInput);
        }
        m_data = newBlock(size);
        std::memcpy(m_data + headerSize, data, static_cast<std::size_t>(size));
    }

    std::int32_t getInt() const noexcept { return getFixed<std::int32_t>(eInt); }
    std::int64_t getInt64() const noexcept { return getFixed<std::int64_t>(eInt64); }
    double getDouble() const noexcept { return getFixed<double>(eDouble); }

    /// Returns the string, never null; it belongs to this object and is valid until the object is changed or
    /// destroyed.
    const wchar_t* getString() const noexcept
    {
        if (m_type != eString || !hasBlock()) {
            return L"";
        }
        return reinterpret_cast<const wchar_t*>(m_data + headerSize);
    }

    /// Returns the data, or null if the object is not an eBinary with a block. The data has blockSize() - 4
    /// bytes.
    const void* getBinary() const noexcept
    {
        return m_type == eBinary && hasBlock() ? m_data + headerSize : nullptr;
    }

    /// Returns the recorded size: the number of data bytes plus 4. Returns 0 if there is no block.
    std::int32_t blockSize() const noexcept { return recordedSize(m_data); }

    /// Allocates a block with uninitialised data. The caller must release the block with free. A size of 1 or
    /// more is the number of data bytes, whatever the type. Otherwise allocates 4 bytes for eInt and 8 for
    /// eInt64 and eDouble, returns null for eNull, and throws code 3 for other types. Throws code 6 if the
    /// allocation fails.
    static void* allocBlock(VarType type, std::int32_t size)
    {
        if (size > 0) {
            return newBlock(size);
        }
        switch (type) {
        case eNull:
            return nullptr;
        case eInt:
            return newBlock(4);
        case eInt64:
        case eDouble:
            return newBlock(8);
        case eBinary:
        case eString:
            break;
        }
        throwStatus(Vela::eInvalidInput);
    }

private:
    static const std::size_t headerSize = sizeof(std::int32_t);
    static const std::size_t maxTextLength = 1073741823;
    static const std::int32_t maxDataSize = INT32_MAX - 4;

    struct BlockGuard
    {
        explicit BlockGuard(char* owned) : block(owned) {}
        BlockGuard(const BlockGuard&) = delete;
        BlockGuard& operator=(const BlockGuard&) = delete;
        ~BlockGuard() { std::free(block); }
        char* block;
    };

    [[noreturn]] static void throwStatus(Vela::ErrorStatus code);

    static char* newBlock(std::int32_t dataSize)
    {
        if (dataSize > maxDataSize) {
            throwStatus(Vela::eOutOfMemory);
        }
        const std::int32_t size = dataSize + static_cast<std::int32_t>(headerSize);
        char* const block = static_cast<char*>(std::malloc(static_cast<std::size_t>(size)));
        if (block == nullptr) {
            throwStatus(Vela::eOutOfMemory);
        }
        std::memcpy(block, &size, headerSize);
        return block;
    }

    static std::int32_t recordedSize(const char* block) noexcept
    {
        std::int32_t size = 0;
        if (block != nullptr) {
            std::memcpy(&size, block, headerSize);
        }
        return size < static_cast<std::int32_t>(headerSize) ? 0 : size;
    }

    bool hasBlock() const noexcept { return recordedSize(m_data) != 0; }

    static char* duplicate(const char* block)
    {
        const std::int32_t size = recordedSize(block);
        if (size == 0) {
            return nullptr;
        }
        char* const copy = newBlock(size - static_cast<std::int32_t>(headerSize));
        std::memcpy(copy, block, static_cast<std::size_t>(size));
        return copy;
    }

    void releaseBlock() noexcept
    {
        std::free(m_data);
        m_data = nullptr;
    }

    void adopt(VarType type, char* block) noexcept
    {
        releaseBlock();
        m_type = type;
        m_data = block;
    }

    template <typename T>
    void setFixed(VarType type, T value)
    {
        if (m_type != type || !hasBlock()) {
            releaseBlock();
            m_data = newBlock(static_cast<std::int32_t>(sizeof value));
            m_type = type;
        }
        std::memcpy(m_data + headerSize, &value, sizeof value);
    }

    template <typename T>
    T getFixed(VarType type) const noexcept
    {
        T value = 0;
        if (m_type == type && hasBlock()) {
            std::memcpy(&value, m_data + headerSize, sizeof value);
        }
        return value;
    }

    VarType m_type;
    char* m_data;
};

#pragma pack(pop)

// Must follow pack(pop); otherwise g++ would also pack the type information that it creates for the
// exception.
inline void VelaVariant::throwStatus(Vela::ErrorStatus code)
{
    RkErrorStatus* const exception = new (std::nothrow) RkErrorStatus(code, L"\"\"", 0);
    VelaCrashRecorder* const recorder = velaGetCrashRecorder();
    if (recorder != nullptr && exception != nullptr) {
        recorder->recordException(exception);
    }
    throw exception;
}

static_assert(sizeof(wchar_t) == 2, "strings are UTF-16: compile with a 16-bit wchar_t (-fshort-wchar)");
static_assert(sizeof(VelaVariant) == 12, "the value pointer must directly follow the type");
