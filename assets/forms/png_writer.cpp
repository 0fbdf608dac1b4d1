#include <png.h>

#include "assets/forms/file_forms.h"

namespace assets {

file_bytes png_file(std::int32_t width, std::int32_t height, std::span<const std::uint8_t> pixels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    file_bytes bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.data(), 0, nullptr) == 0) return {};
    bytes.resize(size);
    return bytes;
}

} // namespace assets
