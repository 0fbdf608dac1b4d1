// Operators that look at the whole source word first, and the single pixels that they are built of.
#include <algorithm>
#include <cstddef>

#include "morvane/base/kernel.h"
#include "morvane/gtex/blend.h"
#include "morvane/gtex/pixel.h"

namespace {

using word = std::uint32_t;

std::size_t bound(gtex dst, gtex src) {
    return static_cast<std::size_t>(std::max(0, std::min(dst.count, src.count)));
}

MORVANE_KERNEL void add_keyed_words(word* dst, const word* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const word sum = add_bytes_saturating(dst[i] & colours, src[i] & colours);
        dst[i] = src[i] != 0 ? sum : dst[i];
    }
}

// The mask drops each channel's lowest bit, so that no sum spills into its neighbour.
MORVANE_KERNEL void average_keyed_words(word* dst, const word* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const word mean = ((dst[i] & 0xfefefe) + (src[i] & 0xfefefe)) >> 1;
        dst[i] = src[i] != 0 ? mean : dst[i];
    }
}

// The low byte of `channel` plus `value`, limited to a byte.
word added(word channel, std::int32_t value) {
    return static_cast<word>(std::clamp<std::int64_t>(std::int64_t{channel & 255} + value, 0, 255));
}

} // namespace

void gtex_add_keyed(gtex dst, gtex src) {
    add_keyed_words(dst.pixels, src.pixels, bound(dst, src));
}

void gtex_average_keyed(gtex dst, gtex src) {
    average_keyed_words(dst.pixels, src.pixels, bound(dst, src));
}

void pixel_add(gtex dst, std::int32_t index, std::int32_t red, std::int32_t green, std::int32_t blue) {
    if (index < 0 || index >= dst.count) return;
    word& pixel = dst.pixels[index];
    pixel = added(pixel >> 16, red) << 16 | added(pixel >> 8, green) << 8 | added(pixel, blue);
}

void pixel_add_packed(gtex dst, std::int32_t index, std::uint32_t colour) {
    if (index < 0 || index >= dst.count) return;
    dst.pixels[index] = add_bytes_saturating(dst.pixels[index], colour);
}

void pixel_add_xy(gtex dst, std::int32_t x, std::int32_t y, std::uint32_t colour) {
    if (y < 0 || y >= console_rows) return;
    const std::int64_t index = std::int64_t{frame_row[static_cast<std::size_t>(y)]} + x;
    if (index < 0 || index >= dst.count) return;
    pixel_add_packed(dst, static_cast<std::int32_t>(index), colour);
}
