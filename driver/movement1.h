// The first movement, from 0 to 147.49 seconds.
#pragma once

struct show;

inline constexpr double movement1_end = 147.49;

// Draws the frame of time `t` (seconds, the show's clock) into `canvas`. Works on the layers of `all` that
// live across frames, so frames are drawn in the order of their times.
void movement1_draw(show& all, float t);
