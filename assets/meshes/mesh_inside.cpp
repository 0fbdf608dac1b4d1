// The inside: a knot of tunnels. From a hall around the viewer a tunnel leads away along each of some axes,
// narrower from collar to collar; the walls between them are thin ridges. Every ray from the middle meets the
// surface once, so that nothing ever hides anything and the order of drawing can't go wrong.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "assets/forms/mesh_kit.h"
#include "assets/meshes/meshes.h"
#include "assets/meshes/sphere_cells.h"

namespace assets {
namespace {

constexpr double hall_radius = 196; // of a tunnel where it opens
constexpr double arc = 0.3;         // longest piece of a ridge, radians

// A ring around a tunnel: its depth along the axis and its radius. Depths below 1 lie between the ridge,
// whose depth differs around the tunnel, and the first collar, by that share of their ratio.
struct ring {
    double depth, radius;
    double v;
};
constexpr double first_collar = 350;
constexpr double second_collar = 730;
constexpr double tunnel_end = 1700;

// A place in both textures of the inside where a bright line falls off into the dark downwards. Along ridges
// and collars the texture stands still there, so that they glow like the wires.
constexpr double glow_u = 11.5 / 256;
constexpr double bright = 205.5 / 256;
constexpr double dark = 209.5 / 256;

// Rings that share one run of the texture. `around` is how often it repeats around the tunnel: less often
// further away, where the plates would crumble; less than once means there and back; 0 is a line of light.
// `along` is how far it runs while the depth grows by a factor of e, so that it shrinks with the depth.
struct strip {
    double around, along;
    std::array<ring, 3> rings;
    std::size_t count;
};
constexpr std::array strips = {
    strip{0, 0, {{{0, hall_radius, bright}, {0.08, hall_radius, dark}}}, 2},
    strip{2, 0.7, {{{0.08, hall_radius, 0}, {0.5, hall_radius, 0}, {first_collar, hall_radius, 0}}}, 3},
    strip{0, 0, {{{first_collar, hall_radius, dark}, {first_collar, 171, bright}}}, 2},
    strip{1, 0.5, {{{first_collar, 171, 0}, {second_collar, 171, 0}}}, 2},
    strip{0, 0, {{{second_collar, 171, dark}, {second_collar, 147, bright}}}, 2},
    strip{0.5, 0.42, {{{second_collar, 147, 0}, {1500, 147, 0}}}, 2},
};

struct tunnel {
    vec3 axis, across, up;
};

tunnel tunnel_along(vec3 axis) {
    const vec3 across = normalised(cross(std::abs(axis.y) < 0.9 ? vec3{0, 1, 0} : vec3{1, 0, 0}, axis));
    return {axis, across, cross(axis, across)};
}

// Lumps in the wall move a place along the ray to it.
vec3 lumpy(vec3 place) {
    return place * (1 + 0.17 * smooth_noise(normalised(place), 0.5, 2));
}

// The ridge around a cell in pieces, the same for both cells that share an edge.
std::vector<vec3> ridge(const sphere_division& division, std::size_t index) {
    std::vector<vec3> result;
    const auto& cell = division.cells[index];
    for (std::size_t k = 0; k < cell.size(); ++k) {
        const vec3 from = division.corners[cell[k]];
        const vec3 to = division.corners[cell[(k + 1) % cell.size()]];
        const int pieces = std::max(1, static_cast<int>(std::ceil(std::acos(dot(from, to)) / arc)));
        for (int i = 0; i < pieces; ++i)
            result.push_back(normalised(from * (pieces - i) + to * i));
    }
    return result;
}

// A line along the wall of a tunnel: where it starts on the ridge, its direction from the axis, and its place
// around in turns.
struct column {
    double ridge_depth;
    vec3 outward;
    double turn;
};

std::vector<column> columns_of(const tunnel& t, const std::vector<vec3>& border) {
    std::vector<column> result;
    for (const vec3 b : border) {
        const double x = dot(b, t.across);
        const double y = dot(b, t.up);
        const double side = std::hypot(x, y);
        double turn = std::atan2(y, x) / (2 * std::numbers::pi);
        if (!result.empty()) turn -= std::floor(turn - result.front().turn);
        result.push_back(
            {hall_radius * dot(b, t.axis) / side, t.across * (x / side) + t.up * (y / side), turn});
    }
    result.push_back(result.front()); // again, one round further in the texture
    result.back().turn += 1;
    return result;
}

double depth_of(const ring& r, const column& c) {
    return r.depth < 1 ? c.ridge_depth * std::pow(first_collar / c.ridge_depth, r.depth) : r.depth;
}

double place_around(const strip& s, const std::vector<column>& columns, std::size_t k) {
    if (s.around == 0) return glow_u;
    if (s.around >= 1) return s.around * columns[k].turn;
    const std::size_t last = columns.size() - 1;
    const std::size_t half = last / 2;
    return s.around * (k <= half ? static_cast<double>(k) / static_cast<double>(half)
                                 : static_cast<double>(last - k) / static_cast<double>(last - half));
}

void add_strip(mesh& m, const tunnel& t, const std::vector<column>& columns, const strip& s) {
    const std::size_t first = m.vertices.size();
    const std::size_t wide = columns.size();
    for (std::size_t i = 0; i < s.count; ++i) {
        const ring& r = s.rings[i];
        for (std::size_t k = 0; k < wide; ++k) {
            const column& c = columns[k];
            const double depth = depth_of(r, c);
            const vec3 place = lumpy(t.axis * depth + c.outward * r.radius);
            add_vertex(m, place, place_around(s, columns, k), r.v + s.along * std::log(depth / 100));
        }
    }
    for (std::size_t i = 0; i + 1 < s.count; ++i) {
        for (std::size_t k = 0; k + 1 < wide; ++k) {
            const std::size_t at = first + i * wide + k;
            add_quad(m, at, at + wide, at + wide + 1, at + 1, false);
        }
    }
}

// Closes a tunnel behind its last ring, whose vertices are the last of the mesh.
void add_end(mesh& m, const tunnel& t, std::size_t wide) {
    const std::size_t last = m.vertices.size() - wide;
    const std::size_t tip = add_vertex(m, lumpy(t.axis * tunnel_end), 0.25, m.vertices[last].v + 0.3);
    for (std::size_t k = 0; k + 1 < wide; ++k)
        m.faces.push_back({.a = last + k, .b = tip, .c = last + k + 1});
}

mesh modelled() {
    const std::vector<vec3> axes = spread_points(7, 0.3, 3, 5);
    const sphere_division division = divide_sphere(axes);
    mesh m;
    for (std::size_t i = 0; i < axes.size(); ++i) {
        const tunnel t = tunnel_along(axes[i]);
        const std::vector<column> columns = columns_of(t, ridge(division, i));
        for (const strip& s : strips)
            add_strip(m, t, columns, s);
        add_end(m, t, columns.size());
    }
    return m;
}

} // namespace

file_bytes mesh_inside() {
    return asc_file("inside", modelled());
}

} // namespace assets
