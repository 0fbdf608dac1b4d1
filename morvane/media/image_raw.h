// Pixels of TGA files whose form is known in advance, read from fixed offsets into a surface that is there
// already. No header is parsed: the file's own size, depth and row order are not looked at, so a picture
// stored bottom row first arrives upside down (`gtex_flip`).
//
// A file that can't be opened, or is a folder, ends the process with exit(0) after one line on standard
// error. A file that ends early is not reported. Bound: `dst.count`.
#pragma once

#include <string>

#include "morvane/gtex/gtex.h"

// Fills `dst` with the 4-byte pixels that follow the first 18 bytes of the file: an uncompressed 32-bit TGA
// with an empty ID field. Bytes that the file doesn't hold leave the surface as it was.
void gtex_read_raw(gtex dst, const std::string& path);

// Fills the top byte of each pixel of `dst`, and nothing else, with the bytes that follow the first 786 of
// the file: an uncompressed 8-bit TGA with a palette of 256 entries, whose indices are the mask. Values that
// the file doesn't hold are 0.
void gtex_read_mask(gtex dst, const std::string& path);
