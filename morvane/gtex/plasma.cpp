#include "morvane/gtex/plasma.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "morvane/base/kernel.h"
#include "morvane/base/numbers.h"

namespace {

// 1/74 and 1/57 as 32-bit floats; everything else here is computed in double.
constexpr float ring_pitch = 0.013513514F;
constexpr float wave_pitch = 0.01754386F;

constexpr std::int32_t row_gap = 512; // map bytes between the end of a window's row and the start of the next

// Where a window starts in its map: 256 and 144 are the middle of the room it has to move in.
std::size_t window_offset(double across, double down) {
    const std::int32_t column = 256 - trunc_to_int(across * -255);
    const std::int32_t row = 144 - trunc_to_int(down * -143);
    return static_cast<std::size_t>(row * plasma_map_columns + column);
}

// a + b, cut at 255.
constexpr std::uint8_t saturating_sum(std::uint8_t a, std::uint8_t b) {
    const auto room = static_cast<std::uint8_t>(~a);
    return static_cast<std::uint8_t>(a + (b < room ? b : room));
}

// The sum of three windows, cut at 255, all in bytes.
MORVANE_KERNEL void sum_windows(std::uint8_t* __restrict grey, const std::uint8_t* a, const std::uint8_t* b,
                                const std::uint8_t* c, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        grey[i] = saturating_sum(saturating_sum(a[i], b[i]), c[i]);
}

// The same with a shift before the cut.
MORVANE_KERNEL void sum_windows_shifted(std::uint8_t* __restrict grey, const std::uint8_t* a,
                                        const std::uint8_t* b, const std::uint8_t* c, std::size_t count,
                                        std::uint16_t shift) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto sum = static_cast<std::uint16_t>(static_cast<std::uint16_t>(a[i] + b[i] + c[i]) >> shift);
        grey[i] = static_cast<std::uint8_t>(sum < 255 ? sum : 255);
    }
}

MORVANE_KERNEL void spread_words(std::uint32_t* __restrict dst, const std::uint8_t* grey, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = grey[i] * 0x01010101U;
}

struct windows {
    const std::uint8_t *a, *b, *c;
};

// Asks for the rows that come next but one. A window takes half of each map row, and the processor's own
// prefetching doesn't look across the gap.
void prefetch_rows(std::span<const std::uint8_t> map, std::size_t offset, std::size_t width) {
    const std::size_t first = offset + 2 * (width + row_gap);
    const std::size_t end = std::min(first + width, map.size());
    for (std::size_t i = first; i < end; i += 64)
        __builtin_prefetch(&map[i]);
}

// A row of the picture, in runs that stay in the first-level cache between the two kernels.
void draw_row(std::uint32_t* dst, windows from, std::size_t count, std::uint16_t shift) {
    std::array<std::uint8_t, 1024> grey;
    for (std::size_t i = 0; i < count; i += grey.size()) {
        const std::size_t run = std::min(grey.size(), count - i);
        if (shift == 0)
            sum_windows(grey.data(), from.a + i, from.b + i, from.c + i, run);
        else
            sum_windows_shifted(grey.data(), from.a + i, from.b + i, from.c + i, run, shift);
        spread_words(dst + i, grey.data(), run);
    }
}

} // namespace

void plasma_tables_init(std::span<std::uint8_t> plasma_a, std::span<std::uint8_t> plasma_b) {
    if (plasma_a.size() < plasma_map_size || plasma_b.size() < plasma_map_size) return;
    for (std::int32_t j = 0; j < plasma_map_rows; ++j) {
        const double d1 = std::cos(j * double{ring_pitch}) * 15 + 37;
        const double y = plasma_map_rows / 2 - j;
        for (std::int32_t i = 0; i < plasma_map_columns; ++i) {
            const auto entry = static_cast<std::size_t>(j * plasma_map_columns + i);
            const double x = plasma_map_columns / 2 - i;
            plasma_a[entry] = trunc_to_byte(std::sin(std::hypot(y, x) * 0.0625) * 63 + 64);
            const double d2 = std::sin(i * double{wave_pitch}) * 11 + 31;
            plasma_b[entry] = trunc_to_byte(std::cos(j / d2) * std::sin(i / d1) * 63 + 64);
        }
    }
}

void gtex_plasma(gtex dst, std::span<const std::uint8_t> plasma_a, std::span<const std::uint8_t> plasma_b,
                 float time, std::int32_t shift) {
    if (plasma_a.size() < plasma_map_size || plasma_b.size() < plasma_map_size || dst.width <= 0) return;
    const double t = time;
    std::size_t o1 = window_offset(std::cos(t * 0.97), std::sin(t * 1.23));
    std::size_t o2 = window_offset(std::sin(-t * 1.14), std::cos(-t * 0.75));
    std::size_t o3 = window_offset(std::sin(-t * 1.37), std::cos(-t * 1.08));
    const auto places = static_cast<std::uint16_t>(std::clamp(shift, 0, 10)); // ten places empty any sum
    const auto width = static_cast<std::size_t>(dst.width);
    std::uint32_t* row = dst.pixels;
    for (std::int32_t y = 0; y < dst.height; ++y, row += width) {
        const std::size_t farthest = std::max({o1, o2, o3});
        if (farthest >= plasma_map_size) return;
        prefetch_rows(plasma_a, o1, width);
        prefetch_rows(plasma_b, o2, width);
        prefetch_rows(plasma_b, o3, width);
        draw_row(row, {&plasma_a[o1], &plasma_b[o2], &plasma_b[o3]},
                 std::min(width, plasma_map_size - farthest), places);
        o1 += width + row_gap;
        o2 += width + row_gap;
        o3 += width + row_gap;
    }
}
