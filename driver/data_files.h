// The files of the data tree that the show reads, in the order in which it reads them.
#pragma once

#include <span>

// Paths relative to the working directory.
std::span<const char* const> show_files();

// Writes one line on standard error for each of `show_files` that can't be opened, with the command that
// makes it. Returns how many those were.
int report_missing_files();
