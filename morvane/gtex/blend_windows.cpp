#include "morvane/gtex/blend_windows.h"

#include <algorithm>

#include "morvane/gtex/pixel.h"

namespace {

// One row of a source as seen through a window: `dst` column x reads the source's column x + offset.
struct window_row {
    const std::uint32_t* pixels = nullptr; // null when the row lies outside
    std::int64_t offset = 0;
    std::int64_t width = 0;

    std::uint32_t at(std::int32_t x) const {
        const std::int64_t column = x + offset;
        return pixels != nullptr && column >= 0 && column < width ? pixels[column] : 0;
    }
};

window_row row_of(gtex source, std::int32_t x, std::int64_t y) {
    if (y < 0 || y >= source.height) return {};
    return {.pixels = source.pixels + y * source.width, .offset = x, .width = source.width};
}

} // namespace

void gtex_xor_windows(gtex dst, gtex a, std::int32_t ax, std::int32_t ay, gtex b, std::int32_t bx,
                      std::int32_t by) {
    for (std::int32_t y = 0; y < dst.height; ++y) {
        const window_row from_a = row_of(a, ax, std::int64_t{y} + ay);
        const window_row from_b = row_of(b, bx, std::int64_t{y} + by);
        std::uint32_t* out = dst.pixels + y * dst.width;
        for (std::int32_t x = 0; x < dst.width; ++x)
            out[x] = from_a.at(x) ^ from_b.at(x);
    }
}

void gtex_channels_windows(gtex dst, gtex a, std::int32_t ax, std::int32_t ay, gtex b, std::int32_t bx,
                           std::int32_t by, gtex c, std::int32_t cx, std::int32_t cy) {
    for (std::int32_t y = 0; y < dst.height; ++y) {
        const window_row red = row_of(a, ax, std::int64_t{y} + ay);
        const window_row green = row_of(b, bx, std::int64_t{y} + by);
        const window_row blue = row_of(c, cx, std::int64_t{y} + cy);
        std::uint32_t* out = dst.pixels + y * dst.width;
        for (std::int32_t x = 0; x < dst.width; ++x)
            out[x] = (red.at(x) & 0xff0000) | (green.at(x) & 0xff00) | (blue.at(x) & 0xff);
    }
}

void gtex_negate_region(gtex dst, gtex src, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                        std::int32_t y1) {
    const std::int32_t left = std::max(x0, 0);
    const std::int32_t top = std::max(y0, 0);
    const std::int32_t right = std::min({x1, dst.width, src.width});
    const std::int32_t bottom = std::min({y1, dst.height, src.height});
    for (std::int32_t y = top; y < bottom; ++y) {
        std::uint32_t* out = dst.pixels + y * dst.width;
        const std::uint32_t* in = src.pixels + y * src.width;
        for (std::int32_t x = left; x < right; ++x)
            out[x] = ~in[x] & colours;
    }
}
