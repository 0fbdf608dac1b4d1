// JPEG pictures.
#pragma once

#include <cstdint>
#include <cstdio>

// Reads a JPEG from an open file that stands at its start; the row "JPG" of `gtex_loaders`. Gives the block
// of pixel words R << 16 | G << 8 | B with a zero top byte, which belongs to the caller (`std::free`), and
// its size in `gtex_load_width` and `gtex_load_height`. Leaves `file` open, where libjpeg's buffer left it.
//
// Grey pictures come as R = G = B; CMYK and YCCK ones are mixed down to RGB, inverted ones (those with an
// Adobe marker) too. A file that ends early gives what libjpeg makes of it: its last colour, or grey, for the
// part that is missing.
//
// Null for an error inside libjpeg, which says nothing of it, nor of what it mends. Null, too, for a size
// that passes 1 GiB, for a picture of more than a megapixel (64 with arithmetic coding) with more than 4096
// pixels for each byte of its file, and for more than 64 scans: no encoder writes those, but for arithmetic
// coding of a nearly plain picture. Not re-entrant: the state of the decompression is static.
std::uint32_t* gtex_load_jpg(std::FILE* file);
