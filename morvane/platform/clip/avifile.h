// Reading of AVI clips: frames by their number, as bitmaps.
//
// A stream is opened from a file; a frame access on it decodes. Only the frame in hand is kept: asked for
// again it costs nothing, the next one costs one decode, an earlier one a seek to a key frame and the decodes
// from there. The calls are harmless on null handles. All of them come from one thread.
//
// Any bytes may be opened. What a file claims is held to what it has: frames are counted by their chunks and
// the index, not by the header, and limits keep memory below a gigabyte and a call below some seconds.
#pragma once

#include <cstdint>

namespace avi {

inline constexpr std::uint32_t type_video = 0x73646976; // "vids"
inline constexpr std::int32_t largest_side = 8192;      // of a frame, in pixels
inline constexpr std::int64_t largest_frame = 1 << 23;  // pixels

// Results of the calls; 0 is success.
inline constexpr std::int32_t ok = 0;
inline constexpr std::int32_t bad_argument = 1;
inline constexpr std::int32_t not_readable = 2; // no such file, no AVI, or no frame in it

struct stream;    // an open video stream
struct get_frame; // frame access on one

struct rect {
    std::int32_t left, top, right, bottom;
};

// What is told about a stream. Times: a frame lasts `scale` / `rate` seconds.
struct stream_info {
    std::uint32_t type;    // `type_video`
    std::uint32_t handler; // four letters that name the codec
    std::uint32_t flags;
    std::uint32_t caps;
    std::uint16_t priority;
    std::uint16_t language;
    std::uint32_t scale;
    std::uint32_t rate;
    std::uint32_t start;
    std::uint32_t length; // frames
    std::uint32_t initial_frames;
    std::uint32_t suggested_buffer_size; // bytes of the largest chunk
    std::uint32_t quality;
    std::uint32_t sample_size;
    rect frame; // width: right - left; height: bottom - top
    std::uint32_t edit_count;
    std::uint32_t format_change_count;
    char name[64]; // the codec, as text that ends in 0
};
static_assert(sizeof(stream_info) == 140);

// The head of a packed bitmap. `biClrUsed` colour entries of 4 bytes (none here) and the pixels follow it:
// blue, green, red for each, the bottom row first, rows with no gap whatever their width.
struct bitmap_header {
    std::uint32_t biSize; // of this head, in bytes
    std::int32_t biWidth;
    std::int32_t biHeight; // above 0: the bottom row comes first
    std::uint16_t biPlanes;
    std::uint16_t biBitCount; // 24
    std::uint32_t biCompression;
    std::uint32_t biSizeImage; // bytes of the pixels
    std::int32_t biXPelsPerMeter;
    std::int32_t biYPelsPerMeter;
    std::uint32_t biClrUsed;
    std::uint32_t biClrImportant;
};
static_assert(sizeof(bitmap_header) == 40);

} // namespace avi

// Start and end of the layer's use, as often as one likes. The first keeps the codecs' own messages off the
// terminal for the rest of the run: a file that is there and can't be read gets one line of this
// layer on standard error.
void AVIFileInit();
void AVIFileExit();

// Opens the video stream number `which` (0: the first) of the file at `path`. `type` is `avi::type_video`,
// `mode` 0 (reading) and `handler` null. `*stream` is set in any case, to null on failure. Reads the whole
// file once, to know its frames.
std::int32_t AVIStreamOpenFromFileA(avi::stream** stream, const char* path, std::uint32_t type,
                                    std::int32_t which, std::uint32_t mode, const void* handler);

// Fills `info`, at most `size` bytes of it.
std::int32_t AVIStreamInfoA(avi::stream* stream, avi::stream_info* info, std::int32_t size);

// Number of frames; at least 1 for an open stream, 0 for null.
std::int32_t AVIStreamLength(avi::stream* stream);

// The start of frame `sample` in whole milliseconds, limited to what 32 bits hold; 0 for null.
std::int32_t AVIStreamSampleToTime(avi::stream* stream, std::int32_t sample);

// A frame access; `wanted` is null: 24 bits a pixel. Null if there is no decoder for the stream. It may
// outlive the stream's release.
avi::get_frame* AVIStreamGetFrameOpen(avi::stream* stream, const avi::bitmap_header* wanted);

// Frame `position` as a packed bitmap of the stream's size, valid until the next call on the access. A frame
// that the file leaves out, ends in or before, or that is damaged shows the one before it. Null for a
// position outside the stream, and as long as no frame could be decoded. One call decodes a limited number of
// frames (14,000 of 512 x 288); what lies further shows the last of them, and the next call goes on from
// there.
const avi::bitmap_header* AVIStreamGetFrame(avi::get_frame* access, std::int32_t position);

std::int32_t AVIStreamGetFrameClose(avi::get_frame* access);

// Gives up the caller's hold on the stream. Tells how many holds are left.
std::uint32_t AVIStreamRelease(avi::stream* stream);
