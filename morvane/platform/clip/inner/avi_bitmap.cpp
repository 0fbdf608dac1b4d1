#include "morvane/platform/clip/inner/avi_bitmap.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

extern "C" {
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

#include "morvane/platform/clip/inner/avi_colour.h"

namespace avi {
namespace {

constexpr std::size_t row_alignment = 64;

// Chroma smooth between its samples, and no short cuts in rounding.
constexpr int exact = SWS_BILINEAR | SWS_FULL_CHR_H_INT | SWS_ACCURATE_RND;

// Colours by the frame's own tags; without any they are those of standard television.
void set_colours(SwsContext* converter, const AVFrame& frame) {
    const int matrix = frame.colorspace == AVCOL_SPC_UNSPECIFIED ? SWS_CS_DEFAULT : frame.colorspace;
    const int full_range = frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
    const int* coefficients = sws_getCoefficients(matrix);
    sws_setColorspaceDetails(converter, coefficients, full_range, coefficients, 1, 0, 1 << 16, 1 << 16);
}

// The terms for a frame that `to_bgr` can convert; null for others.
const colour_terms* terms_of(const AVFrame& frame) {
    const bool usual = frame.colorspace == AVCOL_SPC_UNSPECIFIED || frame.colorspace == AVCOL_SPC_BT470BG ||
                       frame.colorspace == AVCOL_SPC_SMPTE170M;
    if (!usual) return nullptr;
    if (frame.format == AV_PIX_FMT_YUVJ444P) return &full_range;
    if (frame.format != AV_PIX_FMT_YUV444P) return nullptr;
    return frame.color_range == AVCOL_RANGE_JPEG ? &full_range : &studio_range;
}

} // namespace

bitmap::bitmap(std::int32_t width, std::int32_t height) : width_(width), height_(height) {
    const auto row = static_cast<std::size_t>(width) * 3;
    const auto rows = static_cast<std::size_t>(height);
    wide_row_ = (row / row_alignment + 2) * row_alignment;
    wide_.resize(wide_row_ * rows + row_alignment);
    block_.resize(sizeof(bitmap_header) + row * rows);
    const bitmap_header header{.biSize = sizeof(bitmap_header),
                               .biWidth = width,
                               .biHeight = height,
                               .biPlanes = 1,
                               .biBitCount = 24,
                               .biCompression = 0,
                               .biSizeImage = static_cast<std::uint32_t>(row * rows),
                               .biXPelsPerMeter = 0,
                               .biYPelsPerMeter = 0,
                               .biClrUsed = 0,
                               .biClrImportant = 0};
    std::memcpy(block_.data(), &header, sizeof header);
}

bitmap::~bitmap() {
    sws_freeContext(converter_);
}

const bitmap_header* bitmap::packed() const {
    return reinterpret_cast<const bitmap_header*>(block_.data());
}

bool bitmap::take(const AVFrame& frame) {
    if (convert(frame)) return true;
    std::fill(block_.begin() + sizeof(bitmap_header), block_.end(), std::uint8_t{0});
    return false;
}

bool bitmap::convert(const AVFrame& frame) {
    if (frame.width <= 0 || frame.height <= 0) return false;
    const auto row = static_cast<std::size_t>(width_) * 3;
    std::uint8_t* to = block_.data() + block_.size(); // the bottom row comes first
    if (const colour_terms* terms = terms_of(frame);
        terms != nullptr && frame.width == width_ && frame.height == height_) {
        for (std::int32_t y = 0; y < height_; ++y) {
            auto plane = [&](int i) { return frame.data[i] + std::ptrdiff_t{y} * frame.linesize[i]; };
            to_bgr(to -= row, plane(0), plane(1), plane(2), width_, *terms);
        }
        return true;
    }
    const auto form = static_cast<AVPixelFormat>(frame.format);
    converter_ = sws_getCachedContext(converter_, frame.width, frame.height, form, width_, height_,
                                      AV_PIX_FMT_BGR24, exact, nullptr, nullptr, nullptr);
    if (converter_ == nullptr) return false;
    set_colours(converter_, frame);

    // Vectors hold their bytes at no special alignment, and the converter likes one.
    const auto address = reinterpret_cast<std::uintptr_t>(wide_.data());
    std::uint8_t* wide = wide_.data() + (row_alignment - address % row_alignment) % row_alignment;
    std::uint8_t* const planes[4] = {wide, nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(wide_row_), 0, 0, 0};
    if (sws_scale(converter_, frame.data, frame.linesize, 0, frame.height, planes, strides) != height_)
        return false;
    for (std::int32_t y = 0; y < height_; ++y, wide += wide_row_)
        std::memcpy(to -= row, wide, row);
    return true;
}

} // namespace avi
