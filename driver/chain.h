// The movements in the order in which they run, and the music under them.
#pragma once

#include <span>

#include "driver/frame_loop.h"

// In the data tree. The first track starts just before the clock; from there on the clock alone drives the
// picture.
inline constexpr const char* first_track = "music/Ashwing1.mp3";
inline constexpr const char* second_track = "music/ferrow_amoeba2_test2.ogg";

// The two timed movements, which are the show as a viewer sees it.
std::span<const movement> timed_movements();

// Movements 3 to 6, which run behind the end of the show until a key is waiting.
std::span<const movement> closing_movements();

// Of the closing movements the one with the given number, 3 to 6; null for another number.
const movement* closing_movement(int number);

// The timed movement that a run without keys is in at time `t`; null when both are over.
const movement* movement_at(double t);
