// Three lights, 32x32, for the light field: up to 250 are added in a frame, so each is soft and none is
// bright far from its core. A round light, a star, a ring.
#include "assets/forms/canvas.h"
#include "assets/forms/palette.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

constexpr std::int32_t size = 32;

// `light` gives the colour at a point whose coordinates run from -1 to 1 over the sprite.
template<class formula>
file_bytes sprite(formula light) {
    picture image(size, size);
    for_each_pixel(image, [&](vec2 p, rgb& c) {
        const vec2 q = (p - vec2{16, 16}) * (1 / 16.0F);
        const float r = length(q);
        const float rim = smooth_step(0.94F, 0.55F, r); // nothing at the rim
        c = light(q, r) * rim;
    });
    return tga_colour_file(size, size, to_bytes(image, {.toe = 0.0008F, .seed = 91}),
                           row_order::bottom_first);
}

float gauss(float r, float width) {
    return std::exp(-(r * r) / (width * width));
}

} // namespace

file_bytes sprite_light() {
    return sprite([](vec2, float r) {
        return palette::bone * (0.8F * gauss(r, 0.16F)) + palette::phosphor * (0.22F * gauss(r, 0.36F)) +
               palette::moss * (0.5F * gauss(r, 0.62F));
    });
}

file_bytes sprite_light2() {
    return sprite([](vec2 q, float r) {
        const float across = std::exp(-std::fabs(q.y) * 18 - std::fabs(q.x) * 2.6F);
        const float upright = std::exp(-std::fabs(q.x) * 18 - std::fabs(q.y) * 2.6F);
        const vec2 d{(q.x + q.y) * 0.7071F, (q.x - q.y) * 0.7071F};
        const float slant = std::exp(-std::fabs(d.x) * 22 - std::fabs(d.y) * 5) +
                            std::exp(-std::fabs(d.y) * 22 - std::fabs(d.x) * 5);
        return palette::bone * (0.9F * gauss(r, 0.13F)) + palette::magenta * (0.55F * (across + upright)) +
               palette::electric * (0.25F * slant + 0.12F * gauss(r, 0.5F));
    });
}

file_bytes sprite_light3() {
    return sprite([](vec2 q, float r) {
        // A lens ring, a little brighter to one side, as light out of focus is.
        const float side = 1 + 0.45F * (q.x * 0.7071F + q.y * 0.7071F);
        return palette::phosphor * (0.4F * side * gauss(r - 0.56F, 0.09F)) +
               palette::moss * (0.9F * smooth_step(0.62F, 0.4F, r)) + palette::bone * (0.3F * gauss(r, 0.1F));
    });
}

} // namespace assets
