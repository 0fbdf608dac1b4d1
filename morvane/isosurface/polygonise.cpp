// The surface walk: marching cubes over the cells that the surface crosses, and no others.
#include <algorithm>
#include <array>
#include <cmath>

#include "morvane/isosurface/inner/case_table.h"
#include "morvane/isosurface/isosurface.h"

namespace {

enum state : std::uint8_t { untouched = 0, done = 1, on_stack = 2 };

constexpr std::uint32_t wholly_inside = 255;
constexpr std::uint16_t no_vertex = 0xffff;
constexpr double scale = 100; // from the field's cube to the mesh

// The direction in which the field of the spheres falls off at `q`, a place of the mesh: the places of the
// spheres are not scaled up to it.
vector3d normal_at(const vector3d& q, const std::vector<sphere>& spheres) {
    double gx = 0, gy = 0, gz = 0;
    for (const sphere& each : spheres) {
        const double dx = double{q.x} - each.position.x, dy = double{q.y} - each.position.y,
                     dz = double{q.z} - each.position.z;
        const double square = dx * dx + dy * dy + dz * dz;
        if (square == 0) continue;
        const double weight = 2 * each.strength / (square * square);
        gx += weight * dx;
        gy += weight * dy;
        gz += weight * dz;
    }
    const double length = std::sqrt(gx * gx + gy * gy + gz * gz);
    if (length == 0) return {};
    return {static_cast<float>(gx / length), static_cast<float>(gy / length),
            static_cast<float>(gz / length)};
}

} // namespace

bool isosurface::in_grid(const cell& at) const {
    const auto inside = [this](std::int32_t i) { return i >= 0 && i < grid_size; };
    return inside(at.x) && inside(at.y) && inside(at.z);
}

std::size_t isosurface::cell_index(const cell& at) const {
    return static_cast<std::size_t>(at.x + at.y * grid_size + at.z * cell_plane);
}

// The field at a sample point, computed once a pass. The outer shell of the grid is 0: that closes the
// surface at the walls.
float isosurface::sample(std::int32_t x, std::int32_t y, std::int32_t z) {
    const auto at = static_cast<std::size_t>(x + y * (grid_size + 1) + z * plane_stride);
    if (sample_known[at] != 0) return samples[at];
    const auto shell = [this](std::int32_t i) { return i == 0 || i == grid_size; };
    samples[at] = shell(x) || shell(y) || shell(z) ? 0 : field(world_of(x), world_of(y), world_of(z));
    sample_known[at] = 1;
    return samples[at];
}

struct mesh* isosurface::polygonise() {
    std::fill(sample_known.begin(), sample_known.end(), std::uint8_t{0});
    std::fill(cell_state.begin(), cell_state.end(), std::uint8_t{untouched});
    vertex_count = face_count = 0;
    mesh.vertex_count = mesh.face_count = 0;
    full = false;
    for (const sphere& each : spheres) {
        const cell start = {grid_of(each.position.x), grid_of(each.position.y), grid_of(each.position.z)};
        follow(start, each.threshold);
        if (full) break;
    }
    mesh.vertex_count = vertex_count;
    mesh.face_count = face_count;
    return &mesh;
}

// Goes down from `start` until the surface is met, and then along it until it is closed.
void isosurface::follow(const cell& start, float threshold) {
    cell at = start;
    for (;; --at.z) {
        if (!in_grid(at) || cell_state[cell_index(at)] == done) return;
        const std::uint32_t corner_case = process(at, threshold);
        if (corner_case == wholly_inside) continue;
        push_neighbours(at, corner_case);
        break;
    }
    while (stack_count > 0 && !full) {
        const auto top = static_cast<std::int32_t>(stack[static_cast<std::size_t>(--stack_count)]);
        at = {top % grid_size, top / grid_size % grid_size, top / cell_plane};
        push_neighbours(at, process(at, threshold));
    }
    stack_count = 0;
}

