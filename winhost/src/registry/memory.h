// The state of the process under one lock: the keys that it has open, and a cache of the store's answers. An
// answer is valid while the version of the content is the one under which it was read; a write of this
// process keeps the answers that it cannot have changed.
#pragma once

#include "registry/tree.h"

#include <mutex>
#include <unordered_map>
#include <vector>

namespace winhost::registry {

/// 0 for a key that is not predefined.
NodeId rootOf(HKEY key);

class Memory
{
public:
    Memory() { m_answers.max_load_factor(0.25F); }
    std::mutex mutex; // of all that follows

    /// Returns ERROR_INVALID_HANDLE, or ERROR_ACCESS_DENIED if the key was opened without a needed right.
    LSTATUS resolve(HKEY key, REGSAM needed, NodeId& node);
    /// Returns the same number again after 2^32 others at the earliest, so that a closed handle is detected.
    HKEY open(NodeId node, REGSAM access);
    LSTATUS close(HKEY key);

    /// Returns null if no answer is valid.
    const Answer* recall(const Question& question);
    /// Returns what recall does, or what it returned before other processes changed the store.
    const Answer* recallOutdated(const Question& question);
    /// Caches an answer, in a Transaction: not if the store has changed, nor if it has more than 2,400 bytes.
    void remember(const Question& question, const Answer& answer);

    enum Change
    {
        eOthers, ///< of other processes, if there were any
        eKeys,   ///< of this one
        eValues  ///< of this one, to values only, so that paths stay valid
    };
    /// Adopts the version of the content, and invalidates the answers that the change may have changed.
    void follow(std::uint64_t version, Change change);

private:
    struct Slot
    {
        std::uintptr_t handle; // the last one: its turn in the upper half, its index times 4 in the lower
        NodeId node;           // 0: closed
        REGSAM access;
        std::size_t nextClosed;
    };
    struct Entry
    {
        std::uint64_t epoch = 0;
        Question question = {}; // refers to `text`
        Text text;
        Answer answer;
    };

    Slot* find(HKEY key);
    const Entry* find(const Question& question);

    std::vector<Slot> m_slots;
    std::size_t m_closed = 0; // the first of a list that ends with the number of slots
    std::unordered_map<std::uint64_t, Entry> m_answers; // by a hash of the question; 4,096 at most
    std::uint64_t m_version = 0;
    std::uint64_t m_epochs[2] = {1, 1}; // of paths, and of all else
    std::uint64_t m_changed = 1;        // by this process: the second epoch then
};

Memory& memory();

} // namespace winhost::registry
