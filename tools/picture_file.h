// A picture of the show as a file.
#pragma once

#include <string>

#include "gtex/gtex.h"

// Writes the colours of `picture` (the top byte is left out) as an 8-bit RGB PNG. The file appears under
// `path` when it is whole and replaces what was there; until then it stands beside it under another name.
// Returns an empty text, or the reason of the failure, which leaves nothing behind.
std::string write_picture(const std::string& path, gtex picture);