void isosurface::push_neighbours(const cell& at, std::uint32_t corner_case) {
    constexpr std::array<cell, 6> steps = {
        {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}};
    const std::uint32_t flags = neighbour_table[corner_case];
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if ((flags >> i & 1) == 0) continue;
        const cell next = {at.x + steps[i].x, at.y + steps[i].y, at.z + steps[i].z};
        if (!in_grid(next) || cell_state[cell_index(next)] != untouched) continue;
        stack[static_cast<std::size_t>(stack_count++)] = static_cast<std::uint32_t>(cell_index(next));
        cell_state[cell_index(next)] = on_stack;
    }
}

// Adds the triangles of one cell and tells its case.
std::uint32_t isosurface::process(const cell& at, float threshold) {
    std::array<float, 8> values;
    std::uint32_t corner_case = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const cell_corner& corner = cell_corners[i];
        values[i] = sample(at.x + corner.x, at.y + corner.y, at.z + corner.z);
        if (values[i] > threshold) corner_case |= 1U << i;
    }
    std::array<std::uint16_t, 12> edge_vertices;
    edge_vertices.fill(no_vertex);
    const case_row& row = case_table()[corner_case];
    for (std::size_t i = 0; row[i] >= 0 && !full; i += 3)
        full = !add_triangle(&row[i], values, at, threshold, edge_vertices);
    cell_state[cell_index(at)] = done;
    return corner_case;
}

// False, and nothing added, if the mesh has no room for it. Vertices are shared within the cell only.
bool isosurface::add_triangle(const std::int32_t* edges, const std::array<float, 8>& values, const cell& at,
                              float threshold, std::array<std::uint16_t, 12>& edge_vertices) {
    const auto slot = [&](int i) -> std::uint16_t& {
        return edge_vertices[static_cast<std::size_t>(edges[i])];
    };
    constexpr std::size_t nameable = 32768; // by a face
    const std::size_t room = std::min(mesh.vertices.size(), nameable);
    std::size_t wanted = 0;
    for (int i = 0; i < 3; ++i)
        wanted += slot(i) == no_vertex;
    if (static_cast<std::size_t>(vertex_count) + wanted > room ||
        static_cast<std::size_t>(face_count) >= mesh.faces.size())
        return false;
    for (int i = 0; i < 3; ++i) {
        if (slot(i) != no_vertex) continue;
        slot(i) = static_cast<std::uint16_t>(vertex_count);
        add_vertex(edges[i], values, at, threshold);
    }
    face& added = mesh.faces[static_cast<std::size_t>(face_count++)];
    added.a = static_cast<std::int16_t>(slot(0));
    added.b = static_cast<std::int16_t>(slot(1));
    added.c = static_cast<std::int16_t>(slot(2));
    added.material = nullptr;
    return true;
}

// The vertex where the surface cuts an edge of the cell, with its normal and mapping.
void isosurface::add_vertex(std::int32_t edge, const std::array<float, 8>& values, const cell& at,
                            float threshold) {
    const auto [a, b] = cell_edges[static_cast<std::size_t>(edge)];
    const double f = (double{threshold} - values[a]) / (double{values[b]} - values[a]);
    const auto along = [&](std::int32_t base, std::uint8_t from, std::uint8_t to) {
        const double p = f * to + (1 - f) * from;
        return static_cast<float>(scale * (double{world_of(base)} + p * cell_size));
    };
    const cell_corner &from = cell_corners[a], &to = cell_corners[b];
    const auto i = static_cast<std::size_t>(vertex_count++);
    const vector3d q = {along(at.x, from.x, to.x), along(at.y, from.y, to.y), along(at.z, from.z, to.z)};
    mesh.vertices[i] = q;
    mesh.normals[i] = normal_at(q, spheres);
    mesh.uv[i] = {static_cast<float>((double{q.x} + 1.0) * 0.5),
                  static_cast<float>((double{q.y} + 1.0) * 0.5)};
}
