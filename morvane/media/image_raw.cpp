#include "morvane/media/image_raw.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "morvane/base/program.h"

// The file's blue, green, red, alpha are the pixel word as it stands.
static_assert(std::endian::native == std::endian::little);

namespace {

constexpr long raw_offset = 18;   // the header
constexpr long mask_offset = 786; // the header and a palette of 256 entries of 3 bytes

// Opens `path` and goes to `offset`; a file that can't be opened, and a folder, which can but not be read,
// end the process.
std::FILE* open_at(const std::string& path, long offset) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    const bool unreadable = file != nullptr && std::fgetc(file) == EOF && std::ferror(file) != 0;
    if (file == nullptr || unreadable) {
        program::complain(path, std::strerror(errno));
        std::exit(0);
    }
    std::fseek(file, offset, SEEK_SET); // past the end of a short file every read gives nothing
    return file;
}

std::size_t pixel_count(gtex dst) {
    return static_cast<std::size_t>(std::max(dst.count, 0));
}

} // namespace

void gtex_read_raw(gtex dst, const std::string& path) {
    std::FILE* file = open_at(path, raw_offset);
    // Counted in bytes: the bytes of a pixel that is cut short are kept, the others stay.
    [[maybe_unused]] const std::size_t got = std::fread(dst.pixels, 1, pixel_count(dst) * 4, file);
    std::fclose(file);
}

void gtex_read_mask(gtex dst, const std::string& path) {
    std::FILE* file = open_at(path, mask_offset);
    std::array<std::uint8_t, 16384> values;
    for (std::size_t i = 0; i < pixel_count(dst);) {
        const std::size_t wanted = std::min(pixel_count(dst) - i, values.size());
        const std::size_t got = std::fread(values.data(), 1, wanted, file);
        std::fill(values.begin() + static_cast<std::ptrdiff_t>(got), values.end(), std::uint8_t{0});
        for (std::size_t k = 0; k < wanted; ++k, ++i)
            dst.pixels[i] = (dst.pixels[i] & 0x00ffffffU) | std::uint32_t{values[k]} << 24;
    }
    std::fclose(file);
}
