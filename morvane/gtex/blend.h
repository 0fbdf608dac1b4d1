// Whole-surface, per-pixel operators: fades, glow, feedback, masks. Exact to the bit.
//
// Below, d, s, a and b stand for one 8-bit colour channel of `dst` or of a source, read before the write; the
// three colour channels are handled alike. "Top byte 0" means that the written word has zero in byte 3,
// "kept" that byte 3 isn't touched. All shifts truncate (toward minus infinity where a value is signed).
//
// Every operator runs over `dst.count` pixels unless it says otherwise, or over as many as the smallest of
// its surfaces holds. `dst` and a source may be the same surface; partly overlapping ones are not supported.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

// (s * L + d * (255 - L)) >> 8 with L = `level` & 255; top byte 0. The weights add up to 255 and the shift
// divides by 256, so a full fade gives 254 for white, and each pass darkens a little.
void gtex_crossfade(gtex dst, gtex src, std::int32_t level);

// min(d + s, 255) on all four bytes.
void gtex_add(gtex dst, gtex src);

// min(d + s, 255), top byte 0, where the whole `src` word is not 0; elsewhere `dst` stays.
void gtex_add_keyed(gtex dst, gtex src);

// min(max(level - s, 0) + max(d - level, 0), 255), top byte kept. In place it folds each channel around the
// level: |c - level|.
void gtex_solarise(gtex dst, gtex src, std::int32_t level);

// Complement with a byte rotation: bytes 0 to 3 of the result are 255 less bytes 1, 2, 3 and 0 of `src`.
void gtex_negate(gtex dst, gtex src);

// The feedback filter. `passes` times each channel of `frame` becomes (t + f) >> 1, top byte kept; then
// `trail` takes the result, whatever `passes` was. Runs over `trail.count` pixels; both surfaces change.
void gtex_trail(gtex trail, gtex frame, std::int32_t passes);

// d + (((s - d) * w) >> 8), w = top byte of `src`; top byte 0.
void gtex_alpha_mix(gtex dst, gtex src);

// b + (((a - b) * w) >> 8), w = top byte of `a`; top byte 0.
void gtex_alpha_mix3(gtex dst, gtex a, gtex b);

// (d * s) >> 8; top byte 0.
void gtex_multiply(gtex dst, gtex src);

// Byte 3 of `dst` takes byte 3 of `src`; colours unchanged.
void gtex_copy_mask(gtex dst, gtex src);

// Byte 3 of `dst` takes (r + g + b) / 3 of `src`; colours unchanged.
void gtex_mask_from_luma(gtex dst, gtex src);

// clamp(a - level, 0, 255) + clamp(b + level - 255, 0, 255), top byte 0: a fade from `a` to `b` as the level
// runs from 0 to 255.
void gtex_dual_fade(gtex dst, gtex a, gtex b, std::int32_t level);

// Where the whole `src` word is not 0: ((d & 0xfefefe) + (s & 0xfefefe)) >> 1 on the whole word, top byte 0;
// elsewhere `dst` stays.
void gtex_average_keyed(gtex dst, gtex src);

// One pixel of `dst`: each channel min(d + value, 255), top byte 0. A negative value darkens, to 0 at most;
// an index outside the surface changes nothing.
void pixel_add(gtex dst, std::int32_t index, std::int32_t red, std::int32_t green, std::int32_t blue);

// One pixel: saturating add of all four bytes of `colour`. An index outside the surface changes nothing.
void pixel_add_packed(gtex dst, std::int32_t index, std::uint32_t colour);

// The same at `frame_row[y]` + x; a row outside the table or an index outside the surface changes nothing.
void pixel_add_xy(gtex dst, std::int32_t x, std::int32_t y, std::uint32_t colour);
