// The cases of marching cubes: how the surface cuts a cell whose corners lie inside and outside.
//
// Bit i of a case is set when corner i lies inside. Corners, edges and the offsets of corners are numbered as
// the tables below say; the triangles are the published ones (W. Lorensen, H. Cline, "Marching Cubes: A High
// Resolution 3D Surface Construction Algorithm", 1987, in the version whose faces fit from cell to cell).
#pragma once

#include <array>
#include <cstdint>

// Offsets of the eight corners from the cell's own place.
struct cell_corner {
    std::uint8_t x, y, z;
};
inline constexpr std::array<cell_corner, 8> cell_corners = {
    {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}, {0, 1, 0}, {1, 1, 0}, {1, 1, 1}, {0, 1, 1}}};

// The two corners of each edge, in the order in which the interpolation runs.
struct cell_edge {
    std::uint8_t a, b;
};
inline constexpr std::array<cell_edge, 12> cell_edges = {
    {{0, 1}, {1, 2}, {3, 2}, {0, 3}, {4, 5}, {5, 6}, {7, 6}, {4, 7}, {0, 4}, {1, 5}, {3, 7}, {2, 6}}};

// Edge numbers, three a triangle, ended by -1. The right-hand normal of a triangle points from the corners
// inside to those outside.
using case_row = std::array<std::int32_t, 16>;
const std::array<case_row, 256>& case_table();

// The faces through which the surface leaves a cell, one flag for each neighbour.
enum cell_neighbour : std::uint8_t {
    neighbour_right = 1,  // x + 1
    neighbour_left = 2,   // x - 1
    neighbour_above = 4,  // y + 1
    neighbour_below = 8,  // y - 1
    neighbour_front = 16, // z + 1
    neighbour_back = 32,  // z - 1
};

// The neighbours that each case calls for: those behind a face whose corners are neither all inside nor all
// outside.
inline constexpr std::array<std::uint8_t, 256> neighbour_table = [] {
    constexpr std::array<std::uint32_t, 6> faces = {0x66, 0x99, 0xf0, 0x0f, 0xcc, 0x33};
    std::array<std::uint8_t, 256> table{};
    for (std::uint32_t c = 0; c < 256; ++c)
        for (std::uint32_t i = 0; i < faces.size(); ++i)
            if ((c & faces[i]) != 0 && (c & faces[i]) != faces[i])
                table[c] = static_cast<std::uint8_t>(table[c] | 1U << i);
    return table;
}();
