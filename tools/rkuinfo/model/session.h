// Whom to be and how to print: what every command is given beside its own words.
#pragma once

#include "text/table.h"

#include <cstddef>
#include <string>

/// The command line's common options; empty where one is not given.
struct Session
{
    std::string program; ///< the application's folder; empty: the one that this program is in
    std::string company;
    std::string product;
    std::string language;
    std::string profile;
    std::size_t columns = 0; ///< asked for; 0 leaves it to the terminal
    std::string colour = "auto";

    int exitCode = 0;

    /// The options that say whom to be, as they were given: " --company Acme"; for the remedies that are
    /// told.
    std::string repeated() const;
    Layout layout() const;
    /// Prints a sentence on standard error, and lets the process end with exit code 1 later on.
    void complain(const std::string& sentence);
};
