#include "transfer/file.h"

#include "text/print.h"
#include "text/text.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
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

std::string allOf(std::istream& in)
{
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

} // namespace

std::string toldName(const std::string& file, const char* stream)
{
    return isStream(file) ? stream : file;
}

std::string readFile(const std::string& file)
{
    if (isStream(file)) {
        return allOf(std::cin);
    }
    std::error_code ignored;
    std::ifstream in(filePath(file), std::ios::binary);
    if (!in || std::filesystem::is_directory(filePath(file), ignored)) {
        throw Failure(file + " cannot be read");
    }
    return allOf(in);
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
