// From a scene to pixels: which faces are drawn and where, against rays, and that nothing in a scene leads
// out of the frame.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/scene_stage.h"

namespace {

using namespace scene_stage;

TEST_F(scene_renderer, transforms_the_vertices_of_faces) {
    mesh& m = add_triangle(4);
    mesh_alloc_vertices(m, 500);
    std::mt19937 random(3);
    for (int i = 0; i < 500; ++i)
        mesh_add_vertex(m, static_cast<float>(random() % 100), static_cast<float>(random() % 100), -9);
    mesh_alloc_faces(m, 4);
    mesh_add_face(m, 0, 64, 499, 0);
    mesh_add_face(m, 64, 64, 127, 0);
    mesh_add_face(m, -1, 3, 4, 0); // these two name what isn't there
    mesh_add_face(m, 5, 500, 6, 0);
    m.position = {1, 2, 3};
    for (vector3d& v : m.camera_vertices)
        v = {-7, -7, -7};
    camera turned = *scene.camera;
    turned.view.m = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1}; // a quarter turn, then a move
    mesh_to_camera(m, turned);
    for (std::size_t i = 0; i < 500; ++i) {
        const vector3d& from = m.vertices[i];
        const bool held = i == 0 || i == 64 || i == 127 || i == 499;
        EXPECT_EQ(m.camera_vertices[i].x, held ? 10 - (from.y + 2) : -7) << i;
        EXPECT_EQ(m.camera_vertices[i].y, held ? 20 + (from.x + 1) : -7) << i;
        EXPECT_EQ(m.camera_vertices[i].z, held ? 30 + (from.z + 3) : -7) << i;
    }
}

TEST_F(scene_renderer, draws_nothing_without_a_camera_faces_or_arrays) {
    mesh& m = add_triangle(36);
    EXPECT_NE(render(), empty_frame());
    scene.camera = nullptr;
    EXPECT_EQ(render(), empty_frame());
    scene.camera = scene.first_camera;
    m.faces[0].c = 3;
    EXPECT_EQ(render(), empty_frame());
    m.faces[0].c = 1;
    m.face_count = 100; // more than there are: the one is drawn
    EXPECT_NE(render(), empty_frame());
    m.normals.clear();
    EXPECT_EQ(render(), empty_frame());
    m.face_count = 0;
    EXPECT_EQ(render(), empty_frame());
}

TEST_F(scene_renderer, draws_what_turns_towards_the_camera) {
    mesh& m = add_triangle(36);
    EXPECT_NE(render(), empty_frame());
    std::swap(m.faces[0].a, m.faces[0].b);
    EXPECT_EQ(render(), empty_frame());
    std::swap(m.faces[0].a, m.faces[0].b);
    for (vector3d& v : m.vertices)
        v.z = 50; // behind the camera
    EXPECT_EQ(render(), empty_frame());
}

TEST_F(scene_renderer, hides_what_is_farther) {
    mesh& far = add_triangle(36, -60);
    mesh& near = add_triangle(36, -50);
    far.material = &add_material(10, 10, 10);
    near.material = &add_material(200, 200, 200);
    render();
    EXPECT_EQ(centre(), packed(100, 50, 25));
    std::swap(near.material, far.material); // as if they were drawn the other way round
    for (vector3d& v : near.vertices)
        v.z = -60;
    for (vector3d& v : far.vertices)
        v.z = -50;
    render();
    EXPECT_EQ(centre(), packed(100, 50, 25));
}

// What the ray through a pixel meets: 1 inside the face, 0 outside, by the sides on which it passes its
// edges.
bool ray_meets(const std::array<vector3d, 3>& v, double x, double y) {
    const double ray[3] = {-(x - width / 2) / factor, -(y - height / 2) / factor,
                           -1}; // the picture is turned
    const auto volume = [&](const vector3d& a, const vector3d& b) {
        return ray[0] * (double{a.y} * b.z - double{a.z} * b.y) +
               ray[1] * (double{a.z} * b.x - double{a.x} * b.z) +
               ray[2] * (double{a.x} * b.y - double{a.y} * b.x);
    };
    const double sides[] = {volume(v[0], v[1]), volume(v[1], v[2]), volume(v[2], v[0])};
    const double whole = double{v[0].x} * (double{v[1].y} * v[2].z - double{v[1].z} * v[2].y) +
                         double{v[0].y} * (double{v[1].z} * v[2].x - double{v[1].x} * v[2].z) +
                         double{v[0].z} * (double{v[1].x} * v[2].y - double{v[1].y} * v[2].x);
    return std::all_of(std::begin(sides), std::end(sides), [&](double s) { return s * whole > 0; });
}

// Whether the face is no sliver, neither by its shape nor as it is seen: rays would slip past one.
bool broad(const std::array<vector3d, 3>& v) {
    const vector3d sides[] = {v[1] - v[0], v[2] - v[1], v[0] - v[2]};
    vector3d normal = sides[0].cross(sides[1]);
    const double area = normal.length();
    const double longest = std::max({sides[0].length(), sides[1].length(), sides[2].length()});
    normal.normalize();
    const double from_eye = double{normal.x} * v[0].x + double{normal.y} * v[0].y + double{normal.z} * v[0].z;
    return area > 10 * longest && std::abs(from_eye) > 5;
}

