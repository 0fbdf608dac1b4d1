// Opens archives for people.
#pragma once

#include <string>

#include "morvane/mopak/mopak.h"

// Loads `path` into `archive`, also an archive that holds no files yet, which `mopak::open` refuses. Returns
// what is wrong with it, or nothing.
std::string open_pack(const std::string& path, mopak& archive);
