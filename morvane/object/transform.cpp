#include "morvane/object/transform.h"

#include <cmath>
#include <cstddef>

#include "morvane/base/kernel.h"
#include "morvane/object/matrices.h"

namespace {

MORVANE_KERNEL void apply(object_matrix m, const object_vertex* in, object_vertex* out, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i)
        mat_apply(m, in[i], out[i]);
}

MORVANE_KERNEL void project(object_vertex* world, object_vertex* screen, std::int32_t count, float centre_x,
                            float centre_y) {
    for (std::int32_t i = 0; i < count; ++i) {
        const float z = world[i].z == 0 ? 1 : world[i].z;
        world[i].z = z;
        screen[i].x = world[i].x * 120 / z + centre_x;
        screen[i].y = world[i].y * 120 / z + centre_y;
    }
}

} // namespace

void object_rotate(object& mesh, float ax, float ay, float az) {
    mat_rotate_xyz(mesh.vertex_matrix, ax, ay, az);
    mat_rotate_xyz(mesh.normal_matrix, ax, ay, az);
    object_apply_matrices(mesh);
}

void object_apply_matrices(object& mesh) {
    apply(mesh.vertex_matrix, mesh.model_vertices.data(), mesh.world_vertices.data(), vertices_in_use(mesh));
    apply(mesh.normal_matrix, mesh.model_normals.data(), mesh.world_normals.data(), faces_in_use(mesh));
}

void object_ripple(object& mesh, float phase, std::int32_t amplitude) {
    for (std::int32_t i = 0; i < vertices_in_use(mesh); ++i) {
        float& z = mesh.world_vertices[static_cast<std::size_t>(i)].z;
        const float angle = static_cast<float>(i) + phase;
        z = static_cast<float>(z + std::sin(double{angle}) * amplitude);
    }
}

void object_project(object& mesh, std::int32_t centre_x, std::int32_t centre_y) {
    project(mesh.world_vertices.data(), mesh.screen_vertices.data(), vertices_in_use(mesh),
            static_cast<float>(centre_x), static_cast<float>(centre_y));
}

void object_project_scaled(object& mesh, std::int32_t centre_x, std::int32_t centre_y, float scale) {
    const auto x = static_cast<float>(centre_x);
    const auto y = static_cast<float>(centre_y);
    for (std::int32_t i = 0; i < vertices_in_use(mesh); ++i) {
        const object_vertex& from = mesh.world_vertices[static_cast<std::size_t>(i)];
        object_vertex& to = mesh.screen_vertices[static_cast<std::size_t>(i)];
        const float f = 120 / (120 - scale * from.z);
        to.x = scale * from.x * f + x;
        to.y = scale * from.y * f + y;
    }
}

void object_set_light(object& mesh, std::int32_t from_x, std::int32_t from_y, std::int32_t from_z,
                      std::int32_t to_x, std::int32_t to_y, std::int32_t to_z) {
    // Differences of 32-bit numbers and their squares are exact, or all but exact, in double.
    const double x = double{1} * to_x - from_x;
    const double y = double{1} * to_y - from_y;
    const double z = double{1} * to_z - from_z;
    const double length = std::sqrt(x * x + y * y + z * z);
    mesh.light = {};
    if (length == 0) return;
    mesh.light.x = static_cast<float>(x / length);
    mesh.light.y = static_cast<float>(y / length);
    mesh.light.z = static_cast<float>(z / length);
}
