// rkuinfo in an application's folder, run as the real program.
#pragma once

#include "support/child.h"
#include "support/scratch.h"

#include <string>
#include <vector>

/// What a run is to give. {app} stands for the application's folder.
struct Expected
{
    std::vector<std::string> arguments;
    std::string output = {};
    std::string error = {}; ///< without "rkuinfo: " and the line's end; empty: none
    int exitCode = error.empty() ? 0 : 1;
};

using Languages = std::vector<std::string>;
const Languages noLanguages;

class Tool
{
public:
    /// As Widget of Acme, a rebranded product, in a folder with those languages.
    explicit Tool(const Languages& languages = {"en-US"});

    const testing_support::Application& application() const { return m_application; }
    /// The folder's and the company's names in the output are made the same on every run.
    testing_support::ChildResult run(const std::vector<std::string>& arguments) const;
    /// As the product that TARVO.ini and defaults give.
    testing_support::ChildResult runUnnamed(const std::vector<std::string>& arguments) const;
    void check(const Expected& expected) const;
    void check(const std::vector<Expected>& rows) const;

private:
    testing_support::Application m_application;
    std::filesystem::path m_program;
};
