// A picture of the show as a file.
#pragma once

#include <string>
#include <string_view>

#include "morvane/gtex/gtex.h"

// Whether a picture can be written under `path`, by its extension: ".png" in upper or lower case.
bool is_picture_path(std::string_view path);

// Writes the colours of `picture` (the top byte is left out) as an 8-bit RGB PNG. What becomes of
// `path` stands in kit/output_file.h. Returns an empty text, or the reason of the failure, which leaves
// nothing behind.
std::string write_picture(const std::string& path, gtex picture);
