#include "registry/cache.h"

#include "registry/names.h"

#include <algorithm>
#include <new>

namespace winhost::registry {

namespace {

constexpr std::size_t longestAnswer = 2400;

} // namespace

std::uint64_t Cache::hashOf(const Question& question)
{
    const std::uint64_t start =
        mix(question.kind, static_cast<std::uint64_t>(question.node) << 32 | question.index);
    constexpr std::size_t most = 32; // units: paths differ at their ends
    const std::size_t length = question.text.size();
    return length == 0 ? start
                       : mix(start + length, bytesOf(question.text.substr(length - std::min(length, most))));
}

void Cache::remember(const Question& question, std::uint64_t tag, const Answer& answer)
{
    if (tag == 0 || tagOf(question.kind) != tag) {
        return;
    }
    const std::string_view text = bytesOf(question.text);
    const std::string_view name = bytesOf(answer.name);
    const std::size_t size = text.size() + name.size() + answer.data.size();
    if (size > longestAnswer) {
        return;
    }
    const std::uint64_t hash = hashOf(question);
    Set& set = m_sets[hash % setCount];
    const std::lock_guard<std::mutex> lock(set.mutex);
    std::size_t way = 0;
    while (way < ways &&
           !(set.hashes[way] == hash && set.entries[way] != nullptr && set.entries[way]->answers(question))) {
        ++way;
    }
    if (way == ways) {
        way = set.next++ % ways;
    }
    std::unique_ptr<Entry, Free>& entry = set.entries[way];
    if (entry == nullptr || entry->room < size) {
        entry.reset(static_cast<Entry*>(::operator new(sizeof(Entry) + size, std::nothrow)));
        if (entry == nullptr) {
            return;
        }
        entry->room = size;
    }
    set.hashes[way] = hash;
    auto* const bytes = reinterpret_cast<char*>(entry.get() + 1);
    char* end = bytes;
    for (const std::string_view part : {text, name, answer.data}) {
        end += part.copy(end, part.size());
    }
    entry->tag = tag;
    entry->question = question;
    entry->answer = answer;
    const auto* const units = reinterpret_cast<const wchar_t*>(bytes);
    entry->question.text = TextView(units, question.text.size());
    entry->answer.name = TextView(units + question.text.size(), answer.name.size());
    entry->answer.data = std::string_view(bytes + text.size() + name.size(), answer.data.size());
}

void Cache::learnShape(std::uint64_t version, std::int64_t shape)
{
    m_shape.store(static_cast<std::uint64_t>(shape), std::memory_order_relaxed);
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
