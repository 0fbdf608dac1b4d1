#include "assets/scene/solids.h"

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace assets {
namespace {

std::uint16_t add_corner(solid& to, vec3 place) {
    to.vertices.push_back(place);
    return static_cast<std::uint16_t>(to.vertices.size() - 1);
}

std::uint16_t paint_of(const face_painter& paint, std::span<const vec3> corners) {
    vec3 middle;
    for (const vec3& corner : corners)
        middle = middle + corner * (1.0 / static_cast<double>(corners.size()));
    return paint(middle, normalised(cross(corners[1] - corners[0], corners[2] - corners[0])));
}

struct sphere_faces {
    solid& to;
    vec3 middle;
    double radius;
    const std::function<double(vec3)>& swell;
    const face_painter& paint;

    vec3 surface(vec3 direction) const { return middle + direction * (radius * swell(direction)); }

    // Each triangle into four, its sides' middles moved out to the sphere.
    void divide(vec3 a, vec3 b, vec3 c, int levels) const {
        if (levels == 0) {
            add_triangle(to, surface(a), surface(b), surface(c), paint);
            return;
        }
        const vec3 ab = normalised(a + b), bc = normalised(b + c), ca = normalised(c + a);
        divide(a, ab, ca, levels - 1);
        divide(ab, b, bc, levels - 1);
        divide(ca, bc, c, levels - 1);
        divide(ab, bc, ca, levels - 1);
    }
};

} // namespace

face_painter painted(std::uint16_t material) {
    return [material](vec3, vec3) { return material; };
}

void add_triangle(solid& to, vec3 a, vec3 b, vec3 c, const face_painter& paint) {
    add_polygon(to, std::array{a, b, c}, paint);
}

void add_quad(solid& to, vec3 a, vec3 b, vec3 c, vec3 d, const face_painter& paint) {
    add_polygon(to, std::array{a, b, c, d}, paint);
}

void add_polygon(solid& to, std::span<const vec3> corners, const face_painter& paint) {
    const std::uint16_t material = paint_of(paint, corners);
    const std::uint16_t first = add_corner(to, corners[0]);
    std::uint16_t before = add_corner(to, corners[1]);
    for (const vec3& corner : corners.subspan(2)) {
        const std::uint16_t now = add_corner(to, corner);
        to.faces.push_back({first, before, now, material});
        before = now;
    }
}

void add_wall(solid& to, std::span<const vec3> lower, std::span<const vec3> upper,
              const face_painter& paint) {
    for (std::size_t i = 0; i < lower.size(); ++i) {
        const std::size_t next = (i + 1) % lower.size();
        add_quad(to, lower[i], lower[next], upper[next], upper[i], paint);
    }
}

void add_tip(solid& to, std::span<const vec3> ring, vec3 tip, const face_painter& paint) {
    for (std::size_t i = 0; i < ring.size(); ++i)
        add_triangle(to, ring[i], ring[(i + 1) % ring.size()], tip, paint);
}

void weld(solid& shape) {
    std::map<std::array<double, 3>, std::uint16_t> places;
    std::vector<vec3> kept;
    std::vector<std::uint16_t> new_index;
    for (const vec3& vertex : shape.vertices) {
        const auto [place, is_new] =
            places.try_emplace({vertex.x, vertex.y, vertex.z}, static_cast<std::uint16_t>(kept.size()));
        if (is_new) kept.push_back(vertex);
        new_index.push_back(place->second);
    }
    for (solid_face& face : shape.faces)
        for (std::uint16_t* corner : {&face.a, &face.b, &face.c})
            *corner = new_index[*corner];
    shape.vertices = std::move(kept);
}

std::vector<vec3> ring_around(vec3 middle, vec3 right, vec3 ahead, double radius, int corners, double turn) {
    std::vector<vec3> ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = turn + 2 * std::numbers::pi * i / corners;
        ring.push_back(middle + right * (radius * std::cos(angle)) + ahead * (radius * std::sin(angle)));
    }
    return ring;
}

void add_octahedron(solid& to, vec3 middle, double radius, double height, const face_painter& paint) {
    const std::vector<vec3> ring = ring_around(middle, {1, 0, 0}, {0, 1, 0}, radius, 4);
    add_tip(to, ring, middle + vec3{0, 0, height}, paint);
    const std::vector<vec3> turned(ring.rbegin(), ring.rend());
    add_tip(to, turned, middle - vec3{0, 0, height}, paint);
}

void add_sphere(solid& to, vec3 middle, double radius, int levels, const std::function<double(vec3)>& swell,
                const face_painter& paint) {
    constexpr double p = std::numbers::phi;
    const std::array<vec3, 12> corners = {{{-1, p, 0},
                                           {1, p, 0},
                                           {-1, -p, 0},
                                           {1, -p, 0},
                                           {0, -1, p},
                                           {0, 1, p},
                                           {0, -1, -p},
                                           {0, 1, -p},
                                           {p, 0, -1},
                                           {p, 0, 1},
                                           {-p, 0, -1},
                                           {-p, 0, 1}}};
    constexpr std::array<std::array<std::size_t, 3>, 20> triangles = {
        {{0, 11, 5},  {0, 5, 1},  {0, 1, 7},  {0, 7, 10}, {0, 10, 11}, {1, 5, 9}, {5, 11, 4},
         {11, 10, 2}, {10, 7, 6}, {7, 1, 8},  {3, 9, 4},  {3, 4, 2},   {3, 2, 6}, {3, 6, 8},
         {3, 8, 9},   {4, 9, 5},  {2, 4, 11}, {6, 2, 10}, {8, 6, 7},   {9, 8, 1}}};
    const sphere_faces sphere{to, middle, radius, swell, paint};
    for (const auto& [a, b, c] : triangles)
        sphere.divide(normalised(corners[a]), normalised(corners[b]), normalised(corners[c]), levels);
}

} // namespace assets
