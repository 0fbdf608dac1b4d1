// The box blurs of filters.h.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "morvane/base/kernel.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/inner/blur_run.h"

namespace {

using word = std::uint32_t;

std::int32_t limited(std::int32_t n) {
    return std::clamp(n, 0, blur_largest_n);
}

// What a blur reads: `src`, or a copy in the scratch surface where it would write to what it still has to
// read. An empty record if that can't be had.
gtex apart_from(gtex dst, gtex src) {
    if (dst.pixels != src.pixels) return src;
    if (src.count > gtex_scratch.count) return {};
    gtex_copy(gtex_scratch, src);
    src.pixels = gtex_scratch.pixels;
    return src;
}

// Blurs the results at `first` to `end` - 1 of `src` and writes them `offset` further on, without the first
// and the last row of `dst`.
void blur_span(gtex dst, gtex src, std::int64_t first, std::int64_t end, std::int64_t offset,
               std::int32_t n) {
    static const blur_kernel blur_run = blur_run_versions().back();
    first = std::max<std::int64_t>(first, dst.width - offset);
    end = std::min<std::int64_t>({end, src.count, std::int64_t{dst.count} - dst.width - offset});
    if (first < end)
        blur_run(dst.pixels + first + offset, src.pixels + first, static_cast<std::size_t>(end - first), n);
}

// All rows, `offset` being what the column adds to a result's place.
void blur_rows(gtex dst, gtex src, std::int32_t offset, std::int32_t oy, std::int32_t n) {
    src = apart_from(dst, src);
    const std::int64_t to_place = std::int64_t{oy} * frame_columns + offset;
    const std::int64_t first_row = std::max<std::int64_t>(1, -std::int64_t{oy});
    const std::int64_t end_row =
        std::min<std::int64_t>({dst.height - 1, console_rows, std::int64_t{console_rows} - oy});
    if (first_row >= end_row) return;
    if (dst.width >= frame_columns) { // the rows join up
        blur_span(dst, src, first_row * frame_columns, (end_row - 1) * frame_columns + dst.width, to_place,
                  n);
        return;
    }
    for (std::int64_t y = first_row; y < end_row; ++y)
        blur_span(dst, src, y * frame_columns, y * frame_columns + dst.width, to_place, n);
}

// The running sums of a strip of columns.
constexpr std::int32_t strip_columns = 256;
template<typename Entry>
using strip = std::array<Entry, strip_columns>;
struct column_sums {
    strip<std::int32_t> r, g, b;
};

MORVANE_KERNEL void start_sums(column_sums& sums, const word* row, std::size_t count, std::int32_t times) {
    for (std::size_t i = 0; i < count; ++i) {
        sums.r[i] = static_cast<std::int32_t>((row[i] >> 16) & 255) * times;
        sums.g[i] = static_cast<std::int32_t>((row[i] >> 8) & 255) * times;
        sums.b[i] = static_cast<std::int32_t>(row[i] & 255) * times;
    }
}

// Adds a row, writes the means, takes the oldest row off.
MORVANE_KERNEL void blur_row(word* __restrict out, column_sums& __restrict sums, const word* entering,
                             const word* leaving, std::size_t count, float factor) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t r = sums.r[i] + static_cast<std::int32_t>((entering[i] >> 16) & 255);
        const std::int32_t g = sums.g[i] + static_cast<std::int32_t>((entering[i] >> 8) & 255);
        const std::int32_t b = sums.b[i] + static_cast<std::int32_t>(entering[i] & 255);
        out[i] = box_mean(r, factor) << 16 | box_mean(g, factor) << 8 | box_mean(b, factor);
        sums.r[i] = r - static_cast<std::int32_t>((leaving[i] >> 16) & 255);
        sums.g[i] = g - static_cast<std::int32_t>((leaving[i] >> 8) & 255);
        sums.b[i] = b - static_cast<std::int32_t>(leaving[i] & 255);
    }
}

// Columns x to x + count - 1 of all rows; `offset` from a result's pixel to its place.
void blur_strip(gtex dst, gtex src, std::int32_t x, std::size_t count, std::int64_t offset, std::int32_t n) {
    const float factor = box_factor(n + 1);
    const std::int64_t width = dst.width;
    const std::int64_t height = std::min<std::int64_t>(dst.height, src.count / dst.width);
    if (height <= 0) return;
    const word* const top = src.pixels + x;
    column_sums sums;
    strip<word> means;
    start_sums(sums, top, count, n); // the first row repeats above the surface
    for (std::int64_t y = 0; y < height; ++y) {
        const word* const oldest = top + std::max<std::int64_t>(0, y - n) * width;
        blur_row(means.data(), sums, top + y * width, oldest, count, factor);

        const std::int64_t place = y * width + x + offset;
        const std::int64_t first = std::max<std::int64_t>(place, 0);
        const std::int64_t end = std::min<std::int64_t>(place + static_cast<std::int64_t>(count), dst.count);
        if (first < end)
            std::memcpy(dst.pixels + first, means.data() + (first - place),
                        static_cast<std::size_t>(end - first) * 4);
    }
}

} // namespace

void gtex_blur_h(gtex dst, gtex src, std::int32_t n) {
    n = limited(n);
    blur_rows(dst, src, -(n / 2), 0, n);
}

void gtex_blur_h_at(gtex dst, gtex src, std::int32_t ox, std::int32_t oy, std::int32_t n) {
    blur_rows(dst, src, ox, oy, limited(n));
}

void gtex_blur_v_at(gtex dst, gtex src, std::int32_t ox, std::int32_t oy, std::int32_t n) {
    src = apart_from(dst, src);
    if (dst.count <= 0 || src.count <= 0) return;
    const std::int64_t offset = std::int64_t{oy} * dst.width + ox;
    for (std::int32_t x = 1; x < dst.width - 1; x += strip_columns) {
        const std::int32_t count = std::min(strip_columns, dst.width - 1 - x);
        blur_strip(dst, src, x, static_cast<std::size_t>(count), offset, limited(n));
    }
}
