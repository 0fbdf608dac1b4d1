// What the readers of the loader table share: the pair of size globals and the block of pixel words.
#pragma once

#include <cstdint>

// Size of the last picture that a reader of the table began to read. A reader that fails before it knows the
// size leaves them as they were.
extern std::int32_t gtex_load_width;
extern std::int32_t gtex_load_height;

// No block of pixel words is larger than this.
inline constexpr std::int64_t image_block_limit = std::int64_t{1} << 30;

// Whether both sides are positive and the pixel words fit into `image_block_limit`.
constexpr bool image_size_fits(std::int64_t width, std::int64_t height) {
    constexpr std::int64_t most = image_block_limit / 4;
    return width > 0 && height > 0 && width <= most && height <= most / width;
}

// A block of width * height words, all 0, from `std::calloc`; it belongs to the caller (`std::free`). Null if
// the size doesn't fit or the memory can't be had. The system commits its pages as they are written, so a
// header that promises more than its file holds costs address space alone.
std::uint32_t* image_block(std::int64_t width, std::int64_t height);
