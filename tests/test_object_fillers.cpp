// Fillers and lines against the plain walk with a clip test for each pixel, and, where the corners are too
// far away to be walked, against the closed form of each row in 128-bit numbers.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>

#include "object/fill.h"
#include "object/fill_spans.h"
#include "object/lines.h"
#include "tests/support/plain_fillers.h"
#include "tests/support/surfaces.h"

namespace {

__extension__ using wide = __int128;
using pixels = std::vector<std::uint32_t>;
using plain::corner;
using triangle = std::array<corner, 3>;

constexpr std::uint32_t colour = 0x12357799; // odd channels, so that halves are rounded

class coordinates {
  public:
    explicit coordinates(std::uint32_t seed) : random(seed) {}
    std::int64_t between(std::int64_t low, std::int64_t high) {
        return low + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(high - low + 1));
    }
    corner any(std::int64_t low, std::int64_t high_x, std::int64_t high_y) {
        return {between(low, high_x), between(low, high_y), between(-600, 600), between(-600, 600)};
    }
    triangle three(std::int64_t low, std::int64_t high_x, std::int64_t high_y) {
        return {any(low, high_x, high_y), any(low, high_x, high_y), any(low, high_x, high_y)};
    }
    // A coordinate near 0, near the far edges, or at one end of the numbers.
    std::int64_t extreme() {
        constexpr std::int64_t marks[] = {0,         1,         287,        288,        511,
                                          512,       40000,     -40000,     1 << 20,    -(1 << 24),
                                          INT32_MAX, INT32_MIN, 2000000000, -1999999999};
        const std::int64_t mark = marks[random() % std::size(marks)];
        return std::clamp<std::int64_t>(mark + between(-3, 3), INT32_MIN, INT32_MAX);
    }
    corner far() { return {extreme(), extreme(), between(-600, 600), between(-600, 600)}; }

  private:
    std::mt19937_64 random;
};

std::int32_t i32(std::int64_t value) {
    return static_cast<std::int32_t>(value);
}

void flat(std::uint32_t* dst, const triangle& t) {
    fill_triangle(dst, i32(t[0].x), i32(t[0].y), i32(t[1].x), i32(t[1].y), i32(t[2].x), i32(t[2].y), colour);
}
void textured(std::uint32_t* dst, const std::uint32_t* texture, const triangle& t) {
    fill_triangle_textured(dst, texture, i32(t[0].x), i32(t[0].y), i32(t[1].x), i32(t[1].y), i32(t[2].x),
                           i32(t[2].y), i32(t[0].u), i32(t[0].v), i32(t[1].u), i32(t[1].v), i32(t[2].u),
                           i32(t[2].v));
}

template<std::size_t count>
std::string text_of(const std::array<corner, count>& t) {
    std::ostringstream text;
    for (const corner& point : t)
        text << '(' << point.x << ", " << point.y << ") ";
    return text.str();
}

// What `value` is on row `y` of the edge from row y0 to row y1, in 16.16.
wide on_row(std::int64_t y, std::int64_t y0, std::int64_t y1, std::int64_t from, std::int64_t to) {
    return wide{from} * 65536 + wide{y - y0} * (wide{to - from} * 65536 / (y1 - y0));
}

// `pixel(x, y, texel index)` for each pixel in the frame whose row and column the triangle covers.
template<typename Pixel>
void closed_form(triangle t, Pixel pixel) {
    plain::sort_corners(t[0], t[1], t[2]);
    for (std::int64_t y = std::max<std::int64_t>(1, t[0].y); y < std::min<std::int64_t>(288, t[2].y); ++y) {
        const corner& from = y < t[1].y ? t[0] : t[1];
        const corner& to = y < t[1].y ? t[1] : t[2];
        std::array<wide, 3> left{on_row(y, from.y, to.y, from.x, to.x), on_row(y, from.y, to.y, from.u, to.u),
                                 on_row(y, from.y, to.y, from.v, to.v)};
        std::array<wide, 3> right{on_row(y, t[0].y, t[2].y, t[0].x, t[2].x),
                                  on_row(y, t[0].y, t[2].y, t[0].u, t[2].u),
                                  on_row(y, t[0].y, t[2].y, t[0].v, t[2].v)};
        if (left[0] >= right[0]) std::swap(left, right);
        const wide xs = left[0] >> 16, xe = right[0] >> 16;
        for (std::int64_t x = 1; x < 512; ++x)
            if (x >= xs && x < xe) {
                const wide u = left[1] + (right[1] - left[1]) / (xe - xs) * (x - xs);
                const wide v = left[2] + (right[2] - left[2]) / (xe - xs) * (x - xs);
                pixel(x, y, static_cast<std::size_t>(((v >> 16) & 255) * 256 + ((u >> 16) & 255)));
            }
    }
}

} // namespace

