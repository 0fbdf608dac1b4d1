// How the meshes of the first movement turn and move, against rotations written out in double precision.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "morvane/object/object.h"
#include "show/score/score.h"
#include "tests/support/score.h"

namespace {

struct point {
    double x, y, z;
};

point around_x(point p, double a) {
    return {p.x, p.y * std::cos(a) - p.z * std::sin(a), p.y * std::sin(a) + p.z * std::cos(a)};
}
point around_y(point p, double a) {
    return {p.x * std::cos(a) + p.z * std::sin(a), p.y, -p.x * std::sin(a) + p.z * std::cos(a)};
}
point around_z(point p, double a) {
    return {p.x * std::cos(a) - p.y * std::sin(a), p.x * std::sin(a) + p.y * std::cos(a), p.z};
}

constexpr point corners[] = {{30, 5, -7}, {-12, 44, 9}, {3, -28, 60}};

class meshes : public score {
  protected:
    meshes() : mesh(std::make_unique<object>()) {
        mesh->vertex_count = 3;
        mesh->face_count = 1;
        mesh->faces[0] = {.a = 0, .b = 1, .c = 2, .ab = 1, .bc = 1, .ca = 1};
        mesh->model_normals[0] = {.x = 256};
        for (std::size_t i = 0; i < 3; ++i)
            mesh->model_vertices[i] = {.x = static_cast<float>(corners[i].x),
                                       .y = static_cast<float>(corners[i].y),
                                       .z = static_cast<float>(corners[i].z)};
    }

    // `placed` gives where corner i stands at that time.
    template<typename Placed>
    void expect_corners(double t, Placed placed) {
        for (std::size_t i = 0; i < 3; ++i) {
            const point p = placed(corners[i], static_cast<double>(i));
            EXPECT_NEAR(mesh->world_vertices[i].x, p.x, 1e-3) << "corner " << i << " at " << t;
            EXPECT_NEAR(mesh->world_vertices[i].y, p.y, 1e-3) << "corner " << i << " at " << t;
            EXPECT_NEAR(mesh->world_vertices[i].z, p.z, 1e-3) << "corner " << i << " at " << t;
            EXPECT_NEAR(mesh->screen_vertices[i].x, p.x * 120 / p.z + 256, 0.5)
                << "corner " << i << " at " << t;
        }
    }

    std::unique_ptr<object> mesh;
};

point tumbled(point p, double t) {
    return around_z(around_x(around_y(p, t * 1.25), t * 0.8), -t * 0.5);
}

double rippled(double z, double i, double t, double amplitude) {
    return z + std::sin(i + t) * amplitude;
}

} // namespace

TEST_F(meshes, the_inner_mesh_turns_another_way_in_each_scene) {
    struct scene {
        float t;
        double y_sign, z_sign;
    };
    for (const scene& s : {scene{14.25F, 1, 1},
                           {just_below(86.04), 1, 1},
                           {just_above(86.04), -1, 1},
                           {just_below(114.29), -1, 1},
                           {just_above(114.29), 1, -1},
                           {just_below(128.99), 1, -1},
                           {just_above(128.99), -1, -1},
                           {147.4F, -1, -1}}) {
        move_inside(*mesh, s.t);
        const double h = static_cast<double>(s.t) * 0.5;
        const auto turned = [&](point p) {
            return around_z(around_x(around_y(p, s.y_sign * h), 0.31415926), s.z_sign * h);
        };
        for (std::size_t i = 0; i < 3; ++i) {
            const point p = turned(corners[i]);
            EXPECT_NEAR(mesh->world_vertices[i].x, p.x, 1e-3) << s.t;
            EXPECT_NEAR(mesh->world_vertices[i].y, p.y, 1e-3) << s.t;
            EXPECT_NEAR(mesh->world_vertices[i].z, p.z, 1e-3) << s.t;
        }
        EXPECT_NEAR(mesh->world_normals[0].x, turned({256, 0, 0}).x, 1e-2) << s.t;
    }
}

