#include "support/child.h"

#include <map>

namespace testing_support {

namespace {

constexpr std::string_view childOption = "--child";

std::map<std::string, ChildPart::Main>& parts()
{
    static std::map<std::string, ChildPart::Main> all;
    return all;
}

} // namespace

ChildPart::ChildPart(const char* name, Main main) : m_name(name)
{
    parts().emplace(name, main);
}

ChildResult ChildPart::run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                           const ChildOptions& options) const
{
    std::vector<std::string> all = {std::string(childOption), m_name};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runProgram(program, all, options);
}

bool isChild(int argc, char** argv)
{
    return argc > 2 && argv[1] == childOption;
}

int childMain(int argc, char** argv)
{
    return parts().at(argv[2])({argv + 3, argv + argc});
}

} // namespace testing_support
