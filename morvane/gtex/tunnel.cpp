#include "morvane/gtex/tunnel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "morvane/base/kernel.h"
#include "morvane/base/numbers.h"
#include "morvane/gtex/inner/gather.h"
#include "morvane/gtex/wobble.h"

tunnel_table tun_angle{};
tunnel_table tun_dist{};
tunnel_table tun_warp{};

namespace {

constexpr std::size_t columns = frame_columns;
constexpr std::size_t rows = frame_rows;

// The same tables row by row, so that a row of the frame reads them in one straight run.
tunnel_table angle_rows{};
tunnel_table dist_rows{};
tunnel_table warp_rows{};

// What both coordinates of a texture move by; only their low bytes count.
struct tunnel_shift {
    std::uint8_t along;
    std::uint8_t around;

    tunnel_shift(std::int32_t a, std::int32_t b)
        : along(static_cast<std::uint8_t>(static_cast<std::uint32_t>(a) & 255)),
          around(static_cast<std::uint8_t>(static_cast<std::uint32_t>(b) & 255)) {}
};

// The texture as it is looked up: 256 by 256, in each row the order of the 16 blocks of 16 words turned
// around by an exclusive or with the row's low bits. Neighbours on the screen mostly lie in neighbouring rows
// of the texture; straight rows of a power of two would make them compete for the same lines of the
// first-level cache.
alignas(64) std::array<std::uint32_t, 256 * 256> texture;
constexpr std::size_t block_length = 16;

constexpr std::uint32_t place_of(std::uint32_t u, std::uint32_t v) {
    return (v << 8 | u) ^ ((v & 15) * block_length);
}

void take_texture(const std::uint32_t* pixels, std::size_t stride) {
    for (std::uint32_t v = 0; v < 256; ++v)
        for (std::uint32_t u = 0; u < 256; u += block_length)
            std::memcpy(&texture[place_of(u, v)], pixels + v * stride + u, block_length * sizeof *pixels);
}

MORVANE_KERNEL void texture_places(std::uint16_t* __restrict places, const std::uint8_t* depth,
                                   const std::uint8_t* angle, std::size_t count, std::uint8_t along,
                                   std::uint8_t around) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto v = static_cast<std::uint8_t>(depth[i] + along);
        const auto u = static_cast<std::uint8_t>(angle[i] + around);
        places[i] = static_cast<std::uint16_t>(place_of(u, v));
    }
}

// Draws row `y` of the frame from row `table_row` of the tables, as far as `dst` reaches.
void draw_row(gtex dst, std::int32_t y, const tunnel_table& depth, std::int32_t table_row,
              tunnel_shift shift) {
    const std::int32_t start = y * frame_columns;
    const std::int32_t reach = std::min({dst.width, frame_columns, dst.count - start});
    if (reach <= 0) return;
    const auto count = static_cast<std::size_t>(reach);
    const std::size_t entry = static_cast<std::size_t>(table_row) * columns;
    std::array<std::uint16_t, columns> places;
    texture_places(places.data(), &depth[entry], &angle_rows[entry], count, shift.along, shift.around);
    gather_words(dst.pixels + start, texture.data(), places.data(), count);
}

void draw(gtex dst, gtex src, const tunnel_table& depth, tunnel_shift shift) {
    if (src.width < 256 || src.height < 256) return;
    take_texture(src.pixels, static_cast<std::size_t>(src.width));
    for (std::int32_t y = 0; y < std::min(dst.height, frame_rows); ++y)
        draw_row(dst, y, depth, y, shift);
}

void draw_half(gtex dst, gtex src, const tunnel_table& depth, std::int32_t parity, tunnel_shift shift) {
    if (src.count < 256 * 256) return;
    take_texture(src.pixels, 256);
    for (std::int32_t r = 0; r < std::min(dst.height, frame_rows) / 2; ++r)
        draw_row(dst, 2 * r + parity, depth, 2 * r, shift);
}

void fill_entry(std::size_t column, std::size_t row) {
    const double x = static_cast<double>(column) - frame_columns / 2;
    const double y = static_cast<double>(row) - frame_rows / 2;
    const std::uint8_t angle = trunc_to_byte(std::atan2(y, x) * 81.646484375);
    const std::uint8_t dist = trunc_to_byte(std::sqrt(x * x + y * y));
    const double d = std::bit_cast<std::int8_t>(dist);
    const std::uint8_t warp = trunc_to_byte(std::sin(d * 0.0200625) * 256 + d);
    const std::size_t by_columns = column * rows + row;
    const std::size_t by_rows = row * columns + column;
    tun_angle[by_columns] = angle_rows[by_rows] = angle;
    tun_dist[by_columns] = dist_rows[by_rows] = dist;
    tun_warp[by_columns] = warp_rows[by_rows] = warp;
}

} // namespace

void tunnel_tables_init() {
    wobble_tables_init();
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row)
            fill_entry(column, row);
}

void gtex_tunnel(gtex dst, gtex src, std::int32_t a, std::int32_t b) {
    draw(dst, src, dist_rows, {a, b});
}

void gtex_tunnel_warp(gtex dst, gtex src, std::int32_t a, std::int32_t b) {
    draw(dst, src, warp_rows, {a, b});
}

void gtex_tunnel_even(gtex dst, gtex src, std::int32_t a, std::int32_t b) {
    draw_half(dst, src, warp_rows, 0, {a, b});
}

void gtex_tunnel_odd(gtex dst, gtex src, std::int32_t a, std::int32_t b) {
    draw_half(dst, src, dist_rows, 1, {a, b});
}
