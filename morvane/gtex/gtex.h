// The image record of the system, its transfer operations, the frame tables and the clip tests.
//
// A `gtex` is a plain value: copies alias the same pixels. Rows follow each other with no gap, top row first.
// A pixel is one word 0xAARRGGBB (blue is byte 0); the console ignores the top byte, which serves as mask or
// alpha. The word 0 is the key of the keyed operators.
//
// Rules of all operators: records come by value, `dst` first, then the sources, then scalars. The record
// whose `count` bounds the loop is named in each comment, and the others are meant to hold at least as many
// pixels; where one holds fewer, the smallest count bounds the loop, so that nothing outside a surface is
// touched. A count of zero or less does nothing. Nothing is reported.
#pragma once

#include <array>
#include <cstdint>

struct gtex {
    std::uint32_t* pixels = nullptr; // first pixel
    std::uint8_t* bytes = nullptr;   // the same address, for code that works on single channels
    std::int32_t width = 0;          // pixels per row, and the stride
    std::int32_t height = 0;         // number of rows
    std::int32_t count = 0;          // width * height
    std::int32_t size = 0;           // count * 4, in bytes
};

// The frame, which the tables below have built in, and the console around it.
inline constexpr std::int32_t frame_columns = 512;
inline constexpr std::int32_t frame_rows = 288;
inline constexpr std::int32_t frame_pixels = frame_columns * frame_rows;
inline constexpr std::int32_t console_rows = 384;
inline constexpr std::int32_t letterbox_rows = 48; // empty console rows above and below the frame

// Frame size as it is handed to the engines; start-up sets 512 and 288.
extern std::int32_t frame_width;
extern std::int32_t frame_height;

extern std::array<std::int32_t, console_rows> frame_row; // frame_row[y] = y * 512
extern std::array<std::int32_t, 256> tex_row;            // tex_row[y] = y * 256
extern gtex gtex_scratch; // 1024 by 4068 pixels, nothing is kept in it between calls

// Takes width * height pixels from the heap and fills them with `colour`, top byte included. A size that is
// not positive, passes 1 GiB or can't be had gives an empty record (null pixels, all zero). Nothing owns the
// pixels: they live until `gtex_destroy` or the end of the process.
gtex gtex_create(std::int32_t width, std::int32_t height, std::uint32_t colour);

// Gives back the pixels that `gtex_create` took and empties the record. For tools and tests; the show keeps
// its surfaces to the end. Other copies of the record dangle afterwards.
void gtex_destroy(gtex& surface);

// A record over `width` * `height` words that already exist at `pointer`. Sizes as for `gtex_create`.
gtex gtex_wrap(std::uint32_t* pointer, std::int32_t width, std::int32_t height);

// Writes `colour` to all `dst.count` pixels.
void gtex_fill(gtex dst, std::uint32_t colour);

// Copies `src.count` words as a flat run, one by one from first to last. The surfaces may overlap; where
// `dst` begins inside `src`, the words before its beginning repeat.
void gtex_copy(gtex dst, gtex src);

// `gtex_copy` from a bare pointer with an explicit count.
void gtex_copy_raw(gtex dst, const std::uint32_t* pointer, std::int32_t count);

// `gtex_copy` that leaves `dst` as it is wherever the whole source word is 0. Bound: `src.count`.
void gtex_copy_keyed(gtex dst, gtex src);

// Its twin, which takes its bound from `dst.count`.
void gtex_copy_keyed_dst(gtex dst, gtex src);

// Fills all of `dst` with the window of `src` whose top left pixel is (x, y). What of the window lies outside
// `src` leaves `dst` as it is.
void gtex_copy_rect(gtex dst, gtex src, std::int32_t x, std::int32_t y);

// Turns `dst` upside down in place, through `gtex_scratch`. A surface that the scratch surface can't hold
// stays as it is.
void gtex_flip(gtex dst);

// Writes 0 to rows 0 and 287 of `src`, then copies `src.count` pixels to row 48 of the console at
// `screen.pixels`, 512 by 384 words of which the rows above and below the frame are not written. `src` is a
// 512-wide surface of 288 rows; of a larger one the console gets the first 288.
void gtex_present(gtex screen, gtex src);

// Fills `frame_row` and `tex_row` and creates `gtex_scratch` (once, however often it is called).
void frame_tables_init();

// Clip tests: column 0 and row 0 lie outside.
constexpr bool in_rect(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    return 1 <= x && x < width && 1 <= y && y < height;
}
constexpr bool in_frame(std::int32_t x, std::int32_t y) {
    return in_rect(x, y, frame_columns, frame_rows);
}
constexpr bool in_frame_index(std::int32_t i) {
    return 1 <= i && i < frame_pixels;
}
