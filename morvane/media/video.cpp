#include "morvane/media/video.h"

#include <algorithm>

#include "morvane/base/kernel.h"
#include "morvane/platform/time/winbase.h"

avi::stream* video_stream = nullptr;
avi::get_frame* video_getframe = nullptr;
std::int32_t video_width = 0;
std::int32_t video_height = 0;
std::int32_t video_length = 0;
std::int32_t video_ms_per_frame = 0;

std::uint32_t video_last_tick = 0;
std::int32_t video_elapsed_ms = 0;
std::int32_t video_position = 0;

namespace {

bool is_open = false; // between the layer's start and end

void warn(const char* text) {
    constexpr std::uint32_t exclamation = 0x30;
    winbase::MessageBoxA(nullptr, text, "Error", exclamation);
}

void read_properties() {
    avi::stream_info info{};
    AVIStreamInfoA(video_stream, &info, sizeof info);
    video_width = info.frame.right - info.frame.left;
    video_height = info.frame.bottom - info.frame.top;
    video_length = AVIStreamLength(video_stream);
    if (video_length > 0)
        video_ms_per_frame = AVIStreamSampleToTime(video_stream, video_length) / video_length;
}

// `count` pixels of three bytes from `from` on into words that end before `end`, the first one last.
MORVANE_KERNEL
void store_turned(std::uint32_t* __restrict end, const std::uint8_t* __restrict from, std::int32_t count) {
    for (std::int32_t k = 0; k < count; ++k) {
        const std::uint8_t* bgr = from + std::ptrdiff_t{k} * 3;
        *(end - 1 - k) = static_cast<std::uint32_t>(bgr[0]) | static_cast<std::uint32_t>(bgr[1]) << 8 |
                         static_cast<std::uint32_t>(bgr[2]) << 16;
    }
}

} // namespace

gtex video_open(const char* path) {
    video_close();
    video_elapsed_ms = 0;
    video_position = 0;
    AVIFileInit();
    is_open = true;
    if (AVIStreamOpenFromFileA(&video_stream, path, avi::type_video, 0, 0, nullptr) != avi::ok) {
        warn("Failed to open avi stream");
        return gtex_create(frame_columns, frame_rows, 0);
    }
    read_properties();
    const gtex surface = gtex_create(video_width, video_height, 0);
    video_getframe = AVIStreamGetFrameOpen(video_stream, nullptr);
    if (video_getframe == nullptr) warn("Failed to open AVI frame");
    return surface;
}

void video_frame_read(gtex dst, std::int32_t frame) {
    if (dst.pixels == nullptr) return;
    const avi::bitmap_header* bitmap = AVIStreamGetFrame(video_getframe, frame);
    if (bitmap == nullptr) return;
    const std::uint8_t* pixels =
        reinterpret_cast<const std::uint8_t*>(bitmap) + bitmap->biSize + std::size_t{bitmap->biClrUsed} * 4;
    const std::int32_t there = bitmap->biWidth * bitmap->biHeight;
    store_turned(dst.pixels + std::max(dst.count, 0), pixels, std::min(dst.count, there));
}

void video_clock_start() {
    video_last_tick = winbase::GetTickCount();
}

void video_step(gtex dst) {
    const std::uint32_t now = winbase::GetTickCount();
    video_elapsed_ms =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(video_elapsed_ms) + (now - video_last_tick));
    video_last_tick = winbase::GetTickCount();
    // Without a clip there is but position 0, and time beyond 2^31 ms counts as the clip's end.
    const bool runs = video_ms_per_frame > 0 && video_elapsed_ms >= 0;
    video_position = runs ? video_elapsed_ms / video_ms_per_frame : video_length;
    if (video_position >= video_length) {
        video_position = 0;
        video_elapsed_ms = 0;
    }
    video_frame_read(dst, video_position);
}

void video_close() {
    if (!is_open) return;
    is_open = false;
    AVIStreamGetFrameClose(video_getframe);
    AVIStreamRelease(video_stream);
    video_getframe = nullptr;
    video_stream = nullptr;
    video_width = video_height = video_length = video_ms_per_frame = 0;
    AVIFileExit();
}
