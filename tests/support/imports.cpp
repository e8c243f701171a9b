#include "support/imports.h"

#include <stdexcept>
#include <string>

namespace testing_support {

ImportPatch::ImportPatch(const char* module, const char* function, void* replacement)
    : m_slots(importSlots(module, function))
{
    if (m_slots.empty()) {
        throw std::runtime_error(std::string("not imported: ") + function);
    }
    m_original = *m_slots.front();
    for (void** const slot : m_slots) {
        *slot = replacement;
    }
}

ImportPatch::~ImportPatch()
{
    for (void** const slot : m_slots) {
        *slot = m_original;
    }
}

} // namespace testing_support