TEST(object_fillers, triangles_are_those_of_the_plain_walk) {
    guarded_surface frame(512, 288), texture(256, 256, 5);
    const std::uint32_t* texels = static_cast<gtex>(texture).pixels;
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    coordinates random(1);
    for (int i = 0; i < 300; ++i) {
        triangle t = i % 8 == 1 ? random.three(-900, 1100, 900) : random.three(-20, 532, 308);
        if (i % 2 == 0) // a few pixels wide, around the first corner
            for (std::size_t k = 1; k < 3; ++k) {
                t[k].x = t[0].x + random.between(-9, 9);
                t[k].y = t[0].y + random.between(-9, 9);
            }
        if (i % 5 == 0) t[static_cast<std::size_t>(i % 3)].y = t[static_cast<std::size_t>((i + 1) % 3)].y;
        frame.fill(7);
        pixels expected = frame.copy();
        plain::fill_triangle(expected.data(), t[0], t[1], t[2], colour);
        flat(dst, t);
        ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << text_of(t);
        plain::fill_triangle_textured(expected.data(), texels, t[0], t[1], t[2]);
        textured(dst, texels, t);
        ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << text_of(t);
    }
}

TEST(object_fillers, corners_anywhere_within_32_bits_give_the_closed_form) {
    guarded_surface frame(512, 288), texture(256, 256, 6);
    const std::uint32_t* texels = static_cast<gtex>(texture).pixels;
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    coordinates random(3);
    int covered = 0;
    for (int i = 0; i < 600; ++i) {
        triangle t{random.far(), random.far(), random.far()};
        if (i % 3 == 0) t = random.three(-40000, 40000, 40000);
        if (i % 2 == 0)
            for (corner& c : t) {
                c.u = random.extreme();
                c.v = random.extreme();
            }
        const bool degenerate =
            (t[0].x == t[1].x && t[1].x == t[2].x) || (t[0].y == t[1].y && t[1].y == t[2].y);
        frame.fill(7);
        pixels flat_expected = frame.copy(), textured_expected = flat_expected;
        closed_form(t, [&](std::int64_t x, std::int64_t y, std::size_t texel) {
            const auto at = static_cast<std::size_t>(y * 512 + x);
            if (!degenerate) flat_expected[at] = colour;
            textured_expected[at] = texels[texel];
            ++covered;
        });
        flat(dst, t);
        ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, flat_expected)) << text_of(t);
        frame.fill(7);
        textured(dst, texels, t);
        ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, textured_expected)) << text_of(t);
    }
    EXPECT_GT(covered, 147456); // many of them cross the frame
}

