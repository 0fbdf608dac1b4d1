// PNG pictures.
//
// Both readers take every colour type and depth, interlaced or not: palettes and shallow greys are expanded,
// a transparent colour becomes an opacity channel, 16-bit samples keep their high byte, grey becomes R = G =
// B. A picture with opacity carries it in the top byte of its words; one without has a zero top byte. A side
// of more than 1,000,000 pixels (libpng's bound) or a picture of more than 1 GiB of words counts as damaged.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "morvane/gtex/gtex.h"

// Reads the picture at `path` into a surface of its size, which belongs to the caller. Prints
// "gtex_load_png()" before and "file loaded" after. Never returns on failure: one line on
// standard error gives the path and the reason, and the process exits with 1.
gtex gtex_load_png(const std::string& path);

// Reads a PNG from an open file that stands at its start; the row "PNG" of `gtex_loaders`. Gives the block of
// pixel words, which belongs to the caller (`std::free`), and its size in `gtex_load_width` and
// `gtex_load_height`; prints "file loaded". On failure null, and nothing is printed. Closes `file` either
// way.
std::uint32_t* gtex_load_png_stream(std::FILE* file);
