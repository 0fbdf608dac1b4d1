// Four textures that repeat in both directions: the inside of the mesh and the tunnel (a skin of cells under
// violet light), the inside after the change (green currents), ribs for a tunnel, rock with glowing veins.
#include "assets/forms/canvas.h"
#include "assets/forms/noise.h"
#include "assets/forms/palette.h"
#include "assets/pictures/pictures.h"
#include "morvane/base/numbers.h"

namespace assets {
namespace {

constexpr std::int32_t size = 256;
constexpr float one = 1 / 256.0F; // one repeat in pixels, inverted

file_bytes finished(const picture& image, std::uint32_t seed) {
    return tga_colour_file(size, size, to_bytes(image, {.grain = 4, .opaque = true, .seed = seed}),
                           row_order::top_first);
}

// Light from the upper left over a height field that repeats; `relief` is its steepness.
float slope_light(const plane& height, std::int32_t x, std::int32_t y, float relief) {
    auto at = [&](std::int32_t i, std::int32_t j) { return height.at(i & (size - 1), j & (size - 1)); };
    const vec2 slope{(at(x + 1, y) - at(x - 1, y)) * relief, (at(x, y + 1) - at(x, y - 1)) * relief};
    return clamp01((1 - 0.6F * slope.x - 0.7F * slope.y) / std::sqrt(1 + dot(slope, slope)) * 0.6F);
}

template<class formula>
plane height_field(formula value) {
    plane result(size, size);
    for_each_pixel(result, [&](vec2 p, float& v) { v = value(p * one); });
    return result;
}

// Calls paint(place of 0 to 1, height, light) for each pixel.
template<class formula>
picture lit(const plane& height, float relief, formula paint) {
    picture image(size, size);
    std::size_t i = 0;
    for (std::int32_t y = 0; y < size; ++y) {
        for (std::int32_t x = 0; x < size; ++x, ++i) {
            const vec2 p{(static_cast<float>(x) + 0.5F) * one, (static_cast<float>(y) + 0.5F) * one};
            image.values[i] = paint(p, height.values[i], slope_light(height, x, y, relief));
        }
    }
    return image;
}

// A place moved by noise that repeats with the texture.
vec2 warped(vec2 p, float amount, std::uint32_t seed) {
    return p + vec2{fbm(p * 4, 3, seed, 4), fbm(p * 4, 3, seed + 50, 4)} * amount;
}

} // namespace

// Plates of an agate in the dark: cells, a few of them lit, each engraved with lines that follow its own
// edge, and thin seams of light between them. The walls are shown as they are, and later fed back into
// themselves, which shows four times their light: so the plates keep close to black and the light is in thin
// lines.
file_bytes texture_inside() {
    auto plate = [](vec2 p) {
        const vec2 bent = p + vec2{fbm(p * 3, 2, 301, 3), fbm(p * 3, 2, 351, 3)} * 0.05F;
        return cells(bent * 6, 310, 6);
    };
    const plane height = height_field([&](vec2 p) {
        const cell c = plate(p);
        const float gap = 2 * c.edge;
        return 0.8F * smooth_step(0, 0.3F, gap) + 0.08F * std::cos(gap * 30) * smooth_step(0.1F, 0.3F, gap) +
               0.10F * fbm(p * 16, 3, 320, 16);
    });
    const picture image = lit(height, 7, [&](vec2 p, float, float light) {
        const cell c = plate(p);
        const float gap = 2 * c.edge;
        const float lamp = smooth_step(0.62F, 0.95F, c.value); // one plate in three has light in it
        const rgb shade =
            mix(palette::night * 0.4F, palette::plum * 0.09F, smooth_step(0.25F, 0.45F, c.value));
        const rgb base = mix(shade, palette::indigo * 0.55F, lamp);
        rgb colour = base * (0.1F + 2.2F * light * light);
        // The lines, brightest near the edge.
        const float line = 0.5F + 0.5F * std::cos(gap * 30);
        colour += mix(palette::plum * 0.7F, palette::electric, lamp) *
                  (0.14F * line * line * line * line * smooth_step(0.08F, 0.2F, gap) *
                   smooth_step(0.75F, 0.2F, gap));
        // The seams, hotter in some places than in others.
        const float heat = smooth_step(-0.25F, 0.45F, fbm(p * 3, 2, 330, 3));
        colour += palette::orchid * ((0.012F + 0.035F * heat) * glow_line(gap, 0.1F));
        return colour + mix(palette::orchid, palette::magenta, heat * 0.5F) *
                            ((0.1F + 0.25F * heat) * glow_line(gap, 0.04F));
    });
    return finished(image, 51);
}

file_bytes texture_intro() {
    const plane height = height_field([](vec2 p) {
        const vec2 q = warped(warped(p, 0.16F, 401), 0.06F, 431);
        return ridges(q * 5, 3, 410, 5);
    });
    const picture image = lit(height, 5.5F, [](vec2 p, float h, float light) {
        const float hue = 0.5F + 0.5F * fbm(p * 3, 2, 440, 3);
        rgb base = mix(palette::field * 1.5F, palette::moss * 1.3F, smooth_step(0.3F, 0.8F, h));
        base = mix(base, palette::indigo, hue * 0.7F);
        rgb colour = base * (0.3F + 1.6F * light);
        // Currents: level lines of the field, and crests that glow.
        const float line = 0.5F + 0.5F * std::cos(h * 26);
        colour += palette::phosphor * (0.07F * line * line * line * line);
        return colour + palette::phosphor * (0.5F * smooth_step(0.70F, 0.87F, h) * (1 - hue * 0.6F));
    });
    return finished(image, 52);
}

// Ribs across (rows are depth), plates of uneven width between them, a lamp in some of the plates.
file_bytes texture_tunnel() {
    struct plate {
        float rib;   // 0 on the middle of a rib, 0.5 between two
        vec2 place;  // within the plate, -0.5 to 0.5
        float value; // 0 to 1, one for each plate
    };
    auto plate_at = [](vec2 p) {
        const std::int32_t row = trunc_to_int(p.y * 8);
        const float shifted = p.x * 8 + (row % 2 == 0 ? 0.0F : 0.5F) + 0.14F * hash01(row, 0, 530);
        const std::int32_t column = trunc_to_int(shifted) % 8;
        const float y = p.y * 8 - std::floor(p.y * 8);
        return plate{
            std::min(y, 1 - y), {shifted - std::floor(shifted) - 0.5F, y - 0.5F}, hash01(column, row, 531)};
    };
    const plane height = height_field([&](vec2 p) {
        const plate at = plate_at(p);
        const float panel = sd_box(at.place, {0, 0}, {0.46F, 0.28F}, 0.06F);
        return 0.8F * smooth_step(0.16F, 0.06F, at.rib) +
               0.35F * smooth_step(0.02F, -0.06F, panel) * (0.5F + at.value) +
               0.10F * fbm(p * 12, 4, 510, 12);
    });
    const picture image = lit(height, 7, [&](vec2 p, float h, float light) {
        const plate at = plate_at(p);
        const float wear = 0.5F + 0.5F * fbm(p * 8, 4, 520, 8);
        const rgb base = mix(palette::indigo * 0.7F, palette::plum, clamp01(h));
        rgb colour = base * (0.15F + 1.7F * light) * (0.6F + 0.8F * wear);
        if (at.value > 0.55F) {
            const float lamp = sd_box(at.place, {0, 0}, {0.24F, 0.05F}, 0.05F);
            const rgb glow = at.value > 0.85F ? palette::magenta : palette::phosphor;
            colour += glow *
                      (1.1F * smooth_step(0.02F, -0.02F, lamp) + 0.3F * std::exp(-std::max(lamp, 0.0F) * 11));
        }
        return colour;
    });
    return finished(image, 53);
}

file_bytes texture_cube() {
    const plane height = height_field([](vec2 p) {
        const vec2 q = warped(p, 0.045F, 601);
        const cell c = cells(q * 5, 610, 5);
        return 0.6F * smooth_step(0, 0.25F, 2 * c.edge) + 0.5F * fbm(q * 8, 4, 620, 8) +
               0.25F * ridges(q * 6, 4, 630, 6);
    });
    const picture image = lit(height, 8, [](vec2 p, float h, float light) {
        const vec2 q = warped(p, 0.045F, 601);
        const cell c = cells(q * 5, 610, 5);
        const float gap = 2 * c.edge;
        const float heat = 0.55F + 0.6F * fbm(p * 4, 3, 640, 4);
        const rgb rock = mix(palette::night * 1.6F, from_screen(0x75709a), clamp01(h * 0.8F));
        rgb colour = rock * (0.05F + 1.35F * light * light * 1.6F);
        colour += palette::orchid * (0.9F * heat * glow_line(gap, 0.11F));
        colour += palette::magenta * (1.4F * heat * heat * glow_line(gap, 0.03F));
        return colour;
    });
    return finished(image, 54);
}

} // namespace assets
