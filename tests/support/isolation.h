// Redirects a test process to a separate home and registry.
#pragma once

#include <string>

namespace testing_support {

/// Sets an environment variable, which the children of this process inherit.
void shareWithChildren(const char* variable, const std::string& value);

/// Redirects this process to an empty home and registry. leaveHome() removes their parts outside the scratch
/// folder.
void joinHome();
void leaveHome();

/// Returns the company name by which a program that uses the real registry finds one of this process's
/// companies.
std::string companyFromOutside(const std::string& company);

} // namespace testing_support
