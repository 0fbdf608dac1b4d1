// The colours of the production. The score fixes magenta (wires), indigo (fills) and the deep green of the
// light field; everything that is drawn here grows out of these three and a cold white.
#pragma once

#include <cmath>
#include <cstdint>

#include "assets/forms/canvas.h"

namespace assets {

// 0xRRGGBB as screens name it, in linear light.
inline rgb from_screen(std::uint32_t colour) {
    auto channel = [colour](std::uint32_t shift) {
        const float v = static_cast<float>((colour >> shift) & 0xffU) / 255;
        return v <= 0.04045F ? v / 12.92F : std::pow((v + 0.055F) / 1.055F, 2.4F);
    };
    return {channel(16), channel(8), channel(0)};
}

namespace palette {

inline const rgb magenta = from_screen(0xff80ff);  // the wires
inline const rgb orchid = from_screen(0xd63adf);   // magenta in full saturation: glows
inline const rgb plum = from_screen(0x5a1478);     // magenta in the shade
inline const rgb indigo = from_screen(0x202080);   // the fills
inline const rgb electric = from_screen(0x4a4cff); // indigo in the light
inline const rgb night = from_screen(0x0b0a26);    // indigo at its darkest
inline const rgb field = from_screen(0x002200);    // the ground of the light field
inline const rgb phosphor = from_screen(0x63ffa6); // green in the light: readings, small lines
inline const rgb moss = from_screen(0x115533);     // green in the shade
inline const rgb bone = from_screen(0xf4eeff);     // white with a breath of violet
inline const rgb ash = from_screen(0xc0c0c0);      // the grey of the flashes

} // namespace palette
} // namespace assets
