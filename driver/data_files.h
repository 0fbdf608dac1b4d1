// The files of the data tree that the show reads. Music and the clip are not among them: without music the
// show runs in silence, and a clip that can't be opened is told in a box.
#pragma once

#include <span>

// Paths relative to the working directory, in the order in which the show reads them.
std::span<const char* const> needed_files(); // start-up ends without any of these
std::span<const char* const> wanted_files(); // it goes on without these

bool can_be_read(const char* path);

// Writes one line on standard error for each of both that can't be read, with the command that makes it where
// it isn't there. Returns how many of the needed ones those were.
int report_missing_files();
