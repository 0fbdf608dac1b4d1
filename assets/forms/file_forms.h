// The file forms that the data tree is written in, as bytes in memory.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace assets {

using file_bytes = std::vector<std::uint8_t>;

// A PNG of `width` x `height`, 8-bit RGB, from `pixels` (R, G, B, top row first). Empty if the writer fails,
// which it does for want of memory only.
file_bytes png_file(std::int32_t width, std::int32_t height, std::span<const std::uint8_t> pixels);

enum class row_order { top_first, bottom_first };

// An uncompressed 32-bit TGA with no ID field: 18 bytes of header, then B, G, R, 0 for each pixel. `pixels`
// are R, G, B, top row first; `order` is that of the rows in the file, and the header tells it to other
// viewers.
file_bytes tga_colour_file(std::int32_t width, std::int32_t height, std::span<const std::uint8_t> pixels,
                           row_order order);

// An uncompressed 8-bit colour-mapped TGA: 18 bytes of header, 768 bytes of a grey ramp as palette, then
// `values`, one byte a pixel from offset 786 on, top row first.
file_bytes tga_mask_file(std::int32_t width, std::int32_t height, std::span<const std::uint8_t> values);

} // namespace assets
