// The accident: a pane of glass with a night painted on it, struck by something. The 3D scene shows through
// the hole and, dimly, through the loosened shards around it.
#include <array>

#include "assets/forms/drawing.h"
#include "assets/forms/noise.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

constexpr vec2 impact{318, 112};

// The painting on the pane, whole: a violet night with a moon and the lettering.
picture painting() {
    picture image = black_frame();
    const vec2 moon{98, 98};
    for_each_pixel(image, [&](vec2 p, rgb& c) {
        const float t = p.y / frame_height;
        c = mix(palette::indigo * 0.8F, palette::orchid * 0.7F,
                smooth_step(0.3F, 1.15F, t + 0.15F * fbm(p * 0.008F, 4, 701)));
        c = mix(c, palette::night,
                0.75F * smooth_step(0.1F, -0.5F, fbm({p.x * 0.006F, p.y * 0.022F}, 5, 705)));
        const float d = sd_circle(p, moon, 62);
        const vec2 q = (p - moon) * (1 / 62.0F);
        const float ball = std::sqrt(std::max(0.0F, 1 - dot(q, q)));
        const float day = clamp01(dot(q, vec2{-0.5F, -0.6F}) + ball * 0.6F);
        const float seas = 0.75F + 0.5F * fbm(q * 2.2F, 5, 711);
        c = mix(c, palette::bone * (day * seas) + palette::indigo * 0.12F, coverage(d));
        c += palette::magenta * (0.35F * std::exp(-std::max(d, 0.0F) * 0.05F) * coverage(-d));
    });
    plane letters = frame_distances(set_justified(
        "ACCIDENT", {30, 208}, 452, {.size = 52, .stem = 0.2F, .thin = 0.08F, .stretch = 0.95F}));
    paint_neon(image, letters,
               {.top = palette::bone * 1.2F,
                .bottom = palette::magenta,
                .top_y = 208,
                .bottom_y = 268,
                .bevel = 2.5F,
                .near_glow = 0.3F,
                .far_glow = 0.3F});
    const type_style small{.size = 8, .stem = 0.2F, .thin = 0.15F, .tracking = 0.24F};
    setting line = set_line("IT WAS FALLING", {30, 178}, small);
    append(line, set_line("BEFORE WE LOOKED UP", {30, 192}, small));
    cover(image, coverage_of(frame_distances(line, 3)), palette::phosphor);
    return image;
}

// How the pane has broken: straight cracks run outward from the impact, and breaks across them cut each
// sector into shards. Every second crack begins only at break 3, so that the inner shards are twice as wide.
constexpr std::int32_t cracks = 22;
constexpr std::array<float, 6> breaks{24, 52, 86, 138, 214, 330}; // mean distances from the impact

// The angles of the cracks, and where each break begins and ends on them. A sector's breaks don't meet those
// of the next. Two entries more than there are cracks, so that a sector may run past the first.
struct fracture {
    std::array<float, cracks + 2> angle;
    std::array<std::array<vec2, cracks + 2>, breaks.size()> begin;
    std::array<std::array<vec2, cracks + 2>, breaks.size()> end;
};

vec2 corner(std::size_t b, std::int32_t crack, float angle, std::uint32_t seed) {
    const float jitter = hash01(crack, static_cast<std::int32_t>(b), seed) - 0.5F;
    return vec2{std::cos(angle), std::sin(angle)} * (breaks[b] * (1 + 0.42F * jitter));
}

const fracture& pattern() {
    static const fracture whole = [] {
        fracture made{};
        for (std::int32_t i = 0; i < cracks + 2; ++i) {
            const auto at = static_cast<std::size_t>(i);
            const std::int32_t crack = i % cracks;
            const float turn = static_cast<float>(i) + 0.55F * (hash01(crack, 0, 721) - 0.5F);
            made.angle[at] = turn * 2 * pi / static_cast<float>(cracks);
            for (std::size_t b = 0; b < breaks.size(); ++b) {
                made.begin[b][at] = corner(b, crack, made.angle[at], 722);
                made.end[b][at] = corner(b, crack, made.angle[at], 723);
            }
        }
        return made;
    }();
    return whole;
}

float crack_angle(std::int32_t i) {
    return pattern().angle[static_cast<std::size_t>(i)];
}

// The shard at a point.
struct shard {
    std::int32_t ring;   // how many breaks lie between it and the impact
    std::int32_t sector; // the crack at its beginning
    float value;         // 0 to 1, one for each shard
    vec2 middle;         // roughly
    float crack;         // pixels to the nearest crack and to the nearest break
    float brk;
};

// Which of the cracks lie before and after the angle of `q`, of those that reach `ring`.
std::int32_t sector_of(float angle, std::int32_t step) {
    std::int32_t i = 0;
    while (i + step < cracks && crack_angle(i + step) <= angle)
        i += step;
    return angle < crack_angle(0) ? cracks - step : i;
}

float distance_to_crack(vec2 q, std::int32_t i) {
    const float angle = crack_angle(i);
    return std::fabs(q.x * std::sin(angle) - q.y * std::cos(angle));
}

