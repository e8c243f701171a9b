// Includes the headers in this folder, and defines helpers that need several of them.
#pragma once

#include "support/child.h"
#include "support/config.h"
#include "support/imports.h"
#include "support/open_keys.h"
#include "support/registry.h"
#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <sstream>
#include <tuple>

namespace testing_support {

using Error = TarvoConfig::Error;

/// Prints a value in a failure message.
inline void PrintTo(const RawValue& value, std::ostream* stream)
{
    *stream << value.type << ' ' << testing::PrintToString(value.bytes);
}

/// The key paths that startAcme() sets. They are not inline: each file has a copy, which is initialised
/// before the file's own constants.
const std::string acmeKey = "Software\\Acme";
const std::string languageRoot = acmeKey + "\\Widget\\2018\\en-US";
const std::string profilesKey = languageRoot + "\\Profiles";
const std::string settings = languageRoot + "\\Settings";

/// Calls a function that writes a string to a buffer and returns its length. Returns the string, preceded by
/// "failed: " if the length is 0. The buffer has 1024 characters and initially contains "?".
template <typename Function>
std::string textOf(Function function)
{
    wchar_t buffer[1024];
    std::fill(std::begin(buffer), std::end(buffer), L'?');
    buffer[1] = buffer[1023] = 0;
    const auto length = static_cast<std::size_t>(function(buffer));
    const std::string written = utf8(buffer);
    EXPECT_TRUE(length == 0 || length == Wide(written).length()) << length << ' ' << written;
    return length == 0 ? "failed: " + written : written;
}

/// Returns the key path of a subtree.
inline std::string rootPath(const TarvoConfig& config, int path)
{
    wchar_t key[1024] = L"?";
    config.getRegRootPath(static_cast<TarvoConfig::Path>(path), key);
    return utf8(key);
}

/// On destruction, checks that the library has no key open.
class KeyCounter : public OpenKeys
{
public:
    ~KeyCounter() { EXPECT_EQ(stillOpen(), 0); }
};

/// Replaces the executable path that the library reads. With an empty path, the read fails.
[[nodiscard]] inline Patch pretendExecutable(const std::string& pretended)
{
    const auto answer = [path = Wide(pretended)](auto, HMODULE module, LPWSTR out, DWORD size) -> DWORD {
        EXPECT_TRUE(module == nullptr || module == GetModuleHandleW(nullptr));
        const auto length = static_cast<DWORD>(path.length());
        const DWORD tooLong = length >= size ? ERROR_INSUFFICIENT_BUFFER : ERROR_SUCCESS;
        SetLastError(length == 0 ? ERROR_ACCESS_DENIED : tooLong);
        if (length > 0) {
            std::copy_n(+path, std::min(length, size), out);
            out[std::min(length, size - 1)] = 0;
        }
        return std::min(length, size);
    };
    return intercept<"GetModuleFileNameW", decltype(GetModuleFileNameW)>(answer);
}

/// A test that runs as an application in a separate folder and leaves no key open.
class ApplicationTest : public testing::Test
{
protected:
    KeyCounter m_keys;
    const Application m_application;
    const Patch m_pretended = pretendExecutable(windowsPath(m_application.program()));
};

} // namespace testing_support

using namespace testing_support; // for every test
