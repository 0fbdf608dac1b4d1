// The clipper against plain half-planes in double precision, and the orders in which it emits.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "morvane/poly/clipper.h"

namespace {

// x, y, z, u, v, r, g, b.
using attributes = std::array<double, 8>;
using polygon = std::vector<attributes>;

attributes attributes_of(const poly_vertex& v) {
    return {v.pos.x,
            v.pos.y,
            v.pos.z,
            v.u,
            v.v,
            static_cast<double>(v.r),
            static_cast<double>(v.g),
            static_cast<double>(v.b)};
}

polygon vertices_of(const poly& p) {
    polygon all;
    for (std::int32_t i = 0; i < p.count; ++i)
        all.push_back(attributes_of(p.v[static_cast<std::size_t>(i)]));
    return all;
}

// Keeps where sign * (the coordinate - bound) >= 0. Starts with the edge from the last vertex to the first.
polygon half_plane(const polygon& in, std::size_t axis, double bound, double sign) {
    polygon out;
    for (std::size_t i = 0; i < in.size(); ++i) {
        const attributes &from = in[(i + in.size() - 1) % in.size()], &to = in[i];
        const double d0 = sign * (from[axis] - bound), d1 = sign * (to[axis] - bound);
        if ((d0 >= 0) != (d1 >= 0)) {
            attributes cut;
            for (std::size_t k = 0; k < 8; ++k)
                cut[k] = std::lerp(from[k], to[k], d0 / (d0 - d1));
            out.push_back(cut);
        }
        if (d1 >= 0) out.push_back(to);
    }
    return out;
}

constexpr double left = 1.0, top = 0.01F, right = 511.99F, bottom = 287.99F;

polygon inside_rectangle(polygon p) {
    p = half_plane(p, 0, left, 1);
    p = half_plane(p, 1, bottom, -1);
    p = half_plane(p, 0, right, -1);
    return half_plane(p, 1, top, 1);
}

// Positions and texture coordinates within a hundredth of the polygon's extent in millions, colours within
// the truncation of five cuts.
void expect_near(const poly& got, const polygon& expected, double extent) {
    const polygon all = vertices_of(got);
    ASSERT_EQ(all.size(), expected.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t k = 0; k < 8; ++k)
            ASSERT_NEAR(all[i][k], expected[i][k], k < 5 ? extent * 1e-6 : 5.0)
                << "vertex " << i << ", " << k;
    }
}

poly_vertex vertex(float x, float y, float z = -1) {
    poly_vertex v;
    v.pos = {x, y, z};
    return v;
}

poly make(std::initializer_list<poly_vertex> vertices) {
    poly p;
    std::copy(vertices.begin(), vertices.end(), p.v.begin());
    p.count = static_cast<std::int32_t>(vertices.size());
    return p;
}

class clipper : public testing::Test {
  protected:
    void SetUp() override { poly_clip_set_frame(512, 288); }

    double upto(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }

    // A convex polygon with `count` corners on an ellipse around the frame's middle, with any attributes.
    poly on_ellipse(std::int32_t count, double reach) {
        poly p;
        p.count = count;
        const double cx = upto(-100, 612), cy = upto(-100, 388), rx = upto(1, reach), ry = upto(1, reach);
        const double turn = upto(0, 6.3), way = upto(0, 1) < 0.5 ? -1 : 1;
        for (std::int32_t i = 0; i < count; ++i) {
            poly_vertex& v = p.v[static_cast<std::size_t>(i)];
            const double angle = turn + way * (i + upto(0, 0.9)) * 2 * std::numbers::pi / count;
            v.pos = {static_cast<float>(cx + rx * std::cos(angle)),
                     static_cast<float>(cy + ry * std::sin(angle)), static_cast<float>(upto(-500, -1))};
            v.u = static_cast<float>(upto(0, 256));
            v.v = static_cast<float>(upto(0, 256));
            v.r = static_cast<std::int32_t>(upto(0, 256));
            v.g = static_cast<std::int32_t>(upto(0, 256));
            v.b = static_cast<std::int32_t>(upto(0, 256));
        }
        return p;
    }

    std::mt19937 random_{17};
};

