// The case table by its properties, and the surfaces that the walk makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>
#include <vector>

#include "morvane/isosurface/inner/case_table.h"
#include "morvane/isosurface/isosurface.h"
#include "tests/support/captured_output.h"

namespace {

std::vector<std::int32_t> row_of(std::size_t number) {
    const case_row& row = case_table()[number];
    const auto end = std::find(row.begin(), row.end(), -1);
    EXPECT_NE(end, row.end());
    return {row.begin(), end};
}

bool inside(std::size_t number, int corner) {
    return (number >> corner & 1) != 0;
}

// The corners of a face of the cell: axis 0 to 2, low or high side.
std::set<int> face_corners(int axis, int side) {
    std::set<int> corners;
    for (int i = 0; i < 8; ++i) {
        const cell_corner& c = cell_corners[static_cast<std::size_t>(i)];
        const int at[] = {c.x, c.y, c.z};
        if (at[axis] == side) corners.insert(i);
    }
    return corners;
}

// An edge between two of a face's edges that some triangle has and no other has in the opposite direction, in
// the coordinates of the face: what the neighbour must close.
using face_line = std::array<double, 6>;
std::multiset<face_line> open_lines(std::size_t number, int axis, int side) {
    const auto middle = [&](std::int32_t edge) {
        const auto [a, b] = cell_edges[static_cast<std::size_t>(edge)];
        const cell_corner &p = cell_corners[a], &q = cell_corners[b];
        std::array<double, 3> m = {(p.x + q.x) / 2.0, (p.y + q.y) / 2.0, (p.z + q.z) / 2.0};
        m[static_cast<std::size_t>(axis)] = 0;
        return m;
    };
    const std::set<int> corners = face_corners(axis, side);
    const auto on_face = [&](std::int32_t edge) {
        const auto [a, b] = cell_edges[static_cast<std::size_t>(edge)];
        return corners.contains(a) && corners.contains(b);
    };
    std::multiset<face_line> lines;
    const std::vector<std::int32_t> row = row_of(number);
    for (std::size_t t = 0; t < row.size(); t += 3)
        for (std::size_t k = 0; k < 3; ++k) {
            const std::int32_t from = row[t + k], to = row[t + (k + 1) % 3];
            if (!on_face(from) || !on_face(to)) continue;
            const auto p = middle(from), q = middle(to);
            const face_line back = {q[0], q[1], q[2], p[0], p[1], p[2]};
            if (const auto twin = lines.find(back); twin != lines.end())
                lines.erase(twin);
            else
                lines.insert({p[0], p[1], p[2], q[0], q[1], q[2]});
        }
    return lines;
}

class surfaces : public testing::Test {
  protected:
    surfaces() : surface(0, 0) { surface.set_gridsize(20); }

    void put(const std::vector<vector3d>& places, float threshold) {
        surface.spheres.clear();
        for (const vector3d& place : places)
            surface.spheres.push_back({.position = place, .threshold = threshold});
        surface.sphere_count = static_cast<std::int32_t>(places.size());
        surface.polygonise();
    }

    // Two cells reckon a common vertex from their own sides, so it is the same up to rounding only.
    using point = std::array<long, 3>;
    static point key(const vector3d& v) {
        return {std::lround(v.x * 100), std::lround(v.y * 100), std::lround(v.z * 100)};
    }

    // Every edge of every triangle once in each direction; the volume that the triangles enclose, which is
    // positive if they face outwards.
    double expect_closed() const {
        std::map<std::pair<point, point>, int> edges;
        double volume = 0;
        const mesh& m = surface.mesh;
        for (int i = 0; i < m.face_count; ++i) {
            const face& f = m.faces[static_cast<std::size_t>(i)];
            const vector3d* corners[] = {&m.vertices[static_cast<std::size_t>(f.a)],
                                         &m.vertices[static_cast<std::size_t>(f.b)],
                                         &m.vertices[static_cast<std::size_t>(f.c)]};
            volume += volume_below(*corners[0], *corners[1], *corners[2]);
            for (int k = 0; k < 3; ++k) {
                const point p = key(*corners[k]), q = key(*corners[(k + 1) % 3]);
                if (p == q) continue; // a corner exactly on the surface
                ++edges[{p, q}];
                --edges[{q, p}];
            }
        }
        for (const auto& [edge, balance] : edges)
            EXPECT_EQ(balance, 0);
        return volume;
    }
    static double volume_below(const vector3d& a, const vector3d& b, const vector3d& c) {
        const vector3d n = b.cross(c);
        return (double{a.x} * n.x + double{a.y} * n.y + double{a.z} * n.z) / 6;
    }

