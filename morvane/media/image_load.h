// The general front of the picture readers: picks one by the file's extension.
//
//     std::uint32_t* block = gtex_load("picture.tga");
//     if (block) gtex picture = gtex_wrap(block, gtex_load_width, gtex_load_height);
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "morvane/media/image_block.h"

// A row of the loader table. The reader takes an open file and gives a block of pixel words that belongs to
// the caller (`std::free`), or null; it tells the size in `gtex_load_width` and `gtex_load_height`.
struct gtex_loader {
    std::string_view extension; // in capitals
    std::uint32_t* (*reader)(std::FILE* file);
    bool closes_file; // on success and on failure; else the file stays open
};

extern const std::array<gtex_loader, 3> gtex_loaders;

// Reads the picture at `path` with the reader for what follows its last '.', and closes the file. Null if the
// file can't be opened (after a line through `perror`), if the path has no '.' or no row of the table
// matches, or if the reader fails.
std::uint32_t* gtex_load(const std::string& path);

// Reads an open file with the first row of `gtex_loaders` that matches `extension`, in capitals or not.
// Prints which extension it found. Null if no row matches (nothing is printed) or the reader fails. `file` is
// closed exactly if the row says so.
std::uint32_t* gtex_load_stream(std::FILE* file, std::string_view extension);
