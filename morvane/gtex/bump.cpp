#include "morvane/gtex/bump.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "morvane/base/kernel.h"
#include "morvane/base/numbers.h"

std::array<std::array<std::uint8_t, 256>, 256> bump_light{};

namespace {

constexpr std::size_t map_columns = bump_map_columns;
using map_row = std::span<const std::uint8_t, map_columns>;
using light_row = std::array<std::int32_t, map_columns>;

// `bump_light` with a dark border, on which all lie that look beyond the table: no test for each pixel.
constexpr std::int32_t border = 256;
std::array<std::array<std::uint8_t, 258>, 258> bordered_light{};

// What the light adds to each pixel of a row.
void light_of(light_row& light, map_row above, map_row here, map_row below, std::int32_t lx,
              std::int32_t ly) {
    // At a distance of 1000 no slope reaches the table any more.
    const std::int32_t column_of_light = std::clamp(lx, -1000, 1000) + 128;
    const std::int32_t row_of_light = std::clamp(ly, -1000, 1000) + 128;
    for (std::size_t x = 0; x < map_columns; ++x) {
        const int gx = here[std::min(x + 1, map_columns - 1)] - here[x - (x > 0)];
        const int gy = below[x] - above[x];
        const auto column = static_cast<std::size_t>(std::clamp(column_of_light + gx, -1, border) + 1);
        const auto row = static_cast<std::size_t>(std::clamp(row_of_light + gy, -1, border) + 1);
        light[x] = bordered_light[row][column] - 224;
    }
}

MORVANE_KERNEL void lit_words(std::uint32_t* dst, const std::uint32_t* src, const light_row& light,
                              std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t sum = 0;
        for (int shift = 0; shift < 24; shift += 8) {
            const std::int32_t channel = static_cast<std::int32_t>((src[i] >> shift) & 255) + light[i];
            sum |= static_cast<std::uint32_t>(std::clamp(channel, 0, 255)) << shift;
        }
        dst[i] = sum;
    }
}

} // namespace

void bump_table_init() {
    for (std::size_t i = 0; i < 256; ++i)
        for (std::size_t j = 0; j < 256; ++j) {
            const double di = static_cast<double>(i) - 128;
            const double dj = static_cast<double>(j) - 128;
            bump_light[i][j] = bordered_light[i + 1][j + 1] =
                trunc_to_byte(255 * std::max(0.0, 1 - std::sqrt(di * di + dj * dj) / 128));
        }
}

void gtex_bump(gtex dst, std::span<const std::uint8_t> height, gtex src, std::int32_t lx, std::int32_t ly) {
    const std::size_t map_rows = height.size() / map_columns;
    const std::int32_t columns = std::min({dst.width, src.width, bump_map_columns});
    const std::int32_t rows = std::min(dst.height, src.height);
    if (columns <= 0) return;
    const auto row_of_map = [&](std::size_t y) {
        return height.subspan(y * map_columns).first<map_columns>();
    };
    std::uint32_t* out = dst.pixels;
    const std::uint32_t* in = src.pixels;
    for (std::size_t y = 0; y < map_rows && static_cast<std::int64_t>(y) < rows; ++y) {
        light_row light;
        light_of(light, row_of_map(y - (y > 0)), row_of_map(y), row_of_map(std::min(y + 1, map_rows - 1)), lx,
                 ly);
        lit_words(out, in, light, static_cast<std::size_t>(columns));
        out += dst.width;
        in += src.width;
    }
}
