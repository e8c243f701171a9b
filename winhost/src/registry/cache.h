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
        const Entry* const entry = set.entries[set.find(hash, question)].get();
        if (entry == nullptr || entry->tag != tag) {
            return false;
        }
        use(entry->answer);
        return true;
    }

    /// What must be asked before the store, so that an answer can be remembered.
    std::uint64_t tagOf(Question::Kind kind) const;

    /// Nothing is remembered that was asked for while the store changed.
    void remember(const Question& question, std::uint64_t tag, const Answer& answer);

    /// The number that tells whether keys came or went, of a version.
    void learnShape(std::uint64_t version, std::uint64_t shape);

    void forget();

private:
    static constexpr std::size_t setCount = 512;
    static constexpr std::size_t ways = 8;

    struct Entry
    {
        std::uint64_t tag = 0;
        Question question; // with a text of its own
        Text text;
        Answer answer;
    };
    struct Set
    {
        /// The entry of a question; that behind the last when there is none.
        std::size_t find(std::uint64_t hash, const Question& question) const;

        std::mutex mutex; // held for some dozens of nanoseconds
        std::uint8_t next = 0;
        std::uint64_t hashes[ways] = {};
        std::unique_ptr<Entry> entries[ways + 1]; // the last is always null
    };

    static std::uint64_t hashOf(const Question& question);

    [[maybe_unused]] Cache* const m_abandoned; // still there, and no leak
    Set m_sets[setCount];
    std::atomic<std::uint64_t> m_version = 0;
    std::atomic<std::uint64_t> m_shape = 0;
};

Cache& cache();

/// Leaves the cache as it is, and has another. For one thread alone.
void abandonCache();

} // namespace winhost::registry
