#include <array>
#include <cstddef>

#include "assets/forms/file_forms.h"

namespace assets {
namespace {

constexpr std::uint8_t rgb_type = 2;
constexpr std::uint8_t colour_mapped_type = 1;
constexpr std::uint8_t top_first_flag = 0x20;

std::uint8_t low_byte(std::int32_t v) {
    return static_cast<std::uint8_t>(static_cast<std::uint32_t>(v) & 0xffU);
}

// The last ten bytes of a header: origin 0, 0, then size, depth, descriptor.
void append_image_part(file_bytes& file, std::int32_t width, std::int32_t height, std::uint8_t depth,
                       std::uint8_t descriptor) {
    const std::array<std::uint8_t, 10> part{0,
                                            0,
                                            0,
                                            0,
                                            low_byte(width),
                                            low_byte(width >> 8),
                                            low_byte(height),
                                            low_byte(height >> 8),
                                            depth,
                                            descriptor};
    file.insert(file.end(), part.begin(), part.end());
}

} // namespace

file_bytes tga_colour_file(std::int32_t width, std::int32_t height, std::span<const std::uint8_t> pixels,
                           row_order order) {
    file_bytes file{0, 0, rgb_type, 0, 0, 0, 0, 0}; // no ID field, no palette
    const bool top_first = order == row_order::top_first;
    append_image_part(file, width, height, 32, top_first ? top_first_flag : 0);
    const auto row = static_cast<std::size_t>(width) * 3;
    const auto rows = static_cast<std::size_t>(height);
    for (std::size_t y = 0; y < rows; ++y) {
        const std::size_t from = (top_first ? y : rows - 1 - y) * row;
        for (std::size_t x = 0; x < row; x += 3) {
            file.push_back(pixels[from + x + 2]);
            file.push_back(pixels[from + x + 1]);
            file.push_back(pixels[from + x]);
            file.push_back(0);
        }
    }
    return file;
}

file_bytes tga_mask_file(std::int32_t width, std::int32_t height, std::span<const std::uint8_t> values) {
    // A palette of 256 entries from index 0 on, 24 bits each.
    file_bytes file{0, 1, colour_mapped_type, 0, 0, 0, 1, 24};
    append_image_part(file, width, height, 8, top_first_flag);
    for (unsigned grey = 0; grey < 256; ++grey)
        file.insert(file.end(), 3, static_cast<std::uint8_t>(grey));
    file.insert(file.end(), values.begin(), values.end());
    return file;
}

} // namespace assets