TEST_F(meshes, faces_show_within_each_meshs_own_window) {
    // All corners in one point, placed along the viewer's axis so that it lands on `z`.
    const auto shows = [&](auto move, float t, double z) {
        mesh->faces[0] = {.a = 0, .b = 0, .c = 0};
        const auto place = [&](double distance) {
            const object_matrix& m = mesh->vertex_matrix; // back through the rotation
            mesh->model_vertices[0] = {.x = static_cast<float>(distance * static_cast<double>(m[2])),
                                       .y = static_cast<float>(distance * static_cast<double>(m[6])),
                                       .z = static_cast<float>(distance * static_cast<double>(m[10]))};
            move(*mesh, t);
            return static_cast<double>(mesh->world_vertices[0].z);
        };
        place(0); // makes the matrix
        const double landed = place(5);
        EXPECT_NEAR(place(5 + z - landed), z, 0.01);
        return mesh->faces[0].visible == 1;
    };
    EXPECT_TRUE(shows(move_inside, 40, -20.1) && shows(move_inside, 40, -2047.9));
    EXPECT_FALSE(shows(move_inside, 40, -19.9) || shows(move_inside, 40, -2048.1));
    EXPECT_TRUE(shows(move_meteor, 40, -0.1) && shows(move_meteor, 40, -2047.9));
    EXPECT_FALSE(shows(move_meteor, 40, 0.1) || shows(move_meteor, 40, -2048.1));
    EXPECT_TRUE(shows(move_cube, 110, -0.1) && shows(move_cube, 110, -2047.9));
    EXPECT_FALSE(shows(move_cube, 110, 0.1) || shows(move_cube, 110, -2048.1));
}

TEST_F(meshes, meteor_and_cube_have_magenta_wires_and_indigo_fills) {
    for (const auto move : {move_meteor, move_cube}) {
        *mesh = {};
        move(*mesh, 40);
        EXPECT_EQ((std::array{mesh->wire_red, mesh->wire_green, mesh->wire_blue, mesh->wire_lit}),
                  (std::array{255, 128, 255, 0}));
        EXPECT_EQ((std::array{mesh->fill_red, mesh->fill_green, mesh->fill_blue, mesh->fill_lit}),
                  (std::array{32, 32, 128, 1}));
    }
}

TEST_F(meshes, the_meteor_rises_ripples_and_leaves) {
    struct extra {
        float t;
        double ripple; // beside the 30
    };
    for (const extra& e : {extra{14.3F, 0},
                           {just_below(15.2), 0},
                           {just_above(15.2), 0},
                           {just_below(57.35), 0},
                           {just_above(57.35), 50},
                           {just_below(58.35), 50},
                           {just_above(58.35), 0},
                           {just_below(61.03), 0},
                           {just_above(61.03), 30},
                           {just_below(62.33), 30},
                           {just_above(62.33), 0},
                           {just_below(64.41), 0},
                           {just_above(64.41), -20},
                           {just_below(65.4), -20},
                           {just_above(65.4), 0},
                           {just_below(100.35), 0},
                           {just_above(100.35), 0},
                           {just_below(100.36), 0}}) {
        const auto t = static_cast<double>(e.t);
        move_meteor(*mesh, t);
        expect_corners(t, [&](point p, double i) {
            p = tumbled(p, t);
            p.z -= 180;
            if (t >= 100.35) p.z += (100.85 - t) * 120;
            if (t < 15.2) p.y -= (15.2 - t) * 80;
            p.z = rippled(p.z, i, t, 30 + e.ripple);
            return p;
        });
    }
}

TEST_F(meshes, the_cube_arrives_in_half_a_second_and_calms_for_a_moment) {
    for (const float at :
         {just_above(100.36), just_below(100.85), just_above(100.85), 110.0F, just_below(114.44),
          just_above(114.45), just_below(115.29), just_above(115.29), 140.0F}) {
        const auto t = static_cast<double>(at);
        move_cube(*mesh, t);
        expect_corners(t, [&](point p, double i) {
            p = tumbled(p, t);
            p.z -= 240;
            if (t < 100.85) p.z += (100.85 - t) * 120;
            p.z = rippled(p.z, i, t, t > 114.44 && t < 115.29 ? 15 : 30);
            return p;
        });
    }
}
