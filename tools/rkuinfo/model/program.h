// The program that the tool asks about.
#pragma once

#include "text/text.h"

/// Lets everything that src/program knows be about a program in that folder, instead of this process's own.
void lookAt(const Text& folder);
