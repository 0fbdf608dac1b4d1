// The score: the movements in the order in which they run, and what they share.
//
// A movement is one function that draws the frame of time `t` (seconds, the show's clock) into `canvas`.
// Feedback builds on the frames before, the scene moves on by each frame that shows it and the clip by the
// time that has passed, so frames are drawn in the order of their times.
#pragma once

#include <span>

#include "show/frame_loop.h"

struct object;
struct show;

// The timed movements. The first opens the show, the second begins where it ends.
inline constexpr double movement1_end = 147.49, movement2_end = 276.46;
void movement1_draw(show& owner, float t);
void movement2_draw(show& owner, float t);

// The closing movements, the four scenes behind the timed ones. None has an end time.
void movement3_draw(show& owner, float t); // the meteor in negative
void movement4_draw(show& owner, float t); // the light field
void movement5_draw(show& owner, float t); // a still picture: `canvas` as it was left
void movement6_draw(show& owner, float t); // the card

// How the meshes of the first movement turn. Each moves, sorts and projects one mesh for the time `t`
// (seconds), ready to be drawn.
void move_inside(object& inside, double t);
void move_meteor(object& meteor, double t);
void move_cube(object& cube, double t);

// The two timed movements, which are the show as a viewer sees it.
std::span<const movement> timed_movements();

// Movements 3 to 6, which run behind the end of the show until a key is waiting.
std::span<const movement> closing_movements();

// Of the closing movements the one with the given number, 3 to 6; null for another number.
const movement* closing_movement(int number);

// The timed movement that a run without keys is in at time `t`; null when both are over.
const movement* movement_at(double t);

// Whether a window that holds its start but not its end is open at `t`.
constexpr bool within(double t, double start, double end) {
    return t >= start && t < end;
}

// Whether a window that holds neither of its bounds is open at `t`.
constexpr bool inside(double t, double start, double end) {
    return t > start && t < end;
}
