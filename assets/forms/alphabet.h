// The letters of the production as skeletons: strokes in a unit box, without weight.
//
// A wide face with a high waist: bars and bowls meet well above the middle, verticals are heavy, horizontals
// thin, and free ends are cut along one slope through the whole alphabet. Capitals, digits and punctuation;
// small letters show as capitals.
#pragma once

#include <span>

namespace assets {

// x runs from 0 (centre of the left stem) to 1 (centre of the right one), y from 0 (cap line) to 1 (base
// line).
struct stroke {
    char letter;
    enum form { line, arc } kind;
    // line: from (a, b) to (c, d). arc: centre (a, b), radii c and d.
    float a, b, c, d;
    // arc: first and last angle in degrees, 0 to the right, 90 down.
    float from = 0, to = 0;
    // 0: by direction (verticals heavy, horizontals thin); above 0: this share of the stem's weight.
    float weight = 0;
};

// The strokes of `letter`, none for a blank or a letter that the alphabet lacks.
std::span<const stroke> strokes_of(char letter);

// The width of its skeleton in cap heights, less the weight of the stems.
float skeleton_width(char letter);

// What is added to the room between two letters that follow each other, in cap heights: below 0 where open
// sides meet (AV, LT).
float kerning(char left, char right);

} // namespace assets
