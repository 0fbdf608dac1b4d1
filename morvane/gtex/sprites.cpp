#include "morvane/gtex/sprites.h"

#include <algorithm>

#include "morvane/base/random.h"
#include "morvane/gtex/pixel.h"

namespace {

constexpr std::int32_t blit_rows = 2048; // the clip test of the blits lets this many rows through

// Calls `plot(dst pixel, sprite pixel)` for every pixel of the sprite that passes `in_rect(.., 512, rows)`
// and lies on `dst`, row by row.
template<typename Plot>
void plot_inside(gtex dst, gtex sprite, std::int32_t x, std::int32_t y, std::int32_t rows, Plot plot) {
    const std::int64_t rows_of_dst = (std::int64_t{dst.count} + frame_columns - 1) / frame_columns;
    const std::int64_t first_row = std::max<std::int64_t>(0, 1 - std::int64_t{y});
    const std::int64_t end_row =
        std::min<std::int64_t>(sprite.height, std::min<std::int64_t>(rows, rows_of_dst) - y);
    const std::int64_t first_column = std::max<std::int64_t>(0, 1 - std::int64_t{x});
    for (std::int64_t j = first_row; j < end_row; ++j) {
        const std::int64_t row = (y + j) * frame_columns;
        const std::int64_t columns = std::min<std::int64_t>(frame_columns, dst.count - row);
        const std::int64_t end_column = std::min<std::int64_t>(sprite.width, columns - x);
        std::uint32_t* out = dst.pixels + row;
        const std::uint32_t* in = sprite.pixels + j * sprite.width;
        for (std::int64_t i = first_column; i < end_column; ++i)
            plot(out[x + i], in[i]);
    }
}

void add_word(std::uint32_t& pixel, std::uint32_t colour) {
    pixel = add_bytes_saturating(pixel, colour);
}

} // namespace

void gtex_add_sprite(gtex dst, gtex sprite, std::int32_t x, std::int32_t y) {
    plot_inside(dst, sprite, x, y, frame_rows, add_word);
}

void gtex_blit(gtex dst, gtex sprite, std::int32_t x, std::int32_t y) {
    plot_inside(dst, sprite, x, y, blit_rows,
                [](std::uint32_t& pixel, std::uint32_t colour) { pixel = colour; });
}

void gtex_add_blit(gtex dst, gtex sprite, std::int32_t x, std::int32_t y) {
    plot_inside(dst, sprite, x, y, blit_rows, add_word);
}

void gtex_copy_jitter(gtex dst, gtex src, std::int32_t range) {
    const std::int32_t span = std::max(range, 1);
    for (std::int32_t j = 0; j < src.height; ++j) {
        const std::int32_t shift = random_next() % span - range / 2;
        const gtex row = gtex_wrap(src.pixels + j * src.width, src.width, 1);
        plot_inside(dst, row, shift, j, frame_rows, [](std::uint32_t& pixel, std::uint32_t colour) {
            if (colour != 0) pixel = colour;
        });
    }
}
