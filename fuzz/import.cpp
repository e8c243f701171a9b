// What "rkuinfo import" reads, in both formats, up to where it would write. What was read and written in
// either reads the same again.
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
        again.clear();
        edit(again, fromRegFile("again", toRegFile(root, tree), root));
        require(compare(tree, again).empty());
    } catch (const Failure& failure) {
        require(std::string_view(failure.what()).find("again") != 0);
    }
    return 0;
}
