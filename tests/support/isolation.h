// What keeps a test process to itself: its own folder, its own home and its own registry.
#pragma once

#include <filesystem>
#include <string>

namespace testing_support {

/// Sets an environment variable for the children that this process starts.
void shareWithChildren(const char* variable, const std::string& value);

/// Gives this process, and the children that it starts, an empty scratch folder, a home in it and an empty
/// registry. A child joins what its parent made; with the parent, all goes.
class Isolation
{
public:
    explicit Isolation(bool isChild);
    Isolation(const Isolation&) = delete;
    Isolation& operator=(const Isolation&) = delete;
    ~Isolation();

private:
    bool m_owner;
};

/// What Isolation does on each target: points the process to the home and registry of a scratch folder, and
/// removes what is not in that folder.
void joinHome(const std::filesystem::path& scratch);
void removeHome(const std::filesystem::path& scratch);

/// The name by which a program that is not a test's, and so sees the whole registry, finds a company of this
/// process's own registry.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
