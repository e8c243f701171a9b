// The limits on names and paths, in characters. A capacity includes the terminator. A constant whose name
// begins with "longest" is a length without the terminator.
#pragma once

#include <cstddef>

namespace uinfo {

inline constexpr std::size_t pathCapacity = 1024;         ///< every key path and file path
inline constexpr unsigned long modulePathCapacity = 1023; ///< the executable's path
inline constexpr std::size_t iniTextCapacity = 1023;      ///< getIniValue reads at most 1021 characters
inline constexpr std::size_t longestStoredPath = 1022;    ///< a path that is stored as a setting
inline constexpr std::size_t longestIniPath = 1022;       ///< path of an INI file
inline constexpr std::size_t longestComposedPath = 1021;  ///< user folder, style file, user data cache folder
inline constexpr std::size_t longestResourcePath = 1021;  ///< file in a language's folder
inline constexpr std::size_t longestConfigKey = 1021;     ///< the current profile's Config key

// Limits on the combined length of the root and the sub-path, without the separator between them.
inline constexpr std::size_t longestReadPath = 1020;   ///< getValue and isItemExist
inline constexpr std::size_t longestChangePath = 1021; ///< all other operations

/// A company or product name from an argument or an INI file.
inline constexpr std::size_t nameCapacity = 255;
inline constexpr std::size_t offeredProfileCapacity = 513; ///< the stored profile, read at start-up
inline constexpr std::size_t provisionedProfileCapacity =
    260;                                            ///< the stored profile, read by CreateConfigReg
inline constexpr std::size_t profileCapacity = 128; ///< the current profile, in a key path

} // namespace uinfo
