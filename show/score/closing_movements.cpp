#include "show/score/score.h"

#include <cmath>
#include <cstdint>

#include "morvane/base/numbers.h"
#include "morvane/gtex/blend.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/sprites.h"
#include "morvane/object/matrices.h"
#include "morvane/object/render.h"
#include "morvane/object/sort.h"
#include "morvane/object/transform.h"
#include "show/score/closing_routines.h"
#include "show/show.h"

namespace {

constexpr std::int32_t centre_x = 256;
constexpr std::int32_t centre_y = 144;

float rounded(double value) {
    return static_cast<float>(value);
}

// White wires, unlit, and nothing turned yet.
void start_wires(object& mesh) {
    mesh.wire_red = mesh.wire_green = mesh.wire_blue = 255;
    mesh.wire_lit = 0;
    mat_identity(mesh.vertex_matrix);
    mat_identity(mesh.normal_matrix);
}

// How the inner mesh turns, part by part of the show's time.
void turn_inside(object& inside, float t) {
    constexpr float a = 0.314159274F;
    constexpr float quarter = 1.57079637F;
    const float h = rounded(static_cast<double>(t) * 0.5);
    if (in_part(0, t)) {
        object_rotate(inside, 0, h, 0);
        object_rotate(inside, a, 0, 0);
    } else if (in_part(1, t)) {
        object_rotate(inside, 0, -h, 0);
        object_rotate(inside, a, 0, 0);
        object_rotate(inside, 0, 0, quarter);
    } else if (in_part(2, t)) {
        object_rotate(inside, 0, 0, h);
        object_rotate(inside, 0, -h, 0);
        object_rotate(inside, a, 0, 0);
    } else if (in_part(3, t)) {
        object_rotate(inside, 0, 0, h);
        object_rotate(inside, 0, -a, 0);
    } else if (in_part(4, t)) {
        object_rotate(inside, 0, 0, -h);
        object_rotate(inside, -a, 0, 0);
    } else if (in_part(5, t)) {
        object_rotate(inside, 0, h, 0);
        object_rotate(inside, a, 0, 0);
        object_rotate(inside, 0, 0, h);
    }
}

void move_meteor_away(object& meteor, float t) {
    const float h = rounded(static_cast<double>(t) * 0.5);
    start_wires(meteor);
    object_rotate(meteor, 0, h, 0);
    object_rotate(meteor, 0, 0, h);
    object_rotate(meteor, rounded(static_cast<double>(t) + 0.3141592654), 0, 0);
    mat_scale(meteor.vertex_matrix, 2, 2, 2);
    mat_translate(meteor.vertex_matrix, 0, 0, -575);
    mat_translate(meteor.normal_matrix, 0, 0, -575);
    object_apply_matrices(meteor);
    object_sort_faces_between(meteor, -1024, -32);
    object_project(meteor, centre_x, centre_y);
}

} // namespace

void movement3_draw(show& owner, float t) {
    warp_step();
    start_wires(owner.obj_inside);
    turn_inside(owner.obj_inside, t);
    move_meteor_away(owner.obj_meteor, t);
    object_apply_matrices(owner.obj_inside);
    object_sort_faces(owner.obj_inside);
    object_project(owner.obj_inside, centre_x, centre_y);

    gtex_fill(owner.canvas, 0xffffff);
    object_draw_wire(owner.canvas.pixels, owner.obj_inside);
    object_draw_wire(owner.canvas.pixels, owner.obj_meteor);
    gtex_negate(owner.canvas, owner.canvas);
    if (in_part(2, t) || in_part(4, t) || in_part(5, t)) {
        const std::int32_t n = trunc_to_int((std::sin(static_cast<double>(t)) + 1) * 8);
        gtex_blur_h_at(owner.wire_trail, owner.canvas, 0, 0, n);
        gtex_copy(owner.canvas, owner.wire_trail);
    }
    if (in_part(1, t) || in_part(4, t)) gtex_negate(owner.canvas, owner.canvas);
}

void movement4_draw(show& owner, float t) {
    gtex_fill(owner.canvas, 0x2200);
    object& stars = owner.obj_stars;
    const float turn = rounded(static_cast<double>(t) * 0.2);
    mat_identity(stars.vertex_matrix);
    object_rotate(stars, turn, 0, 0);
    object_rotate(stars, 0, turn, 0);
    object_rotate(stars, 0, 0, turn);
    mat_translate(stars.vertex_matrix, 0, 0, -128);
    object_apply_matrices(stars);
    object_ripple(stars, t, 200);
    object_sort_vertices(stars);
    object_project(stars, centre_x, centre_y);
    object_draw_sprites(owner.canvas, owner.spr_light, stars);

    gtex_copy(owner.wire_layer, owner.canvas);
    gtex_trail(owner.wire_trail, owner.wire_layer, 2);
    gtex_copy(owner.canvas, owner.wire_layer);
}

void movement5_draw(show&, float) {}

void movement6_draw(show& owner, float t) {
    gtex_fill(owner.canvas, 0);
    gtex_blit(owner.canvas, owner.spr_light, 10, 0);
    gtex_crossfade(owner.canvas, owner.img_parental,
                   trunc_to_int(std::sin(static_cast<double>(t)) * 128 + 127));
    gtex_add(owner.canvas, owner.img_violence);
}
