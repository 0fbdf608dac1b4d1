// The clip reader, from opening to closing. The first byte of the input picks the frames that are read, the
// rest is the file.
#include <cstdlib>
#include <vector>

#include "morvane/media/video.h"
#include "tests/support/environment.h"
#include "tests/support/temp_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const no_display display; // a box would wait for somebody
    static const temp_folder folder;
    const std::string path = folder.write("clip.avi", std::span(data + 1, size - 1));

    gtex surface = video_open(path.c_str());
    if (surface.pixels == nullptr) std::abort();
    const bool open = video_stream != nullptr;
    if (open != (video_length > 0)) std::abort();
    if (open && (surface.width != video_width || surface.height != video_height)) std::abort();
    if (!open && (surface.width != frame_columns || surface.height != frame_rows)) std::abort();

    // Few frames of a large picture: each costs the test much time.
    const int reads = surface.count > 1 << 18 ? 2 : 8;
    std::uint32_t pick = data[0];
    for (int i = 0; i < reads; ++i) {
        const std::int32_t length = video_length > 0 ? video_length : 1;
        video_frame_read(surface, static_cast<std::int32_t>(pick >> 8) % length);
        pick = (pick * 1664525U + 1013904223U) & 0x7fffffffU;
    }
    for (const std::int32_t outside : {-1, video_length})
        video_frame_read(surface, outside);
    for (std::int32_t i = 0; i < surface.count; ++i)
        if (surface.pixels[i] >> 24 != 0) std::abort();
    video_step(surface);
    if (video_position < 0 || (open && video_position >= video_length)) std::abort();
    video_close();
    gtex_destroy(surface);
    return 0;
}
