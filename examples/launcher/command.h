// What the launcher does after start-up.
#pragma once

#include <RkUInfo.h>

#include <functional>
#include <span>

/// A command with its arguments, read before start-up and run after it.
using Command = std::function<TarvoConfig::Error()>;

/// The words of a command line.
using Words = std::span<const wchar_t* const>;
