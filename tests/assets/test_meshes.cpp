// The meshes of the data tree: their text, their surface, and what the score asks of each.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "assets/makers.h"
#include "tests/support/mesh_text.h"

namespace {

std::string made(const std::string& path) {
    for (const assets::maker& row : assets::makers()) {
        if (row.path != path) continue;
        const auto bytes = row.make();
        return {bytes.begin(), bytes.end()};
    }
    throw std::runtime_error("nobody makes " + path);
}

const std::array<std::string, 3> paths = {"data/asc/meteor/inside.asc", "data/asc/meteor/meteor2.asc",
                                          "data/asc/cube.asc"};
const model& inside() {
    static const model m = read_mesh(made(paths[0]));
    return m;
}
const model& meteor() {
    static const model m = read_mesh(made(paths[1]));
    return m;
}
const model& cube() {
    static const model m = read_mesh(made(paths[2]));
    return m;
}

// The normal as the show computes it: from edges cut to whole numbers.
point whole_normal(const model& m, std::size_t face) {
    auto cut = [](point p) { return point{std::trunc(p.x), std::trunc(p.y), std::trunc(p.z)}; };
    return cross(cut(m.at(face, 1) - m.at(face, 0)), cut(m.at(face, 2) - m.at(face, 1)));
}
point true_normal(const model& m, std::size_t face) {
    return cross(m.at(face, 1) - m.at(face, 0), m.at(face, 2) - m.at(face, 1));
}
double farthest(const model& m) {
    double most = 0;
    for (const point p : m.places)
        most = std::max(most, length(p));
    return most;
}

TEST(Meshes, AreReadByKeywordsAndLetters) {
    std::set<std::string> names;
    for (const model* m : {&inside(), &meteor(), &cube()}) {
        EXPECT_TRUE(names.insert(m->name).second);
        EXPECT_LT(m->name.size(), 20U);
        EXPECT_EQ(m->name.front(), '"');
        EXPECT_LE(m->places.size(), 4096U);
        EXPECT_LE(m->faces(), 4096U);
        EXPECT_GE(m->faces(), 200U);
        for (std::size_t f = 0; f < m->faces(); ++f) {
            for (const int corner : m->corners[f])
                ASSERT_TRUE(corner >= 0 && corner < static_cast<int>(m->places.size()));
            for (const int flag : m->drawn[f])
                ASSERT_TRUE(flag == 0 || flag == 1);
        }
    }
    for (const std::string& path : paths)
        EXPECT_EQ(made(path), made(path)) << path;
}

TEST(Meshes, TakeAllOfTheTextureAndNoFaceRunsAcrossIt) {
    for (const model* m : {&inside(), &meteor(), &cube()}) {
        for (const std::size_t axis : {0U, 1U}) {
            std::set<int> tenths; // of the texture, which repeats
            for (const auto& face : m->corners) {
                std::array<double, 3> t;
                for (std::size_t k = 0; k < 3; ++k)
                    t[k] = m->mapping[static_cast<std::size_t>(face[k])][axis];
                const auto [least, most] = std::minmax_element(t.begin(), t.end());
                EXPECT_LT(*most - *least, 0.5) << m->name << ": a face runs across the texture";
                for (double tenth = std::floor(*least * 10); tenth <= *most * 10; ++tenth)
                    tenths.insert(static_cast<int>(tenth - 10 * std::floor(tenth / 10)));
            }
            EXPECT_EQ(tenths.size(), 10U) << m->name;
        }
    }
}

// --- the bodies

TEST(Bodies, AreClosedAndTurnTheirFacesOutward) {
    for (const model* m : {&meteor(), &cube()}) {
        std::map<std::array<int, 2>, int> edges; // directed; how it is drawn
        std::set<std::array<double, 3>> places;
        for (const point p : m->places)
            EXPECT_TRUE(places.insert({p.x, p.y, p.z}).second)
                << m->name << ": a ripple would tear this open";
        double volume = 0;
        for (std::size_t f = 0; f < m->faces(); ++f) {
            for (std::size_t k = 0; k < 3; ++k) {
                const std::array<int, 2> edge = {m->corners[f][k], m->corners[f][(k + 1) % 3]};
                EXPECT_TRUE(edges.emplace(edge, m->drawn[f][k]).second)
                    << m->name << ": two faces on one side";
            }
            volume += dot(m->at(f, 0), cross(m->at(f, 1), m->at(f, 2))) / 6;
        }
        for (const auto& [edge, drawn] : edges) {
            const auto other = edges.find({edge[1], edge[0]});
            ASSERT_NE(other, edges.end()) << m->name << " is open";
            EXPECT_EQ(other->second, drawn) << m->name << ": a wire that one side of the outline would lack";
        }
        EXPECT_GT(volume, 0) << m->name;
    }
    for (std::size_t f = 0; f < meteor().faces(); ++f)
        EXPECT_GT(dot(true_normal(meteor(), f), meteor().at(f, 0)), 0);
}

TEST(Bodies, HaveEdgesThatSurviveBeingCutToWholeNumbers) {
    for (const model* m : {&inside(), &meteor(), &cube()}) {
        for (std::size_t f = 0; f < m->faces(); ++f) {
            for (std::size_t k = 0; k < 3; ++k) {
                const point e = m->at(f, (k + 1) % 3) - m->at(f, k);
                EXPECT_GT(std::max({std::abs(e.x), std::abs(e.y), std::abs(e.z)}), 1) << m->name;
            }
            const point cut = whole_normal(*m, f), exact = true_normal(*m, f);
            ASSERT_GT(length(cut), 0) << m->name << ": a face without a normal, " << f;
            if (m == &inside()) continue; // has no light
            EXPECT_GT(dot(cut, exact), 0.9 * length(cut) * length(exact)) << m->name;
        }
    }
}

// The measure of the renderers on the projected corners, against the side of the face that the viewer is on.
TEST(Bodies, ShowTheirOutsideToTheViewer) {
    for (const model* m : {&meteor(), &cube()}) {
        const double depth = m == &meteor() ? -180 : -240;
        int front = 0, behind = 0;
        double light_in_front = 0, light_behind = 0; // the light falls from above and from the viewer
        for (double t = 15; t < 147; t += 11.3) {
            for (std::size_t f = 0; f < m->faces(); ++f) {
                std::array<point, 3> p;
                std::array<double, 3> x, y;
                for (std::size_t k = 0; k < 3; ++k) {
                    p[k] = turned(turned(turned(m->at(f, k), 'y', t * 1.25), 'x', t * 0.8), 'z', t * -0.5);
                    p[k].z += depth;
                    x[k] = p[k].x * 120 / p[k].z + 256;
                    y[k] = p[k].y * 120 / p[k].z + 144;
                }
                const double measure = (y[0] - y[2]) * (x[1] - x[0]) - (y[1] - y[0]) * (x[0] - x[2]);
                const point normal = cross(p[1] - p[0], p[2] - p[1]);
                if (std::abs(measure) < 0.01) continue;
                ASSERT_EQ(measure < 0, dot(normal, p[0]) < 0) << m->name << ", face " << f;
                ++(measure < 0 ? front : behind);
                const double light = std::max(0.0, (normal.y + normal.z) / length(normal));
                (measure < 0 ? light_in_front : light_behind) += light;
            }
        }
        EXPECT_GT(front, 1000) << m->name;
        EXPECT_GT(light_in_front / front, 2 * light_behind / behind) << m->name;
    }
}

// The greatest ripples of the score, where the middle comes nearest.
TEST(Bodies, StayBeforeTheViewer) {
    EXPECT_LT(-180 + farthest(meteor()) + 30 + 50, -1);
    EXPECT_LT(-180 + (100.85 - 100.35) * 120 + farthest(meteor()) + 30, -1);
    EXPECT_LT(-240 + (100.85 - 100.36) * 120 + farthest(cube()) + 30, -1);
    EXPECT_GT(farthest(meteor()), 60);
    EXPECT_GT(farthest(cube()), 100);
}

// Vertex i moves by sin(i + t): neighbours on the surface must have indices of nearly the same phase, as a
// vertex order by chance has not (a quarter of a turn on average).
TEST(Bodies, RippleInWaves) {
    for (const model* m : {&meteor(), &cube()}) {
        double sum = 0;
        for (const auto& face : m->corners)
            for (std::size_t k = 0; k < 3; ++k)
                sum += std::abs(std::remainder(face[k] - face[(k + 1) % 3], 2 * std::numbers::pi));
        EXPECT_LT(sum / static_cast<double>(3 * m->faces()), 1) << m->name;
    }
}

// --- the inside

struct hit {
    int count = 0;
    std::size_t face = 0;
};

// The faces that a ray from the middle meets.
hit met_by(point ray) {
    const model& m = inside();
    hit result;
    for (std::size_t f = 0; f < m.faces(); ++f) {
        const point a = m.at(f, 0), b = m.at(f, 1), c = m.at(f, 2);
        const double ab = dot(ray, cross(a, b)), bc = dot(ray, cross(b, c)), ca = dot(ray, cross(c, a));
        const bool same_side = (ab >= 0 && bc >= 0 && ca >= 0) || (ab <= 0 && bc <= 0 && ca <= 0);
        if (!same_side || dot(ray, a) + dot(ray, b) + dot(ray, c) <= 0) continue;
        ++result.count;
        result.face = f;
    }
    return result;
}

TEST(Inside, SurroundsTheViewerOnce) {
    constexpr int rays = 1500;
    for (int i = 0; i < rays; ++i) {
        const double y = 1 - (2 * i + 1.0) / rays;
        const double angle = i * std::numbers::pi * (3 - std::sqrt(5.0)) + 0.1234;
        const double ring = std::sqrt(1 - y * y);
        EXPECT_EQ(met_by({ring * std::cos(angle), y, ring * std::sin(angle)}).count, 1) << "ray " << i;
    }
}

TEST(Inside, HasLooseEdgesNowhere) {
    // By place, for the texture's seams have their vertices twice.
    std::map<std::array<std::array<double, 3>, 2>, int> edges;
    auto place = [](point p) { return std::array<double, 3>{p.x, p.y, p.z}; };
    for (std::size_t f = 0; f < inside().faces(); ++f)
        for (std::size_t k = 0; k < 3; ++k)
            ++edges[{place(inside().at(f, k)), place(inside().at(f, (k + 1) % 3))}];
    for (const auto& [edge, times] : edges) {
        EXPECT_EQ(times, 1);
        EXPECT_TRUE(edges.contains({edge[1], edge[0]}));
    }
}

// A face is drawn if all its corners have -2048 < z <= -20: no pixel may look at one that isn't.
TEST(Inside, LeavesNoHoleInThePicture) {
    const double tilt = 0.314159274;
    int looked = 0;
    for (double t = 14.2; t < 147.49; t += 1.7) {
        const double h = t * 0.5;
        const double y_angle = (t >= 86.04 && t < 114.29) || t > 128.99 ? -h : h;
        const double z_angle = t > 114.29 ? -h : h;
        auto look = [&](int x, int y) {
            point ray{(256 - x) / 120.0, (144 - y) / 120.0, -1}; // x lies to the left
            ray = turned(turned(turned(ray, 'z', -z_angle), 'x', -tilt), 'y', -y_angle);
            const hit met = met_by(ray);
            ASSERT_GE(met.count, 1);
            for (std::size_t k = 0; k < 3; ++k) {
                const point p =
                    turned(turned(turned(inside().at(met.face, k), 'y', y_angle), 'x', tilt), 'z', z_angle);
                ASSERT_TRUE(p.z > -2048 && p.z <= -20) << "a hole at " << x << ", " << y << " at " << t;
            }
            ++looked;
        };
        for (int x = 1; x < 512; x += 34) { // the rims, where the walls are nearest
            look(x, 1);
            look(x, 287);
        }
        for (int y = 1; y < 288; y += 26) {
            look(1, y);
            look(511, y);
        }
        for (int x = 70; x < 512; x += 124)
            look(x, 144);
    }
    EXPECT_GT(looked, 4000);
}

// Ridges and collars stand still on one column of the texture, which must fall from light to dark there in
// both textures of the inside.
TEST(Inside, LinesOfLightGlowInBothTextures) {
    std::map<double, std::set<double>> columns; // u: the v of faces that lie on it
    for (const auto& face : inside().corners) {
        std::array<std::size_t, 3> c;
        std::copy(face.begin(), face.end(), c.begin());
        const auto& uv = inside().mapping;
        if (uv[c[0]][0] != uv[c[1]][0] || uv[c[0]][0] != uv[c[2]][0]) continue;
        for (const std::size_t corner : c)
            columns[uv[corner][0]].insert(uv[corner][1]);
    }
    ASSERT_EQ(columns.size(), 1U);
    const auto& [u, ends] = *columns.begin();
    ASSERT_EQ(ends.size(), 2U);
    for (const std::string name : {"texture", "intro1c"}) {
        const std::string file = made("data/part1/tex/" + name + ".tga");
        auto light = [&](double v) {
            const auto texel = static_cast<std::size_t>(v * 256) * 256 + static_cast<std::size_t>(u * 256);
            int sum = 0;
            for (std::size_t c = 0; c < 3; ++c)
                sum += static_cast<std::uint8_t>(file.at(18 + texel * 4 + c));
            return sum;
        };
        EXPECT_GT(light(*ends.begin()), light(*ends.rbegin()) + 100) << name;
    }
}

} // namespace
