#include "transfer/file.h"

#include "model/system.h"
#include "text/print.h"
#include "text/text.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <type_traits>

namespace {

bool isStream(const std::string& file)
{
    return file.empty() || file == "-";
}

std::filesystem::path filePath(const std::string& name)
{
    if constexpr (std::is_same_v<Text, std::filesystem::path::string_type>) {
        return utf16(name); // by no conversion, which would throw at a lone surrogate
    } else {
        return name;
    }
}

[[noreturn]] void refuseReading(const std::string& told)
{
    throw Failure(told + " cannot be read");
}

/// By C's own call: std::cin takes an error for the end.
std::string allOfInput()
{
    std::string bytes;
    std::array<char, 65536> part = {};
    while (const std::size_t size = std::fread(part.data(), 1, part.size(), stdin)) {
        bytes.append(part.data(), size);
    }
    if (std::ferror(stdin) != 0) {
        refuseReading("standard input");
    }
    return bytes;
}

bool write(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return !out.fail();
}

/// A new file of a name that nothing beside the path has; empty when none can be made.
std::filesystem::path makeBeside(const std::filesystem::path& path)
{
    for (std::size_t number = 1;; ++number) {
        std::filesystem::path beside = path;
        beside += ".new" + (number == 1 ? "" : std::to_string(number));
        if (makeFile(beside)) {
            return beside;
        }
        std::error_code failure;
        if (!std::filesystem::exists(std::filesystem::symlink_status(beside, failure))) {
            return {};
        }
    }
}

/// Through links: what they lead to is replaced.
bool replace(const std::filesystem::path& path, std::string_view bytes)
{
    std::error_code failure;
    const std::filesystem::path target = std::filesystem::weakly_canonical(path, failure);
    const std::filesystem::path beside = failure ? std::filesystem::path() : makeBeside(target);
    if (beside.empty()) {
        return false;
    }
    if (write(beside, bytes)) {
        std::filesystem::rename(beside, target, failure);
        if (!failure) {
            return true;
        }
    }
    std::filesystem::remove(beside, failure);
    return false;
}

} // namespace

std::string toldName(const std::string& file, const char* stream)
{
    return isStream(file) ? stream : file;
}

std::string readFile(const std::string& file)
{
    if (isStream(file)) {
        return allOfInput();
    }
    std::error_code ignored;
    std::ifstream in(filePath(file), std::ios::binary);
    if (!in || std::filesystem::is_directory(filePath(file), ignored)) {
        refuseReading(file);
    }
    std::string bytes;
    std::array<char, 65536> part = {};
    while (in.read(part.data(), part.size()), in.gcount() > 0) {
        bytes.append(part.data(), static_cast<std::size_t>(in.gcount()));
    }
    if (in.bad()) {
        refuseReading(file);
    }
    return bytes;
}

void writeFile(const std::string& file, std::string_view bytes)
{
    if (isStream(file)) {
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        return;
    }
    const std::filesystem::path path = filePath(file);
    std::error_code ignored;
    const bool isThere = std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
    const bool isDirect = isThere && !std::filesystem::is_regular_file(path, ignored);
    if (!(isDirect ? write(path, bytes) : replace(path, bytes))) {
        throw Failure(file + " cannot be written");
    }
}
