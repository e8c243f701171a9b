#include "store/shared_keys.h"

#include <map>
#include <mutex>

namespace {

/// Counts the owners beyond the first, of the keys that have any.
class ExtraOwners
{
public:
    void add(HKEY key)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_count[key];
    }

    /// False when the key has a single owner.
    bool remove(HKEY key)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_count.find(key);
        if (found == m_count.end()) {
            return false;
        }
        if (--found->second == 0) {
            m_count.erase(found);
        }
        return true;
    }

private:
    std::mutex m_mutex;
    std::map<HKEY, unsigned> m_count;
};

// Made at load: it outlives the iterators that are static objects of clients.
ExtraOwners extraOwners;

} // namespace

namespace uinfo {

void shareKey(HKEY& target, HKEY source)
{
    if (source != nullptr) {
        extraOwners.add(source); // first, so that a key that target holds already stays open
    }
    releaseKey(target);
    target = source;
}

void releaseKey(HKEY key)
{
    if (key != nullptr && !extraOwners.remove(key)) {
        RegCloseKey(key);
    }
}

void abandonKey(HKEY key)
{
    if (key != nullptr) {
        extraOwners.remove(key);
    }
}

} // namespace uinfo
