#include "morvane/gtex/gtex.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "morvane/base/kernel.h"

std::int32_t frame_width = 0;
std::int32_t frame_height = 0;
std::array<std::int32_t, console_rows> frame_row{};
std::array<std::int32_t, 256> tex_row{};
gtex gtex_scratch{};

namespace {

constexpr std::int64_t most_pixels = std::int64_t{1} << 28; // a block of 1 GiB
constexpr std::size_t cache_line = 64;
constexpr std::int32_t scratch_width = 1024;
constexpr std::int32_t scratch_height = 4068;

std::size_t words(std::int32_t count) {
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

MORVANE_KERNEL void fill_words(std::uint32_t* dst, std::size_t count, std::uint32_t colour) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = colour;
}

MORVANE_KERNEL void copy_keyed_words(std::uint32_t* dst, const std::uint32_t* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = src[i] != 0 ? src[i] : dst[i];
}

} // namespace

gtex gtex_wrap(std::uint32_t* pointer, std::int32_t width, std::int32_t height) {
    if (pointer == nullptr || width <= 0 || height <= 0) return {};
    if (std::int64_t{width} * height > most_pixels) return {};
    return {.pixels = pointer,
            .bytes = reinterpret_cast<std::uint8_t*>(pointer),
            .width = width,
            .height = height,
            .count = width * height,
            .size = width * height * 4};
}

gtex gtex_create(std::int32_t width, std::int32_t height, std::uint32_t colour) {
    if (width <= 0 || height <= 0 || std::int64_t{width} * height > most_pixels) return {};
    const std::size_t bytes = words(width * height) * 4;
    const std::size_t whole_lines = (bytes + cache_line - 1) / cache_line * cache_line;
    void* block = std::aligned_alloc(cache_line, whole_lines);
    const gtex surface = gtex_wrap(static_cast<std::uint32_t*>(block), width, height);
    gtex_fill(surface, colour);
    return surface;
}

void gtex_destroy(gtex& surface) {
    std::free(surface.pixels);
    surface = {};
}

void gtex_fill(gtex dst, std::uint32_t colour) {
    fill_words(dst.pixels, words(dst.count), colour);
}

void gtex_copy(gtex dst, gtex src) {
    gtex_copy_raw(dst, src.pixels, src.count);
}

void gtex_copy_raw(gtex dst, const std::uint32_t* pointer, std::int32_t count) {
    const std::size_t run = words(std::min(count, dst.count));
    if (run == 0) return;
    const std::uintptr_t bytes_behind =
        reinterpret_cast<std::uintptr_t>(dst.pixels) - reinterpret_cast<std::uintptr_t>(pointer);
    if (bytes_behind == 0 || bytes_behind >= run * 4) {
        std::memmove(dst.pixels, pointer, run * 4);
        return;
    }
    for (std::size_t i = 0; i < run; ++i) // `dst` begins inside the source: words repeat
        dst.pixels[i] = pointer[i];
}

void gtex_copy_keyed(gtex dst, gtex src) {
    copy_keyed_words(dst.pixels, src.pixels, words(std::min(src.count, dst.count)));
}

void gtex_copy_keyed_dst(gtex dst, gtex src) {
    copy_keyed_words(dst.pixels, src.pixels, words(std::min(dst.count, src.count)));
}

void gtex_copy_rect(gtex dst, gtex src, std::int32_t x, std::int32_t y) {
    const std::int64_t first_column = std::max<std::int64_t>(0, -std::int64_t{x});
    const std::int64_t end_column = std::min<std::int64_t>(dst.width, std::int64_t{src.width} - x);
    const std::int64_t first_row = std::max<std::int64_t>(0, -std::int64_t{y});
    const std::int64_t end_row = std::min<std::int64_t>(dst.height, std::int64_t{src.height} - y);
    if (first_column >= end_column) return;
    const std::size_t run = static_cast<std::size_t>(end_column - first_column) * 4;
    for (std::int64_t row = first_row; row < end_row; ++row)
        std::memmove(dst.pixels + row * dst.width + first_column,
                     src.pixels + (row + y) * src.width + first_column + x, run);
}

void gtex_flip(gtex dst) {
    if (dst.count <= 0 || dst.count > gtex_scratch.count) return;
    gtex_copy(gtex_scratch, dst);
    for (std::int32_t y = 0; y < dst.height; ++y)
        std::memcpy(dst.pixels + (dst.height - 1 - y) * dst.width, gtex_scratch.pixels + y * dst.width,
                    words(dst.width) * 4);
}

void gtex_present(gtex screen, gtex src) {
    constexpr std::int32_t last_row = frame_pixels - frame_columns;
    fill_words(src.pixels, words(std::min(src.width, src.count)), 0);
    if (src.count > last_row)
        fill_words(src.pixels + last_row, words(std::min(src.width, src.count - last_row)), 0);
    const gtex below_letterbox{.pixels = screen.pixels + letterbox_rows * frame_columns,
                               .count = frame_pixels};
    gtex_copy(below_letterbox, src);
}

void frame_tables_init() {
    for (std::size_t y = 0; y < frame_row.size(); ++y)
        frame_row[y] = static_cast<std::int32_t>(y) * frame_columns;
    for (std::size_t y = 0; y < tex_row.size(); ++y)
        tex_row[y] = static_cast<std::int32_t>(y) * 256;
    if (gtex_scratch.pixels == nullptr) gtex_scratch = gtex_create(scratch_width, scratch_height, 0xffffff);
}
