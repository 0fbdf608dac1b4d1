#include "morvane/media/image_block.h"

#include <cstddef>
#include <cstdlib>

std::int32_t gtex_load_width = 0;
std::int32_t gtex_load_height = 0;

std::uint32_t* image_block(std::int64_t width, std::int64_t height) {
    if (!image_size_fits(width, height)) return nullptr;
    return static_cast<std::uint32_t*>(
        std::calloc(static_cast<std::size_t>(width * height), sizeof(std::uint32_t)));
}
