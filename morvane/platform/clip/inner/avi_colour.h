// The way from luma and chroma to red, green, blue where every pixel has its own chroma: the form that the
// show's own clip is in, and one for which the general converter takes as long as the decoder. Inside of
// platform/clip/avifile.h.
#pragma once

#include <cstdint>

namespace avi {

// ITU-R BT.601, by 16 bits of fraction.
struct colour_terms {
    std::int32_t luma, luma_at_black;
    std::int32_t red_of_v, green_of_u, green_of_v, blue_of_u;
};
inline constexpr colour_terms full_range{65536, 0, 91881, -22554, -46802, 116130};
inline constexpr colour_terms studio_range{76309, 16, 104597, -25675, -53279, 132201}; // 16 to 235 and 240

// One row of `width` pixels to blue, green, red. The rows don't overlap.
void to_bgr(std::uint8_t* bgr, const std::uint8_t* luma, const std::uint8_t* u, const std::uint8_t* v,
            std::int32_t width, const colour_terms& terms);

} // namespace avi
