// The list of what the data tree is made of: each file's path and the function that makes its bytes.
//
// To add a file: write its function, declare it beside its kind (pictures.h), add a row to the table.
#pragma once

#include <span>
#include <string_view>

#include "assets/forms/file_forms.h"

namespace assets {

struct maker {
    std::string_view path; // below the folder that holds `data`, with '/' between folders
    file_bytes (*make)();  // always the same bytes; safe to call from several threads
};

// All makers, the slowest first.
std::span<const maker> makers();

} // namespace assets
