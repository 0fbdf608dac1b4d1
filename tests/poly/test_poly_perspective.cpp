// The perspective fillers against a plain interpreter of their rule, and against exact projection.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "morvane/base/numbers.h"
#include "tests/support/textured_frames.h"

namespace {

using namespace textured;

struct shaped_texture {
    plain::texture texture;
    int log_width; // of the row length that the lookup uses
};

const std::vector<shaped_texture>& shaped_textures() {
    static const std::vector<shaped_texture> all = {{noise_texture(256, 256), 8}, {noise_texture(64, 16), 6},
                                                    {noise_texture(100, 40), 6},  {noise_texture(2, 2), 1},
                                                    {noise_texture(1, 3), 0},     {noise_texture(600, 7), 9}};
    return all;
}

TEST(perspective_fillers, draw_what_the_rule_says) {
    dice random(10);
    for (int kind = 0; kind < 8; kind += 2) {
        both_frames frames(700, 60);
        for (int i = 0; i < 1500; ++i) {
            const shaped_texture& from = shaped_textures()[static_cast<std::size_t>(random.whole(0, 5))];
            const double beyond = i % 2 ? 0 : 300; // to the right and below
            vertices t;
            for (plain::vertex& v : t)
                v = {random.real(0, 699 + beyond), random.real(0, 59 + beyond / 4), random.real(-900, -1),
                     random.real(-300, 600), random.real(-300, 600)};
            if (i % 10 == 0) t[1].y = t[0].y;
            if (i % 10 == 1) t[1].y = t[2].y;
            if (i % 15 == 0) t[2].z = t[1].z = t[0].z;
            const plain::kind k = random.kind(kind);
            draw_perspective(frames.pixels(), t, from.texture, k, from.texture.height);
            plain::perspective(frames.expected, t[0], t[1], t[2],
                               plain::persp_lookup(from.texture, from.log_width), k);
            if (i % 50 == 49) {
                ASSERT_NO_FATAL_FAILURE(frames.expect_equal(name_of(k) + std::to_string(i)));
            }
        }
    }
}

// Spans of one block, of a tail alone and of both, on one row, and the row's ends beyond the frame.
TEST(perspective_fillers, divide_once_a_block) {
    const plain::texture ruler = ruler_texture();
    const plain::kind plain_pixel;
    for (const float length : {1.0F, 2.0F, 255.0F, 256.0F, 257.0F, 511.0F, 512.0F, 600.0F, 900.0F}) {
        both_frames frames(700, 2);
        const vertices t = {{{0, 0, -100, 0, 0}, {0, 600, -100, 0, 0}, {length, 0, -1000, 250, 90}}};
        draw_perspective(frames.pixels(), t, ruler, plain_pixel, 256);
        plain::perspective(frames.expected, t[0], t[1], t[2], plain::persp_lookup(ruler, 8), plain_pixel);
        frames.expect_equal("length " + std::to_string(length));
    }
}

// A quad as two triangles, in camera space: corner `origin`, sides `right` and `down`, texture 0 to 250 on
// it.
struct quad {
    std::array<double, 3> origin, right, down;
    static constexpr double factor = 200, center_x = 256, center_y = 144;

