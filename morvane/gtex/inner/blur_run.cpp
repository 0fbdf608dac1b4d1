#include "morvane/gtex/inner/blur_run.h"

namespace {

using word = std::uint32_t;

struct channel_sums {
    std::int32_t r = 0, g = 0, b = 0;

    void add(word pixel) {
        r += static_cast<std::int32_t>((pixel >> 16) & 255);
        g += static_cast<std::int32_t>((pixel >> 8) & 255);
        b += static_cast<std::int32_t>(pixel & 255);
    }
    void take_off(word pixel) {
        r -= static_cast<std::int32_t>((pixel >> 16) & 255);
        g -= static_cast<std::int32_t>((pixel >> 8) & 255);
        b -= static_cast<std::int32_t>(pixel & 255);
    }
};

// The sums over the n pixels before `in`.
channel_sums sums_before(const word* in, std::int32_t n) {
    channel_sums sums;
    for (const word* pixel = in - n; pixel != in; ++pixel)
        sums.add(*pixel);
    return sums;
}

} // namespace

void blur_run_plain(word* out, const word* in, std::size_t count, std::int32_t n) {
    const float factor = box_factor(n + 1);
    channel_sums sums = sums_before(in, n);
    for (std::size_t i = 0; i < count; ++i) {
        sums.add(in[i]);
        out[i] = box_mean(sums.r, factor) << 16 | box_mean(sums.g, factor) << 8 | box_mean(sums.b, factor);
        sums.take_off((in + i)[-n]);
    }
}
