// What the store has answered, remembered by the process: at most 4,096 answers of 2,400 bytes. An answer
// holds as long as the store's version is the one under which it was given; one about a path as long as no
// key came or went, which is asked once for each version.
#pragma once

#include "registry/tree.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace winhost::registry {

class Cache
{
public:
    explicit Cache(Cache* abandoned) : m_abandoned(abandoned) {}

    /// Runs use(answer) on an answer that holds. False when there is none.
    template <typename Use>
    bool recall(const Question& question, Use use)
    {
        const std::uint64_t tag = tagOf(question.kind);
        if (tag == 0) {
            return false;
        }
        const std::uint64_t hash = hashOf(question);
        Set& set = m_sets[hash % setCount];
        const std::lock_guard<std::mutex> lock(set.mutex);
        for (std::size_t way = 0; way < ways; ++way) {
            const Entry* const entry = set.entries[way].get();
            if (set.hashes[way] == hash && entry != nullptr && entry->tag == tag &&
                entry->answers(question)) {
                use(entry->answer);
                return true;
            }
        }
        return false;
    }

    /// What must be asked before the store, so that an answer can be remembered.
    std::uint64_t tagOf(Question::Kind kind) const
    {
        const std::uint64_t version = storeVersion();
        if (kind != Question::ePath || version == 0) {
            return version;
        }
        return m_version.load(std::memory_order_acquire) == version ? m_shape.load(std::memory_order_relaxed)
                                                                    : 0;
    }

    /// Nothing is remembered that was asked for while the store changed.
    void remember(const Question& question, std::uint64_t tag, const Answer& answer);

    /// The number that tells whether keys came or went, of a version.
    void learnShape(std::uint64_t version, std::int64_t shape);

    void forget();

private:
    static constexpr std::size_t setCount = 512;
    static constexpr std::size_t ways = 8;

    /// Its texts and data follow it in the same block.
    struct Entry
    {
        std::uint64_t tag;
        Question question;
        Answer answer;
        std::size_t room;

        bool answers(const Question& asked) const
        {
            return question.kind == asked.kind && question.node == asked.node &&
                   question.index == asked.index && question.text == asked.text;
        }
    };
    struct Free
    {
        void operator()(Entry* entry) const { ::operator delete(entry); }
    };
    struct Set
    {
        std::mutex mutex; // held for some dozens of nanoseconds
        std::uint8_t next = 0;
        std::uint64_t hashes[ways] = {};
        std::unique_ptr<Entry, Free> entries[ways];
    };

    static std::uint64_t hashOf(const Question& question);

    Cache* const m_abandoned; // still there, and no leak
    Set m_sets[setCount];
    std::atomic<std::uint64_t> m_version = 0;
    std::atomic<std::uint64_t> m_shape = 0;
};

Cache& cache();

/// Leaves the cache as it is, and has another. For one thread alone.
void abandonCache();

/// What lookUp asks in an Access when nothing is remembered: the answer, in memory of its own.
struct Found
{
    Answer answer;
    Text name;
    std::string data;
};
void find(const Question& question, Found& found);

template <typename Use>
LSTATUS lookUp(const Question& question, Use use)
{
    LSTATUS status = ERROR_SUCCESS;
    const auto answer = [&](const Answer& given) {
        status = given.status != ERROR_SUCCESS ? given.status : use(given);
    };
    if (cache().recall(question, answer)) {
        return status;
    }
    Found found;
    {
        const Access in(Access::eReading);
        if (in.status() != ERROR_SUCCESS) {
            return in.status();
        }
        find(question, found);
    }
    answer(found.answer);
    return status;
}

/// The key at a path.
inline LSTATUS findPath(NodeId start, TextView path, NodeId& found)
{
    return lookUp(Question::path(start, path), [&](const Answer& answer) {
        found = answer.node;
        return ERROR_SUCCESS;
    });
}

} // namespace winhost::registry
