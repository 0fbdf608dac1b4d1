#include "morvane/gtex/zoom.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "morvane/base/numbers.h"
#include "morvane/gtex/inner/row_sampler.h"

namespace {

// Walks along one axis of the window, a step a pixel. The sum of steps is a 32-bit float, rounding and all.
struct walk {
    std::int32_t start; // the window's near edge in `src`
    std::int32_t size;  // of `src` along the axis
    float step;
    float distance = 0;

    walk(std::int32_t from, std::int32_t to, std::int32_t src_size, std::int32_t dst_size)
        : start(from), size(src_size),
          step(static_cast<float>(static_cast<double>(std::int64_t{to} - from) / dst_size)) {}

    // The place of the current pixel, then one step on.
    std::int32_t next() {
        const double place = std::trunc(static_cast<double>(distance)) + start;
        distance += step;
        return trunc_to_int(std::clamp(place, 0.0, size - 1.0));
    }
};

} // namespace

void gtex_zoom(gtex dst, gtex src, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    if (dst.count <= 0 || src.count <= 0) return;
    walk across(x0, x1, src.width, dst.width);
    row_sampler sampler; // the columns are the same for all rows
    const auto width = static_cast<std::size_t>(dst.width);
    for (std::size_t x = 0; x < width; x += gather_run) {
        sampler.size = std::min(gather_run, width - x);
        for (std::size_t i = 0; i < sampler.size; ++i)
            sampler.columns[i] = static_cast<std::uint32_t>(across.next());
        find_picks(sampler, static_cast<std::size_t>(src.width));

        walk down(y0, y1, src.height, dst.height);
        std::uint32_t* row = dst.pixels + x;
        std::int32_t row_above = -1; // in `src`
        for (std::int32_t y = 0; y < dst.height; ++y, row += width) {
            const std::int32_t src_row = down.next();
            if (src_row == row_above)
                std::memcpy(row, row - width, sampler.size * sizeof *row);
            else
                sample_row(row, src.pixels + src_row * src.width, sampler);
            row_above = src_row;
        }
    }
}
