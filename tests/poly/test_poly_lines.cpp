// Dots and lines against walks that test every pixel, and the outcodes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "morvane/poly/lines.h"
#include "morvane/poly/raster.h"

namespace {

constexpr std::uint32_t colour = 0x0a0b0c0d;

class poly_lines : public testing::Test {
  protected:
    void SetUp() override {
        raster_init(512, 288);
        raster_set_window(1, 512, 288, 0);
        std::mt19937 noise(3);
        for (std::uint32_t& pixel : start_)
            pixel = static_cast<std::uint32_t>(noise());
        frame_ = expected_ = start_;
    }

    // The range of random coordinates: about the frame, or all numbers.
    std::int64_t somewhere(bool wide, std::int64_t size) {
        if (!wide) return std::uniform_int_distribution<std::int64_t>(-size / 2, size * 3 / 2)(random_);
        return std::uniform_int_distribution<std::int64_t>(INT32_MIN, INT32_MAX)(random_);
    }

    std::uint32_t* pixel(std::int64_t x, std::int64_t y) {
        if (x < 0 || x >= 512 || y < 0 || y >= 288) return nullptr;
        return &expected_[static_cast<std::size_t>(y * 512 + x)];
    }

    // The plain line with every pixel of the frame asked for by itself: along the major axis step n plots
    // n - 1 pixels from the start, and the minor axis has gone floor(n * minor / major) then.
    void plain_line(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1) {
        const std::int64_t ax = std::abs(x1 - x0), ay = std::abs(y1 - y0);
        const std::int64_t sx = x1 < x0 ? -1 : 1, sy = y1 < y0 ? -1 : 1;
        const bool by_x = ax > ay;
        const std::int64_t major = by_x ? ax : std::max<std::int64_t>(ay, 1), minor = by_x ? ay : ax;
        for (std::int64_t at = 0; at < (by_x ? 512 : 288); ++at) {
            const std::int64_t n = (by_x ? (at - x0) * sx : (at - y0) * sy) + 1;
            if (n < 1 || n > major) continue;
            auto gone =
                static_cast<std::int64_t>(static_cast<std::uint64_t>(n) * static_cast<std::uint64_t>(minor) /
                                          static_cast<std::uint64_t>(major));
            if (ax == 0 && ay == 0) gone = 1; // the error term of 0 reaches the length of 0
            std::uint32_t* const p = by_x ? pixel(at, y0 + sy * gone) : pixel(x0 + sx * gone, at);
            if (p) *p = colour;
        }
    }

    // The same in the words of the error term, step by step.
    void stepped_line(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1) {
        const std::int64_t ax = std::abs(x1 - x0), ay = std::abs(y1 - y0);
        const std::int64_t sx = x1 < x0 ? -1 : 1, sy = y1 < y0 ? -1 : 1;
        const bool by_x = ax > ay;
        std::int64_t error = 0, x = x0, y = y0;
        for (std::int64_t rest = std::max<std::int64_t>({ax, ay, 1}); rest > 0; --rest) {
            error += by_x ? ay : ax;
            if (error >= (by_x ? ax : ay)) {
                error -= by_x ? ax : ay;
                (by_x ? y : x) += by_x ? sy : sx;
            }
            if (std::uint32_t* const p = pixel(x, y)) *p = colour;
            (by_x ? x : y) += by_x ? sx : sy;
        }
    }

    void mix(std::int64_t x, std::int64_t y, std::int64_t weight, const std::array<int, 3>& rgb) {
        std::uint32_t* const p = pixel(x, y);
        if (!p) return;
        std::uint32_t result = 0;
        for (int i = 0; i < 3; ++i) {
            const std::int64_t d = *p >> (16 - 8 * i) & 0xff;
            const std::int64_t mixed = (d + (weight * rgb[static_cast<std::size_t>(i)] >> 8)) >> 1;
            result = result << 8 | static_cast<std::uint32_t>(mixed);
        }
        *p = result;
    }

