// A file of hashes: what a machine drew and played, to be compared with what it draws and plays later.
//
//     morvane-hashes 1
//     part run 0 60 20
//     frame 0 0.000000 6a1c... 93d0...
//     ...
//     sound 0 51fe...
//     ...
//     part metaballs 12 60 20
//     ...
//     end
//
// The number in the first line is the version of this form. A part tells what is drawn, as in hashed_part.h;
// its lines are those of hash_lines.h.
#pragma once

#include <string>
#include <vector>

#include "tools/record/hashed_part.h"

// Without any choice: the whole run with every closing movement, and the metaballs.
std::vector<hashed_part> every_part(std::int32_t fps);

// Draws `parts` and writes their lines to the file at `path`, which appears when it is whole. Returns the
// exit code: 0; 1 after a failure, told on standard error; 128 and the signal's number if it was interrupted.
int write_hashes(const std::string& path, const std::vector<hashed_part>& parts);

// Draws again what the file at `path` tells of, from the data tree in `data_folder` (empty: the one that is
// found). Tells on standard output the runs of frames and of seconds of
// sound that differ, their number and the first. Returns the exit code: 0 if nothing differs; 1 if something
// does; 2 if that can't be told, for the file isn't whole or something that is drawn can't be read; 128 and
// the signal's number if it was interrupted.
int compare_hashes(const std::string& path, const std::string& data_folder);
