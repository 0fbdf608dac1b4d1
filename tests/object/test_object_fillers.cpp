// Fillers against the plain walk with a clip test for each pixel, and, where the corners are too
// far away to be walked, against the closed form of each row in 128-bit numbers.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "morvane/object/fill.h"
#include "morvane/object/fill_spans.h"
#include "tests/support/corners.h"
#include "tests/support/plain_fillers.h"
#include "tests/support/surfaces.h"

namespace {

constexpr std::uint32_t colour = 0x12357799; // odd channels, so that halves are rounded

void flat(std::uint32_t* dst, const triangle& t) {
    fill_triangle(dst, i32(t[0].x), i32(t[0].y), i32(t[1].x), i32(t[1].y), i32(t[2].x), i32(t[2].y), colour);
}
void textured(std::uint32_t* dst, const std::uint32_t* texture, const triangle& t) {
    fill_triangle_textured(dst, texture, i32(t[0].x), i32(t[0].y), i32(t[1].x), i32(t[1].y), i32(t[2].x),
                           i32(t[2].y), i32(t[0].u), i32(t[0].v), i32(t[1].u), i32(t[1].v), i32(t[2].u),
                           i32(t[2].v));
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

TEST(object_fillers, quads_far_from_the_frame_draw_nothing) {
    const std::vector<std::uint32_t> before(512 * 288, 5);
    std::vector<std::uint32_t> frame = before;
    for (const std::int32_t y : {INT32_MIN, -70000, 600, INT32_MAX - 3}) { // steep in x, no row of the frame
        fill_quad(frame.data(), INT32_MIN, y, INT32_MAX, y + 1, 0, y + 2, 0, y + 1, 1, 0);
        fill_quad(frame.data(), INT32_MAX, y + 3, INT32_MIN, y, 0, y + 1, 7, y + 2, 1, 1);
    }
    EXPECT_EQ(frame, before);
}
