// The table of render modes, and what the adapters without a texture make of a polygon.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "morvane/poly/clipper.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/lines.h"
#include "morvane/poly/poly.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"

namespace {

using frame = std::vector<std::uint32_t>;

frame noise() {
    std::mt19937 random(1);
    frame pixels(512 * 288);
    for (std::uint32_t& pixel : pixels)
        pixel = static_cast<std::uint32_t>(random());
    return pixels;
}

std::int32_t whole(float value) {
    return static_cast<std::int32_t>(value);
}

class render_modes : public testing::Test {
  protected:
    void SetUp() override {
        raster_init(512, 288);
        raster_clear_depth();
        poly_clip_set_frame(512, 288);
    }

    // A polygon with corners anywhere about the screen, not convex, so that the order of a blend shows.
    poly any_polygon(std::int32_t count, float reach) {
        const auto at = [&](float low, float high) {
            return std::uniform_real_distribution<float>(low, high)(random_);
        };
        poly p;
        p.count = count;
        p.r = 200;
        p.g = 100;
        p.b = 50;
        p.opacity = 100;
        for (poly_vertex& v : p.v) {
            v.pos = {at(1 - reach, 511 + reach), at(1 - reach, 287 + reach), at(-900, -1)};
            v.r = whole(at(0, 256));
            v.g = whole(at(0, 256));
            v.b = whole(at(0, 256));
        }
        return p;
    }

