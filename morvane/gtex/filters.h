// Filters: box blurs, a smear and a glow.
//
// The blurs take n + 1 pixels a result. n below 0 counts as 0 and above 512, a whole row, as 512. Each
// channel's sum is divided by n + 1 and truncated; the top byte of what is written is 0. Their cost doesn't
// depend on n. `dst` and `src` may be the same surface (one that `gtex_scratch` can hold), but mustn't
// overlap otherwise.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

inline constexpr std::int32_t blur_largest_n = frame_columns;

// Horizontal, centred: for each row y from 1 to dst.height - 2 and each column x, the mean of the pixels of
// `src` at y * 512 + x - n to y * 512 + x goes to `dst` at y * 512 + x - n / 2. Both surfaces are one flat
// run here, so that taps and results go through row ends: on the left edge the taps reach back into the row
// above and the result lands there. The first and the last row of `dst` stay as they are.
//
// Made for surfaces 512 pixels wide. On others rows still start every 512 pixels (at most 384 of them, as in
// `frame_row`), and a result whose taps or whose place would lie outside the surfaces is dropped.
void gtex_blur_h(gtex dst, gtex src, std::int32_t n);

// The same with the results written at (y + oy) * 512 + x + ox. What would land in the first or last row of
// `dst`, outside of it, or in a row y + oy that isn't 0 to 383, is dropped. With ox = oy = 0 the picture
// stands n / 2 pixels to the right of where `gtex_blur_h` puts it.
void gtex_blur_h_at(gtex dst, gtex src, std::int32_t ox, std::int32_t oy, std::int32_t n);

// Vertical, any size, rows of dst.width pixels in both surfaces: for each row y and each column x from 1 to
// dst.width - 2, the mean of the n + 1 pixels of `src` from row y up goes to `dst` at (y + oy) * width + x +
// ox on the flat run. Above the first row that row's pixels repeat. What would land outside `dst` is dropped,
// and rows that `src` doesn't hold aren't drawn.
void gtex_blur_v_at(gtex dst, gtex src, std::int32_t ox, std::int32_t oy, std::int32_t n);

// In place, from pixel width + 1 to pixel count - width - 2, one after the other, per channel:
// c = (((left + right + up + down) >> 2) + c_previous) >> 1, with c_previous the value written for the pixel
// before; the first one is that of the surface's first pixel. Top byte 0.
void gtex_smear(gtex dst);

// In place, per channel on the flat run: ((p[i - 1] + p[i] + p[i + 1] + p[i + 2]) >> 2) + level, limited to 0
// to 255; top byte 0. The first and the last pixel repeat beyond the ends. Goes through `gtex_scratch`; a
// surface that it can't hold stays as it is.
void gtex_glow(gtex dst, std::int32_t level);
