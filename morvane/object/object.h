// The mesh record of the object engine: one fixed-size block with every array that its pipeline needs.
//
// A mesh is loaded once (asc_reader.h), moved by hand with two matrices (matrices.h, transform.h), sorted
// (sort.h) and drawn (render.h) each frame. The viewer sits at the origin and looks down negative z.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

inline constexpr std::int32_t object_capacity = 4096; // vertices, faces, slots

struct object_vertex {
    float x = 0, y = 0, z = 0;   // a position or direction
    float u = 0, v = 0;          // texture coordinates as read, `model_vertices` only
    std::int32_t tu = 0, tv = 0; // u * 256 and v * 256, truncated; `world_vertices` only
};

struct object_face {
    std::uint16_t a = 0, b = 0, c = 0;   // vertex indices, below the capacity; the reader sees to it
    std::uint8_t ab = 0, bc = 0, ca = 0; // 1 draws the edge in wire mode
    std::uint8_t visible = 0;            // set by the sorts: 1 lets the renderers draw this slot
};

// Row by row. A point is a row, p' = p * M, and the translation is the last row, elements 12 to 14.
using object_matrix = std::array<float, 16>;

struct object {
    template<typename Entry>
    using array = std::array<Entry, object_capacity>;

    char name[20] = {};            // from the file, quotes included if it has them, ended by a 0
    std::int32_t vertex_count = 0; // in use
    std::int32_t face_count = 0;
    array<std::int32_t> sort_key{};         // depth key of each slot
    array<std::int32_t> sort_order{};       // the face (or vertex) in each slot
    array<object_vertex> model_vertices{};  // the mesh as read; no frame changes it
    array<object_vertex> world_vertices{};  // after transformation, with tu and tv
    array<object_vertex> screen_vertices{}; // projected: x and y only
    array<object_face> faces{};
    object_vertex light;                  // unit vector, the direction for lit drawing
    array<object_vertex> model_normals{}; // one a face, 256 times unit length
    array<object_vertex> world_normals{}; // the same after rotation
    object_vertex camera_position;        // from the file's camera section
    object_vertex camera_target;
    object_matrix vertex_matrix{}; // applied to `model_vertices`
    object_matrix normal_matrix{}; // applied to `model_normals`
    std::int32_t read_camera = 0;  // 1: the reader expects a camera section
    std::int32_t read_mapping = 0; // 1: the reader expects U and V on each vertex line
    // Colour (0 to 255 each) and lit switch of each style; with `lit` 1 the face's intensity scales the
    // colour.
    std::int32_t point_red = 0, point_green = 0, point_blue = 0, point_lit = 0;
    std::int32_t wire_red = 0, wire_green = 0, wire_blue = 0, wire_lit = 0;
    std::int32_t fill_red = 0, fill_green = 0, fill_blue = 0, fill_lit = 0;
};

// How many vertices and faces there are to walk. The counts may be set by hand; whatever they hold, no loop
// leaves the arrays.
constexpr std::int32_t vertices_in_use(const object& mesh) {
    return std::clamp(mesh.vertex_count, 0, object_capacity);
}
constexpr std::int32_t faces_in_use(const object& mesh) {
    return std::clamp(mesh.face_count, 0, object_capacity);
}
