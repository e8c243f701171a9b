#include "registry/cache.h"

#include "registry/names.h"

#include <algorithm>
#include <new>

namespace winhost::registry {

std::uint64_t Cache::hashOf(const Question& question)
{
    const std::uint64_t start =
        mix(question.kind, static_cast<std::uint64_t>(question.node) << 32 | question.index);
    constexpr std::size_t most = 32; // units: paths differ at their ends
    const std::size_t length = question.text.size();
    return length == 0 ? start
                       : mix(start + length, bytesOf(question.text.substr(length - std::min(length, most))));
}

std::size_t Cache::Set::find(std::uint64_t hash, const Question& question) const
{
    std::size_t way = 0;
    for (; way < ways; ++way) {
        const Entry* const entry = hashes[way] == hash ? entries[way].get() : nullptr;
        if (entry != nullptr && entry->question.kind == question.kind &&
            entry->question.node == question.node && entry->question.index == question.index &&
            entry->text == question.text) {
            break;
        }
    }
    return way;
}

std::uint64_t Cache::tagOf(Question::Kind kind) const
{
    const std::uint64_t version = storeVersion();
    if (kind != Question::ePath || version == 0) {
        return version;
    }
    const bool isKnown = m_version.load(std::memory_order_acquire) == version;
    return isKnown ? m_shape.load(std::memory_order_relaxed) : 0;
}

void Cache::remember(const Question& question, std::uint64_t tag, const Answer& answer)
{
    constexpr std::size_t longest = 2400;
    const std::size_t size = bytesOf(question.text).size() + bytesOf(answer.name).size() + answer.data.size();
    if (tag == 0 || tagOf(question.kind) != tag || size > longest) {
        return;
    }
    const std::uint64_t hash = hashOf(question);
    Set& set = m_sets[hash % setCount];
    const std::lock_guard<std::mutex> lock(set.mutex);
    std::size_t way = set.find(hash, question);
    if (way == ways) {
        way = set.next++ % ways;
    }
    std::unique_ptr<Entry>& entry = set.entries[way];
    try {
        if (entry == nullptr) {
            entry = std::make_unique<Entry>();
        }
        entry->tag = 0; // while there is not all of it
        set.hashes[way] = hash;
        entry->question = question;
        entry->text = question.text;
        entry->answer = answer;
        entry->tag = tag;
    } catch (const std::bad_alloc&) { // is not remembered
    }
}

void Cache::learnShape(std::uint64_t version, std::uint64_t shape)
{
    m_shape.store(shape, std::memory_order_relaxed);
    m_version.store(version, std::memory_order_release);
}

void Cache::forget()
{
    m_version.store(0);
    for (Set& set : m_sets) {
        const std::lock_guard<std::mutex> lock(set.mutex);
        for (auto& entry : set.entries) {
            entry.reset();
        }
    }
}

namespace {

// Never destroyed: it may be used while the process ends.
Cache*& current()
{
    static Cache* created = new Cache(nullptr);
    return created;
}

} // namespace

Cache& cache()
{
    return *current();
}

void abandonCache()
{
    current() = new Cache(current());
}

} // namespace winhost::registry
