// Looks up strings in language libraries whose content is arbitrary.
#include "input.h"

#include "pe_resources.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const winhost::Bytes file(data, size);
    winhost::isPeImage(file);
    for (const auto id : std::initializer_list<std::uint16_t>{0, 1001, 1007, 1015, 1103, 0xFFFF}) {
        const winhost::StringResource string = winhost::findString(file, id);
        require(string.units.size() % 2 == 0);
        require(string.units.empty() || (string.units.data() >= data && &string.units.back() < data + size));
        std::uint8_t sum = 0;
        for (const unsigned char byte : string.units) {
            sum = static_cast<std::uint8_t>(sum ^ byte);
        }
        volatile const std::uint8_t read = sum;
        static_cast<void>(read);
    }
    return 0;
}
