// From texts to signed distances: lays out lines and rings of letters and measures the distance to them.
#pragma once

#include <string_view>
#include <vector>

#include "assets/forms/canvas.h"

namespace assets {

// How a text is set. Lengths but `size` are in cap heights.
struct type_style {
    float size = 20;        // cap height in pixels
    float stem = 0.17F;     // full weight of a vertical stroke
    float thin = 0.085F;    // full weight of a horizontal stroke
    float stretch = 1;      // factor on the widths of the skeletons
    float tracking = 0.16F; // room between letters
};

// One letter in its place: `origin` is the left end of its cap line, turned clockwise by `angle` radians.
struct placed_letter {
    char letter;
    vec2 origin;
    float angle;
    type_style style;
};
using setting = std::vector<placed_letter>;

enum class align { left, centre, right };

// The width of a line in pixels.
float line_width(std::string_view text, const type_style& style);

// A line whose cap line starts at (`at.x`, `at.y`), ends or is centred there, turned by `angle` about `at`.
setting set_line(std::string_view text, vec2 at, const type_style& style, align how = align::left,
                 float angle = 0);

// A line from `at` on, tracked out or in so that it is `width` pixels wide. Needs two letters at least.
setting set_justified(std::string_view text, vec2 at, float width, type_style style);

// A text around a circle, its base line at `radius`, centred on `angle` (radians, 0 to the right, clockwise).
// With `inside` the letters stand on the inner side, feet outward: what is readable at the bottom of a ring.
setting set_ring(std::string_view text, vec2 centre, float radius, float angle, const type_style& style,
                 bool inside = false);

// Adds `more` to `text`.
void append(setting& text, const setting& more);

// Signed distances in pixels to the letters, exact up to `reach` pixels off each letter and `reach` or
// more elsewhere.
plane distances_to(const setting& text, std::int32_t width, std::int32_t height, float reach = 12);

} // namespace assets