    std::mt19937 random_{23};
};

TEST_F(render_modes, each_word_has_its_row) {
    const std::uint32_t words[] = {1,  257, 2,  258, 4,   36,  68,  100, 1032, 1064, 1096, 1128,
                                   16, 48,  80, 112, 528, 560, 592, 624, 144,  656,  208,  720};
    ASSERT_EQ(render_mode_table.size(), std::size(words));
    std::set<void (*)(std::uint32_t*, poly&)> adapters;
    for (std::size_t row = 0; row < std::size(words); ++row) {
        EXPECT_EQ(render_mode_find(words[row]), static_cast<std::int32_t>(row)) << words[row];
        EXPECT_EQ(render_mode_table[row].mode, words[row]);
        adapters.insert(render_mode_table[row].adapter);
    }
    EXPECT_EQ(adapters.size(), std::size(words)); // no two rows share one
}

TEST_F(render_modes, a_word_without_a_row_draws_points) {
    const auto& table = render_mode_table;
    for (std::uint32_t word = 0; word < 0x2000; ++word) {
        const bool listed =
            std::any_of(table.begin(), table.end(), [=](auto& row) { return row.mode == word; });
        EXPECT_TRUE(listed || render_mode_find(word) == 0) << word;
    }
    EXPECT_EQ(render_mode_find(0xffffffff), 0);
}

TEST_F(render_modes, a_row_outside_the_table_draws_nothing) {
    poly p = any_polygon(3, 0);
    for (std::int32_t row : {-1, 24, INT32_MAX, INT32_MIN})
        render_mode_draw(nullptr, p, row);
}

// What each fill mode hands to its filler, for the triangle (a, b, c).
struct fill_mode {
    std::uint32_t mode;
    void (*draw)(std::uint32_t* dst, const poly& p, const poly_vertex& a, const poly_vertex& b,
                 const poly_vertex& c);
};
#define XY(v) whole(v.pos.x), whole(v.pos.y)
#define XYZ(v) XY(v), whole(v.pos.z)
#define RGB(v) v.r, v.g, v.b
constexpr std::uint32_t face_colour = 0xc86432;
constexpr fill_mode fill_modes[] = {
    {0x004,
     [](auto* d, auto&, auto& a, auto& b, auto& c) { fill_flat(d, XY(a), XY(b), XY(c), face_colour); }},
    {0x024,
     [](auto* d, auto&, auto& a, auto& b, auto& c) { fill_flat_z(d, XYZ(a), XYZ(b), XYZ(c), face_colour); }},
    {0x044, [](auto* d, auto& p, auto& a, auto& b,
               auto& c) { fill_flat_a(d, XY(a), XY(b), XY(c), face_colour, p.opacity); }},
    {0x064, [](auto* d, auto& p, auto& a, auto& b,
               auto& c) { fill_flat_az(d, XYZ(a), XYZ(b), XYZ(c), face_colour, p.opacity); }},
    {0x408, [](auto* d, auto&, auto& a, auto& b,
               auto& c) { fill_gouraud(d, XY(a), RGB(a), XY(b), RGB(b), XY(c), RGB(c)); }},
    {0x428, [](auto* d, auto&, auto& a, auto& b,
               auto& c) { fill_gouraud_z(d, XYZ(a), RGB(a), XYZ(b), RGB(b), XYZ(c), RGB(c)); }},
    {0x448, [](auto* d, auto& p, auto& a, auto& b,
               auto& c) { fill_gouraud_a(d, XY(a), RGB(a), XY(b), RGB(b), XY(c), RGB(c), p.opacity); }},
    {0x468, [](auto* d, auto& p, auto& a, auto& b,
               auto& c) { fill_gouraud_az(d, XYZ(a), RGB(a), XYZ(b), RGB(b), XYZ(c), RGB(c), p.opacity); }},
};
#undef XYZ
#undef RGB

TEST_F(render_modes, fills_are_fans_of_the_clipped_polygon) {
    for (const fill_mode& mode : fill_modes) {
        frame got = noise(), expected = got;
        for (int i = 0; i < 40; ++i) {
            const poly given = any_polygon(i % 7, i % 2 ? 0.0F : 300.0F);
            poly drawn = given, clipped = given;
            render_mode_draw(got.data(), drawn, render_mode_find(mode.mode));
            std::vector<std::int32_t> depths(depth_buffer, depth_buffer + 512 * 288);
            // The same triangles with the filler itself, in a depth buffer as it was before.
            raster_clear_depth();
            poly_clip_screen(clipped);
            for (std::int32_t k = 0; k + 2 < clipped.count; ++k) {
                const auto at = static_cast<std::size_t>(k);
                mode.draw(expected.data(), clipped, clipped.v[0], clipped.v[at + 1], clipped.v[at + 2]);
            }
            ASSERT_EQ(got, expected) << mode.mode << ", " << i;
            ASSERT_TRUE(std::equal(depths.begin(), depths.end(), depth_buffer)) << mode.mode << ", " << i;
            raster_clear_depth();
        }
    }
}

TEST_F(render_modes, points_are_plotted_where_they_are_visible) {
    poly p = any_polygon(5, 0);
    p.v[0].pos = {10.9F, 20.9F, -1};
    p.v[1].pos = {0.5F, 30, -1}; // column 0 lies outside
    p.v[2].pos = {40, 40, 1};    // behind
    p.v[3].pos = {511.5F, 287.5F, -1};
    p.v[4].pos = {NAN, INFINITY, -1};
    const frame before = noise();
    frame got = before, expected = before;
    poly plain = p;
    render_mode_draw(got.data(), plain, render_mode_find(mode_points));
    expected[20 * 512 + 10] = expected[287 * 512 + 511] = face_colour;
    EXPECT_EQ(got, expected);
    got = expected = before;
    render_mode_draw(got.data(), p, render_mode_find(mode_points | mode_smooth));
    plot_aa(expected.data(), 10.9F, 20.9F, 200, 100, 50);
    plot_aa(expected.data(), 511.5F, 287.5F, 200, 100, 50);
    EXPECT_EQ(got, expected);
}

TEST_F(render_modes, lines_close_the_clipped_polygon) {
    for (int i = 0; i < 60; ++i) {
        const poly given = any_polygon(i % 6, i % 2 ? 0.0F : 300.0F);
        poly clipped = given;
        poly_clip_screen(clipped);
        const frame before = noise();
        frame plain = before, smooth = before, plain_got = before, smooth_got = before;
        for (std::int32_t k = 0; k < clipped.count; ++k) {
            const poly_vertex& a = clipped.v[static_cast<std::size_t>(k)];
            const poly_vertex& b = clipped.v[static_cast<std::size_t>((k + 1) % clipped.count)];
            line_plain(plain.data(), XY(a), XY(b), face_colour);
            line_aa(smooth.data(), std::trunc(a.pos.x), std::trunc(a.pos.y), std::trunc(b.pos.x),
                    std::trunc(b.pos.y), 200, 100, 50);
        }
        poly p = given, q = given;
        render_mode_draw(plain_got.data(), p, render_mode_find(mode_lines));
        render_mode_draw(smooth_got.data(), q, render_mode_find(mode_lines | mode_smooth));
        ASSERT_EQ(plain_got, plain) << i;
        ASSERT_EQ(smooth_got, smooth) << i;
    }
}
#undef XY

TEST_F(render_modes, any_coordinates_are_safe) {
    const float wild[] = {NAN, INFINITY, -INFINITY, 3e38F, -3e38F, 0, 1, 100, 511.99F, 600, -1e9F, 1e-40F};
    frame pixels = noise();
    for (int i = 0; i < 1500; ++i) {
        poly given = any_polygon(i % 23 - 1, 0);
        for (poly_vertex& v : given.v) {
            for (float* at : {&v.pos.x, &v.pos.y, &v.pos.z})
                if (random_() % 3 == 0) *at = wild[random_() % std::size(wild)];
            if (random_() % 3 == 0) v.g = static_cast<std::int32_t>(random_());
        }
        given.opacity = static_cast<std::int32_t>(random_());
        given.b = static_cast<std::int32_t>(random_());
        for (std::int32_t row = 0; row < render_mode_find(mode_textured); ++row) {
            poly p = given;
            render_mode_draw(pixels.data(), p, row);
        }
    }
    // A clip rectangle far larger than the frame: the rasterizers see to themselves.
    poly_clip_set_frame(100000, 100000);
    for (int i = 0; i < 150; ++i) {
        for (std::int32_t row = 0; row < render_mode_find(mode_textured); ++row) {
            poly p = any_polygon(3 + i % 4, 90000);
            render_mode_draw(pixels.data(), p, row);
        }
    }
}

} // namespace
