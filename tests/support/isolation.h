// What keeps a test process to itself: its own folder, its own home and its own registry.
#pragma once

#include <string>

namespace testing_support {

/// Sets an environment variable for the children that this process starts.
void shareWithChildren(const char* variable, const std::string& value);

/// Points this process to an empty home and registry of its scratch folder; and removes what is not in that
/// folder.
void joinHome();
void leaveHome();

/// The name by which a program that is not a test's, and so sees the whole registry, finds a company of this
/// process's own registry.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
