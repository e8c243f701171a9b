// Reads files in both formats, as "rkuinfo import" does, but does not write to the registry. Each imported
// tree must survive a round trip through JSON.
#include "input.h"

#include "transfer/transfer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const Text root = utf16("Software\\Acme");
    try {
        Tree tree = {{Name(), Value()}};
        edit(tree, isRegFile(bytes) ? fromRegFile("input", bytes, root) : fromJsonFile("input", bytes, root));
        Tree again;
        edit(again, fromJsonFile("again", documentText(toJson(tree)), root));
        require(compare(tree, again).empty());
    } catch (const Failure& failure) {
        require(std::string_view(failure.what()).find("again") != 0);
    }
    return 0;
}
