// The four movements behind the show against the operators called by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "morvane/gtex/blend.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/sprites.h"
#include "morvane/object/matrices.h"
#include "morvane/object/render.h"
#include "morvane/object/sort.h"
#include "morvane/object/transform.h"
#include "show/score/closing_routines.h"
#include "show/score/score.h"
#include "tests/support/score.h"
#include "tests/support/surfaces.h"

namespace {

using pixels = std::vector<std::uint32_t>;

// A tetrahedron around the origin, all of its edges drawn.
void make_tetrahedron(object& mesh) {
    constexpr float corners[4][3] = {{40, 40, 40}, {-40, -40, 40}, {-40, 40, -40}, {40, -40, -40}};
    constexpr std::uint16_t faces[4][3] = {{0, 1, 2}, {0, 3, 1}, {0, 2, 3}, {1, 3, 2}};
    mesh.vertex_count = 4;
    mesh.face_count = 4;
    for (std::size_t i = 0; i < 4; ++i) {
        mesh.model_vertices[i].x = corners[i][0];
        mesh.model_vertices[i].y = corners[i][1];
        mesh.model_vertices[i].z = corners[i][2];
        object_face& face = mesh.faces[i];
        face.a = faces[i][0];
        face.b = faces[i][1];
        face.c = faces[i][2];
        face.ab = face.bc = face.ca = 1;
    }
}

class closing : public score {
  protected:
    closing() : card(512, 288, 1), sign(512, 288, 2), light(32, 32, 3) {
        make_tetrahedron(all.obj_inside);
        make_tetrahedron(all.obj_meteor);
        gtex_copy(all.img_parental, card);
        all.img_violence = gtex_create(512, 288, 0);
        gtex_copy(all.img_violence, sign);
        all.spr_light = gtex_create(32, 32, 0);
        gtex_copy(all.spr_light, light);
        all.obj_stars.vertex_count = 250;
        for (std::size_t i = 0; i < 250; ++i) {
            object_vertex& star = all.obj_stars.model_vertices[i];
            star.x = static_cast<float>(winbase::rand() % 256 - 127);
            star.y = static_cast<float>(winbase::rand() % 256 - 127);
            star.z = static_cast<float>(winbase::rand() % 256 - 127);
        }
    }

    pixels shown() const { return {all.canvas.pixels, all.canvas.pixels + all.canvas.count}; }

    guarded_surface card, sign, light;
};

} // namespace

TEST_F(closing, the_chain_holds_them_by_number_and_without_an_end) {
    for (int number = 3; number <= 6; ++number) {
        ASSERT_NE(closing_movement(number), nullptr);
        EXPECT_EQ(closing_movement(number)->end_time, std::numeric_limits<double>::infinity());
    }
    EXPECT_EQ(closing_movement(2), nullptr);
    EXPECT_EQ(closing_movement(7), nullptr);
    EXPECT_EQ(closing_movements().size(), 4U);
}

// White wires on white are no wires: what is left is the negative of white, whose bytes rotate.
TEST_F(closing, the_third_blurs_and_negates_by_the_part_of_the_time) {
    struct look {
        float t;
        bool blurred, negated;
    };
    for (const look& at : {look{5, false, false}, look{20, false, true}, look{23, true, false},
                           look{25, false, false}, look{28, true, true}, look{280.3F, true, false}}) {
        guarded_surface expected(512, 288), trail(512, 288);
        expected.fill(0xffffff);
        gtex_negate(expected, expected);
        trail.fill(0);
        if (at.blurred) {
            gtex_copy(all.wire_trail, trail);
            gtex_blur_h_at(trail, expected, 0, 0,
                           static_cast<std::int32_t>((std::sin(static_cast<double>(at.t)) + 1) * 8));
            gtex_copy(expected, trail);
        }
        if (at.negated) gtex_negate(expected, expected);
        movement3_draw(all, at.t);
        EXPECT_EQ(shown(), expected.copy()) << "at " << at.t;
    }
}

TEST_F(closing, the_third_turns_both_meshes_and_the_warp_phases) {
    const std::int32_t a = warp_phase_a, b = warp_phase_b, c = warp_phase_c;
    const float t = 280.25F, h = 140.125F, tilt = 0.314159274F;
    movement3_draw(all, t);
    EXPECT_EQ(warp_phase_a - a, 1);
    EXPECT_EQ(b - warp_phase_b, 1);
    EXPECT_EQ(warp_phase_c - c, 1);

    const auto inside = std::make_unique<object>();
    make_tetrahedron(*inside);
    mat_identity(inside->vertex_matrix);
    mat_identity(inside->normal_matrix);
    object_rotate(*inside, 0, h, 0);
    object_rotate(*inside, tilt, 0, 0);
    object_rotate(*inside, 0, 0, h);
    const auto meteor = std::make_unique<object>();
    make_tetrahedron(*meteor);
    mat_identity(meteor->vertex_matrix);
    mat_identity(meteor->normal_matrix);
    object_rotate(*meteor, 0, h, 0);
    object_rotate(*meteor, 0, 0, h);
    object_rotate(*meteor, static_cast<float>(280.25 + 0.3141592654), 0, 0);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FLOAT_EQ(all.obj_inside.world_vertices[i].x, inside->world_vertices[i].x);
        EXPECT_FLOAT_EQ(all.obj_inside.world_vertices[i].z, inside->world_vertices[i].z);
        EXPECT_NEAR(all.obj_meteor.world_vertices[i].x, meteor->world_vertices[i].x * 2, 1e-3);
        EXPECT_NEAR(all.obj_meteor.world_vertices[i].z, meteor->world_vertices[i].z * 2 - 575, 1e-3);
    }
    EXPECT_EQ(all.obj_meteor.wire_green, 255);
    EXPECT_EQ(all.obj_inside.wire_lit, 0);
}

TEST_F(closing, the_fourth_trails_lights_over_deep_green) {
    guarded_surface expected(512, 288), trail(512, 288);
    trail.fill(0);
    const auto stars = std::make_unique<object>(all.obj_stars);
    for (const float t : {277.0F, 277.5F, 278.25F}) {
        expected.fill(0x2200);
        mat_identity(stars->vertex_matrix);
        const auto turn = static_cast<float>(static_cast<double>(t) * 0.2);
        object_rotate(*stars, turn, 0, 0);
        object_rotate(*stars, 0, turn, 0);
        object_rotate(*stars, 0, 0, turn);
        mat_translate(stars->vertex_matrix, 0, 0, -128);
        object_apply_matrices(*stars);
        object_ripple(*stars, t, 200);
        object_sort_vertices(*stars);
        object_project(*stars, 256, 144);
        object_draw_sprites(expected, light, *stars);
        gtex_trail(trail, expected, 2);
        movement4_draw(all, t);
        ASSERT_EQ(shown(), expected.copy()) << "at " << t;
    }
}

TEST_F(closing, the_fifth_leaves_the_picture_and_the_sixth_draws_the_card) {
    gtex_copy(all.canvas, card);
    movement5_draw(all, 300);
    EXPECT_EQ(shown(), card.copy());

    for (const float t : {276.5F, 280.0F, 281.1F}) {
        guarded_surface expected(512, 288);
        expected.fill(0);
        gtex_blit(expected, light, 10, 0);
        gtex_crossfade(expected, card,
                       static_cast<std::int32_t>(std::sin(static_cast<double>(t)) * 128 + 127));
        gtex_add(expected, sign);
        movement6_draw(all, t);
        EXPECT_EQ(shown(), expected.copy()) << "at " << t;
    }
}
