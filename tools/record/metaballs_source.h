// The metaball surface as a source of frames: it floats in front of a still camera, lit per vertex by three
// lights that wander round it.
#pragma once

#include "tools/record/frame_source.h"

inline constexpr std::int32_t most_metaballs = 50;

// `balls` from 1 to `most_metaballs`, for `seconds`. The same balls take the same ways each time.
frame_source metaballs(std::int32_t balls, double seconds, std::int32_t fps);
