// The meteor: a rock of plates. The sphere is divided into uneven cells; the border of the cells is what the
// wires show, and each plate is a fan around its own middle, so that light breaks on it.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "assets/forms/mesh_kit.h"
#include "assets/forms/noise.h"
#include "assets/meshes/meshes.h"
#include "assets/meshes/sphere_cells.h"

namespace assets {
namespace {

constexpr int plates = 72;
constexpr double radius = 68;

struct crater {
    vec3 middle;
    double reach; // cosine of the angle to its rim
    double depth; // share of the radius
};
const std::array craters = {
    crater{normalised({0.6, 0.5, 0.62}), 0.80, 0.22},
    crater{normalised({-0.7, -0.25, 0.6}), 0.86, 0.16},
    crater{normalised({0.2, -0.6, -0.8}), 0.78, 0.24},
};

// A lump, longer one way than the others, with craters.
double height(vec3 d) {
    double h = 1 + 0.16 * d.x * d.x - 0.1 * d.y * d.y + 0.2 * smooth_noise(d, 0.32, 2);
    for (const crater& c : craters) {
        const double in = (dot(d, c.middle) - c.reach) / (1 - c.reach);
        if (in > 0) h -= c.depth * std::min(1.0, 1.6 * in);
    }
    return h * radius;
}

std::size_t add_place(mesh& m, vec3 d, double share) {
    return add_seamless_vertex(m, d * (height(d) * share), 1);
}

} // namespace

mesh meteor_model() {
    const std::vector<vec3> middles = spread_points(plates, 0.4, 3, 7);
    const sphere_division division = divide_sphere(middles);
    mesh m;
    for (const vec3 corner : division.corners)
        add_place(m, corner, 1);
    for (std::size_t i = 0; i < middles.size(); ++i) {
        const double lift = static_cast<double>(hash01(static_cast<std::int32_t>(i), 0, 61));
        const std::size_t middle = add_place(m, middles[i], 0.98 + 0.14 * lift);
        const auto& cell = division.cells[i];
        for (std::size_t k = 0; k < cell.size(); ++k)
            m.faces.push_back({.a = cell[k], .b = cell[(k + 1) % cell.size()], .c = middle, .ab = true});
    }
    // Two waves from end to end; as much of a sphere lies between any two heights of the same distance.
    const vec3 axis = normalised({0.5, 1, 0.3});
    order_for_ripple(m, [&](vec3 p) { return dot(normalised(p), axis); });
    return m;
}

file_bytes mesh_meteor() {
    return asc_file("meteor", meteor_model());
}

} // namespace assets
