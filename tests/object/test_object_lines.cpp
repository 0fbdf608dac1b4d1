// Lines against the plain walk with a clip test for each pixel, and, where the ends are too far away to be
// walked, against the closed form of each step in 128-bit numbers.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "morvane/object/lines.h"
#include "tests/support/corners.h"
#include "tests/support/plain_fillers.h"
#include "tests/support/surfaces.h"

namespace {

constexpr std::uint32_t colour = 0x12357799; // odd channels, so that halves are rounded

// Any pixel of the line whose place on the long axis is in the frame, by the number of its step.
void closed_line(std::uint32_t* dst, corner a, corner b, bool both_ends) {
    const wide dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y);
    const std::int64_t sx = b.x < a.x ? -1 : 1, sy = b.y < a.y ? -1 : 1;
    const bool steep = dx <= dy;
    const wide length = steep ? dy : dx, other = steep ? dx : dy;
    if (length == 0) return plain::plot(dst, a.x, a.y, colour);
    for (std::int64_t at = 0; at < 512; ++at) {
        const wide k = steep ? (at - a.y) * sy : (at - a.x) * sx; // steps made along the axis
        if (k < 0 || k > length || (k == length && !both_ends)) continue;
        const wide steps = both_ends ? (2 * k * other + length) / (2 * length) : (k + 1) * other / length;
        if (steep)
            plain::plot(dst, static_cast<std::int64_t>(a.x + sx * steps), at, colour);
        else
            plain::plot(dst, at, static_cast<std::int64_t>(a.y + sy * steps), colour);
    }
}

} // namespace

TEST(object_lines, lines_are_those_of_the_plain_walk) {
    guarded_surface frame(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    coordinates random(12);
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t reach = i % 3 == 0 ? 40000 : i % 3 == 1 ? 300 : 20;
        corner a = random.any(-20, 532, 308),
               b = {a.x + random.between(-reach, reach), a.y + random.between(-reach, reach)};
        if (i % 7 == 0) a = {random.between(-reach, reach), random.between(-reach, reach)};
        if (i % 11 == 0) b.x = a.x;
        if (i % 13 == 0) b.y = a.y;
        if (i % 17 == 0) b = {a.x + 50, a.y - 50};
        frame.fill(7);
        pixels expected = frame.copy();
        plain::draw_line(expected.data(), a.x, a.y, b.x, b.y, colour);
        draw_line(dst, i32(a.x), i32(a.y), i32(b.x), i32(b.y), colour);
        ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << text_of(std::array{a, b});
    }
}

