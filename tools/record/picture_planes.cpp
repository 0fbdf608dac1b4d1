#include "tools/record/picture_planes.h"

#include <algorithm>

namespace {

// Weights of red, green and blue in 1/65536; those of a chroma plane sum to 0, so that greys have none.
struct weights {
    std::int32_t red, green, blue, zero;
};
constexpr weights luma{11966, 40254, 4064, 16};
constexpr weights blue_difference{-6596, -22189, 28785, 128};
constexpr weights red_difference{28785, -26145, -2640, 128};

std::uint8_t weighted(std::uint32_t pixel, const weights& by) {
    const auto channel = [pixel](std::uint32_t shift) {
        return static_cast<std::int32_t>((pixel >> shift) & 255U);
    };
    constexpr std::int32_t half = 32768;
    const std::int32_t sum = by.red * channel(16) + by.green * channel(8) + by.blue * channel(0) + half;
    return static_cast<std::uint8_t>((sum >> 16) + by.zero);
}

} // namespace

plane_maker::plane_maker(std::int32_t width, std::int32_t height, std::int32_t scale)
    : width_(static_cast<std::size_t>(width)), height_(static_cast<std::size_t>(height)),
      scale_(static_cast<std::size_t>(scale)) {
    for (auto& plane : small_)
        plane.resize(width_ * height_);
}

void plane_maker::convert(gtex picture, const picture_planes& to) {
    constexpr weights of_plane[] = {luma, blue_difference, red_difference};
    for (std::size_t which = 0; which < 3; ++which) {
        const weights by = of_plane[which];
        std::transform(picture.pixels, picture.pixels + width_ * height_, small_[which].begin(),
                       [by](std::uint32_t pixel) { return weighted(pixel, by); });
    }
    enlarge_luma(to);
    enlarge_chroma(1, to);
    enlarge_chroma(2, to);
}

void plane_maker::enlarge_luma(const picture_planes& to) const {
    std::uint8_t* row = to.samples[0];
    for (std::size_t y = 0; y < height_; ++y) {
        const std::uint8_t* source = small_[0].data() + y * width_;
        std::uint8_t* sample = row;
        for (std::size_t x = 0; x < width_; ++x)
            sample = std::fill_n(sample, scale_, source[x]);
        for (std::size_t copy = 1; copy < scale_; ++copy)
            std::copy_n(row, width_ * scale_, row + static_cast<std::ptrdiff_t>(copy) * to.stride[0]);
        row += static_cast<std::ptrdiff_t>(scale_) * to.stride[0];
    }
}

void plane_maker::enlarge_chroma(std::size_t which, const picture_planes& to) const {
    const std::size_t columns = width_ * scale_ / 2, rows = height_ * scale_ / 2;
    for (std::size_t y = 0; y < rows; ++y) {
        const std::uint8_t* upper = small_[which].data() + 2 * y / scale_ * width_;
        const std::uint8_t* lower = small_[which].data() + (2 * y + 1) / scale_ * width_;
        std::uint8_t* row = to.samples[which] + static_cast<std::ptrdiff_t>(y) * to.stride[which];
        for (std::size_t x = 0; x < columns; ++x) {
            const std::size_t left = 2 * x / scale_, right = (2 * x + 1) / scale_;
            row[x] =
                static_cast<std::uint8_t>((upper[left] + upper[right] + lower[left] + lower[right] + 2) / 4);
        }
    }
}
