#include "morvane/gtex/wobble.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "morvane/base/kernel.h"
#include "morvane/base/numbers.h"
#include "morvane/gtex/inner/gather.h"

std::array<std::int8_t, 256> wob_sin8{};
std::array<std::int8_t, 256> wob_cos4{};
std::array<std::int8_t, 256> wob_sin32{};
std::array<std::int8_t, 256> wob_cos16{};
std::array<std::array<std::int8_t, wobble_amplitudes>, 256> wob_sin_amp{};
std::array<std::array<std::int8_t, wobble_amplitudes>, 256> wob_cos_amp{};
std::int32_t wob_phase_a = 0;
std::int32_t wob_phase_b = 0;

namespace {

constexpr float angle_step = 0.024639944F;
constexpr auto band_size = static_cast<std::int32_t>(band_rows);

// How far a pixel's source lies from its own place, in pixels of the flat run: a part that depends on the
// column and a part that depends on the row, each with the period 256.
struct displacement {
    std::array<std::int32_t, 256> by_column;
    std::array<std::int32_t, 256> by_row;
};

std::int8_t entry(float value) {
    return static_cast<std::int8_t>(trunc_to_int(value));
}

std::int32_t rows(std::int32_t count) {
    return count * frame_columns;
}

std::int32_t moved(std::int32_t phase, std::uint32_t step) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(phase) + step);
}

// False for an unknown mode.
bool displacement_of(std::int32_t mode, std::size_t amplitude, displacement& d) {
    if (mode < 0 || mode > 2) return false;
    for (std::size_t k = 0; k < 256; ++k) {
        const std::size_t a = (k + static_cast<std::uint32_t>(wob_phase_a)) & 255;
        const std::size_t b = (k + static_cast<std::uint32_t>(wob_phase_b)) & 255;
        if (mode == 2) {
            d.by_column[k] = rows(wob_sin_amp[a][amplitude]) + wob_sin_amp[b][amplitude];
            d.by_row[k] = rows(wob_sin_amp[b][amplitude]) + wob_cos_amp[a][amplitude];
        } else if (mode == 1) {
            d.by_column[k] = wob_sin32[b] - rows(wob_sin32[a]);
            d.by_row[k] = rows(wob_sin32[b]) + wob_cos16[a];
        } else {
            d.by_column[k] =
                rows(wob_sin8[a]) + wob_sin8[b] - rows(16); // not balanced: the picture sits lower
            d.by_row[k] = rows(wob_sin8[b]) + wob_cos4[a];
        }
    }
    return true;
}

MORVANE_KERNEL void clamp_places(std::uint32_t* __restrict clamped, const std::uint32_t* __restrict places,
                                 std::size_t count, std::int32_t start, std::int32_t last) {
    for (std::size_t i = 0; i < count; ++i)
        clamped[i] =
            static_cast<std::uint32_t>(std::clamp(start + static_cast<std::int32_t>(places[i]), 0, last));
}

// What all rows of a run of columns share.
struct column_run {
    std::size_t x, count;
    gather_places places;  // where the sources lie, counted from the nearest one
    std::int32_t nearest;  // of the sources, counted from the row's own displaced start
    std::int32_t farthest; // likewise

    column_run(const displacement& shift, std::size_t first, std::size_t length) : x(first), count(length) {
        std::array<std::int32_t, gather_run> sources{};
        for (std::size_t i = 0; i < count; ++i)
            sources[i] = static_cast<std::int32_t>(x + i) + shift.by_column[(x + i) & 255];
        const auto [low, high] = std::minmax_element(sources.begin(), sources.begin() + length);
        nearest = *low;
        farthest = *high;
        for (std::size_t i = 0; i < count; ++i)
            places[i] = static_cast<std::uint32_t>(sources[i] - nearest);
    }
};

// Draws the columns of `run` in all rows; `last` is the last pixel that may be read.
void draw_run(gtex dst, gtex src, const displacement& shift, const column_run& run, std::int32_t last) {
    const auto start_of = [&](std::int32_t y) {
        return y * dst.width + shift.by_row[static_cast<std::size_t>(y) & 255] + run.nearest;
    };
    const std::int32_t highest_start = last - (run.farthest - run.nearest);
    const auto is_inside = [&](std::int32_t y) { return start_of(y) >= 0 && start_of(y) <= highest_start; };
    const auto width = static_cast<std::size_t>(dst.width);
    std::uint32_t* row = dst.pixels + run.x;
    for (std::int32_t y = 0; y < dst.height;) {
        std::int32_t inside = 0;
        while (dst.width == frame_columns && inside < band_size && y + inside < dst.height &&
               is_inside(y + inside))
            ++inside;
        if (inside == band_size) {
            band_sources sources;
            for (std::size_t r = 0; r < band_rows; ++r)
                sources[r] = src.pixels + start_of(y + static_cast<std::int32_t>(r));
            gather_band(row, sources, run.places, run.count);
            row += band_rows * width;
            y += band_size;
        } else {
            gather_places clamped;
            clamp_places(clamped.data(), run.places.data(), run.count, start_of(y), last);
            gather_words(row, src.pixels, clamped.data(), run.count);
            row += width;
            ++y;
        }
    }
}

} // namespace

void wobble_tables_init() {
    // In 32-bit floats throughout: entry 255 then equals entry 0.
    for (std::size_t i = 0; i < 256; ++i) {
        const float angle = static_cast<float>(i) * angle_step;
        const float s = std::sin(angle);
        const float c = std::cos(angle);
        wob_sin8[i] = entry(s * 8);
        wob_cos4[i] = entry(c * 4);
        wob_sin32[i] = entry(s * 32);
        wob_cos16[i] = entry(c * 16);
        for (std::size_t a = 0; a < wobble_amplitudes; ++a) {
            wob_sin_amp[i][a] = entry(s * static_cast<float>(a) * 1.5F);
            wob_cos_amp[i][a] = entry(c * static_cast<float>(a) * 0.5F);
        }
    }
}

void gtex_wobble(gtex dst, gtex src, std::int32_t mode, std::int32_t amplitude) {
    wob_phase_a = moved(wob_phase_a, 2);
    wob_phase_b = moved(wob_phase_b, ~0U);
    const std::int32_t last = std::min(dst.count, src.count) - 1;
    displacement shift;
    if (last < 0 || !displacement_of(mode, static_cast<std::size_t>(std::clamp(amplitude, 0, 63)), shift))
        return;

    const auto width = static_cast<std::size_t>(dst.width);
    for (std::size_t x = 0; x < width; x += gather_run)
        draw_run(dst, src, shift, column_run(shift, x, std::min(gather_run, width - x)), last);
}
