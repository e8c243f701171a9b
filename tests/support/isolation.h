// What keeps a test process to itself: its own folder, its own home and its own registry.
#pragma once

#include <string>

namespace testing_support {

/// Sets an environment variable for the children that this process starts.
void shareWithChildren(const char* variable, const std::string& value);

/// Gives this process, and the children that it starts, an empty scratch folder, a home in it and an empty
/// registry. A child joins what its parent made.
void isolate(bool isChild);
/// Removes all of them.
void removeTraces();

/// What these do on each target: point the process to the home and registry of the scratch folder, and remove
/// what is not in that folder.
void joinHome();
void leaveHome();

/// The name by which a program that is not a test's, and so sees the whole registry, finds a company of this
/// process's own registry.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
