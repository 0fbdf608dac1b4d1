// Decoded frames as packed bitmaps. Inside of platform/avifile.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "morvane/platform/clip/avifile.h"

struct AVFrame;
struct SwsContext;

namespace avi {

class bitmap {
  public:
    // Bitmaps of this size, both sides above 0 and within the limits of the layer.
    bitmap(std::int32_t width, std::int32_t height);
    ~bitmap();
    bitmap(const bitmap&) = delete;
    bitmap& operator=(const bitmap&) = delete;

    // Converts a frame, stretched where its size is another. False if nobody knows its pixels; the bitmap is
    // black then.
    bool take(const AVFrame& frame);

    // The bitmap: head and pixels in one block.
    const bitmap_header* packed() const;

  private:
    bool convert(const AVFrame& frame);

    std::int32_t width_;
    std::int32_t height_;
    std::vector<std::uint8_t> block_;
    std::size_t wide_row_;           // bytes of a row in `wide_`
    std::vector<std::uint8_t> wide_; // rows with room behind them, which the converter may overrun
    SwsContext* converter_ = nullptr;
};

} // namespace avi
