#include "morvane/platform/clip/inner/avi_colour.h"

#include <algorithm>

#include "morvane/base/kernel.h"

namespace avi {

MORVANE_KERNEL
void to_bgr(std::uint8_t* __restrict bgr, const std::uint8_t* __restrict luma,
            const std::uint8_t* __restrict u, const std::uint8_t* __restrict v, std::int32_t width,
            const colour_terms& terms) {
    const colour_terms t = terms;
    constexpr std::int32_t half = 1 << 15;
    for (std::int32_t x = 0; x < width; ++x) {
        const std::int32_t light = (luma[x] - t.luma_at_black) * t.luma + half;
        const std::int32_t cu = u[x] - 128;
        const std::int32_t cv = v[x] - 128;
        const std::int32_t blue = (light + t.blue_of_u * cu) >> 16;
        const std::int32_t green = (light + t.green_of_u * cu + t.green_of_v * cv) >> 16;
        const std::int32_t red = (light + t.red_of_v * cv) >> 16;
        bgr[3 * x] = static_cast<std::uint8_t>(std::clamp(blue, 0, 255));
        bgr[3 * x + 1] = static_cast<std::uint8_t>(std::clamp(green, 0, 255));
        bgr[3 * x + 2] = static_cast<std::uint8_t>(std::clamp(red, 0, 255));
    }
}

} // namespace avi
