#include "show/score/closing_routines.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "morvane/base/numbers.h"
#include "morvane/gtex/gtex.h"

std::array<std::int32_t, warp_entries> warp_cos;
std::array<std::int32_t, warp_entries> warp_sin_a;
std::array<std::int32_t, warp_entries> warp_sin_b;
std::int32_t warp_phase_a, warp_phase_b, warp_phase_c;
std::array<std::array<std::uint32_t, 256>, 256> mix_table;

namespace {

constexpr std::uint32_t bits(std::int32_t value) {
    return static_cast<std::uint32_t>(value);
}

constexpr std::int32_t wrapped(std::uint32_t value) {
    return static_cast<std::int32_t>(value);
}

std::int32_t entry(const std::array<std::int32_t, warp_entries>& table, std::uint32_t index) {
    return table[index % warp_entries];
}

struct place {
    std::int32_t x, y;
};

// Where the pixel at (x, y) is taken from, held to a surface of the given size.
place displaced(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    const std::uint32_t a = bits(warp_phase_a), b = bits(warp_phase_b), c = bits(warp_phase_c);
    const std::uint32_t column = bits(x), row = bits(y);
    const std::int64_t new_x =
        std::int64_t{entry(warp_cos, b + (column + row * 2) * 3)} + entry(warp_sin_a, a + column * 2) + x;
    const std::int64_t new_y =
        std::int64_t{entry(warp_sin_b, c + (column + row) * 2)} + entry(warp_sin_a, b - column + row) + y;
    return {static_cast<std::int32_t>(std::clamp<std::int64_t>(new_x, 0, width - 1)),
            static_cast<std::int32_t>(std::clamp<std::int64_t>(new_y, 0, height - 1))};
}

bool in_stretch(std::span<const float> bounds, int i, float t) {
    if (i < 0 || static_cast<std::size_t>(i) + 1 >= bounds.size()) return false;
    const auto at = static_cast<std::size_t>(i);
    return bounds[at] <= t && t < bounds[at + 1];
}

} // namespace

bool in_part(int i, float t) {
    return in_stretch(part_times, i, t);
}

bool in_beat(int i, float t) {
    return in_stretch(beat_times, i, t);
}

void warp_tables_init() {
    for (std::size_t i = 0; i < warp_entries; ++i) {
        const auto step = static_cast<double>(i);
        warp_cos[i] = trunc_to_int(std::cos(step * 0.0122718463047) * 10);
        warp_sin_a[i] = trunc_to_int(std::sin(step * 0.0245436926094) * 8);
        warp_sin_b[i] = trunc_to_int(std::sin(step * 0.00613592315234) * 12);
    }
}

void warp_step() {
    warp_phase_a = wrapped(bits(warp_phase_a) + 1);
    warp_phase_b = wrapped(bits(warp_phase_b) - 1);
    warp_phase_c = wrapped(bits(warp_phase_c) + 1);
}

std::int32_t warp_index(std::int32_t x, std::int32_t y) {
    const place from = displaced(x, y, frame_columns, frame_rows);
    return frame_row[static_cast<std::size_t>(from.y)] + from.x;
}

std::int32_t warp_index_256(std::int32_t x, std::int32_t y) {
    const place from = displaced(x, y, 256, 256);
    return from.y * 256 + from.x;
}

void mix_table_init(float a, float b) {
    for (std::size_t j = 0; j < 256; ++j)
        for (std::size_t i = 0; i < 256; ++i)
            mix_table[j][i] = bits(trunc_to_int(static_cast<double>(i) * static_cast<double>(a) +
                                                static_cast<double>(j) * static_cast<double>(b)));
}

std::uint32_t mix_colours(std::uint32_t p, std::uint32_t q) {
    std::uint32_t mixed = 0;
    for (const int shift : {16, 8, 0})
        mixed |= (mix_table[(q >> shift) & 255][(p >> shift) & 255] & 255) << shift;
    return mixed;
}
