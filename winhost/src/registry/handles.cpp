#include "registry/handles.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>

namespace winhost::registry {

namespace {

static_assert(sizeof(std::uintptr_t) == sizeof(std::uint64_t));

// A handle: the slot's turn above, the slot's index times 4 below.
constexpr unsigned turnShift = 32;
constexpr unsigned indexShift = 2;

// A slot's key: the node's id above, the rights below.
constexpr unsigned accessBits = 20;
constexpr std::uint64_t accessMask = (std::uint64_t{1} << accessBits) - 1;

constexpr std::uint32_t blockSize = 64;
constexpr std::uint32_t blockCount = 1U << 14;
constexpr std::uint32_t none = UINT32_MAX;

struct Slot
{
    std::atomic<std::uint32_t> turn = 0; // odd while open
    std::atomic<std::uint64_t> key = 0;
    std::uint32_t nextFree = none;
};

struct Block
{
    Slot slots[blockSize];
};

/// Grows by blocks, which stay where they are until the process ends.
class Table
{
public:
    /// Null for an index that was never given out.
    Slot* slot(std::uint32_t index) const
    {
        Block* const block = index / blockSize < blockCount
                                 ? s_blocks[index / blockSize].load(std::memory_order_acquire)
                                 : nullptr;
        return block != nullptr ? &block->slots[index % blockSize] : nullptr;
    }

    LSTATUS open(std::uint64_t key, HKEY& handle)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const std::uint32_t index = m_firstFree != none || grow() ? m_firstFree : none;
        Slot* const taken = slot(index);
        if (taken == nullptr) {
            return ERROR_NOT_ENOUGH_MEMORY;
        }
        m_firstFree = taken->nextFree;
        taken->key.store(key, std::memory_order_release);
        const std::uint32_t turn = taken->turn.load(std::memory_order_relaxed) + 1;
        taken->turn.store(turn, std::memory_order_release);
        handle =
            reinterpret_cast<HKEY>(std::uintptr_t{turn} << turnShift | std::uintptr_t{index} << indexShift);
        return ERROR_SUCCESS;
    }

    LSTATUS close(std::uint32_t index, std::uint32_t turn)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Slot* const closed = slot(index);
        if (closed == nullptr || closed->turn.load(std::memory_order_relaxed) != turn) {
            return ERROR_INVALID_HANDLE;
        }
        closed->turn.store(turn + 1, std::memory_order_release);
        closed->nextFree = m_firstFree;
        m_firstFree = index;
        return ERROR_SUCCESS;
    }

    void lock() { m_mutex.lock(); }
    void unlock() { m_mutex.unlock(); }

private:
    bool grow()
    {
        Block* const block = m_used < blockCount ? new (std::nothrow) Block : nullptr;
        if (block == nullptr) {
            return false;
        }
        for (std::uint32_t i = blockSize; i-- > 0;) {
            block->slots[i].nextFree = m_firstFree;
            m_firstFree = m_used * blockSize + i;
        }
        s_blocks[m_used++].store(block, std::memory_order_release);
        return true;
    }

    std::mutex m_mutex;
    static inline std::atomic<Block*> s_blocks[blockCount]; // pages that are not used cost nothing
    std::uint32_t m_used = 0;
    std::uint32_t m_firstFree = none;
};

/// Never destroyed: a key may be closed while the process ends.
Table& table()
{
    static Table* const created = new Table;
    return *created;
}

/// 0 for a key that is not predefined.
NodeId rootOf(HKEY key)
{
    return key == HKEY_CURRENT_USER ? currentUserId : key == HKEY_LOCAL_MACHINE ? localMachineId : 0;
}

struct Parts
{
    std::uint32_t turn;
    std::uint32_t index;
    bool valid;
};

Parts partsOf(HKEY key)
{
    const auto number = reinterpret_cast<std::uintptr_t>(key);
    const auto turn = static_cast<std::uint32_t>(number >> turnShift);
    const auto low = static_cast<std::uint32_t>(number);
    return {turn, low >> indexShift, turn % 2 == 1 && low % (1U << indexShift) == 0};
}

} // namespace

bool isPredefined(HKEY key)
{
    return rootOf(key) != 0;
}

LSTATUS resolve(HKEY key, REGSAM needed, NodeId& node)
{
    node = rootOf(key);
    if (node != 0) {
        return ERROR_SUCCESS;
    }
    const Parts parts = partsOf(key);
    Slot* const slot = parts.valid ? table().slot(parts.index) : nullptr;
    if (slot == nullptr || slot->turn.load(std::memory_order_acquire) != parts.turn) {
        return ERROR_INVALID_HANDLE;
    }
    const std::uint64_t held = slot->key.load(std::memory_order_acquire);
    // Closed and taken again meanwhile: the key is another's.
    if (slot->turn.load(std::memory_order_acquire) != parts.turn) {
        return ERROR_INVALID_HANDLE;
    }
    node = static_cast<NodeId>(held >> accessBits);
    return (held & needed) == needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

LSTATUS openHandle(NodeId node, REGSAM access, HKEY& key)
{
    return table().open(static_cast<std::uint64_t>(node) << accessBits | (access & accessMask), key);
}

LSTATUS closeHandle(HKEY key)
{
    if (isPredefined(key)) {
        return ERROR_SUCCESS;
    }
    const Parts parts = partsOf(key);
    return parts.valid ? table().close(parts.index, parts.turn) : ERROR_INVALID_HANDLE;
}

void lockHandles()
{
    table().lock();
}

void unlockHandles()
{
    table().unlock();
}

} // namespace winhost::registry
