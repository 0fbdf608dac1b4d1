// AVI files of Motion JPEG: every frame a key frame, colours in full resolution.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "assets/forms/file_forms.h"

namespace assets {

// Makes frames, one after the other; several encoders may work at the same time.
class jpeg_encoder {
  public:
    // `quality`: 1 the best, 31 the smallest.
    jpeg_encoder(std::int32_t width, std::int32_t height, int quality);
    ~jpeg_encoder();
    jpeg_encoder(const jpeg_encoder&) = delete;
    jpeg_encoder& operator=(const jpeg_encoder&) = delete;

    // A frame from `pixels` (R, G, B, top row first). Empty if the encoder refuses, which it does for want of
    // memory only.
    file_bytes encode(std::span<const std::uint8_t> pixels);

  private:
    struct parts;
    std::unique_ptr<parts> parts_;
};

// A clip of `frames`, which such encoders made, `rate` of them a second. For less than 2 GB in all.
file_bytes avi_file(std::int32_t width, std::int32_t height, int rate, std::span<const file_bytes> frames);

} // namespace assets
