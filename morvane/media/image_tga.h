// TGA pictures, uncompressed and run-length packed.
#pragma once

#include <cstdint>
#include <cstdio>

// Reads a TGA from an open file that stands at its start; the row "TGA" of `gtex_loaders`. Gives the block of
// pixel words, which belongs to the caller (`std::free`), and its size in `gtex_load_width` and
// `gtex_load_height`. Leaves `file` open.
//
// Types 2 (uncompressed) and 10 (run-length) are read, with 32 bits a pixel (the word as it stands), 24 (zero
// top byte) or 16 (5 bits a channel, widened so that full is 255, and a top bit that gives an opacity of 255
// or 0). Rows come in file order, whatever the origin flag says. A run that passes the last pixel ends there,
// and pixels that the file doesn't hold are 0. Other depths and the colour-mapped types 1 and 9 give a block
// of zeros. Null for any other type, for a header that ends early, and for a size that is not positive or
// passes 1 GiB. Bound: pixels and packets that the file holds.
std::uint32_t* gtex_load_tga(std::FILE* file);
