// What colour and texture the faces of a scene get, against the formulas and against the rasterizers called
// by hand.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "morvane/base/numbers.h"
#include "morvane/poly/fill_perspective.h"
#include "morvane/poly/fill_textured.h"
#include "morvane/poly/fillers.h"
#include "tests/support/scene_stage.h"

namespace {

using namespace scene_stage;

TEST_F(scene_renderer, colours_faces_by_the_formula) {
    mesh& m = add_triangle(4);
    material &surface = add_material(40, 60, 90), &hidden = add_material(7, 8, 9);
    std::mt19937 random(4);
    const auto part = [&] { return static_cast<float>(random() % 2001) / 1000 - 1; };
    for (int i = 0; i < 3; ++i)
        add_light(0, 0, 1, 0, 0, 0);
    for (int i = 0; i < 300; ++i) {
        m.material = i % 3 == 0 ? nullptr : i % 3 == 1 ? &hidden : &surface; // the face's comes first
        m.faces[0].material = i % 3 == 1 ? &surface : nullptr;
        scene.use_materials = i % 4 != 0;
        scene.use_lights = i % 5 != 0;
        m.faces[0].normal = {part(), part(), part()};
        const bool has = scene.use_materials && i % 3 != 0;
        double r = has ? 40 * 0.5 : 255 * 0.5, g = has ? 60 * 0.25 : 255 * 0.25,
               b = has ? 90 * 0.125 : 255 * 0.125;
        for (light* l = scene.first_light; l; l = l->next) {
            l->position = {part() * 100, part() * 100, part() * 100};
            l->color_r = std::abs(part()), l->color_g = std::abs(part()), l->color_b = std::abs(part());
            const vector3d &p = l->position, &n = m.faces[0].normal;
            const double length = std::sqrt(double{p.x} * p.x + double{p.y} * p.y + double{p.z} * p.z);
            const double d = std::abs((double{p.x} * n.x + double{p.y} * n.y + double{p.z} * n.z) / length);
            if (!scene.use_lights) continue;
            r += (has ? 90 : 255) * d * l->color_r;
            g += (has ? 40 : 255) * d * l->color_g;
            b += (has ? 60 : 255) * d * l->color_b;
        }
        render();
        expect_colour(centre(), r, g, b);
    }
}

TEST_F(scene_renderer, lights_both_sides_alike_and_nothing_at_right_angles) {
    mesh& m = add_triangle(4);
    m.material = &add_material(100, 100, 100);
    light& l = add_light(0, 0, 5, 1, 1, 1);
    m.faces[0].normal = {0.6F, 0, 0.8F};
    render();
    const std::uint32_t lit = centre();
    m.faces[0].normal = {-0.6F, 0, -0.8F};
    render();
    EXPECT_EQ(centre(), lit);
    EXPECT_EQ(lit, packed(50 + 80, 25 + 80, 12.5 + 80));
    m.faces[0].normal = {1, 0, 0};
    render();
    EXPECT_EQ(centre(), packed(50, 25, 12.5));
    m.faces[0].normal = {0, 0, 1};
    l.position = {0, 0, 0};
    l.direction = {0, 0, 1}; // of an earlier frame
    render();
    EXPECT_EQ(centre(), packed(50, 25, 12.5));
    EXPECT_EQ(l.direction.z, 0);
}

TEST_F(scene_renderer, limits_the_sum_of_lights) {
    for (const std::int32_t mode : {0x04, 0x408}) {
        mesh& m = add_triangle(mode);
        m.material = &add_material(200, 200, 200);
        add_light(0, 0, 1, 1, 1, 1);
        add_light(0, 0, 1, 1, 1, 1);
        render();
        EXPECT_EQ(centre(), 0x00ffffffU) << mode;
    }
}

// The frame is that of the Gouraud filler with the corners and colours computed here.
TEST_F(scene_renderer, colours_vertices_by_the_formula) {
    mesh& m = add_triangle(0x408);
    m.material = &add_material(40, 60, 90);
    m.normals = {{0, 0, 1}, {0, 0.6F, 0.8F}, {1, 0, 0}};
    m.faces[0].normal = {1, 1, 1}; // not read
    add_light(0, 3, 4, 0.5F, 0.75F, 1);
    const std::vector<std::uint32_t> seen = render();
    clear();
    std::array<std::array<std::int32_t, 5>, 3> corners;
    const std::int16_t order[] = {0, 2, 1};
    for (std::size_t k = 0; k < 3; ++k) {
        const auto i = static_cast<std::size_t>(order[k]);
        const vector3d& n = m.normals[i];
        const double d = std::abs(0.6F * n.y + 0.8F * n.z);
        const landed at = land(m.vertices[i]);
        corners[k] = {at.x, at.y, trunc_to_int(20 + 90 * 0.5 * d), trunc_to_int(15 + 40 * 0.75 * d),
                      trunc_to_int(11.25 + 60 * d)};
    }
    const auto& [a, b, c] = corners;
    fill_gouraud(pixels(), a[0], a[1], a[2], a[3], a[4], b[0], b[1], b[2], b[3], b[4], c[0], c[1], c[2], c[3],
                 c[4]);
    EXPECT_EQ(seen, frame());
}

TEST_F(scene_renderer, blends_with_the_opacity_of_the_material) {
    mesh& m = add_triangle(0x44);
    m.material = &add_material(200, 200, 200);
    m.material->opacity = 128;
    render();
    const auto mixed = [](int s, int d) { return static_cast<std::uint32_t>(d + ((s - d) * 128 >> 8)); };
    EXPECT_EQ(centre(), mixed(100, 0x10) << 16 | mixed(50, 0x20) << 8 | mixed(25, 0x30));
    scene.use_materials = false;
    render();
    EXPECT_EQ(centre(), packed(127.5, 63.75, 31.875));
}

TEST_F(scene_renderer, replaces_the_mode_of_a_textured_mesh_without_material) {
    mesh& m = add_triangle(0x30);
    const std::int32_t textured_row = m.render_row;
    render();
    EXPECT_EQ(m.render_row, render_mode_find(100));
    EXPECT_EQ(m.render_mode, 0x30);
    EXPECT_EQ(centre(), packed(127.5, 63.75, 31.875)); // opaque
    m.material = &add_material(100, 100, 100);
    render();
    EXPECT_EQ(m.render_row, render_mode_find(100)); // until the mode is set anew
    mesh_set_render_mode(m, 0x30);
    render();
    EXPECT_EQ(m.render_row, textured_row);
    m.faces[0].material = m.material;
    m.material = nullptr;
    render();
    EXPECT_EQ(m.render_row, textured_row);
}

TEST_F(scene_renderer, scales_map_coordinates_to_texels) {
    const std::vector<std::uint32_t> texels = noise(64 * 32);
    mesh& m = add_triangle(0x10);
    m.material = &add_material(1, 1, 1);
    give_texture(*m.material, texels, 64, 32);
    const std::array<vector3d, 3> v = {m.vertices[0], m.vertices[2], m.vertices[1]};
    const std::array<landed, 3> at = {land(v[0]), land(v[1]), land(v[2])};
    const float u[] = {64 * m.uv[0].u, 64 * m.uv[2].u, 64 * m.uv[1].u};
    const float w[] = {32 * m.uv[0].v, 32 * m.uv[2].v, 32 * m.uv[1].v};
    const std::vector<std::uint32_t> affine = render();
    clear();
    fill_tex(pixels(), at[0].x, at[0].y, trunc_to_int(u[0]), trunc_to_int(w[0]), at[1].x, at[1].y,
             trunc_to_int(u[1]), trunc_to_int(w[1]), at[2].x, at[2].y, trunc_to_int(u[2]), trunc_to_int(w[2]),
             texels.data(), 64, 32);
    EXPECT_EQ(affine, frame());
    EXPECT_NE(affine, empty_frame());

    mesh_set_render_mode(m, 0x90);
    const std::vector<std::uint32_t> perspective = render();
    clear();
    fill_tex_p(pixels(), at[0].real_x, at[0].real_y, v[0].z, u[0], w[0], at[1].real_x, at[1].real_y, v[1].z,
               u[1], w[1], at[2].real_x, at[2].real_y, v[2].z, u[2], w[2], texels.data(), 64, 32);
    EXPECT_EQ(perspective, frame());
    EXPECT_NE(perspective, empty_frame());
}

constexpr std::int32_t textured_modes[] = {0x10,  0x30,  0x50, 0x70,  0x210, 0x230,
                                           0x250, 0x270, 0x90, 0x290, 0xd0,  0x2d0};

// A face whose texture can't be read, and a face without material in a mesh whose first face has one.
TEST_F(scene_renderer, draws_faces_without_a_texture_flat) {
    const std::vector<std::uint32_t> texels = noise(64 * 32);
    for (const std::int32_t mode : textured_modes) {
        mesh& m = add_triangle(mode);
        material& textured = add_material(90, 90, 90);
        give_texture(textured, texels, 64, 32);
        const auto same_as_flat = [&] {
            const std::vector<std::uint32_t> seen = render();
            mesh_set_render_mode(m, (mode & 0x60) | 0x04); // depth test and blend as they were
            EXPECT_EQ(seen, render()) << mode;
            mesh_set_render_mode(m, mode);
        };
        m.material = &textured;
        textured.has_texture = false;
        same_as_flat();
        textured.has_texture = true;
        for (std::int32_t* size : {&textured.texture_map.pixels_width, &textured.texture_map.pixels_height})
            for (const std::int32_t bad : {0, -1, INT32_MIN}) {
                const std::int32_t good = std::exchange(*size, bad);
                same_as_flat();
                *size = good;
            }
        textured.texture_map.pixels = nullptr;
        same_as_flat();
        textured.texture_map.pixels = texels.data();

        // The first face is textured, outside the frame; the second has no material.
        m.material = nullptr;
        mesh_alloc_faces(m, 2);
        mesh_alloc_vertices(m, 6);
        for (const auto& [x, y] :
             {std::array{900.0F, 0.0F}, std::array{900.0F, 9.0F}, std::array{909.0F, 0.0F},
              std::array{20.0F, 20.0F}, std::array{-20.0F, 20.0F}, std::array{0.0F, -20.0F}})
            mesh_add_vertex(m, x, y, -50);
        mesh_add_face(m, 0, 1, 2, 0);
        mesh_add_face(m, 3, 5, 4, 0);
        m.faces[0].material = &textured;
        same_as_flat();
        mesh_alloc_faces(m, 0); // out of the way of the next mode
    }
}

} // namespace
