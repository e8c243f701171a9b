#include "transfer/file.h"

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
    }
    return name;
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
    std::filesystem::path path = filePath(file);
    std::filesystem::path beside = path;
    beside += ".new";
    std::ofstream out(beside, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    std::error_code failure;
    if (out) {
        std::filesystem::rename(beside, path, failure);
    }
    if (!out || failure) {
        std::error_code ignored;
        std::filesystem::remove(beside, ignored);
        throw Failure(file + " cannot be written");
    }
}
