// What the process knows without asking the store, behind one lock: the keys that it has open, and what the
// store has answered before. An answer holds while the store's version is the one under which it was given; a
// write of this process carries on what it cannot have changed.
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

    /// ERROR_INVALID_HANDLE, or ERROR_ACCESS_DENIED when a needed right was not asked for at opening.
    LSTATUS resolve(HKEY key, REGSAM needed, NodeId& node);
    /// Gives a number again after 2^32 others at the earliest, so that a handle that is closed is found out.
    HKEY open(NodeId node, REGSAM access);
    LSTATUS close(HKEY key);

    /// Null when no answer holds.
    const Answer* recall(const Question& question);
    /// Returns what recall does, or what it returned before other processes changed the store.
    const Answer* recallOutdated(const Question& question);
    /// In a Transaction. Not what was asked while the store changed, and no answer of more than 2,400 bytes.
    void remember(const Question& question, const Answer& answer);

    enum Change
    {
        eOthers, ///< of other processes, if there were any
        eKeys,   ///< of this one
        eValues  ///< of this one, where no key came or went, so that paths still hold
    };
    /// Adopts the version of the content: answers under another hold only as far as the change lets them.
    void follow(std::uint64_t version, Change change);

private:
    struct Slot
    {
        std::uintptr_t handle; // the last that it had: its turn above, its index times 4 below
        NodeId node;           // 0: closed
        REGSAM access;
        std::size_t nextClosed;
    };
    struct Entry
    {
        std::uint64_t epoch = 0;
        Question question = {}; // of the text beside it
        Text text;
        Answer answer;
    };

    Slot* find(HKEY key);
    const Entry* find(const Question& question);

    std::vector<Slot> m_slots;
    std::size_t m_closed = 0; // the first; the last one's next is the number of slots
    std::unordered_map<std::uint64_t, Entry> m_answers; // by a hash of the question; 4,096 at most
    std::uint64_t m_version = 0;
    std::uint64_t m_epochs[2] = {1, 1}; // of paths, and of all else
    std::uint64_t m_changed = 1;        // by this process: the second epoch then
};

Memory& memory();

} // namespace winhost::registry
