#include "tools/record/contact_sheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "assets/forms/canvas.h"
#include "assets/forms/lettering.h"
#include "morvane/base/numbers.h"

namespace {

constexpr std::int32_t small_width = 192;  // of a picture on the sheet
constexpr std::int32_t gap = 8;            // between pictures, and around all
constexpr std::int32_t time_rows = 15;     // below a picture
constexpr std::uint32_t ground = 0x0b0a26; // the night of the production's colours
constexpr std::uint32_t letters = 0xf4eeff;
constexpr assets::type_style style{
    .size = 8, .stem = 0.19F, .thin = 0.15F, .stretch = 1.1F, .tracking = 0.3F};

std::uint32_t channel(std::uint32_t pixel, std::uint32_t shift) {
    return (pixel >> shift) & 255U;
}

// The mean of the pixels that lie, in part or whole, within the box; edges in 1/`unit` of a pixel.
struct box {
    std::int32_t left, top, right, bottom;
};
std::uint32_t mean(gtex picture, const box& part, std::int32_t unit_x, std::int32_t unit_y) {
    std::array<std::uint64_t, 3> sum{};
    std::uint64_t area = 0;
    for (std::int32_t y = part.top / unit_y; y * unit_y < part.bottom; ++y) {
        const std::int32_t tall = std::min(part.bottom, (y + 1) * unit_y) - std::max(part.top, y * unit_y);
        for (std::int32_t x = part.left / unit_x; x * unit_x < part.right; ++x) {
            const std::int32_t wide =
                std::min(part.right, (x + 1) * unit_x) - std::max(part.left, x * unit_x);
            const std::uint64_t share = static_cast<std::uint64_t>(wide) * static_cast<std::uint64_t>(tall);
            const std::uint32_t pixel = picture.pixels[y * picture.width + x];
            for (std::uint32_t i = 0; i < 3; ++i)
                sum[i] += share * channel(pixel, 8 * i);
            area += share;
        }
    }
    std::uint32_t result = 0;
    for (std::uint32_t i = 0; i < 3; ++i)
        result |= static_cast<std::uint32_t>((sum[i] + area / 2) / area) << (8 * i);
    return result;
}

std::uint32_t mixed(std::uint32_t below, std::uint32_t above, float amount) {
    std::uint32_t result = 0;
    for (const std::uint32_t shift : {0U, 8U, 16U}) {
        const auto a = static_cast<float>(channel(below, shift)),
                   b = static_cast<float>(channel(above, shift));
        result |= static_cast<std::uint32_t>(trunc_to_int(a + (b - a) * amount + 0.5F)) << shift;
    }
    return result;
}

// With as many decimals as it needs, two at most.
std::string time_text(double seconds) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.2f", seconds);
    std::string text = digits.data();
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

} // namespace

contact_sheet::contact_sheet(std::int32_t columns, std::int32_t count, std::int32_t width,
                             std::int32_t height, std::int32_t black_rows)
    : columns_(std::min(columns, count)), source_height_(height - 2 * black_rows), black_rows_(black_rows),
      small_width_(small_width), small_height_(std::max(1, small_width * source_height_ / width)),
      width_(gap + columns_ * (small_width_ + gap)),
      height_(gap + (count + columns_ - 1) / columns_ * (small_height_ + time_rows + gap)),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), ground) {}

void contact_sheet::add(gtex picture, double seconds) {
    const std::int32_t left = gap + placed_ % columns_ * (small_width_ + gap);
    const std::int32_t top = gap + placed_ / columns_ * (small_height_ + time_rows + gap);
    ++placed_;
    if (top + small_height_ + time_rows > height_) return; // no room was asked for
    place(picture, left, top);
    write_time(seconds, left, top + small_height_);
}

// A pixel of the sheet covers `picture.width` by `source_height_` parts of a picture of which each pixel is
// `small_width_` by `small_height_` parts: whole numbers, whatever the sizes.
void contact_sheet::place(gtex picture, std::int32_t left, std::int32_t top) {
    const gtex inner = gtex_wrap(picture.pixels + black_rows_ * picture.width, picture.width, source_height_);
    for (std::int32_t y = 0; y < small_height_; ++y) {
        std::uint32_t* row = pixels_.data() + (top + y) * width_ + left;
        for (std::int32_t x = 0; x < small_width_; ++x) {
            const box part{x * inner.width, y * inner.height, (x + 1) * inner.width, (y + 1) * inner.height};
            row[x] = mean(inner, part, small_width_, small_height_);
        }
    }
}

void contact_sheet::write_time(double seconds, std::int32_t left, std::int32_t top) {
    constexpr float inset = 4;
    const assets::setting text = assets::set_line(time_text(seconds), {0.5F, inset}, style);
    const assets::plane cover = assets::coverage_of(assets::distances_to(text, small_width_, time_rows, 2));
    for (std::int32_t y = 0; y < time_rows; ++y)
        for (std::int32_t x = 0; x < small_width_; ++x) {
            std::uint32_t& pixel = pixels_[static_cast<std::size_t>((top + y) * width_ + left + x)];
            pixel = mixed(pixel, letters, cover.at(x, y));
        }
}
