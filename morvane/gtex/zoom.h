// Nearest-neighbour stretch.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

// Stretches the window of `src` from (x0, y0) to (x1, y1), the latter not included, over all of `dst`: whole
// words, no interpolation, enlarged or reduced, mirrored where x1 < x0 or y1 < y0. The steps are
// (x1 - x0) / dst.width and (y1 - y0) / dst.height, summed up in 32-bit floats and truncated. A window that
// reaches outside `src` repeats the pixels of its edge. `dst` and `src` are different surfaces.
void gtex_zoom(gtex dst, gtex src, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1);
