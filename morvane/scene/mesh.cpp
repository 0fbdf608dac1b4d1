#include "morvane/scene/mesh.h"

#include <span>

#include "morvane/poly/render_modes.h"

namespace {

// Whether entry `i` lies inside an array.
template<typename Array>
bool holds(const Array& array, std::int32_t i) {
    return i >= 0 && static_cast<std::size_t>(i) < array.size();
}

std::size_t array_length(std::int32_t count) {
    return static_cast<std::size_t>(std::max(count, 0));
}

vector3d face_normal(const mesh& m, const face& f) {
    const vector3d& a = m.vertices[static_cast<std::size_t>(f.a)];
    const vector3d& b = m.vertices[static_cast<std::size_t>(f.b)];
    const vector3d& c = m.vertices[static_cast<std::size_t>(f.c)];
    vector3d normal = (b - a).cross(c - a);
    normal.normalize();
    return normal;
}

} // namespace

void mesh_set_render_mode(mesh& m, std::int32_t mode) {
    m.render_mode = mode;
    m.render_row = render_mode_find(static_cast<std::uint32_t>(mode));
}

void mesh_alloc_vertices(mesh& m, std::int32_t count) {
    const std::size_t length = array_length(count);
    m.vertices.assign(length, {});
    m.camera_vertices.assign(length, {});
    m.normals.assign(length, {});
    m.uv.assign(length, {});
    m.vertex_count = 0;
}

void mesh_alloc_faces(mesh& m, std::int32_t count) {
    m.faces.assign(array_length(count), {});
    m.face_count = 0;
}

void mesh_add_vertex(mesh& m, float x, float y, float z) {
    if (!holds(m.vertices, m.vertex_count)) return;
    mesh_set_vertex(m, x, y, z, m.vertex_count);
    ++m.vertex_count;
}

void mesh_set_vertex(mesh& m, float x, float y, float z, std::int32_t i) {
    if (holds(m.vertices, i)) m.vertices[static_cast<std::size_t>(i)] = {x, y, z};
}

void mesh_set_uv(mesh& m, std::int32_t i, float u, float v) {
    if (holds(m.uv, i)) m.uv[static_cast<std::size_t>(i)] = {.u = u, .v = v};
}

void mesh_add_face(mesh& m, std::int16_t a, std::int16_t b, std::int16_t c, std::uint16_t flag) {
    if (!holds(m.faces, m.face_count)) return;
    m.faces[static_cast<std::size_t>(m.face_count)] = {.a = a,
                                                       .b = b,
                                                       .c = c,
                                                       .edge_ca = static_cast<std::uint8_t>(flag & 4U),
                                                       .edge_bc = static_cast<std::uint8_t>(flag & 2U),
                                                       .edge_ab = static_cast<std::uint8_t>(flag & 1U),
                                                       .wrap_u = static_cast<std::uint8_t>(flag >> 3U & 1U),
                                                       .wrap_v = static_cast<std::uint8_t>(flag >> 4U & 1U),
                                                       .normal = {}};
    ++m.face_count;
}

void mesh_set_face_material(mesh& m, ::material* material, std::int32_t i) {
    if (holds(m.faces, i)) m.faces[static_cast<std::size_t>(i)].material = material;
}

// One walk over the faces gives each vertex the sum that a scan of all faces for that vertex would give, in
// the same order and so with the same roundings.
void mesh_calc_normals(mesh& m) {
    const std::size_t vertices = std::min(vertices_in_use(m), m.normals.size());
    std::fill_n(m.normals.begin(), vertices, vector3d{});
    std::vector<std::int32_t> faces_around(vertices, 0);
    const auto give = [&](std::int16_t i, const vector3d& normal) {
        const auto vertex = static_cast<std::size_t>(i);
        if (vertex >= vertices) return;
        m.normals[vertex] = m.normals[vertex] + normal;
        ++faces_around[vertex];
    };
    for (face& f : std::span(m.faces).first(faces_in_use(m))) {
        f.normal = {};
        if (!face_in_mesh(m, f)) continue;
        f.normal = face_normal(m, f);
        give(f.a, f.normal);
        if (f.b != f.a) give(f.b, f.normal);
        if (f.c != f.a && f.c != f.b) give(f.c, f.normal);
    }
    for (std::size_t i = 0; i < vertices; ++i)
        if (faces_around[i] > 0) m.normals[i] = m.normals[i] / static_cast<float>(faces_around[i]);
}

void mesh_calc_bounds(mesh& m) {
    const std::span points = std::span(m.vertices).first(vertices_in_use(m));
    if (points.empty()) return;
    m.box_max = m.box_min = points.front();
    for (const vector3d& p : points) {
        m.box_max = {std::max(m.box_max.x, p.x), std::max(m.box_max.y, p.y), std::max(m.box_max.z, p.z)};
        m.box_min = {std::min(m.box_min.x, p.x), std::min(m.box_min.y, p.y), std::min(m.box_min.z, p.z)};
    }
}