TEST_F(clipper, the_screen_is_four_half_planes) {
    std::array<int, 12> seen{};
    for (int i = 0; i < 30000; ++i) {
        const double reach = i % 3 == 0 ? 60 : i % 3 == 1 ? 600 : 20000;
        poly p = on_ellipse(3 + i % 5, reach);
        if (i % 4 == 0) p.v[1].pos.x = upto(0, 1) < 0.5 ? 1.0F : 511.99F; // on a bound, which is inside
        if (i % 4 == 1) p.v[1].pos.y = upto(0, 1) < 0.5 ? 0.01F : 287.99F;
        p.opacity = 77;
        p.r = 5;
        const polygon expected = inside_rectangle(vertices_of(p));
        poly_clip_screen(p);
        ASSERT_NO_FATAL_FAILURE(expect_near(p, expected, reach * 2 + 512)) << i;
        ASSERT_TRUE(p.opacity == 77 && p.r == 5);
        ++seen[static_cast<std::size_t>(p.count)];
    }
    for (std::size_t count : {0U, 3U, 4U, 5U, 6U, 7U, 8U, 9U})
        EXPECT_GT(seen[count], 5) << count << " vertices";
}

TEST_F(clipper, the_near_plane_is_one_half_plane) {
    std::array<int, 8> seen{};
    for (int i = 0; i < 5000; ++i) {
        poly p = on_ellipse(3 + i % 3, 600);
        for (poly_vertex& v : p.v)
            v.pos.z = static_cast<float>(upto(-500, 500));
        const polygon expected = half_plane(vertices_of(p), 2, -0.000001F, -1);
        poly_clip_near(p);
        ASSERT_NO_FATAL_FAILURE(expect_near(p, expected, 2000)) << i;
        ++seen[static_cast<std::size_t>(p.count)];
    }
    for (std::size_t count : {0U, 3U, 4U, 5U, 6U})
        EXPECT_GT(seen[count], 100) << count << " vertices";
}

TEST_F(clipper, a_face_cut_at_the_near_plane_stays_inside_the_rectangle_on_the_screen) {
    for (int i = 0; i < 3000; ++i) {
        poly p = on_ellipse(3, 600);
        p.v[0].pos.z = static_cast<float>(upto(0.1, 50));
        poly_clip_near(p);
        for (poly_vertex& v : p.v) {
            v.pos.x = static_cast<float>(static_cast<double>(v.pos.x) * 256 / v.pos.z + 256);
            v.pos.y = static_cast<float>(static_cast<double>(v.pos.y) * 256 / v.pos.z + 144);
        }
        poly_clip_screen(p);
        for (const attributes& v : vertices_of(p)) {
            ASSERT_TRUE(v[0] >= left - 1e-3 && v[0] <= right + 1e-3) << v[0];
            ASSERT_TRUE(v[1] >= top - 1e-3 && v[1] <= bottom + 1e-3) << v[1];
        }
    }
}

TEST_F(clipper, what_lies_inside_stays_as_it_is) {
    // On the bounds and at the corners counts as inside.
    poly p = make({vertex(1.0F, 0.01F), vertex(511.99F, 100), vertex(300, 287.99F), vertex(1.0F, 287.99F)});
    const polygon before = vertices_of(p);
    poly_clip_screen(p);
    EXPECT_EQ(vertices_of(p), before);
    poly_clip_near(p);
    EXPECT_EQ(vertices_of(p), before);
}

TEST_F(clipper, a_cut_corner_gives_two_vertices_in_its_place) {
    poly p = make({vertex(-9, 50), vertex(101, 50), vertex(101, 160)});
    poly_clip_screen(p);
    ASSERT_EQ(p.count, 4);
    const float expected[4][2] = {{1, 60}, {1, 50}, {101, 50}, {101, 160}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FLOAT_EQ(p.v[i].pos.x, expected[i][0]) << i;
        EXPECT_FLOAT_EQ(p.v[i].pos.y, expected[i][1]) << i;
    }
}

TEST_F(clipper, a_cut_lies_on_the_bound_itself) {
    poly p = make({vertex(100, 100), vertex(3e20F, 120), vertex(100, 140)});
    poly_clip_screen(p);
    ASSERT_EQ(p.count, 4);
    EXPECT_EQ(p.v[1].pos.x, 511.99F);
    EXPECT_EQ(p.v[2].pos.x, 511.99F);
}

