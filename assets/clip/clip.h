// The clip of the second movement: the meteor in a stream of light, seen from a camera that goes round it
// once. 21 seconds that loop, at 25 frames a second; as the show starts it at 175 s, its pulses fall on every
// other bar of the music.
#pragma once

#include <cstdint>

#include "assets/forms/file_forms.h"

namespace assets {

inline constexpr std::int32_t clip_width = 512;
inline constexpr std::int32_t clip_height = 288;
inline constexpr int clip_rate = 25; // frames a second
inline constexpr int clip_frames = 21 * clip_rate;

// An AVI of Motion JPEG, its frames mirrored left to right: the show's reader mirrors them back.
file_bytes clip_file();

} // namespace assets
