// From the show's words to the planes that video encoders take.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "morvane/gtex/gtex.h"

// A luma plane and two of half its width and height, one byte a sample.
struct picture_planes {
    std::array<std::uint8_t*, 3> samples{}; // Y, Cb, Cr
    std::array<std::ptrdiff_t, 3> stride{}; // bytes from row to row
};

// Turns pictures of one size into planes with the matrix of ITU-R BT.709, narrow range (Y from 16 to 235),
// and enlarges them by a whole factor, every pixel a square with hard edges. With an even factor each chroma
// sample lies within one pixel, so that halving the chroma loses nothing; with an odd one neighbours are
// averaged.
class plane_maker {
  public:
    // `width` and `height` of the pictures, even; `scale` from 1 up.
    plane_maker(std::int32_t width, std::int32_t height, std::int32_t scale);

    // Fills the planes of `to`, `width * scale` by `height * scale` samples of luma, from a picture of that
    // width and height. The two don't overlap.
    void convert(gtex picture, const picture_planes& to);

  private:
    void enlarge_luma(const picture_planes& to) const;
    void enlarge_chroma(std::size_t which, const picture_planes& to) const;

    std::size_t width_, height_, scale_;
    std::array<std::vector<std::uint8_t>, 3> small_; // Y, Cb, Cr of every pixel
};
