#include "morvane/poly/raster.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

std::int32_t raster_width = 0;
std::int32_t raster_height = 0;
std::int32_t raster_center_x = 0;
std::int32_t raster_center_y = 0;
std::int32_t* depth_buffer = nullptr;

namespace {

struct release {
    void operator()(std::int32_t* block) const { std::free(block); }
};
std::unique_ptr<std::int32_t[], release> depths; // what `depth_buffer` points to
raster_window window;

std::size_t pixel_count(std::int64_t width, std::int64_t height) {
    constexpr std::int64_t most = std::int64_t{1} << 28;
    if (width <= 0 || height <= 0 || width * height > most) return 0;
    return static_cast<std::size_t>(width * height);
}

// `count` zeros from the start of a line of the cache on, or null.
std::int32_t* allocate(std::size_t count) {
    constexpr std::size_t cache_line = 64;
    if (count == 0) return nullptr;
    const std::size_t bytes = (count * sizeof(std::int32_t) + cache_line - 1) / cache_line * cache_line;
    void* const block = std::aligned_alloc(cache_line, bytes);
    if (block) std::memset(block, 0, bytes);
    return static_cast<std::int32_t*>(block);
}

} // namespace

std::int32_t raster_init(std::int32_t width, std::int32_t height) {
    const std::size_t count = pixel_count(width, height);
    depths.reset(allocate(count));
    depth_buffer = depths.get();
    const bool usable = depth_buffer != nullptr;
    raster_width = usable ? width : 0;
    raster_height = usable ? height : 0;
    raster_center_x = raster_width / 2;
    raster_center_y = raster_height / 2;
    return 0;
}

void raster_clear_depth() {
    const auto count = static_cast<std::size_t>(std::int64_t{raster_width} * raster_height);
    std::fill_n(depth_buffer, count, DEPTH_EMPTY);
}

void raster_set_window(std::int32_t left, std::int32_t right, std::int32_t bottom, std::int32_t top) {
    window = {.left = left, .right = right, .top = top, .bottom = bottom};
}

const raster_window& raster_clip_window() {
    return window;
}

std::int32_t raster_outcode(std::int32_t x, std::int32_t y) {
    const std::int32_t row = y < window.top ? outcode_top : y > window.bottom ? outcode_bottom : 0;
    const std::int32_t column = x < window.left ? outcode_left : x > window.right ? outcode_right : 0;
    return row + column;
}

std::int32_t raster_outcode_f(float x, float y) {
    // Compared in double, which holds every bound as it is.
    const double column_at = x, row_at = y;
    const std::int32_t row = row_at < window.top ? outcode_top : row_at > window.bottom ? outcode_bottom : 0;
    const std::int32_t column = column_at < window.left    ? outcode_left
                                : column_at > window.right ? outcode_right
                                                           : 0;
    return row + column;
}