    plain::vertex corner(double s, double t) const {
        const auto at = [&](std::size_t i) { return origin[i] + right[i] * s + down[i] * t; };
        return {static_cast<float>(at(0) * factor / -at(2) + center_x),
                static_cast<float>(at(1) * factor / -at(2) + center_y), static_cast<float>(at(2)),
                static_cast<float>(250 * s), static_cast<float>(250 * t)};
    }
    std::array<vertices, 2> triangles() const {
        return {{{{corner(0, 0), corner(1, 0), corner(1, 1)}}, {{corner(0, 0), corner(1, 1), corner(0, 1)}}}};
    }
    // Where the ray through a pixel's centre meets the quad, in texels: Cramer's rule.
    std::array<double, 2> texel(double x, double y) const {
        const std::array<double, 3> ray = {(x - center_x) / factor, (y - center_y) / factor, -1};
        const auto det = [](const auto& a, const auto& b, const auto& c) {
            return a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
                   a[2] * (b[0] * c[1] - b[1] * c[0]);
        };
        const double whole = det(right, down, ray);
        return {-250 * det(origin, down, ray) / whole, -250 * det(right, origin, ray) / whole};
    }
};

// The greatest distance, in texels, of what the frame shows of the ruler from the exact picture of the quad.
double worst_error(both_frames& frames, const quad& q) {
    double worst = 0;
    for (std::int32_t y = 0; y < frames.expected.height; ++y)
        for (std::int32_t x = 0; x < frames.expected.width; ++x) {
            const std::uint32_t seen = frames.at(x, y);
            if (seen == guard) continue;
            const auto [u, v] = q.texel(x + 0.5, y + 0.5);
            worst = std::max({worst, std::abs(u - 0.5 - static_cast<double>(seen & 255)),
                              std::abs(v - 0.5 - static_cast<double>(seen >> 8 & 255))});
        }
    return worst;
}

// A floor: depth is the same along a row, so every pixel is exact. Affine, the same floor has its kink.
TEST(perspective_fillers, project_a_tilted_quad_exactly) {
    const quad floor = {{-300, 40, -120}, {600, 0, 0}, {0, 60, -700}};
    const plain::texture ruler = ruler_texture();
    both_frames frames(512, 288);
    frames.clear(guard);
    for (const vertices& t : floor.triangles())
        draw_perspective(frames.pixels(), t, ruler, {}, 256);
    EXPECT_LE(worst_error(frames, floor), 1.0);

    frames.clear(guard);
    for (const vertices& t : floor.triangles()) {
        corners whole;
        for (std::size_t i = 0; i < 3; ++i)
            whole[i] = {trunc_to_int(t[i].x), trunc_to_int(t[i].y), 0, trunc_to_int(t[i].u),
                        trunc_to_int(t[i].v)};
        draw_affine(frames.pixels(), whole, ruler, {});
    }
    EXPECT_GE(worst_error(frames, floor), 20.0);
}

// A wall, whose depth runs along the row: exact at the first pixel of each block, affine between.
TEST(perspective_fillers, are_exact_where_they_divide) {
    const quad wall = {{-250, -120, -200}, {600, 0, -900}, {0, 500, 0}};
    const plain::texture ruler = ruler_texture();
    both_frames frames(512, 288);
    frames.clear(guard);
    for (const vertices& t : wall.triangles())
        draw_perspective(frames.pixels(), t, ruler, {}, 256);
    for (std::int32_t y = 40; y < 280; ++y) {
        const std::uint32_t seen = frames.at(7, y); // right of the wall's left side, which stands at column 6
        const auto [u, v] = wall.texel(7.5, y + 0.5);
        EXPECT_NEAR(static_cast<double>(seen & 255), u - 0.5, 1.5) << y;
        EXPECT_NEAR(static_cast<double>(seen >> 8 & 255), v - 0.5, 1.5) << y;
    }
}

TEST(perspective_fillers, look_like_the_affine_ones_without_a_slope_in_depth) {
    const plain::texture from = noise_texture(256, 256);
    both_frames frames(300, 260);
    frames.clear(guard);
    const vertices t = {{{10, 5, -40, 0, 0}, {250, 5, -40, 240, 0}, {10, 245, -40, 0, 240}}};
    draw_perspective(frames.pixels(), t, from, {}, 256);
    plain::affine(frames.expected, {10, 5, 0, 0, 0}, {250, 5, 0, 240, 0}, {10, 245, 0, 0, 240}, from, {});
    frames.expect_equal("one depth");
}

TEST(perspective_fillers, wrap_both_coordinates_at_256) {
    const plain::texture ruler = ruler_texture();
    both_frames frames(64, 64);
    const vertices t = {{{0, 0, -1, 250, 254}, {0, 60, -1, 250, 314}, {60, 0, -1, 310, 254}}};
    draw_perspective(frames.pixels(), t, ruler, {}, 256);
    for (std::int32_t x = 1; x < 10; ++x)
        EXPECT_EQ(frames.at(x, 0), static_cast<std::uint32_t>(254 << 8 | ((250 + x) & 255)));
    for (std::int32_t y = 1; y < 10; ++y)
        EXPECT_EQ(frames.at(1, y), static_cast<std::uint32_t>(((254 + y) & 255) << 8 | 251));
}

// A width that is no power of two draws as the next smaller one; a texture of few rows is repeated, and
// nothing behind it is read (the sanitizer looks at that).
TEST(perspective_fillers, keep_to_the_words_of_the_texture) {
    const vertices t = {{{0, 0, -1, 0, 0}, {0, 250, -1, 0, 250}, {250, 0, -1, 250, 0}}};
    for (const std::int32_t width : {1, 3, 7, 20, 49, 256, 300, 1000, 70000}) {
        std::int32_t power = 1;
        while (power * 2 <= width)
            power *= 2;
        const std::int32_t height = width == 7 ? 7 : 3;
        const plain::texture small = noise_texture(width, height);
        plain::texture large{power, 256, {}};
        for (std::size_t i = 0; i < static_cast<std::size_t>(power) * 256 + 256; ++i)
            large.texels.push_back(small.texels[i % small.texels.size()]);
        both_frames frames(256, 256);
        draw_perspective(frames.pixels(), t, small, {}, height);
        std::copy_n(frames.pixels(), frames.expected.pixels.size(), frames.expected.pixels.begin());
        both_frames again(256, 256);
        draw_perspective(again.pixels(), t, large, {}, 0); // vouched for
        again.expected.pixels = frames.expected.pixels;
        again.expect_equal("width " + std::to_string(width));
    }
}

// Left of and above the frame whole blocks and rows are stepped over; what shows is still the exact picture.
TEST(perspective_fillers, enter_the_frame_from_any_side) {
    const quad floor = {{-9000, -30, -100}, {18000, 0, 0}, {0, 200, -90}};
    const plain::texture ruler = ruler_texture();
    both_frames frames(512, 288);
    frames.clear(guard);
    for (const vertices& t : floor.triangles())
        draw_perspective(frames.pixels(), t, ruler, {}, 256);
    EXPECT_NE(frames.at(0, 100), guard);
    EXPECT_LE(worst_error(frames, floor), 1.5);
    frames.expect_margin("a floor around the frame");
}

TEST(perspective_fillers, hold_any_corner) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    constexpr float marks[] = {std::numeric_limits<float>::quiet_NaN(),
                               inf,
                               -inf,
                               0,
                               -3e38F,
                               3e38F,
                               1e-40F,
                               -4e9F,
                               4e9F,
                               -70000,
                               -300,
                               -1,
                               3,
                               99.5F,
                               100,
                               300,
                               70000};
    dice random(12);
    const plain::texture from = noise_texture(37, 19);
    both_frames frames(400, 90);
    for (int i = 0; i < 20000; ++i) {
        vertices t;
        for (plain::vertex& v : t)
            for (float* field : {&v.x, &v.y, &v.z, &v.u, &v.v})
                *field = marks[random.whole(i % 2 ? 3 : 0, 16)];
        draw_perspective(frames.pixels(), t, from, random.kind(i % 8), 19);
    }
    frames.expect_margin("corners at the ends of the numbers");
}

} // namespace
