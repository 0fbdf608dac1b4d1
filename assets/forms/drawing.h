// What several pictures share: frame-sized planes from formulas, glowing letters, cuts, rings of ticks,
// engraved line work.
#pragma once

#include "assets/forms/canvas.h"
#include "assets/forms/lettering.h"
#include "assets/forms/palette.h"

namespace assets {

// The size of every full picture, and its middle.
inline constexpr std::int32_t frame_width = 512;
inline constexpr std::int32_t frame_height = 288;
inline constexpr vec2 frame_middle{256, 144};

// The middle of the eye on the advisory card; the blade of the closing movement goes through it.
inline constexpr vec2 seal_middle{137, 133};

inline picture black_frame() {
    return {frame_width, frame_height};
}

// A frame-sized plane of value(point).
template<class formula>
plane frame_plane(formula value) {
    plane result(frame_width, frame_height);
    for_each_pixel(result, [&](vec2 p, float& v) { v = value(p); });
    return result;
}

// The distances of a text over the whole frame.
inline plane frame_distances(const setting& text, float reach = 12) {
    return distances_to(text, frame_width, frame_height, reach);
}

// Cuts a gap of `width` pixels through the shapes of `distances`, along the line through `point` with the
// direction `along`.
void slice(plane& distances, vec2 point, vec2 along, float width);

// Joins the shapes of `more` to those of `distances`.
void unite(plane& distances, const plane& more);

// How glowing letters are painted. Light adds to what is there.
struct neon {
    rgb top = palette::bone;       // the body's colour at `top_y`
    rgb bottom = palette::magenta; // and at `bottom_y`
    float top_y = 0;
    float bottom_y = frame_height;
    float body = 1;  // strength of the body
    float bevel = 0; // width of the bevel in pixels, 0 for none
    rgb rim = palette::bone;
    float rim_light = 0; // strength of a thin line along the edge
    rgb glow = palette::orchid;
    float near_glow = 0.35F; // strengths of the glows close by and far around
    float far_glow = 0.25F;
    float near_sigma = 3;
    float far_sigma = 14;
};
void paint_neon(picture& target, const plane& distances, const neon& look);

// A ring of `count` ticks from `inner` to `outer` radius, each `thickness` pixels wide; 1 on a tick, else 0.
float ticks(vec2 p, vec2 centre, float inner, float outer, int count, float thickness);

// Engraved rosette: the light at `p` of `lines` curves r = base + swing * cos(petals * angle + phase), their
// phases spread evenly over one turn, each `thickness` pixels wide.
float rosette(vec2 p, vec2 centre, float base, float swing, int petals, int lines, float thickness);

// Parallel engraved lines: 1 on a line, 0 between, where `v` counts pixels across the lines and `pitch` is
// the distance between two. `share` is how much of the pitch a line takes.
float hatch(float v, float pitch, float share);

} // namespace assets