    // Number of separate pieces, joined where vertices have the same place.
    int pieces() const {
        std::map<point, point> parent;
        const auto root = [&](point p) {
            while (parent[p] != p)
                p = parent[p];
            return p;
        };
        const mesh& m = surface.mesh;
        for (int i = 0; i < m.vertex_count; ++i) {
            const point p = key(m.vertices[static_cast<std::size_t>(i)]);
            parent.try_emplace(p, p);
        }
        for (int i = 0; i < m.face_count; ++i) {
            const face& f = m.faces[static_cast<std::size_t>(i)];
            for (const std::int16_t corner : {f.b, f.c})
                parent[root(key(m.vertices[static_cast<std::size_t>(corner)]))] =
                    root(key(m.vertices[static_cast<std::size_t>(f.a)]));
        }
        int count = 0;
        for (const auto& [p, to] : parent)
            count += p == to;
        return count;
    }

    captured_output ignored;
    isosurface surface;
};

} // namespace

TEST(case_table, rows_cut_exactly_the_edges_that_cross) {
    std::size_t triangles = 0;
    for (std::size_t c = 0; c < 256; ++c) {
        const std::vector<std::int32_t> row = row_of(c);
        ASSERT_EQ(row.size() % 3, 0U);
        triangles += row.size() / 3;
        for (std::int32_t e = 0; e < 12; ++e) {
            const auto [a, b] = cell_edges[static_cast<std::size_t>(e)];
            EXPECT_EQ(std::count(row.begin(), row.end(), e) > 0, inside(c, a) != inside(c, b))
                << c << ' ' << e;
        }
    }
    EXPECT_EQ(triangles, 820U);
}

TEST(case_table, the_telling_rows_are_as_published) {
    using row = std::vector<std::int32_t>;
    EXPECT_EQ(row_of(1), (row{3, 0, 8}));
    EXPECT_EQ(row_of(2), (row{9, 0, 1}));
    EXPECT_EQ(row_of(3), (row{3, 1, 8, 1, 9, 8}));
    EXPECT_EQ(row_of(4), (row{11, 1, 2}));
    EXPECT_EQ(row_of(5), (row{3, 0, 8, 11, 1, 2}));
    EXPECT_EQ(row_of(6), (row{11, 9, 2, 9, 0, 2}));
    EXPECT_EQ(row_of(7), (row{3, 2, 8, 8, 2, 11, 8, 11, 9}));
    EXPECT_EQ(row_of(254), (row{8, 0, 3}));
}

// Whatever lies on the other side of a face, the lines that two cells draw on it meet in opposite directions.
TEST(case_table, cells_close_against_their_neighbours) {
    for (int axis = 0; axis < 3; ++axis) {
        std::map<std::set<std::array<int, 3>>, std::multiset<face_line>> seen; // by the face's inside corners
        for (const int side : {0, 1})
            for (std::size_t c = 0; c < 256; ++c) {
                std::set<std::array<int, 3>> corners;
                for (const int i : face_corners(axis, side)) {
                    const cell_corner& at = cell_corners[static_cast<std::size_t>(i)];
                    std::array<int, 3> place = {at.x, at.y, at.z};
                    place[static_cast<std::size_t>(axis)] = 0;
                    if (inside(c, i)) corners.insert(place);
                }
                std::multiset<face_line> lines;
                for (const face_line& l : open_lines(c, axis, side))
                    lines.insert(side == 0 ? l : face_line{l[3], l[4], l[5], l[0], l[1], l[2]});
                const auto [first, is_new] = seen.try_emplace(corners, lines);
                EXPECT_EQ(lines, first->second) << "case " << c << ", axis " << axis << ", side " << side;
            }
        EXPECT_EQ(seen.size(), 16U);
    }
}

TEST(case_table, neighbours_are_called_through_crossed_faces) {
    const auto crossed = [](std::size_t c, int axis, int side) {
        int count = 0;
        for (const int i : face_corners(axis, side))
            count += inside(c, i);
        return count > 0 && count < 4;
    };
    for (std::size_t c = 0; c < 256; ++c)
        for (int axis = 0; axis < 3; ++axis)
            for (const int side : {0, 1})
                EXPECT_EQ((neighbour_table[c] >> (axis * 2 + (side == 0)) & 1) != 0, crossed(c, axis, side))
                    << c;
}

TEST_F(surfaces, a_lone_sphere_is_round_closed_and_faces_outwards) {
    const double radius = 100 / std::sqrt(60.0); // where 1 / d^2 is the threshold
    surface.set_gridsize(80); // cells 2.5 wide: a straight line instead of 1 / d^2 is wrong by 0.2 at most
    for (const vector3d& place : {vector3d{0, 0, 0}, vector3d{0.31F, -0.27F, 0.4F}}) {
        put({place}, 60);
        EXPECT_GT(surface.mesh.face_count, 50);
        const double volume = expect_closed();
        EXPECT_NEAR(volume / (4.0 / 3 * 3.14159265 * radius * radius * radius), 1, 0.03);
        EXPECT_EQ(pieces(), 1);
        const mesh& m = surface.mesh;
        for (int i = 0; i < m.vertex_count; ++i) {
            const vector3d& v = m.vertices[static_cast<std::size_t>(i)];
            const double distance = (v - vector3d{place.x * 100, place.y * 100, place.z * 100}).length();
            EXPECT_NEAR(distance, radius, 0.2);
            const auto& [u, w] = m.uv[static_cast<std::size_t>(i)];
            EXPECT_FLOAT_EQ(u, (v.x + 1) * 0.5F);
            EXPECT_FLOAT_EQ(w, (v.y + 1) * 0.5F);
            const vector3d away = {v.x - place.x, v.y - place.y, v.z - place.z}; // the place isn't scaled
            EXPECT_NEAR(m.normals[static_cast<std::size_t>(i)].x, away.x / away.length(), 1e-5);
            EXPECT_NEAR(m.normals[static_cast<std::size_t>(i)].length(), 1, 1e-5);
        }
    }
}

