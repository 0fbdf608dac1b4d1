// The video clip of the show: one at a time, its frames by number, its position by the machine's tick count.
//
//     gtex frame = video_open("data/clip2x.avi");
//     video_clock_start();
//     ... video_step(frame);   // once for each frame of the show in which the clip is seen
//     video_close();
//
// Nothing here stops the show. Where the clip can't be opened one message box says so, the surface stays
// black and every later call is harmless.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"
#include "morvane/platform/clip/avifile.h"

// The open clip; all null and zero without one.
extern avi::stream* video_stream;
extern avi::get_frame* video_getframe;
extern std::int32_t video_width; // of a frame, in pixels
extern std::int32_t video_height;
extern std::int32_t video_length;       // frames
extern std::int32_t video_ms_per_frame; // the clip's milliseconds / `video_length`, truncated

// Where it plays.
extern std::uint32_t video_last_tick; // tick count at the last reading
extern std::int32_t video_elapsed_ms; // milliseconds of clip played
extern std::int32_t video_position;   // frame number

// Opens the clip at `path`, after closing one that is open, with the position at the start. The result is a
// black surface of the clip's size, or of the show's frame (512 x 288) if the clip can't be opened.
gtex video_open(const char* path);

// Decodes frame `frame` into `dst`, which is the surface from `video_open`. Words are 0x00RRGGBB. Pixel k of
// the bitmap, whose rows run from the bottom up, goes to word count - 1 - k: the picture comes upright and
// mirrored left to right. Bound: `dst.count`, or the bitmap's pixels if those are fewer. A frame that can't
// be had leaves `dst` as it is.
void video_frame_read(gtex dst, std::int32_t frame);

// Stores the tick count of now as that of the last reading.
void video_clock_start();

// Moves the position on by the ticks since the last reading, back to frame 0 at the clip's end, and reads the
// frame into `dst`. Time that passes without a call counts in the next one.
void video_step(gtex dst);

// Closes the clip; harmless without one. Surfaces from `video_open` keep their last picture.
void video_close();
