// What "rkuinfo import" reads, in both formats, up to where it would write. What was read and written as JSON
// reads the same again.
#include "input.h"

#include "text/print.h"
#include "transfer/json_file.h"
#include "transfer/reg_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const Text root = utf16("Software\\Acme");
    try {
        const Node node = isRegFile(bytes) ? fromRegFile("input", bytes, root) : fromJsonFile("input", bytes);
        const std::string json = toJsonFile(node);
        require(toJsonFile(fromJsonFile("again", json)) == json);
        fromRegFile("again", toRegFile(root, node), root);
    } catch (const Failure& failure) {
        require(std::string_view(failure.what()).find("again") != 0);
    }
    return 0;
}
