#include "pe_resources.h"

#include <cstddef>
#include <optional>

namespace winhost {

namespace {

constexpr std::uint32_t stringTableType = 6;
constexpr std::uint32_t stringsPerBlock = 16;

// read16 and read32 read little-endian numbers, and return 0 past the end of the bytes.

std::uint32_t read16(Bytes bytes, std::size_t offset)
{
    if (offset >= bytes.size() || bytes.size() - offset < 2) {
        return 0;
    }
    return static_cast<std::uint32_t>(bytes[offset]) | static_cast<std::uint32_t>(bytes[offset + 1]) << 8U;
}

std::uint32_t read32(Bytes bytes, std::size_t offset)
{
    return read16(bytes, offset) | read16(bytes, offset + 2) << 16U;
}

/// Returns `size` bytes starting at `offset`, or as many as there are.
Bytes slice(Bytes bytes, std::size_t offset, std::size_t size)
{
    if (offset >= bytes.size()) {
        return {};
    }
    const std::size_t available = bytes.size() - offset;
    return bytes.subspan(offset, size < available ? size : available);
}

/// The headers of a PE file, and its sections.
class PeHeaders
{
public:
    explicit PeHeaders(Bytes file) : m_file(file)
    {
        constexpr std::uint32_t dosSignature = 0x5A4D;
        constexpr std::uint32_t peSignature = 0x4550;
        constexpr std::size_t fileHeaderSize = 24; // signature included
        m_start = read32(file, 0x3C);
        m_isValid = read16(file, 0) == dosSignature && read32(file, m_start) == peSignature;
        m_optionalHeader = m_start + fileHeaderSize;
    }

    bool isValid() const { return m_isValid; }

    /// Returns the bytes from a virtual address to the end of its section, or as many of them as the file
    /// contains.
    Bytes at(std::uint32_t address) const
    {
        constexpr std::size_t sectionHeaderSize = 40;
        const std::size_t sections = m_optionalHeader + read16(m_file, m_start + 20);
        const std::size_t count = read16(m_file, m_start + 6);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t header = sections + i * sectionHeaderSize;
            const std::uint32_t first = read32(m_file, header + 12);
            const std::uint32_t size = read32(m_file, header + 16);
            const std::uint32_t offset = read32(m_file, header + 20);
            if (address >= first && address - first < size) {
                return slice(slice(m_file, offset, size), address - first, size);
            }
        }
        return {};
    }

    /// Returns the resource directory: the bytes from its root to the end of the section that contains it.
    Bytes resources() const
    {
        constexpr std::uint32_t magic64 = 0x20B;
        constexpr std::size_t resourceEntry = 2;
        const std::size_t directories =
            m_optionalHeader + (read16(m_file, m_optionalHeader) == magic64 ? 112 : 96);
        const bool hasEntry = read32(m_file, directories - 4) > resourceEntry;
        const std::uint32_t address = hasEntry ? read32(m_file, directories + resourceEntry * 8) : 0;
        return address != 0 ? at(address) : Bytes();
    }

private:
    Bytes m_file;
    std::size_t m_start;
    std::size_t m_optionalHeader;
    bool m_isValid;
};

/// Finds an entry in a table of a resource tree and returns the entry's target. If id is empty, uses the
/// first entry. Only the three levels of a resource tree are read, so a table that refers to itself is
/// harmless.
std::optional<std::uint32_t> findEntry(Bytes resources, std::uint32_t table, std::optional<std::uint32_t> id)
{
    constexpr std::size_t tableHeaderSize = 16;
    constexpr std::size_t entrySize = 8;
    const std::size_t count = read16(resources, table + 12) + read16(resources, table + 14);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = table + tableHeaderSize + i * entrySize;
        if (entry >= resources.size()) {
            break;
        }
        if (!id || read32(resources, entry) == *id) {
            return read32(resources, entry + 4);
        }
    }
    return std::nullopt;
}

std::optional<std::uint32_t> findTable(Bytes resources, std::uint32_t table, std::uint32_t id)
{
    constexpr std::uint32_t tableFlag = 0x80000000;
    const std::optional<std::uint32_t> entry = findEntry(resources, table, id);
    return entry && (*entry & tableFlag) != 0 ? std::optional(*entry & ~tableFlag) : std::nullopt;
}

/// Returns a string from a block. A block consists of 16 strings, each preceded by its length.
Bytes stringOfBlock(Bytes block, std::uint32_t index)
{
    std::size_t offset = 0;
    for (std::uint32_t i = 0; i < index; ++i) {
        offset += 2 + std::size_t{2} * read16(block, offset);
    }
    const Bytes units = slice(block, offset + 2, std::size_t{2} * read16(block, offset));
    return units.first(units.size() - units.size() % 2);
}

} // namespace

bool isPeImage(Bytes file)
{
    return PeHeaders(file).isValid();
}

StringResource findString(Bytes file, std::uint16_t id)
{
    const PeHeaders headers(file);
    const Bytes resources = headers.isValid() ? headers.resources() : Bytes();
    if (resources.empty()) {
        return {ERROR_RESOURCE_DATA_NOT_FOUND, {}};
    }
    const std::optional<std::uint32_t> blocks = findTable(resources, 0, stringTableType);
    if (!blocks) {
        return {ERROR_RESOURCE_TYPE_NOT_FOUND, {}};
    }
    const std::optional<std::uint32_t> languages = findTable(resources, *blocks, id / stringsPerBlock + 1);
    const std::size_t data = languages ? findEntry(resources, *languages, std::nullopt).value_or(0) : 0;
    if (data == 0) { // not found; 0 is the offset of the root table
        return {ERROR_RESOURCE_NAME_NOT_FOUND, {}};
    }
    const Bytes block = slice(headers.at(read32(resources, data)), 0, read32(resources, data + 4));
    return {ERROR_SUCCESS, stringOfBlock(block, id % stringsPerBlock)};
}

} // namespace winhost
