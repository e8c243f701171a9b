// What keeps a test process to itself: its own home and its own registry.
#pragma once

#include <filesystem>
#include <string>

namespace testing_support {

/// Sets an environment variable for the children that this process starts.
void shareWithChildren(const char* variable, const std::string& value);

/// Gives this process, and the children that it starts, an empty registry and a home in the folder given.
/// A child joins what its parent made.
class Isolation
{
public:
    explicit Isolation(const std::filesystem::path& home);
    Isolation(const Isolation&) = delete;
    Isolation& operator=(const Isolation&) = delete;
    ~Isolation();

private:
    bool m_owner = false;
};

/// The name by which a program that is not a test's, and so sees the whole registry, finds a company of this
/// process's own registry.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