// Faces that reach behind the camera, against rays; three pixels on either side of an edge may go
// either way, for corners, rows and columns are all truncated.
TEST_F(scene_renderer, cuts_at_the_near_plane) {
    mesh& m = add_triangle(4);
    m.material = &add_material(200, 200, 200);
    std::mt19937 random(6);
    const auto between = [&](int low, int high) {
        return static_cast<float>(std::uniform_int_distribution(low, high)(random));
    };
    int drawn = 0;
    for (int i = 0; i < 600; ++i) {
        for (std::size_t k = 0; k < 3; ++k)
            m.vertices[k] = {between(-60, 60), between(-60, 60), between(-90, k == 0 ? 60 : -1)};
        const std::array<vector3d, 3> v = {m.vertices[0], m.vertices[1], m.vertices[2]};
        const std::vector<std::uint32_t> seen = render();
        if (!broad(v) || seen == empty_frame()) continue; // or turned away
        ++drawn;
        for (std::int32_t y = 5; y < height - 5; y += 5)
            for (std::int32_t x = 5; x < width - 5; x += 5) {
                int inside = 0;
                for (int around = 0; around < 49; ++around)
                    inside += ray_meets(v, x + around % 7 - 3, y + around / 7 - 3);
                if (inside != 0 && inside != 49) continue;
                ASSERT_EQ(seen[static_cast<std::size_t>(y * width + x)] != backdrop, inside == 49)
                    << "face " << i << " at " << x << ", " << y;
            }
    }
    EXPECT_GT(drawn, 150);
}

TEST_F(scene_renderer, takes_a_vertex_in_the_plane_of_the_eye_as_facing) {
    mesh& m = add_triangle(4);
    for (std::size_t corner = 0; corner < 3; ++corner) {
        const vector3d before = m.vertices[corner];
        m.vertices[corner] = {30, 20, 0};
        EXPECT_NE(render(), empty_frame()) << corner;
        std::swap(m.faces[0].b, m.faces[0].c);
        EXPECT_NE(render(), empty_frame()) << corner;
        std::swap(m.faces[0].b, m.faces[0].c);
        m.vertices[corner] = before;
    }
}

TEST_F(scene_renderer, survives_any_scene_in_every_mode) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    const float marks[] = {
        std::numeric_limits<float>::quiet_NaN(), inf, -inf, 0, -0.0F, 1e-40F, 3e38F, -3e38F, -1};
    std::mt19937 random(9);
    const auto any = [&]() -> float {
        const auto roll = static_cast<std::uint32_t>(random());
        return roll % 6 == 0 ? marks[roll / 6 % std::size(marks)] : static_cast<float>(roll % 400) - 200;
    };
    const std::vector<std::uint32_t> texels = noise(37 * 5);
    scene.set_render_mode(1);
    scene.add_mesh("wild");
    mesh& m = *scene.last_mesh;
    mesh_alloc_vertices(m, 60);
    mesh_alloc_faces(m, 120);
    for (int i = 0; i < 120; ++i)
        mesh_add_face(m, static_cast<std::int16_t>(random() % 62 - 1),
                      static_cast<std::int16_t>(random() % 60), static_cast<std::int16_t>(random() % 60), 0);
    for (int i = 0; i < 3; ++i) {
        material& made = add_material(i * 100, 300, -50);
        if (i > 0) give_texture(made, texels, i == 1 ? 37 : 5, i == 1 ? 5 : 37);
        add_light(any(), any(), any(), any(), any(), any());
    }
    for (int round = 0; round < 10; ++round)
        for (const render_mode_row& row : render_mode_table) {
            for (std::size_t i = 0; i < 60; ++i) {
                m.vertices[i] = {any(), any(), any()};
                m.normals[i] = {any(), any(), any()};
                m.uv[i] = {any(), any()};
            }
            const auto pick = [&]() -> material* {
                switch (random() % 4) {
                case 0:
                    return nullptr;
                case 1:
                    return scene.first_material;
                case 2:
                    return scene.first_material->next;
                default:
                    return scene.last_material;
                }
            };
            for (face& f : m.faces)
                f.material = pick(), f.normal = {any(), any(), any()};
            m.material = pick();
            scene.first_material->opacity = static_cast<std::int32_t>(random());
            scene.ambient_r = any();
            scene.camera->factor_x = any();
            scene.camera->view.m[12] = round % 3 == 0 ? any() : 0;
            mesh_set_render_mode(m, static_cast<std::int32_t>(row.mode));
            ASSERT_NO_FATAL_FAILURE(render()) << row.mode;
        }
}

TEST_F(scene_renderer, allocates_nothing_in_a_frame) {
    mesh& m = add_triangle(36);
    m.material = &add_material(40, 60, 90);
    add_light(0, 3, 4, 0.5F, 0.75F, 1);
    const std::vector<std::uint32_t> texels = noise(64 * 32);
    give_texture(*m.material, texels, 64, 32);
    for (const render_mode_row& row : render_mode_table) {
        if (row.mode == 0x10) continue; // prints
        mesh_set_render_mode(m, static_cast<std::int32_t>(row.mode));
        const auto before = allocations_so_far();
        scene.scene_render(pixels());
        EXPECT_EQ(allocations_so_far(), before) << row.mode;
    }
}

} // namespace