    void smooth_line(double x0, double y0, double x1, double y1, const std::array<int, 3>& rgb) {
        const auto fixed = [](double v) {
            return static_cast<std::int64_t>(std::clamp(v * 256, -2147483648.0, 2147483647.0));
        };
        std::int64_t a = fixed(x0), b = fixed(y0), c = fixed(x1), d = fixed(y1);
        const bool by_x = std::abs(d - b) < std::abs(c - a);
        if (!by_x) { // turned about the diagonal
            std::swap(a, b);
            std::swap(c, d);
        }
        if (c < a) {
            std::swap(a, c);
            std::swap(b, d);
        }
        const std::int64_t step = c == a ? 0 : (d - b) * 256 / (c - a) * 256;
        for (std::int64_t at = 0; at < 512; ++at) {
            if (at < a >> 8 || at >= c >> 8) continue;
            const std::int64_t f = b * 256 + step * (at - (a >> 8)), row = f >> 16, part = f & 0xffff;
            mix(by_x ? at : row, by_x ? row : at, part >> 8, rgb);
            mix(by_x ? at : row + 1, by_x ? row + 1 : at, (0xffff - part) >> 8, rgb);
        }
    }

    std::mt19937 random_{11};
    std::vector<std::uint32_t> start_ = std::vector<std::uint32_t>(512 * 288);
    std::vector<std::uint32_t> frame_, expected_;
};

TEST_F(poly_lines, plain_lines_follow_the_error_term) {
    for (int i = 0; i < 3000; ++i) {
        const auto x0 = somewhere(false, 512), y0 = somewhere(false, 288);
        const bool point = i % 10 == 0, flat = i % 10 == 1, diagonal = i % 10 == 2;
        const auto x1 = point ? x0 : somewhere(false, 512);
        const auto y1 = point || flat ? y0 : diagonal ? y0 + x1 - x0 : somewhere(false, 288);
        line_plain(frame_.data(), static_cast<std::int32_t>(x0), static_cast<std::int32_t>(y0),
                   static_cast<std::int32_t>(x1), static_cast<std::int32_t>(y1), colour);
        stepped_line(x0, y0, x1, y1);
        if (i % 20 != 0) continue;
        ASSERT_EQ(frame_, expected_) << x0 << ", " << y0 << " to " << x1 << ", " << y1;
        frame_ = expected_ = start_;
    }
    frame_ = start_;
    line_plain(frame_.data(), 0, 0, 5, 2, colour);
    EXPECT_EQ(std::count(frame_.begin(), frame_.end(), colour), 5);
    EXPECT_EQ(frame_[2 * 512 + 4], colour); // the last of them
}

TEST_F(poly_lines, plain_lines_of_any_length_follow_it_inside_the_frame) {
    std::vector<std::array<std::int64_t, 4>> lines = {{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX},
                                                      {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN},
                                                      {INT32_MIN, 100, INT32_MAX, 101},
                                                      {300, INT32_MAX, 299, INT32_MIN},
                                                      {INT32_MAX, 5, INT32_MAX, 5},
                                                      {511, 287, 511, 287},
                                                      {0, 287, 1000000000, 287},
                                                      {INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN}};
    for (int i = 0; i < 2000; ++i) {
        lines.push_back(
            {somewhere(true, 512), somewhere(true, 288), somewhere(i % 2, 512), somewhere(i % 4 > 1, 288)});
    }
    for (const auto& [x0, y0, x1, y1] : lines) {
        line_plain(frame_.data(), static_cast<std::int32_t>(x0), static_cast<std::int32_t>(y0),
                   static_cast<std::int32_t>(x1), static_cast<std::int32_t>(y1), colour);
        plain_line(x0, y0, x1, y1);
    }
    EXPECT_EQ(frame_, expected_);
}

TEST_F(poly_lines, smooth_lines_mix_two_pixels_a_step) {
    for (int i = 0; i < 2000; ++i) {
        const auto coordinate = [&](std::int64_t size) {
            return static_cast<float>(static_cast<double>(somewhere(false, size * 16)) / 16);
        };
        float x0 = coordinate(512), y0 = coordinate(288), x1 = coordinate(512), y1 = coordinate(288);
        if (i % 8 == 0) x1 = x0;
        if (i % 8 == 1) y1 = y0;
        if (i % 8 == 2) y1 = 1e30F;
        if (i % 8 == 3) x0 = -std::numeric_limits<float>::infinity();
        const std::array<int, 3> rgb{i % 256, 255 - i % 256, 255};
        line_aa(frame_.data(), x0, y0, x1, y1, rgb[0], rgb[1], rgb[2]);
        smooth_line(x0, y0, x1, y1, rgb);
        ASSERT_EQ(frame_, expected_) << x0 << ", " << y0 << " to " << x1 << ", " << y1;
    }
}

TEST_F(poly_lines, a_smooth_line_between_two_rows_has_nearly_half_of_each) {
    std::fill(frame_.begin(), frame_.end(), 0U);
    line_aa(frame_.data(), 0, 5.5F, 10, 5.5F, 255, 255, 255);
    for (std::size_t x = 0; x < 12; ++x) {
        EXPECT_EQ(frame_[5 * 512 + x], x < 10 ? 0x3f3f3fU : 0U); // (128 * 255 >> 8) >> 1
        EXPECT_EQ(frame_[6 * 512 + x], x < 10 ? 0x3f3f3fU : 0U); // (127 * 255 >> 8) >> 1
        EXPECT_EQ(frame_[4 * 512 + x] + frame_[7 * 512 + x], 0U);
    }
}

TEST_F(poly_lines, a_dot_spreads_over_four_pixels) {
    const auto plain_dot = [&](double x, double y, const std::array<int, 3>& rgb) {
        const double ix = std::floor(x), iy = std::floor(y);
        if (!(ix >= 0 && iy >= 0 && ix <= 512 && iy <= 288)) return;
        const double fx = x - ix, fy = y - iy;
        const double weights[] = {(1 - fx) * (1 - fy), fx * (1 - fy), fx * fy, (1 - fx) * fy};
        const int right[] = {0, 1, 1, 0}, down[] = {0, 0, 1, 1};
        for (int i = 0; i < 4; ++i) {
            const int index = (static_cast<int>(iy) + down[i]) * 512 + static_cast<int>(ix) + right[i];
            if (index >= 512 * 288) continue;
            std::uint32_t& p = expected_[static_cast<std::size_t>(index)];
            std::uint32_t result = 0;
            for (int c = 0; c < 3; ++c) {
                const int old = static_cast<int>(p >> (16 - 8 * c) & 0xff);
                const int add =
                    static_cast<int>(std::trunc(rgb[static_cast<std::size_t>(c)] * weights[i])) / 2;
                result = result << 8 | static_cast<std::uint32_t>(std::min(255, old / 2 + add));
            }
            p = result;
        }
    };
    for (int i = 0; i < 4000; ++i) {
        const auto at = [&](int size) {
            return std::uniform_real_distribution<float>(-3, static_cast<float>(size) + 3)(random_);
        };
        float x = at(512), y = at(288);
        if (i % 7 == 0) x = std::floor(x);
        if (i % 7 == 1) y = 287.5F;
        if (i % 7 == 2) x = 512;
        const std::array<int, 3> rgb{i % 256, 255 - i % 256, i % 400};
        plot_aa(frame_.data(), x, y, rgb[0], rgb[1], rgb[2]);
        plain_dot(x, y, rgb);
    }
    const float bad[] = {NAN, INFINITY, -INFINITY, 1e30F, -1e30F};
    for (float v : bad) {
        plot_aa(frame_.data(), v, 5, 255, 255, 255);
        plot_aa(frame_.data(), 5, v, 255, 255, 255);
    }
    EXPECT_EQ(frame_, expected_);
    plot_aa(frame_.data(), 20, 20, INT32_MIN, INT32_MAX, -1); // any number gives a channel
    EXPECT_EQ(frame_[20 * 512 + 20], 0xff00U | (expected_[20 * 512 + 20] & 0xff) >> 1);
}

TEST_F(poly_lines, outcodes_tell_the_sides_and_bounds_are_inside) {
    raster_set_window(10, 100, 50, 5);
    for (const auto& [x, y, code] : {std::array{10, 5, 0},
                                     {100, 50, 0},
                                     {9, 5, 4},
                                     {101, 50, 8},
                                     {10, 4, 1},
                                     {10, 51, 2},
                                     {9, 4, 5},
                                     {101, 4, 9},
                                     {9, 51, 6},
                                     {101, 51, 10},
                                     {INT32_MIN, INT32_MAX, 6}}) {
        EXPECT_EQ(raster_outcode(x, y), code) << x << ", " << y;
        EXPECT_EQ(raster_outcode_f(static_cast<float>(x), static_cast<float>(y)), code) << x << ", " << y;
    }
    EXPECT_EQ(raster_outcode_f(9.99F, 50.01F), 6);
    EXPECT_EQ(raster_outcode_f(NAN, NAN), 0);
}

// The loop of Cohen and Sutherland as it is told, in `Number`s that can't overflow.
template<typename Number>
bool plain_clip(Number& x0, Number& y0, Number& x1, Number& y1) {
    const auto code = [](Number x, Number y) {
        return (y < 0 ? 1 : y > 288 ? 2 : 0) + (x < 1 ? 4 : x > 512 ? 8 : 0);
    };
    for (;;) {
        const int c0 = code(x0, y0), c1 = code(x1, y1);
        if ((c0 | c1) == 0) return true;
        if ((c0 & c1) != 0) return false;
        const int c = c0 != 0 ? c0 : c1;
        Number x = 0, y = 0;
        if ((c & 3) != 0) {
            y = c & 1 ? 0 : 288;
            x = (y - y0) * (x1 - x0) / (y1 - y0) + x0;
        }
        if ((c & 12) != 0) {
            x = c & 4 ? 1 : 512;
            y = (x - x0) * (y1 - y0) / (x1 - x0) + y0;
        }
        (c0 != 0 ? x0 : x1) = x;
        (c0 != 0 ? y0 : y1) = y;
    }
}

TEST_F(poly_lines, clipped_lines_are_those_of_the_part_inside_the_window) {
    int drawn = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::int64_t spread = i % 3 == 0 ? 2 : i % 3 == 1 ? 60 : 900000;
        std::int64_t x0 = somewhere(false, 512 * spread), y0 = somewhere(false, 288 * spread);
        std::int64_t x1 = somewhere(false, 512 * spread), y1 = somewhere(false, 288 * spread);
        if (i % 5 == 0) x1 = somewhere(false, 512), y1 = somewhere(false, 288);
        line_clipped(frame_.data(), static_cast<std::int32_t>(x0), static_cast<std::int32_t>(y0),
                     static_cast<std::int32_t>(x1), static_cast<std::int32_t>(y1), colour);
        if (!plain_clip(x0, y0, x1, y1)) continue;
        ++drawn;
        stepped_line(x0, y0, x1, y1);
        ASSERT_EQ(frame_, expected_) << i;
    }
    EXPECT_GT(drawn, 500);
}

