// Moments of the first movement on which more than one of its steps turns, in seconds.
#pragma once

inline constexpr double meshes_start = 14.2;     // the plasma stops
inline constexpr double first_second_end = 15.2; // the meteor has risen, the first burst has run out
inline constexpr double meteor_textured = 86.04; // the inner mesh turns the other way, the shaking stops
inline constexpr double cube_near = 100.35;      // what comes next is still near the viewer
inline constexpr double cube_start = 100.36;     // the cube takes the meteor's place
inline constexpr double cube_arrived = 100.85;
inline constexpr double second_turn = 114.29;
inline constexpr double third_turn = 128.99;