TEST(object_fillers, rows_and_columns_end_before_the_lower_and_the_right_edge) {
    guarded_surface frame(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    frame.fill(0);
    fill_triangle(dst, 10, 10, 20, 10, 15, 20, 1);
    EXPECT_EQ(frame.at(10, 10), 1U);
    EXPECT_EQ(frame.at(19, 10), 1U);
    EXPECT_EQ(frame.at(20, 10), 0U);
    EXPECT_EQ(frame.at(14, 19), 1U); // from 14.5 to 15.5
    EXPECT_EQ(frame.at(15, 20), 0U);
    const pixels before = frame.copy();
    fill_triangle(dst, 30, 50, 60, 50, 90, 50, 1);
    fill_triangle(dst, 30, 50, 30, 70, 30, 90, 1);
    EXPECT_EQ(frame.copy(), before);
    frame.fill(0);
    fill_triangle(dst, -100, -100, 2000, -100, -100, 2000, 1);
    for (std::int32_t i = 0; i < frame.count(); ++i)
        ASSERT_EQ(frame[i], i < 512 || i % 512 == 0 ? 0U : 1U) << i;
}

TEST(object_fillers, a_texture_coordinate_of_256_wraps_to_0) {
    guarded_surface frame(512, 288), texture(256, 256);
    for (std::int32_t i = 0; i < texture.count(); ++i)
        texture[i] = static_cast<std::uint32_t>(i % 256) | 0xab000000U;
    const std::uint32_t* texels = static_cast<gtex>(texture).pixels;
    frame.fill(0);
    // 256 columns wide at row 10, one column of the texture a pixel, beginning at the wrap
    fill_triangle_textured(static_cast<gtex>(frame).pixels, texels, 100, 10, 356, 10, 100, 40, 256, 0, 512, 0,
                           256, 0);
    for (std::int32_t x = 0; x < 256; ++x)
        ASSERT_EQ(frame.at(100 + x, 10), static_cast<std::uint32_t>(x) | 0xab000000U);
    EXPECT_EQ(frame.at(356, 10), 0U);
    fill_triangle_textured(static_cast<gtex>(frame).pixels, texels, 356, 10, 100, 10, 100, 40, 0, 0, 256, 0,
                           256, 0);
    EXPECT_EQ(frame.at(100, 10), 0xab000000U);
    EXPECT_EQ(frame.at(101, 10), 0xab0000ffU); // and it runs back from there
}

TEST(object_fillers, shaded_texels_are_scaled_limited_and_added) {
    guarded_surface texture(256, 256, 8);
    const std::uint32_t* texels = static_cast<gtex>(texture).pixels;
    const triangle t{corner{5, 5, 0, 0}, corner{300, 20, 300, 10}, corner{40, 200, 20, 400}};
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    for (const std::array<float, 3>& factor :
         {std::array{0.5F, 0.25F, 1.0F}, {1.7F, -2.0F, none}, {1e30F, 0, 1}})
        for (const int flags : {0, 1, 2, 3}) {
            guarded_surface frame(512, 288, 9);
            pixels expected = frame.copy();
            plain::scan_triangle(
                texels, t[0], t[1], t[2], [&](std::int64_t x, std::int64_t y, std::uint32_t texel) {
                    std::uint32_t& pixel = expected[static_cast<std::size_t>(y * 512 + x)];
                    std::array<std::int32_t, 4> bytes{byte_of(texel, 0), byte_of(texel, 1), byte_of(texel, 2),
                                                      byte_of(texel, 3)};
                    if ((flags & 1) != 0) {
                        for (std::size_t k = 0; k < 3; ++k) {
                            const float product = static_cast<float>(bytes[2 - k]) * factor[k];
                            bytes[2 - k] =
                                product > 0 ? static_cast<std::int32_t>(std::fmin(product, 255.0F)) : 0;
                        }
                        bytes[3] = 0;
                    }
                    if ((flags & 2) != 0)
                        for (int k = 0; k < 4; ++k) {
                            auto& byte = bytes[static_cast<std::size_t>(k)];
                            byte = std::min(byte + byte_of(pixel, k), 255);
                        }
                    pixel = word_of(bytes[3], bytes[2], bytes[1], bytes[0]);
                });
            fill_triangle_shaded(static_cast<gtex>(frame).pixels, texels, 5, 5, 300, 20, 40, 200, 0, 0, 300,
                                 10, 20, 400, factor[0], factor[1], factor[2], (flags & 1) != 0,
                                 (flags & 2) != 0);
            ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << flags;
        }
}

TEST(object_fillers, spans_end_before_x1_and_hold_one_pixel_at_least) {
    struct span {
        std::int32_t x0, x1, y;
    };
    for (const span& s : {span{5, 9, 3},
                          {5, 5, 3},
                          {9, 5, 3},
                          {-9, 4, 3},
                          {500, 600, 287},
                          {0, 0, 3},
                          {511, 511, 1},
                          {512, 512, 9},
                          {3, 9, 0},
                          {3, 9, 288},
                          {3, 9, -1},
                          {INT32_MIN, INT32_MAX, 7},
                          {INT32_MAX, INT32_MAX, 7},
                          {3, 9, INT32_MAX}}) {
        guarded_surface plain_frame(512, 288, 10), half_frame(512, 288, 10);
        pixels plain_expected = plain_frame.copy(), half_expected = plain_expected;
        const std::int64_t from = std::min(s.x0, s.x1);
        const std::int64_t to = std::max<std::int64_t>({s.x0, s.x1, from + 1});
        for (std::int32_t x = 1; x < 512; ++x)
            if (x >= from && x < to && s.y >= 1 && s.y < 288) {
                const auto at = static_cast<std::size_t>(s.y * 512 + x);
                const auto half = [&](int k) {
                    return (byte_of(colour, k) + byte_of(half_expected[at], k)) >> 1;
                };
                plain_expected[at] = colour;
                half_expected[at] = word_of(0, half(2), half(1), half(0));
            }
        fill_span(static_cast<gtex>(plain_frame).pixels, s.x0, s.x1, s.y, colour);
        fill_span_half(static_cast<gtex>(half_frame).pixels, s.x0, s.x1, s.y, colour);
        expect_pixels(plain_frame, plain_expected);
        expect_pixels(half_frame, half_expected);
    }
}

TEST(object_fillers, edges_go_into_the_table_row_by_row) {
    coordinates random(4);
    for (int i = 0; i < 200; ++i) {
        edge_table table;
        edge_reset(table);
        std::array<std::int64_t, 513> low, high;
        low.fill(61440);
        high.fill(-61440);
        for (int edge = 0; edge < 3; ++edge) {
            corner a = random.any(-900, 900, 900), b = random.any(-900, 900, 900);
            edge_scan(table, i32(a.x), i32(a.y), i32(b.x), i32(b.y));
            if (a.y > b.y) std::swap(a, b);
            std::int64_t x = a.x * 128;
            for (std::int64_t y = a.y; y < b.y; ++y, x += (b.x - a.x) * 128 / (b.y - a.y))
                if (y >= 0 && y <= 512) {
                    const auto at = static_cast<std::size_t>(y);
                    low[at] = std::min(low[at], x >> 7);
                    high[at] = std::max(high[at], x >> 7);
                }
        }
        for (std::size_t y = 0; y < 513; ++y) {
            ASSERT_EQ(table.min_x[y], low[y]) << y;
            ASSERT_EQ(table.max_x[y], high[y]) << y;
        }
    }
    edge_table table; // far away: bounded and sound
    edge_reset(table);
    edge_scan(table, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX);
    for (std::size_t y = 0; y < 513; ++y)
        ASSERT_EQ(table.min_x[y], static_cast<std::int32_t>(y));
}

TEST(object_fillers, quads_abut_and_mix_each_pixel_once) {
    guarded_surface frame(512, 288);
    std::uint32_t* dst = static_cast<gtex>(frame).pixels;
    frame.fill(0);
    fill_quad(dst, 10, 20, 30, 20, 30, 40, 10, 40, 0xffffff, quad_half);
    fill_quad(dst, 50, 40, 30, 40, 30, 20, 50, 20, 0xffffff, quad_half); // the other way round
    for (std::int32_t y = 0; y < 288; ++y)
        for (std::int32_t x = 0; x < 512; ++x)
            ASSERT_EQ(frame.at(x, y), x >= 10 && x < 50 && y >= 20 && y < 40 ? 0x7f7f7fU : 0U)
                << x << ' ' << y;
    frame.fill(0);
    fill_quad(dst, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN, INT32_MAX, 5,
              quad_plain);
    for (std::int32_t i = 0; i < frame.count(); ++i)
        ASSERT_EQ(frame[i], i < 512 || i % 512 == 0 ? 0U : 5U) << i;
    fill_quad(dst, 10, 20, 30, 20, 50, 20, 70, 20, 9, quad_plain); // no height
    EXPECT_EQ(frame.at(20, 20), 5U);
    EXPECT_TRUE(frame.intact());
}

TEST(object_fillers, added_plots_saturate_inside_the_frame) {
    guarded_surface frame(512, 288, 11);
    pixels expected = frame.copy();
    for (const auto& [x, y] : {std::pair{0, 5},
                               {5, 0},
                               {1, 1},
                               {511, 287},
                               {512, 5},
                               {5, 288},
                               {-1, 5},
                               {INT32_MAX, INT32_MAX},
                               {INT32_MIN, 3}}) {
        plot_add(static_cast<gtex>(frame).pixels, x, y, 0x80c0e0ff);
        if (!in_frame(x, y)) continue;
        std::uint32_t& pixel = expected[static_cast<std::size_t>(y * 512 + x)];
        const auto sum = [&pixel](int k) {
            return std::min(byte_of(pixel, k) + byte_of(0x80c0e0ff, k), 255);
        };
        pixel = word_of(sum(3), sum(2), sum(1), sum(0));
    }
    expect_pixels(frame, expected);
}

namespace {

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

TEST(object_fillers, quads_far_from_the_frame_draw_nothing) {
    const std::vector<std::uint32_t> before(512 * 288, 5);
    std::vector<std::uint32_t> frame = before;
    for (const std::int32_t y : {INT32_MIN, -70000, 600, INT32_MAX - 3}) { // steep in x, no row of the frame
        fill_quad(frame.data(), INT32_MIN, y, INT32_MAX, y + 1, 0, y + 2, 0, y + 1, 1, 0);
        fill_quad(frame.data(), INT32_MAX, y + 3, INT32_MIN, y, 0, y + 1, 7, y + 2, 1, 1);
    }
    EXPECT_EQ(frame, before);
}
