// The state of the process, under one lock: its open keys, and a cache of look-ups in the store. A cached
// result is valid until the content changes. If this process only sets or deletes values, cached paths stay
// valid.
#pragma once

#include "registry/tree.h"

#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

namespace winhost::registry {

/// Returns the node of a predefined key; 0 for any other key.
NodeId rootOf(HKEY key);

class Memory
{
public:
    Memory() { m_results.max_load_factor(0.25F); }
    std::mutex mutex; // protects all other members

    /// Returns the node of an open key. Throws ERROR_INVALID_HANDLE if the handle is not open, and
    /// ERROR_ACCESS_DENIED if the key was opened without a required access right.
    NodeId resolve(HKEY key, REGSAM needed);
    /// Returns a new handle. Returns the same handle again only after 2^32 others, so that the use of a
    /// closed handle is detected.
    HKEY open(NodeId node, REGSAM access);
    LSTATUS close(HKEY key);

    /// Returns the entry at the index before the given one, if the last enumeration call with this handle
    /// returned that entry and this process has written nothing since then.
    std::optional<Previous> previous(HKEY key, const Lookup& lookup);
    /// Records the result of an enumeration call, and whether the previous entry was outdated. After
    /// ERROR_MORE_DATA, the call may be repeated.
    void advance(HKEY key, const Lookup& lookup, const Result& result, LSTATUS status, bool isOutdated);

    /// Returns the cached result if it is valid, otherwise null.
    const Result* recall(const Lookup& lookup);
    /// Returns recall(lookup), or null if the enumeration continues after an outdated entry.
    const Result* recall(HKEY key, const Lookup& lookup);
    /// Caches a result, unless the store has changed or the result has more than 2,400 bytes. Call it in a
    /// Transaction.
    void remember(const Lookup& lookup, const Result& result);

    enum Change
    {
        eOthers, ///< other processes may have made a change
        eKeys,   ///< this process may have created or deleted keys
        eValues  ///< this process has only set or deleted values, so cached paths stay valid
    };
    /// Adopts a new version of the content and invalidates the results that the change may affect.
    void follow(std::uint64_t version, Change change);

private:
    struct Slot
    {
        /// The slot's last handle. The upper half is a counter; the lower half is the slot's index times 4.
        std::uintptr_t handle;
        NodeId node; // 0: closed
        REGSAM access;
        std::size_t nextClosed;
    };
    struct Entry
    {
        std::uint64_t epoch = 0;
        Lookup lookup = {}; // refers to `text`
        Text text;
        Result result;
    };

    /// The last entry of an enumeration.
    struct Place
    {
        DWORD index = 0;
        std::uint64_t epoch = 0; // of the result; 0 if the enumeration has not begun
        Text name;

        bool isBefore(DWORD next) const { return epoch != 0 && index + 1 == next; }
    };

    Slot* find(HKEY key);
    Place* placeBefore(HKEY key, const Lookup& lookup);
    bool isOutdated(const Place& place) const { return place.epoch != m_epochs[1] || m_version == 0; }

    std::vector<Slot> m_slots;
    std::size_t m_closed = 0;                           // first closed slot; m_slots.size() if there is none
    std::unordered_map<std::uint64_t, Entry> m_results; // keyed by the Lookup's hash; at most 4,096
    std::uint64_t m_version = 0;
    // Results from older epochs are outdated; the first element is for paths. An outdated place gets the
    // previous epoch. The epochs begin at 2, so that the previous epoch is never 0.
    std::uint64_t m_epochs[2] = {2, 2};
    std::unordered_map<std::uint64_t, Place> m_places; // see placeId()
};

extern Memory& memory;

} // namespace winhost::registry