TEST_F(clipper, near_cuts_keep_count_and_attributes) {
    poly behind = make({vertex(0, 0, 0), vertex(5, 0, 3), vertex(0, 5, 7)});
    poly_clip_near(behind);
    EXPECT_EQ(behind.count, 0);
    poly_clip_screen(behind);
    EXPECT_EQ(behind.count, 0);

    poly p = make({vertex(0, 0, -1), vertex(8, 0, 1), vertex(0, 8, 1)});
    p.v[0].r = 0;
    p.v[1].r = 255;
    p.v[2].r = -255;
    p.v[1].u = 10;
    poly_clip_near(p);
    ASSERT_EQ(p.count, 3);
    EXPECT_EQ(p.v[0].pos.z, -0.000001F);
    EXPECT_EQ(p.v[2].pos.z, -0.000001F);
    EXPECT_EQ(p.v[0].r, -127); // toward zero from both sides
    EXPECT_EQ(p.v[2].r, 127);
    EXPECT_NEAR(p.v[2].u, 5, 1e-4);
    EXPECT_NEAR(p.v[2].pos.x, 4, 1e-4);
}

TEST_F(clipper, a_line_stays_a_line) {
    const auto ends = [](poly p) {
        poly_clip_screen(p);
        EXPECT_EQ(p.count, 2);
        std::array<std::array<float, 2>, 2> both{
            {{p.v[0].pos.x, p.v[0].pos.y}, {p.v[1].pos.x, p.v[1].pos.y}}};
        std::sort(both.begin(), both.end());
        return both;
    };
    using line = std::array<std::array<float, 2>, 2>;
    EXPECT_EQ(ends(make({vertex(-19, 20), vertex(41, 80)})), (line{{{1, 40}, {41, 80}}}));
    EXPECT_EQ(ends(make({vertex(41, 80), vertex(-19, 20)})), (line{{{1, 40}, {41, 80}}}));
    EXPECT_EQ(ends(make({vertex(-19, 20), vertex(611.99F, 20)})), (line{{{1, 20}, {511.99F, 20}}}));
    EXPECT_EQ(ends(make({vertex(10, 20), vertex(30, 40)})), (line{{{10, 20}, {30, 40}}}));
}

TEST_F(clipper, points_are_visible_on_the_bounds) {
    const struct {
        float x, y, z;
        int visible;
    } points[] = {{1, 0.01F, -1, 1},      {511.99F, 287.99F, -1, 1}, {0.99F, 100, -1, 0},
                  {100, 0, -1, 0},        {512, 100, -1, 0},         {100, 288, -1, 0},
                  {100, 100, 0, 0},       {100, 100, -0.000001F, 1}, {100, 100, -3000000, 1},
                  {NAN, 100, -1, 0},      {100, NAN, -1, 0},         {100, 100, NAN, 0},
                  {INFINITY, 100, -1, 0}, {100, -INFINITY, -1, 0},   {100, 100, -INFINITY, 1}};
    for (const auto& p : points)
        EXPECT_EQ(poly_point_visible(vertex(p.x, p.y, p.z)), p.visible) << p.x << ", " << p.y << ", " << p.z;
}

TEST_F(clipper, any_polygon_is_safe) {
    const float wild[] = {NAN, INFINITY, -INFINITY, 3e38F, -3e38F, 0, 1, 511.99F, 600, -600, 1e-40F};
    for (int i = 0; i < 20000; ++i) {
        poly p;
        p.count = i % 25 - 2; // also below 0 and beyond the capacity
        for (poly_vertex& v : p.v) {
            for (float* at : {&v.pos.x, &v.pos.y, &v.pos.z, &v.u, &v.v})
                *at = wild[random_() % std::size(wild)];
            for (std::int32_t* at : {&v.r, &v.g, &v.b})
                *at = static_cast<std::int32_t>(random_());
        }
        if (i % 2 == 0) poly_clip_near(p);
        poly_clip_screen(p);
        ASSERT_TRUE(p.count >= 0 && p.count <= poly_capacity);
    }
    // Edges that are no planes, and a rectangle inside out.
    poly_clip_set_rect({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0});
    poly_clip_set_depth({0, 0, 0}, {0, 0, 0});
    poly p = make({vertex(1, 1), vertex(30, -5), vertex(-5, 90)});
    poly_clip_near(p);
    poly_clip_screen(p);
    EXPECT_EQ(p.count, 0);
    poly_clip_set_rect({9, 9, 0}, {1, 9, 0}, {1, 1, 0}, {9, 1, 0});
    p = make({vertex(1, 1), vertex(30, -5), vertex(-5, 90)});
    poly_clip_screen(p);
    EXPECT_LE(p.count, poly_capacity);
}

} // namespace
