#pragma once

#include <vcruntime_new.h>

namespace std {

using new_handler = void(__cdecl*)();
new_handler __cdecl set_new_handler(new_handler handler) noexcept;
new_handler __cdecl get_new_handler() noexcept;

} // namespace std