// How far `q` lies outside break `b` of the sector i to i + step: below 0 on the side of the impact.
float outside_break(vec2 q, std::size_t b, std::int32_t i, std::int32_t step) {
    const vec2 from = pattern().begin[b][static_cast<std::size_t>(i)];
    const vec2 along = normalised(pattern().end[b][static_cast<std::size_t>(i + step)] - from);
    return (q.x - from.x) * along.y - (q.y - from.y) * along.x;
}

shard shard_at(vec2 p) {
    const vec2 q = p - impact;
    float angle = std::atan2(q.y, q.x);
    if (angle < crack_angle(0)) angle += 2 * pi;
    const std::int32_t wide = sector_of(angle, 2);
    const std::int32_t narrow = sector_of(angle, 1);
    shard found{0, wide, 0, {}, 1e9F, 1e9F};
    std::int32_t step = 2;
    for (std::size_t b = 0; b < breaks.size(); ++b) {
        if (b == 3) {
            found.sector = narrow;
            step = 1;
        }
        const float outside = outside_break(q, b, found.sector, step);
        found.brk = std::min(found.brk, std::fabs(outside));
        if (outside < 0) break;
        ++found.ring;
    }
    if (found.ring < 3) {
        found.sector = wide;
        step = 2;
    }
    found.crack = std::min(distance_to_crack(q, found.sector), distance_to_crack(q, found.sector + step));
    found.value = hash01(found.sector, found.ring, 724);
    const float half_way = 0.5F * (crack_angle(found.sector) + crack_angle(found.sector + step));
    found.middle = impact + vec2{std::cos(half_way), std::sin(half_way)} * length(q);
    return found;
}

// How much of a shard is left: 0 in the hole, less than all in the loose ones, 1 where the pane is whole.
float left_of(const shard& s) {
    if (s.ring < 2 || (s.ring == 2 && s.value < 0.55F)) return 0;
    if (s.ring == 2) return 0.45F + 0.3F * s.value;
    if (s.ring == 3) return s.value < 0.12F ? 0.0F : 0.5F + 0.45F * s.value;
    return s.ring == 4 ? 0.8F + 0.2F * s.value : 1.0F;
}

// Light in the cracks: hair-thin, brightest near the hole; breaks are dimmer than cracks.
float crack_light(const shard& s, float r) {
    if (left_of(s) <= 0) return 0;
    const float reach = smooth_step(330, 40, r);
    const float width = 0.5F + 0.5F * reach;
    return std::max(glow_line(s.crack, width) * (0.25F + 0.75F * reach),
                    glow_line(s.brk, width) * (0.10F + 0.8F * reach * reach));
}

// Light that the thick of the glass catches along its broken edges.
float edge_light(const shard& s, float r) {
    return left_of(s) > 0 ? glow_line(std::min(s.crack, s.brk), 4) * smooth_step(230, 50, r) : 0.0F;
}

} // namespace

file_bytes accident_picture() {
    const picture whole = painting();
    picture image = black_frame();
    for_each_pixel(image, [&](vec2 p, rgb& c) {
        const shard s = shard_at(p);
        const float r = length(p - impact);
        // Each shard has slipped and turned a little, less the farther it lies, and catches the light by its
        // tilt.
        const float slip = 13 * smooth_step(5.5F, 2, static_cast<float>(s.ring));
        const float way = s.value * 2 * pi * 7;
        const vec2 tilt{std::cos(way), std::sin(way)};
        const vec2 turned = rotated(p - s.middle, (s.value - 0.5F) * 0.02F * slip) + s.middle;
        c = sample(whole, turned + tilt * (slip * 0.5F));
        c *= 1 + dot(tilt, vec2{-0.5F, -0.86F}) * 0.055F * slip;
        const float sheen = smooth_step(0.1F, 1, dot(tilt, (p - s.middle) * (1 / 30.0F)));
        c += mix(palette::electric, palette::magenta, s.value) * (0.03F * slip * sheen);
        c += palette::magenta * (0.22F * edge_light(s, r));
        c += palette::bone * (1.4F * crack_light(s, r));
        // Round the hole the glass burns.
        c += palette::orchid * (0.4F * glow_line(r - 66, 24));
    });
    return png_file(frame_width, frame_height, to_bytes(image, {.grain = 4, .vignette = 0.4F, .seed = 71}));
}

file_bytes accident_mask() {
    const plane mask = frame_plane([](vec2 p) {
        // Nine looks a pixel, over twice its width, make the edges smooth.
        float sum = 0;
        for (const float dy : {-0.7F, 0.0F, 0.7F}) {
            for (const float dx : {-0.7F, 0.0F, 0.7F}) {
                const vec2 at = p + vec2{dx, dy};
                const shard s = shard_at(at);
                const float r = length(at - impact);
                sum += std::max(left_of(s), std::max(crack_light(s, r), 0.75F * edge_light(s, r)));
            }
        }
        return sum / 9;
    });
    return tga_mask_file(frame_width, frame_height, to_bytes(mask, 72));
}

} // namespace assets
