// Picture files in memory, written by libpng, libjpeg and by hand: for tests and for the seeds of the fuzz
// targets.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

#include <jpeglib.h>
#include <png.h>

using file_bytes = std::vector<std::uint8_t>;

// A PNG as samples of `depth` bits, `channels()` for each pixel, row by row.
struct png_form {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    int colour_type = PNG_COLOR_TYPE_RGB;
    int depth = 8;
    bool interlaced = false;
    std::vector<png_color> palette = {};
    std::vector<png_byte> palette_opacity = {};       // tRNS of a palette
    std::vector<std::uint16_t> transparent_grey = {}; // tRNS of a grey picture, one value
    std::vector<std::uint16_t> transparent_rgb = {};  // tRNS of an RGB picture, three values
    std::vector<std::uint16_t> samples = {};

    std::size_t channels() const {
        if (colour_type == PNG_COLOR_TYPE_RGB) return 3;
        if (colour_type == PNG_COLOR_TYPE_RGB_ALPHA) return 4;
        return colour_type == PNG_COLOR_TYPE_GRAY_ALPHA ? 2 : 1;
    }
};

// One row of samples as PNG stores it: most significant bits and bytes first.
inline file_bytes packed_png_row(const png_form& form, std::uint32_t y) {
    const std::size_t samples_a_row = form.width * form.channels();
    const auto depth = static_cast<std::size_t>(form.depth);
    file_bytes row((samples_a_row * depth + 7) / 8);
    for (std::size_t i = 0; i < samples_a_row; ++i) {
        const std::uint32_t sample = form.samples[y * samples_a_row + i];
        for (std::size_t bit = 0; bit < depth; ++bit) {
            const std::size_t place = i * depth + bit;
            const std::uint32_t value = sample >> (depth - 1 - bit) & 1U;
            row[place / 8] = static_cast<std::uint8_t>(row[place / 8] | value << (7 - place % 8));
        }
    }
    return row;
}

inline void set_png_transparency(png_structp png, png_infop info, const png_form& form) {
    png_color_16 key{};
    if (!form.transparent_grey.empty()) key.gray = form.transparent_grey[0];
    if (!form.transparent_rgb.empty()) {
        key.red = form.transparent_rgb[0];
        key.green = form.transparent_rgb[1];
        key.blue = form.transparent_rgb[2];
    }
    const bool keyed = !form.transparent_grey.empty() || !form.transparent_rgb.empty();
    if (keyed) png_set_tRNS(png, info, nullptr, 0, &key);
    if (!form.palette_opacity.empty())
        png_set_tRNS(png, info, form.palette_opacity.data(), static_cast<int>(form.palette_opacity.size()),
                     nullptr);
}

