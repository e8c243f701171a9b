// Gives a test process a separate home and registry.
#pragma once

#include <string>

namespace testing_support {

/// Sets an environment variable, which the children of this process inherit.
void shareWithChildren(const char* variable, const std::string& value);

/// Redirects this process to an empty home and registry; leaveHome() removes what is not in the scratch
/// folder.
void joinHome();
void leaveHome();

/// Returns the company name that a program whose registry is not redirected must use to find one of this
/// process's companies.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
