// The tangents of a node's tracks, from tension, continuity and bias (Kochanek and Bartels, 1984, bent in
// places).
//
// Keys that share a frame count as evenly spaced; nothing divides by zero. Nothing is allocated.
#pragma once

#include <span>

#include "morvane/scene/keys.h"

// Position tangents, one a key: two keys at a time, the second by the settings of the first. The first and
// the last key of three or more have none.
void calc_position_tangents(std::span<position_key> keys);

// Incoming and outgoing tangents of the rotation keys; a track of one key has none.
void calc_rotation_tangents(std::span<rotation_key> keys);