TEST_F(poly_lines, clipped_smooth_lines_are_those_of_the_part_inside_the_window) {
    int drawn = 0;
    for (int i = 0; i < 2000; ++i) {
        const auto at = [&](float size) {
            return std::uniform_real_distribution<float>(-size, 2 * size)(random_);
        };
        const float x0 = at(512), y0 = at(288), x1 = at(512), y1 = at(288);
        line_aa_clipped(frame_.data(), x0, y0, x1, y1, 200, 100, 50);
        // The ends of two cuts may differ in the last bit of a float, which 24.8 fixed point doesn't see.
        double a = x0, b = y0, c = x1, d = y1;
        if (!plain_clip(a, b, c, d)) continue;
        ++drawn;
        const auto f = [](double v) { return static_cast<double>(static_cast<float>(v)); };
        smooth_line(f(a), f(b), f(c), f(d), {200, 100, 50});
        ASSERT_EQ(frame_, expected_) << i;
    }
    EXPECT_GT(drawn, 500);
}

TEST_F(poly_lines, no_line_leaves_the_frame_or_hangs) {
    const float wild[] = {NAN, INFINITY, -INFINITY, 3e38F, -3e38F, 0, 512, 288, 1, -0.0F, 511.99F, 1e-38F};
    const std::int32_t limits[] = {INT32_MIN, INT32_MIN + 1, -1,       0, 1, 287, 288, 511,
                                   512,       INT32_MAX - 1, INT32_MAX};
    for (bool upside_down : {false, true}) {
        if (upside_down) raster_set_window(300, 100, -INT32_MAX, INT32_MAX);
        for (float a : wild) {
            for (float b : wild) {
                for (float c : wild) {
                    line_aa(frame_.data(), a, b, c, 7, 255, INT32_MAX, INT32_MIN);
                    line_aa_clipped(frame_.data(), a, b, c, 7, 255, 255, 255);
                    line_aa_clipped(frame_.data(), 7, a, b, c, 255, 255, 255);
                }
            }
        }
        for (std::int32_t a : limits) {
            for (std::int32_t b : limits) {
                for (std::int32_t c : limits) {
                    for (std::int32_t d : limits)
                        line_clipped(frame_.data(), a, b, c, d, colour);
                }
            }
        }
    }
    raster_init(0, 0); // no frame, nothing to draw into
    line_plain(nullptr, 0, 0, 5, 5, colour);
    line_aa(nullptr, 0, 0, 5, 5, 1, 1, 1);
    plot_aa(nullptr, 0, 0, 1, 1, 1);
}

} // namespace
