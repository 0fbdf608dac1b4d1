// The sine displacement that brings titles in and out.
#pragma once

#include <array>
#include <cstdint>

#include "morvane/gtex/gtex.h"

inline constexpr std::size_t wobble_amplitudes = 64;

// Displacement tables over an angle that passes a full circle in 255 steps, not 256: sines and cosines times
// the number in the name; the last two have a row for each step of the angle and in it an entry for each
// amplitude, sin * amplitude * 1.5 and cos * amplitude * 0.5. Truncated toward zero.
extern std::array<std::int8_t, 256> wob_sin8;
extern std::array<std::int8_t, 256> wob_cos4;
extern std::array<std::int8_t, 256> wob_sin32;
extern std::array<std::int8_t, 256> wob_cos16;
extern std::array<std::array<std::int8_t, wobble_amplitudes>, 256> wob_sin_amp;
extern std::array<std::array<std::int8_t, wobble_amplitudes>, 256> wob_cos_amp;

// The phases start at 0, persist across calls and wrap.
extern std::int32_t wob_phase_a;
extern std::int32_t wob_phase_b;

// Fills the tables; `tunnel_tables_init` calls it.
void wobble_tables_init();

// Moves the phases (a by 2, b by -1) and then, for each pixel of `dst`, copies the whole word from the
// displaced place in `src`, taken on the flat run and limited to the pixels that both surfaces hold. Valid
// for surfaces 512 pixels wide: a displacement by rows counts 512 pixels each.
//
// Mode 2 displaces by `amplitude`, 0 to 63 (others are limited to that); 0 is a plain copy. Mode 0 is a small
// wobble that leaves the picture 16 rows lower, mode 1 a larger one; both ignore the amplitude. Another mode
// moves the phases and nothing else. `dst` and `src` are different surfaces.
void gtex_wobble(gtex dst, gtex src, std::int32_t mode, std::int32_t amplitude);
