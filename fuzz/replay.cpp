// Replaces libFuzzer's main function: runs a target on every file in a folder.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
        std::cout << entry.path().string() << std::endl; // flushed, because the target may abort
        std::vector<char> bytes(entry.file_size());
        std::ifstream(entry.path(), std::ios::binary).read(bytes.data(), std::ssize(bytes));
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++files;
    }
    return files > 0 ? 0 : 1;
}
