#include "morvane/gtex/patterns.h"

#include <algorithm>
#include <cmath>

#include "morvane/base/numbers.h"

namespace {

// Gives each pixel the word that `formula` makes of its column and row.
template<typename Formula>
void draw(gtex dst, Formula formula) {
    const auto width = static_cast<std::uint32_t>(std::max(0, dst.width));
    const auto height = static_cast<std::uint32_t>(std::max(0, dst.height));
    std::uint32_t* pixel = dst.pixels;
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            *pixel++ = formula(x, y);
}

std::uint32_t dimmed(std::uint32_t channel, float amount) {
    return trunc_to_byte(static_cast<float>(channel) * amount);
}

} // namespace

void gtex_radial(gtex dst, std::uint32_t colour) {
    const float cx = static_cast<float>(dst.width) * 0.5F;
    const float cy = static_cast<float>(dst.height) * 0.5F;
    const std::uint32_t r = (colour >> 16) & 255;
    const std::uint32_t g = (colour >> 8) & 255;
    const std::uint32_t b = colour & 255;
    draw(dst, [=](std::uint32_t x, std::uint32_t y) {
        const float dx = (static_cast<float>(x) - cx) / cx;
        const float dy = (static_cast<float>(y) - cy) / cy;
        const float amount = std::max(0.0F, 1.0F - std::sqrt(dx * dx + dy * dy));
        return dimmed(r, amount) << 16 | dimmed(g, amount) << 8 | dimmed(b, amount);
    });
}

void gtex_pattern_blue(gtex dst, std::uint32_t mask) {
    draw(dst, [=](std::uint32_t x, std::uint32_t y) { return (y & mask) ^ ((255 - mask) & x); });
}

void gtex_pattern_green(gtex dst, std::uint32_t mask) {
    draw(dst, [=](std::uint32_t x, std::uint32_t y) {
        return ((y & mask) << 8) ^ ((0xff00 - mask * 256) & (x << 8));
    });
}

void gtex_pattern_red(gtex dst, std::uint32_t mask) {
    draw(dst, [=](std::uint32_t x, std::uint32_t y) { return ((x ^ y) & mask) << 16; });
}

void gtex_pattern_product(gtex dst, std::uint32_t key) {
    draw(dst, [=](std::uint32_t x, std::uint32_t y) { return (x ^ key) * (y ^ key); });
}
