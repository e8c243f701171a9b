#include "transfer/transfer.h"

#include "text/text.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace {

namespace fs = std::filesystem;

fs::path filePath(const std::string& name)
{
    return std::u8string(name.begin(), name.end());
}

/// Uses fread, because std::cin reports an error as the end of the input.
std::string allOfInput()
{
    std::string bytes;
    std::array<char, 65536> part = {};
    while (const std::size_t size = std::fread(part.data(), 1, part.size(), stdin)) {
        bytes.append(part.data(), size);
    }
    if (std::ferror(stdin) != 0) {
        throw Failure("standard input cannot be read");
    }
    return bytes;
}

bool write(const fs::path& path, std::string_view bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return !out.fail();
}

/// Follows links. Gives the new file a random name, so that no other user can create a file with that name
/// first. On failure, removes the new file.
bool replace(const fs::path& path, std::string_view bytes)
{
    std::error_code failure;
    const fs::path target = fs::weakly_canonical(path, failure);
    fs::path beside = target;
    beside += ".new" + hexDigits(std::random_device()(), 8);
    auto* const interruption = std::signal(SIGINT, SIG_IGN);
    const fs::file_status before = fs::status(target, failure);
    bool isDone = write(beside, "");
    if (fs::exists(before)) {
        fs::permissions(beside, before.permissions(), failure);
    }
    isDone = isDone && write(beside, bytes);
    if (isDone) {
        fs::rename(beside, target, failure);
        isDone = !failure;
    }
    if (!isDone) {
        fs::remove(beside, failure);
    }
    std::signal(SIGINT, interruption);
    return isDone;
}

} // namespace

bool isStream(const std::string& file)
{
    return file.empty() || file == "-";
}

std::string readFile(const std::string& file)
{
    if (isStream(file)) {
        return allOfInput();
    }
    std::ifstream in(filePath(file), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf(); // stops without an error if a read fails or memory runs out
    if (!in.is_open() || in.peek() != std::ifstream::traits_type::eof() || in.bad()) {
        throw Failure(file + " cannot be read");
    }
    return std::move(bytes).str();
}

std::optional<std::string> readSmallFile(const std::string& file)
{
    constexpr std::uintmax_t most = 1 << 20;
    std::error_code failure;
    const fs::path path = filePath(file);
    if (!fs::is_regular_file(path, failure) || fs::file_size(path, failure) > most || failure) {
        return std::nullopt;
    }
    Losses losses;
    std::optional<std::string> bytes;
    guard(&losses, [&] { bytes = readFile(file); });
    return bytes;
}

void writeFile(const std::string& file, std::string_view bytes)
{
    if (isStream(file)) {
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        return;
    }
    const fs::path path = filePath(file);
    std::error_code ignored;
    const fs::file_status found = fs::status(path, ignored);
    const bool isDirect = fs::exists(found) && !fs::is_regular_file(found);
    if (!(isDirect ? write(path, bytes) : replace(path, bytes))) {
        throw Failure(file + " cannot be written");
    }
}