TEST(object_lines, ends_anywhere_within_32_bits_give_the_closed_form) {
    guarded_surface frame(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    coordinates random(13);
    int crossing = 0;
    for (int i = 0; i < 1200; ++i) {
        corner a = i % 4 == 0 ? random.any(-20, 532, 308) : random.far(), b = random.far();
        if (i % 2 == 0) { // through a point of the frame
            const std::int64_t limit = INT32_MAX - 600;
            a = {random.between(-limit, limit), random.between(-limit, limit)};
            b = {random.between(0, 512) - a.x, random.between(0, 288) - a.y};
        }
        for (const bool both_ends : {false, true}) {
            frame.fill(7);
            pixels expected = frame.copy();
            closed_line(expected.data(), a, b, both_ends);
            crossing += std::count(expected.begin(), expected.end(), colour) > 1;
            (both_ends ? draw_line_bres : draw_line)(dst, i32(a.x), i32(a.y), i32(b.x), i32(b.y), colour);
            ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << text_of(std::array{a, b}) << both_ends;
        }
    }
    EXPECT_GT(crossing, 500);
}

TEST(object_lines, the_start_is_drawn_and_the_end_is_not) {
    guarded_surface frame(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    frame.fill(0);
    draw_line(dst, 5, 5, 5, 5, 1);
    EXPECT_EQ(frame.at(5, 5), 1U);
    EXPECT_EQ(std::count(dst, dst + frame.count(), 1U), 1);
    draw_line(dst, 5, 5, 8, 5, 2);
    EXPECT_EQ(frame.at(5, 5), 2U);
    EXPECT_EQ(frame.at(7, 5), 2U);
    EXPECT_EQ(frame.at(8, 5), 0U);
    draw_line_bres(dst, 5, 5, 8, 5, 3);
    EXPECT_EQ(frame.at(8, 5), 3U);
    draw_line_bres(dst, 20, 9, 20, 4, 4);
    EXPECT_EQ(frame.at(20, 4), 4U);
    EXPECT_EQ(frame.at(20, 9), 4U);
    EXPECT_EQ(std::count(dst, dst + frame.count(), 4U), 6);
}

namespace {

// The smooth line walked from end to end, with the tests of each pixel.
void plain_smooth(std::uint32_t* dst, double x0, double y0, double x1, double y1, std::uint32_t line_colour) {
    const auto fixed = [](double value) { return static_cast<std::int64_t>(value * 256); };
    std::int64_t along0 = fixed(y0), across0 = fixed(x0), along1 = fixed(y1), across1 = fixed(x1);
    const bool steep = std::abs(across1 - across0) <= std::abs(along1 - along0);
    if (!steep) {
        std::swap(along0, across0);
        std::swap(along1, across1);
    }
    if (along1 < along0) {
        std::swap(along0, along1);
        std::swap(across0, across1);
    }
    const std::int64_t slope = along1 != along0 ? (across1 - across0) * 65536 / (along1 - along0) : 0;
    std::int64_t f = across0 * 256 - ((slope * (along0 & 255)) >> 8);
    std::int64_t at = along0 >> 8;
    do {
        for (const std::int64_t side : {0, 1}) {
            const std::int64_t x = steep ? (f >> 16) + side : at, y = steep ? at : (f >> 16) + side;
            const auto fraction = static_cast<std::int32_t>((f >> 8) & 255);
            const std::int32_t coverage = side == 0 ? 255 - fraction : fraction;
            if (x < 0 || x >= 512 || y * 512 + x < 1 || y * 512 + x >= 147456) continue;
            std::uint32_t& pixel = dst[y * 512 + x];
            const auto mean = [&](int k) {
                return (byte_of(pixel, k) + ((byte_of(line_colour, k) * coverage) >> 8)) >> 1;
            };
            pixel = word_of(0, mean(2), mean(1), mean(0));
        }
        f += slope;
    } while (++at < along1 >> 8);
}

} // namespace

TEST(object_lines, smooth_lines_are_those_of_the_plain_walk) {
    coordinates random(14);
    guarded_surface frame(512, 288, 15);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    for (int i = 0; i < 700; ++i) {
        const std::int64_t reach = i % 3 == 0 ? 5000000 : i % 3 == 1 ? 50000 : 3000;
        const auto part = [&](std::int64_t low, std::int64_t high) {
            return static_cast<double>(random.between(low, high)) / 256;
        };
        const double x0 = part(-5000, 136000), y0 = part(-5000, 78000);
        const double x1 = i % 19 == 0 ? x0 : x0 + part(-reach, reach),
                     y1 = i % 23 == 0 ? y0 : y0 + part(-reach, reach);
        pixels expected = frame.copy();
        const auto line_colour = static_cast<std::uint32_t>(random.between(0, 0xffffff));
        plain_smooth(expected.data(), x0, y0, x1, y1, line_colour);
        draw_line_smooth(dst, x0, y0, x1, y1, line_colour);
        ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << x0 << ' ' << y0 << ' ' << x1 << ' ' << y1;
    }
}

TEST(object_lines, smooth_coverage_is_complementary_and_distant_ends_are_sound) {
    guarded_surface frame(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    frame.fill(0x202020);
    draw_line_smooth(dst, 10, 20.25, 20, 20.25, 0xffffff);
    EXPECT_EQ(frame.at(9, 20), 0x202020U);
    EXPECT_EQ(frame.at(10, 20), 0x6f6f6fU); // (32 + (191 * 255 >> 8)) >> 1
    EXPECT_EQ(frame.at(19, 21), 0x2f2f2fU); // (32 + (64 * 255 >> 8)) >> 1
    EXPECT_EQ(frame.at(20, 20), 0x202020U);
    // straight through the middle of the frame from ends beyond all numbers
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [far, near] : {std::pair{infinity, 100.0}, {1e300, 100.0}, {2147483647.0, 100.0}}) {
        frame.fill(0);
        draw_line_smooth(dst, -far, near, far, near, 0xffffff);
        for (std::int32_t x = 0; x < 512; ++x)
            ASSERT_EQ(frame.at(x, 100), 0x7f7f7fU);
    }
    frame.fill(0);
    for (int k = 0; k < 4; ++k) {
        std::array<double, 4> ends{10, 10, 90, 90};
        ends[static_cast<std::size_t>(k)] = std::nan("");
        draw_line_smooth(dst, ends[0], ends[1], ends[2], ends[3], 0xffffff);
    }
    EXPECT_EQ(std::count(dst, dst + frame.count(), 0U), frame.count());
    EXPECT_TRUE(frame.intact());
}

TEST(object_lines, the_clip_window_cuts_and_the_frame_still_holds) {
    guarded_surface frame(512, 288), whole(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    const auto clipped = [&](float x0, float y0, float x1, float y1) {
        frame.fill(0);
        draw_line_clipped(dst, x0, y0, x1, y1, 0xffffff);
        return frame.copy();
    };
    const auto drawn = [&](double x0, double y0, double x1, double y1) {
        whole.fill(0);
        draw_line_smooth(static_cast<gtex>(whole).pixels, x0, y0, x1, y1, 0xffffff);
        return whole.copy();
    };
    const pixels nothing(147456, 0);
    EXPECT_EQ(clipped(-100, 50, 700, 50), drawn(1, 50, 512, 50)); // the frame, unless another window is set
    set_clip_window(100, 300, 200, 50);
    EXPECT_EQ(clipped(110, 60, 290, 190.5F), drawn(110, 60, 290, 190.5)); // inside
    EXPECT_EQ(clipped(0, 0, 400, 400), drawn(100, 100, 200, 200));        // corner to corner
    EXPECT_EQ(clipped(500, 75, 150, 75), drawn(300, 75, 150, 75));
    EXPECT_EQ(clipped(120, 290, 120, -90), drawn(120, 200, 120, 50));
    EXPECT_EQ(clipped(50, 90, 200, -60), nothing); // passes the corner outside
    EXPECT_EQ(clipped(0, 0, 90, 250), nothing);
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(clipped(-infinity, 75, infinity, 75), drawn(100, 75, 300, 75));
    EXPECT_EQ(clipped(150, 100, infinity, infinity), drawn(150, 100, 250, 200));
    EXPECT_EQ(clipped(std::nanf(""), 75, 200, 75), nothing);
    // windows beyond the frame and inside out, ends of any size
    constexpr float ends[] = {-infinity,
                              -3e38F,
                              -1e9F,
                              -600,
                              0,
                              100.5F,
                              511,
                              1e9F,
                              3e38F,
                              infinity,
                              std::numeric_limits<float>::quiet_NaN()};
    for (const auto& [low, high] : {std::pair{INT32_MIN, INT32_MAX}, {-5000, 5000}, {300, 100}, {40, 40}}) {
        set_clip_window(low, high, high, low);
        for (const float x0 : ends)
            for (const float y0 : ends)
                for (const float x1 : ends)
                    for (const float y1 : ends)
                        draw_line_clipped(dst, x0, y0, x1, y1, 0xffffff);
        EXPECT_TRUE(frame.intact());
    }
    set_clip_window(300, 100, 200, 50);
    EXPECT_EQ(clipped(0, 75, 500, 75), nothing);
    set_clip_window(1, 512, 288, 1);
}