inline file_bytes png_file(const png_form& form) {
    file_bytes file;
    png_structp png = png_create_write_struct(
        PNG_LIBPNG_VER_STRING, nullptr, [](png_structp, png_const_charp) { std::abort(); }, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep bytes, std::size_t count) {
            auto* out = static_cast<file_bytes*>(png_get_io_ptr(writer));
            out->insert(out->end(), bytes, bytes + count);
        },
        nullptr);
    png_set_IHDR(png, info, form.width, form.height, form.depth, form.colour_type,
                 form.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
                 PNG_FILTER_TYPE_BASE);
    if (!form.palette.empty())
        png_set_PLTE(png, info, form.palette.data(), static_cast<int>(form.palette.size()));
    set_png_transparency(png, info, form);
    png_write_info(png, info);

    std::vector<file_bytes> rows;
    for (std::uint32_t y = 0; y < form.height; ++y)
        rows.push_back(packed_png_row(form, y));
    std::vector<png_bytep> row_pointers;
    for (file_bytes& row : rows)
        row_pointers.push_back(row.data());
    png_write_image(png, row_pointers.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

// Makes the checksum of every chunk right, so that damage inside a chunk gets past it.
inline void repair_png_checksums(std::span<std::uint8_t> file) {
    const auto word = [&file](std::size_t at) {
        return std::uint32_t{file[at]} << 24 | std::uint32_t{file[at + 1]} << 16 |
               std::uint32_t{file[at + 2]} << 8 | file[at + 3];
    };
    for (std::size_t at = 8; at + 12 <= file.size();) {
        const std::size_t length = word(at);
        if (length > file.size() - at - 12) return;
        std::uint32_t crc = 0xffffffffU;
        for (const std::uint8_t byte : file.subspan(at + 4, length + 4)) {
            crc ^= byte;
            for (int bit = 0; bit < 8; ++bit)
                crc = crc >> 1 ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i)
            file[at + 8 + length + i] = static_cast<std::uint8_t>(~crc >> (24 - 8 * i));
        at += length + 12;
    }
}

// A JPEG of 8-bit samples, `components` for each pixel in the order of `in`.
struct jpeg_form {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    int components = 3;
    J_COLOR_SPACE in = JCS_RGB;
    J_COLOR_SPACE stored = JCS_YCbCr;
    int quality = 100;
    bool progressive = false;
    bool arithmetic = false;  // in place of Huffman's code
    bool adobe_marker = true; // for CMYK and YCCK; their samples are inverted then
    std::vector<std::uint8_t> samples = {};
};

inline file_bytes jpeg_file(jpeg_form form) {
    jpeg_compress_struct state{};
    jpeg_error_mgr errors{};
    state.err = jpeg_std_error(&errors);
    jpeg_create_compress(&state);
    unsigned char* buffer = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&state, &buffer, &length);
    state.image_width = form.width;
    state.image_height = form.height;
    state.input_components = form.components;
    state.in_color_space = form.in;
    jpeg_set_defaults(&state);
    jpeg_set_colorspace(&state, form.stored);
    jpeg_set_quality(&state, form.quality, TRUE);
    for (int i = 0; i < state.num_components; ++i) // no thinning of colours
        state.comp_info[i].h_samp_factor = state.comp_info[i].v_samp_factor = 1;
    state.arith_code = form.arithmetic ? TRUE : FALSE;
    if (form.progressive) jpeg_simple_progression(&state);
    if (!form.adobe_marker) state.write_Adobe_marker = FALSE;
    jpeg_start_compress(&state, TRUE);
    while (state.next_scanline < state.image_height) {
        JSAMPROW row = form.samples.data() + std::size_t{state.next_scanline} * form.width *
                                                 static_cast<std::size_t>(form.components);
        jpeg_write_scanlines(&state, &row, 1);
    }
    jpeg_finish_compress(&state);
    jpeg_destroy_compress(&state);
    file_bytes file(buffer, buffer + length);
    std::free(buffer);
    return file;
}

// A TGA: its header, an ID field, and `body` as it stands.
struct tga_form {
    std::uint8_t image_type = 2;
    std::int16_t width = 1;
    std::int16_t height = 1;
    std::uint8_t depth = 32;
    file_bytes id = {};
    file_bytes body = {};
};

inline file_bytes tga_file(const tga_form& form) {
    const auto low = [](std::int16_t value) { return static_cast<std::uint8_t>(value & 0xff); };
    const auto high = [](std::int16_t value) { return static_cast<std::uint8_t>(value >> 8 & 0xff); };
    file_bytes file(18 + form.id.size() + form.body.size());
    file[0] = static_cast<std::uint8_t>(form.id.size());
    file[2] = form.image_type;
    file[12] = low(form.width);
    file[13] = high(form.width);
    file[14] = low(form.height);
    file[15] = high(form.height);
    file[16] = form.depth;
    file[17] = 0x28; // origin flag and alpha bits, which no reader looks at
    std::copy(form.body.begin(), form.body.end(),
              std::copy(form.id.begin(), form.id.end(), file.begin() + 18));
    return file;
}

// Bytes with no pattern to speak of, the same for the same `seed`.
inline file_bytes mixed_bytes(std::size_t count, std::uint32_t seed) {
    file_bytes bytes(count);
    for (std::uint8_t& byte : bytes) {
        seed = seed * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(seed >> 24);
    }
    return bytes;
}

// Hands `visit` copies of `file` that end after every byte of it, and copies with one byte changed: each byte
// in each of three ways.
template<class Visit>
void for_each_damage(const file_bytes& file, Visit visit) {
    for (std::size_t length = 0; length < file.size(); ++length)
        visit(file_bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (const unsigned change : {0xffU, 0x80U, 0x01U}) {
            file_bytes damaged = file;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ change);
            visit(damaged);
        }
    }
}
