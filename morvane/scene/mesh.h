// The mesh record of the scene and its face: what the scene renderer draws.
//
// A scene makes its meshes itself (moscene.h); the isosurface owns one of its own. Setters ignore an index
// beyond the arrays; nothing is reported.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "morvane/math/vector3d.h"
#include "morvane/scene/inner/names.h"

struct camera;
struct material;

struct face {
    std::int16_t a = 0, b = 0, c = 0; // vertex indices as given: look before you use them (`face_in_mesh`)
    std::uint8_t edge_ca = 0, edge_bc = 0, edge_ab = 0; // the flag word's bits 4, 2 and 1, each in place
    std::uint8_t wrap_u = 0, wrap_v = 0;                // its bits 3 and 4, each 0 or 1
    ::material* material = nullptr;                     // null: the mesh's
    vector3d normal;                                    // unit length, or zero without an area
};

struct map_coordinates {
    float u = 0, v = 0; // 0 to 1 across the texture
};

enum mesh_flags : std::int32_t { mesh_dummy = 1, mesh_hidden = 2, mesh_frozen = 4 };

struct mesh {
    char name[name_capacity] = {};
    std::vector<vector3d> vertices;        // source points; the four arrays are always of one length
    std::vector<vector3d> camera_vertices; // the same in camera space, rewritten each frame
    std::vector<vector3d> normals;         // the mean of the normals of the vertex's faces, not unit length
    std::vector<map_coordinates> uv;
    std::vector<face> faces;
    mesh* next = nullptr;           // in the scene's list
    ::material* material = nullptr; // for faces that have none
    std::int32_t vertex_count = 0;  // in use
    std::int32_t face_count = 0;
    vector3d box_max, box_min;    // of `vertices`
    vector3d position;            // translation, written each frame by the mesh's node
    std::int32_t flags = 0;       // `mesh_flags`; nothing in the system reads them
    std::int32_t render_row = 0;  // of `render_mode` in the render mode table
    std::int32_t render_mode = 1; // a word of poly/render_modes.h: points
};

// How many vertices and faces there are to walk. The counts may be set by hand; whatever they hold, no loop
// leaves the arrays.
inline std::size_t vertices_in_use(const mesh& m) {
    return std::min(m.vertices.size(), static_cast<std::size_t>(std::max(m.vertex_count, 0)));
}
inline std::size_t faces_in_use(const mesh& m) {
    return std::min(m.faces.size(), static_cast<std::size_t>(std::max(m.face_count, 0)));
}

// Whether all three indices of the face lie inside the vertex arrays. What a file says of a face is kept as
// it is, so whoever follows the indices asks first.
inline bool face_in_mesh(const mesh& m, const face& f) {
    const auto inside = [&m](std::int16_t i) {
        return i >= 0 && static_cast<std::size_t>(i) < m.vertices.size();
    };
    return inside(f.a) && inside(f.b) && inside(f.c);
}

// Stores the mode word and its row in the render mode table (row 0, points, for a word that has none).
void mesh_set_render_mode(mesh& m, std::int32_t mode);

// Replaces the four vertex arrays by ones of `count` zero entries each; `vertex_count` becomes 0. Below 0
// counts as 0.
void mesh_alloc_vertices(mesh& m, std::int32_t count);

// The same for the faces.
void mesh_alloc_faces(mesh& m, std::int32_t count);

// Sets the vertex at `vertex_count` and counts it. Ignored when the array is full.
void mesh_add_vertex(mesh& m, float x, float y, float z);

// Sets vertex `i` of the array, whatever `vertex_count` is.
void mesh_set_vertex(mesh& m, float x, float y, float z, std::int32_t i);

void mesh_set_uv(mesh& m, std::int32_t i, float u, float v);

// Sets the face at `face_count`, with no material, and counts it. Ignored when the array is full. `flag` is
// the file's word of edge and wrap bits.
void mesh_add_face(mesh& m, std::int16_t a, std::int16_t b, std::int16_t c, std::uint16_t flag);

void mesh_set_face_material(mesh& m, ::material* material, std::int32_t i);

// Normals of the faces, then of the vertices: each vertex gets the sum of the normals of its faces in face
// order, divided by their number; a face that holds it twice counts once, one without an area counts with (0,
// 0, 0), one that reaches beyond the vertices doesn't count. A vertex of no face gets (0, 0, 0). Time grows
// with faces plus vertices.
void mesh_calc_normals(mesh& m);

// The box around the vertices in use; without any, nothing changes.
void mesh_calc_bounds(mesh& m);

// Fills `camera_vertices` of every vertex that a face holds: `vertices` + `position`, taken through the
// camera's view. Defined beside the scene renderer (scene/renderer/scene_renderer.cpp).
void mesh_to_camera(mesh& m, const camera& c);
