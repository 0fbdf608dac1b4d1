// What all rasterizers share: the size of the frame, the depth buffer and the clip window of the lines.
//
// A depth is 24.8 fixed point, in units of camera-space z: negative in front of the camera, larger is nearer.
#pragma once

#include <cstdint>

// Frame size in pixels; `raster_width` is the row stride of every destination. Until `raster_init` has run
// the frame is empty, and nothing is drawn.
extern std::int32_t raster_width, raster_height;

// The centre of the projection, half the frame size.
extern std::int32_t raster_center_x, raster_center_y;

// `raster_width` * `raster_height` depths, laid out as the frame is.
extern std::int32_t* depth_buffer;

// A pixel that holds nothing: farther than any real depth.
inline constexpr std::int32_t DEPTH_EMPTY = INT32_MIN;

// Sets the four sizes and allocates the depth buffer, whose content is of no meaning until it is cleared.
// Returns 0. A size that is not positive, passes 2^28 pixels or can't be had leaves an empty frame. A second
// call replaces the buffer of the first.
std::int32_t raster_init(std::int32_t width, std::int32_t height);

// Writes `DEPTH_EMPTY` to all entries; before every frame that draws a scene.
void raster_clear_depth();

// The clip rectangle of the outcodes, bounds included.
void raster_set_window(std::int32_t left, std::int32_t right, std::int32_t bottom, std::int32_t top);

// On which sides of the clip rectangle a point lies; 0 inside. A coordinate that is not a number is inside.
enum raster_outcode_bits : std::int32_t {
    outcode_top = 1,
    outcode_bottom = 2,
    outcode_left = 4,
    outcode_right = 8,
};
std::int32_t raster_outcode(std::int32_t x, std::int32_t y);
std::int32_t raster_outcode_f(float x, float y);

// The bounds that the outcodes test against.
struct raster_window {
    std::int32_t left = 0, right = 0, top = 0, bottom = 0;
};
const raster_window& raster_clip_window();
