#include "morvane/media/image_tga.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>

#include "morvane/media/image_block.h"

namespace {

struct tga_header {
    std::uint8_t id_length;
    std::uint8_t image_type;
    std::int16_t width;
    std::int16_t height;
    std::uint8_t depth; // bits per pixel
};

enum image_type : std::uint8_t { colour_mapped = 1, rgb = 2, packed_colour_mapped = 9, packed_rgb = 10 };

std::optional<tga_header> read_header(std::FILE* file) {
    std::array<std::uint8_t, 18> raw{};
    if (std::fread(raw.data(), 1, raw.size(), file) != raw.size()) return std::nullopt;
    const auto word = [&raw](std::size_t offset) {
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(raw[offset] | raw[offset + 1] << 8));
    };
    return tga_header{
        .id_length = raw[0], .image_type = raw[2], .width = word(12), .height = word(14), .depth = raw[16]};
}

std::uint32_t widen_5_bits(std::uint32_t value) {
    return value << 3 | value >> 2;
}

// One file pixel of 2, 3 or 4 bytes as a pixel word.
std::uint32_t pixel_word(const std::uint8_t* raw, std::size_t pixel_bytes) {
    if (pixel_bytes == 2) {
        const std::uint32_t value = std::uint32_t{raw[0]} | std::uint32_t{raw[1]} << 8;
        const std::uint32_t opacity = value >> 15 != 0 ? 0xff000000U : 0;
        return opacity | widen_5_bits(value >> 10 & 31) << 16 | widen_5_bits(value >> 5 & 31) << 8 |
               widen_5_bits(value & 31);
    }
    const std::uint32_t colour =
        std::uint32_t{raw[0]} | std::uint32_t{raw[1]} << 8 | std::uint32_t{raw[2]} << 16;
    return pixel_bytes == 4 ? colour | std::uint32_t{raw[3]} << 24 : colour;
}

// Reads `count` pixels to `words`; gives the number of whole pixels that the file still held.
std::size_t read_pixels(std::FILE* file, std::size_t pixel_bytes, std::uint32_t* words, std::size_t count) {
    std::array<std::uint8_t, std::size_t{4096} * 4> staging;
    std::size_t done = 0;
    while (done < count) {
        const std::size_t wanted = std::min(count - done, staging.size() / pixel_bytes);
        const std::size_t got = std::fread(staging.data(), pixel_bytes, wanted, file);
        for (std::size_t i = 0; i < got; ++i)
            words[done + i] = pixel_word(staging.data() + i * pixel_bytes, pixel_bytes);
        done += got;
        if (got < wanted) break;
    }
    return done;
}

// Unpacks run-length packets until `count` pixels are there or the file ends.
void read_packets(std::FILE* file, std::size_t pixel_bytes, std::uint32_t* words, std::size_t count) {
    std::size_t index = 0;
    while (index < count) {
        const int head = std::fgetc(file);
        if (head == EOF) return;
        const std::size_t run = std::min((static_cast<std::size_t>(head) & 0x7fU) + 1, count - index);
        if ((head & 0x80) != 0) {
            std::uint32_t word = 0;
            if (read_pixels(file, pixel_bytes, &word, 1) < 1) return;
            std::fill_n(words + index, run, word);
        } else {
            if (read_pixels(file, pixel_bytes, words + index, run) < run) return;
        }
        index += run;
    }
}

void read_picture(std::FILE* file, const tga_header& header, std::uint32_t* words, std::size_t count) {
    const bool known_depth = header.depth == 32 || header.depth == 24 || header.depth == 16;
    const std::size_t pixel_bytes = header.depth / 8U;
    if (header.image_type == rgb) {
        std::printf(" - Uncompressed RGB image\n");
        if (known_depth) read_pixels(file, pixel_bytes, words, count);
    } else if (header.image_type == packed_rgb) {
        std::printf(" - Compressed RGB image\n");
        if (known_depth) read_packets(file, pixel_bytes, words, count);
    }
}

bool known_type(std::uint8_t type) {
    return type == colour_mapped || type == rgb || type == packed_colour_mapped || type == packed_rgb;
}

} // namespace

std::uint32_t* gtex_load_tga(std::FILE* file) {
    std::printf("debug: gtex_load_tga()\n");
    const std::optional<tga_header> header = read_header(file);
    if (!header) return nullptr;
    // Read instead of sought, so that a stream that can't seek will do.
    for (int skipped = 0; skipped < header->id_length; ++skipped)
        std::fgetc(file);

    gtex_load_width = header->width;
    gtex_load_height = header->height;
    if (!known_type(header->image_type)) return nullptr;
    std::uint32_t* block = image_block(header->width, header->height);
    if (block == nullptr) return nullptr;
    read_picture(file, *header, block,
                 static_cast<std::size_t>(header->width) * static_cast<std::size_t>(header->height));
    std::printf("file loaded\n");
    return block;
}
