// A clip opened through the layer, and what its frames show.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "morvane/platform/clip/avifile.h"
#include "tests/support/clip_files.h"

// An open clip with a frame access; both closed at the end.
class open_clip {
  public:
    explicit open_clip(const std::string& path) {
        AVIFileInit();
        result = AVIStreamOpenFromFileA(&stream, path.c_str(), avi::type_video, 0, 0, nullptr);
        access = AVIStreamGetFrameOpen(stream, nullptr);
    }
    ~open_clip() {
        AVIStreamRelease(stream); // the access holds on to it
        AVIStreamGetFrameClose(access);
        AVIFileExit();
    }
    open_clip(const open_clip&) = delete;
    open_clip& operator=(const open_clip&) = delete;

    int length() const { return AVIStreamLength(stream); }
    const avi::bitmap_header* frame(int number) const { return AVIStreamGetFrame(access, number); }
    // The pixels of a frame as they lie in the bitmap; none where there is no frame.
    std::vector<std::uint8_t> pixels(int number) const {
        const avi::bitmap_header* head = frame(number);
        if (head == nullptr) return {};
        const auto* first = reinterpret_cast<const std::uint8_t*>(head) + head->biSize;
        return {first, first + head->biSizeImage};
    }

    std::int32_t result = -1;
    avi::stream* stream = nullptr;
    avi::get_frame* access = nullptr;
};

inline std::vector<clip_files::picture> numbered_pictures(int width, int height, int count) {
    std::vector<clip_files::picture> all;
    for (int i = 0; i < count; ++i)
        all.push_back(clip_files::numbered(width, height, i));
    return all;
}

// The number that a decoded picture of 64 x 48 shows.
inline int number_in(const std::vector<std::uint8_t>& pixels) {
    int number = 0;
    for (int bit = 0; bit < 8 && !pixels.empty(); ++bit) {
        const std::size_t at = (36 * 64 + static_cast<std::size_t>(bit) * 8 + 4) * 3; // in the upper half
        if (pixels[at + 1] > 105) number |= 1 << bit;
    }
    return pixels.empty() ? -1 : number;
}

// Numbers that jump to and fro: near, far, repeated, the ends.
inline std::vector<int> jumps(int length) {
    std::vector<int> all = {0, 0, length - 1, length - 1, 1, length / 2, length / 2 - 1, length / 2 + 1,
                            0, 3, 2};
    std::mt19937 random(3);
    for (int i = 0; i < 60; ++i)
        all.push_back(static_cast<int>(random() % static_cast<unsigned>(length)));
    for (int i = length - 1; i >= 0; i -= 2)
        all.push_back(i);
    return all;
}
