// The main function of a host program, which calls the program's wmain.
#include "text.h"

#include <algorithm>
#include <iterator>
#include <vector>

extern "C" int wmain(int argc, wchar_t** argv);

int main(int argc, char** argv)
{
    std::vector<winhost::Text> arguments;
    std::transform(argv, argv + argc, std::back_inserter(arguments), winhost::fromUtf8);
    std::vector<wchar_t*> pointers;
    std::transform(arguments.begin(), arguments.end(), std::back_inserter(pointers),
                   [](winhost::Text& argument) { return argument.data(); });
    pointers.push_back(nullptr);
    return wmain(argc, pointers.data());
}