TEST_F(surfaces, spheres_apart_make_two_pieces_and_near_ones_merge) {
    put({{-0.5F, 0, 0}, {0.5F, 0.1F, 0}}, 60);
    EXPECT_EQ(pieces(), 2);
    expect_closed();
    put({{-0.12F, 0, 0}, {0.12F, 0, 0}}, 60);
    EXPECT_EQ(pieces(), 1);
    EXPECT_GT(expect_closed(), 0);
}

TEST_F(surfaces, the_walk_finds_what_a_scan_of_the_whole_grid_finds) {
    const std::vector<vector3d> places = {{0.1F, 0.2F, -0.3F}, {-0.2F, 0.1F, 0.1F}, {0.3F, -0.4F, 0.2F}};
    put(places, 40);
    std::size_t expected = 0;
    const auto at = [&](int x, int y, int z) {
        const auto shell = [](int i) { return i == 0 || i == 20; };
        double sum = 0;
        for (const vector3d& p : places) {
            const double dx = x * 0.1 - 1 - p.x, dy = y * 0.1 - 1 - p.y, dz = z * 0.1 - 1 - p.z;
            sum += 1 / (dx * dx + dy * dy + dz * dz);
        }
        return shell(x) || shell(y) || shell(z) ? 0 : sum;
    };
    for (int z = 0; z < 20; ++z)
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x) {
                std::size_t c = 0;
                for (std::size_t i = 0; i < 8; ++i) {
                    const cell_corner& k = cell_corners[i];
                    if (at(x + k.x, y + k.y, z + k.z) > 40) c |= std::size_t{1} << i;
                }
                expected += row_of(c).size() / 3;
            }
    EXPECT_EQ(static_cast<std::size_t>(surface.mesh.face_count), expected);
    EXPECT_EQ(surface.polygonise()->face_count, static_cast<std::int32_t>(expected)); // and again
}

TEST_F(surfaces, thresholds_of_any_value_end_inside_the_grid) {
    put({}, 60);
    EXPECT_EQ(surface.mesh.vertex_count + surface.mesh.face_count, 0);
    put({{0, 0, 0}}, 10001); // above the field's limit
    EXPECT_EQ(surface.mesh.face_count, 0);
    for (const float threshold : {0.0F, -1.0F, 0.01F, 1e-30F, std::nanf(""), 1e30F})
        for (const int n : {1, 2, 3, 20}) {
            surface.set_gridsize(n);
            put({{0, 0, 0}, {0.9F, -0.9F, 0.9F}, {5, -7, 1e9F}, {std::nanf(""), 0, 0}}, threshold);
            for (int i = 0; i < surface.mesh.vertex_count; ++i) {
                const vector3d& v = surface.mesh.vertices[static_cast<std::size_t>(i)];
                EXPECT_FALSE(std::fabs(v.x) > 100.001F || std::fabs(v.y) > 100.001F ||
                             std::fabs(v.z) > 100.001F);
            }
        }
}

TEST_F(surfaces, a_full_mesh_ends_the_pass_with_whole_triangles) {
    surface.set_gridsize(100);
    put({{0, 0, 0}, {0.5F, 0, 0}}, 4); // some 30,000 triangles
    EXPECT_TRUE(surface.mesh.vertex_count > 9990 || surface.mesh.face_count > 9990);
    EXPECT_TRUE(surface.mesh.vertex_count <= 10000 && surface.mesh.face_count <= 10000);
    for (int i = 0; i < surface.mesh.face_count; ++i) {
        const face& f = surface.mesh.faces[static_cast<std::size_t>(i)];
        EXPECT_LT(std::max({f.a, f.b, f.c}), surface.mesh.vertex_count);
    }
    put({{0, 0, 0}}, 900); // and the next pass is whole again
    expect_closed();
}

TEST(isosurface_walk, without_grid_or_mesh_nothing_happens) {
    isosurface bare;
    EXPECT_EQ(bare.polygonise()->face_count, 0);
    bare.spheres.push_back({.threshold = 60});
    EXPECT_EQ(bare.polygonise()->face_count, 0);
    bare.set_gridsize(20);
    EXPECT_EQ(bare.polygonise()->face_count, 0); // no room for a single one
}
