// What "rkuinfo import" reads, up to where it would write.
#include "input.h"

#include "transfer.cpp" // its reader is its own

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    try {
        Reader reader("input", 900);
        reader.readKey(Text(), parse(in, "input"), false);
        for (const Write& write : reader.writes()) {
            require(write.key.size() <= 900);
        }
    } catch (const Failure&) {
        return 0;
    }
    return 0;
}
