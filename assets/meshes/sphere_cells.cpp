#include "assets/meshes/sphere_cells.h"

#include <algorithm>
#include <numbers>
#include <utility>

#include "assets/forms/noise.h"

namespace assets {
namespace {

// Two directions at right angles to `axis` and to each other; `first`, `second`, `axis` are right-handed.
struct plane_axes {
    vec3 first, second;
};
plane_axes across(vec3 axis) {
    const vec3 aside = std::abs(axis.y) < 0.9 ? vec3{0, 1, 0} : vec3{1, 0, 0};
    const vec3 first = normalised(cross(aside, axis));
    return {first, cross(axis, first)};
}

bool nobody_nearer(std::span<const vec3> points, vec3 corner, double nearest) {
    return std::ranges::none_of(points, [&](vec3 p) { return dot(p, corner) > nearest + 1e-9; });
}

void sort_around(std::vector<std::size_t>& cell, std::span<const vec3> corners, vec3 point) {
    const plane_axes plane = across(point);
    auto angle = [&](std::size_t i) {
        return std::atan2(dot(corners[i], plane.second), dot(corners[i], plane.first));
    };
    std::ranges::sort(cell, {}, angle);
}

} // namespace

sphere_division divide_sphere(std::span<const vec3> points) {
    sphere_division result;
    result.cells.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < points.size(); ++j) {
            for (std::size_t k = j + 1; k < points.size(); ++k) {
                const vec3 normal = normalised(cross(points[j] - points[i], points[k] - points[i]));
                for (const vec3 corner : {normal, normal * -1}) {
                    if (!nobody_nearer(points, corner, dot(corner, points[i]))) continue;
                    for (const std::size_t cell : {i, j, k})
                        result.cells[cell].push_back(result.corners.size());
                    result.corners.push_back(corner);
                }
            }
        }
    }
    for (std::size_t i = 0; i < points.size(); ++i)
        sort_around(result.cells[i], result.corners, points[i]);
    return result;
}

std::vector<vec3> spread_points(int count, double disorder, int rounds, std::uint32_t seed) {
    std::vector<vec3> points;
    const double push = disorder * std::sqrt(4 * std::numbers::pi / count);
    for (int i = 0; i < count; ++i) {
        const double y = 1 - (2 * i + 1.0) / count;
        const double angle = i * std::numbers::pi * (3 - std::sqrt(5.0));
        const double ring = std::sqrt(1 - y * y);
        auto random = [&](int axis) { return static_cast<double>(hash01(i, axis, seed)) * 2 - 1; };
        const vec3 aside{random(0), random(1), random(2)};
        points.push_back(normalised(vec3{ring * std::cos(angle), y, ring * std::sin(angle)} + aside * push));
    }
    for (int round = 0; round < rounds; ++round) {
        const sphere_division now = divide_sphere(points);
        for (std::size_t i = 0; i < points.size(); ++i) {
            vec3 middle;
            for (const std::size_t corner : now.cells[i])
                middle = middle + now.corners[corner];
            points[i] = normalised(middle);
        }
    }
    return points;
}

} // namespace assets
