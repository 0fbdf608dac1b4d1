// The score of the first movement: fourteen steps, each behind its windows of time. Windows may overlap; a
// later step works on what the earlier ones left. Formulas are floating point, truncated toward zero.
#include "show/score/score.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "morvane/base/numbers.h"
#include "morvane/gtex/blend.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/noise.h"
#include "morvane/gtex/plasma.h"
#include "morvane/gtex/wobble.h"
#include "morvane/gtex/zoom.h"
#include "morvane/object/matrices.h"
#include "morvane/object/object.h"
#include "morvane/object/render.h"
#include "morvane/object/sort.h"
#include "morvane/object/transform.h"
#include "morvane/platform/time/winbase.h"
#include "show/show.h"

namespace {

// Moments on which more than one step turns, in seconds.
constexpr double meshes_start = 14.2;     // the plasma stops
constexpr double first_second_end = 15.2; // the meteor has risen, the first burst has run out
constexpr double meteor_textured = 86.04; // the inner mesh turns the other way, the shaking stops
constexpr double cube_near = 100.35;      // what comes next is still near the viewer
constexpr double cube_start = 100.36;     // the cube takes the meteor's place
constexpr double cube_arrived = 100.85;
constexpr double second_turn = 114.29;
constexpr double third_turn = 128.99;

// A title settles out of heavy wobble, stands still, and wobbles apart again while it fades.
struct title {
    gtex show::*picture;
    double start, end;
    double wobble;    // levels a second
    double turn;      // from here on the wobble grows again
    double fade;      // from here on it fades,
    double fade_rate; // levels a second
};
constexpr title titles[] = {
    {&show::img_morvane, 28.5, 53.8, 6, 42.7, 49.8, 63.75},
    {&show::img_presents, 57.35, 70, 12, 64.45, 68, 127.5},
    {&show::img_lorrim, 72, 84.75, 12, 79.1, 82.65, 121.42},
};

// A window, and the moment from which its level is counted back.
struct burst {
    double start, end, zero;
};
constexpr burst bursts[] = {
    {meteor_textured, 87.04, 87.04},
    {second_turn, 115.29, 115.19}, // the level goes a little below zero at the end
    {third_turn, 129.99, 129.99},
};

struct flash {
    gtex show::*surface;
    double start, end;
};
constexpr flash flashes[] = {
    {&show::white_frame, 43.08, 43.58}, {&show::white_frame, 43.93, 44.43},
    {&show::white_frame, 44.26, 44.76}, {&show::grey_frame, 46.65, 47.15},
    {&show::grey_frame, 47.53, 48.03},  {&show::grey_frame, 47.74, 48.24},
    {&show::grey_frame, 50.22, 50.72},  {&show::grey_frame, 51.11, 51.61},
    {&show::grey_frame, 51.35, 51.85},
};

// 1: noise that swings in brightness, then black.
void draw_background(show& owner, double t) {
    if (t < 13)
        gtex_noise(owner.canvas, trunc_to_int(std::sin(t) * 80 + 160));
    else
        gtex_fill(owner.canvas, 0);
}

// 2: the card fades in, stands, blurs and fades out.
void draw_card(show& owner, double t) {
    if (within(t, 2, 6)) gtex_crossfade(owner.canvas, owner.img_parental, trunc_to_int((t - 2) * 64));
    if (within(t, 6, 9)) gtex_copy(owner.canvas, owner.img_parental);
    if (within(t, 7.5, 9))
        gtex_blur_h(owner.canvas, owner.img_parental, trunc_to_int((std::sin(t * 4) + 1) * 16));
    if (within(t, 9, 13)) { // at 9 itself the formula gives 256, which would act as 0
        const std::int32_t level = std::min(trunc_to_int((4 - (t - 9)) * 64), 255);
        gtex_crossfade(owner.canvas, owner.img_parental, level);
    }
}

// 3, 4, 6: how the meshes turn.

constexpr float tilt = 0.314159274F; // a tenth of half a turn

constexpr std::int32_t centre_x = 256;
constexpr std::int32_t centre_y = 144;

float rounded(double value) {
    return static_cast<float>(value);
}

void start_from_identity(object& mesh) {
    mat_identity(mesh.vertex_matrix);
    mat_identity(mesh.normal_matrix);
}

// Magenta wires, indigo fills by the light.
void colour(object& mesh) {
    mesh.wire_red = 255;
    mesh.wire_green = 128;
    mesh.wire_blue = 255;
    mesh.wire_lit = 0;
    mesh.fill_red = 32;
    mesh.fill_green = 32;
    mesh.fill_blue = 128;
    mesh.fill_lit = 1;
}

// The tumbling that meteor and cube share.
void tumble(object& mesh, double t) {
    start_from_identity(mesh);
    object_rotate(mesh, 0, rounded(t * 1.25), 0);
    object_rotate(mesh, rounded(t * 0.8), 0, 0);
    object_rotate(mesh, 0, 0, rounded(-t * 0.5));
    mat_translate(mesh.vertex_matrix, 0, 0, -180);
}

void sort_and_project(object& mesh, std::int32_t far, std::int32_t near) {
    object_sort_faces_between(mesh, far, near);
    object_project(mesh, centre_x, centre_y);
}

} // namespace

void move_inside(object& inside, double t) {
    const float h = rounded(t * 0.5);
    const auto turn = [&](float y_angle, float z_angle) {
        object_rotate(inside, 0, y_angle, 0);
        object_rotate(inside, tilt, 0, 0);
        object_rotate(inside, 0, 0, z_angle);
    };
    start_from_identity(inside);
    if (t < meteor_textured) turn(h, h);
    if (within(t, meteor_textured, second_turn)) turn(-h, h);
    if (t > second_turn && t < third_turn) turn(h, -h); // at either moment itself nothing turns
    if (t > third_turn) turn(-h, -h);
    mat_translate(inside.vertex_matrix, 0, 0, 0);
    object_apply_matrices(inside);
    sort_and_project(inside, -2048, -20);
}

void move_meteor(object& meteor, double t) {
    colour(meteor);
    tumble(meteor, t);
    if (within(t, cube_near, cube_arrived))
        mat_translate(meteor.vertex_matrix, 0, 0, rounded((cube_arrived - t) * 120));
    if (t < first_second_end)
        mat_translate(meteor.vertex_matrix, 0, rounded((first_second_end - t) * -80), 0); // up into its place
    object_apply_matrices(meteor);
    const float phase = rounded(t);
    object_ripple(meteor, phase, 30);
    if (within(t, 57.35, 58.35)) object_ripple(meteor, phase, 50);
    if (within(t, 61.03, 62.33)) object_ripple(meteor, phase, 30);
    if (within(t, 64.41, 65.4)) object_ripple(meteor, phase, -20);
    sort_and_project(meteor, -2048, 0);
}

void move_cube(object& cube, double t) {
    colour(cube);
    tumble(cube, t);
    mat_translate(cube.vertex_matrix, 0, 0, -60);
    if (t < cube_arrived)
        mat_translate(cube.vertex_matrix, 0, 0, rounded((cube_arrived - t) * 120)); // from the viewer's side
    object_apply_matrices(cube);
    object_ripple(cube, rounded(t), t > 114.44 && t < 115.29 ? 15 : 30);
    sort_and_project(cube, -2048, 0);
}

namespace {

// 5: the inner mesh in its texture, which turns into another one within three seconds and stays so.
void draw_inside(show& owner, double t) {
    if (t >= 115.6 && t <= 118.6) {
        const std::int32_t level = trunc_to_int((t - 115.6) * 85);
        gtex_copy(owner.tex_work, level >= 255 ? owner.tex_intro : owner.tex_texture);
        if (level < 255) gtex_crossfade(owner.tex_work, owner.tex_intro, level);
    }
    object_draw_textured(owner.canvas.pixels, owner.obj_inside, owner.tex_work.pixels);
}

// 7: the meteor, flat and then textured, or the cube; burnt in during the first second.
void draw_solid(show& owner, double t) {
    if (t < meteor_textured)
        object_draw_flat(owner.canvas.pixels, owner.obj_meteor);
    else if (t < cube_start)
        object_draw_textured(owner.canvas.pixels, owner.obj_meteor, owner.tex_cube.pixels);
    else
        object_draw_flat(owner.canvas.pixels, owner.obj_cube);
    if (t < first_second_end)
        gtex_solarise(owner.canvas, owner.canvas, trunc_to_int((first_second_end - t) * 255));
}

// 3 to 7: what turns.
void draw_meshes(show& owner, double t) {
    if (t < meshes_start) return;
    move_inside(owner.obj_inside, t);
    if (t < cube_start) move_meteor(owner.obj_meteor, t);
    draw_inside(owner, t);
    if (t >= cube_start) move_cube(owner.obj_cube, t);
    draw_solid(owner, t);
}

void draw_title(show& owner, const title& shown, double t) {
    gtex_fill(owner.title_layer, 0);
    const double level =
        t < shown.turn ? 63 - (t - shown.start) * shown.wobble : (t - shown.turn) * shown.wobble;
    gtex_wobble(owner.title_layer, owner.*shown.picture, 2, level <= 0 ? 0 : trunc_to_int(level));
    gtex_trail(owner.title_trail, owner.title_layer, 2);
    if (t < shown.fade) {
        gtex_add(owner.canvas, owner.title_layer);
        return;
    }
    gtex_fill(owner.title_fade, 0);
    gtex_crossfade(owner.title_fade, owner.title_layer,
                   trunc_to_int(255 - (t - shown.fade) * shown.fade_rate));
    gtex_add(owner.canvas, owner.title_fade);
}

// 8: the three titles; their trail is emptied between them.
void draw_titles(show& owner, double t) {
    for (const title& shown : titles)
        if (within(t, shown.start, shown.end)) draw_title(owner, shown, t);
    if (within(t, 53.8, 54) || within(t, 70, 70.2)) gtex_fill(owner.title_trail, 0);
}

// 9: the wire model, fading from frame to frame.
void draw_wires(show& owner, double t) {
    if (t < meshes_start) return;
    gtex_fill(owner.wire_layer, 0);
    object_draw_wire(owner.wire_layer.pixels, t < cube_start ? owner.obj_meteor : owner.obj_cube);
    gtex_trail(owner.wire_trail, owner.wire_layer, 2);
    gtex_add(owner.canvas, owner.wire_layer);
}

// 10: the finished picture, cut a little on each side, goes into the next frame's wire trail.
void shake(show& owner, double t) {
    if (!within(t, 57.35, meteor_textured)) return;
    std::array<std::int32_t, 4> cut;
    for (std::int32_t& side : cut)
        side = winbase::rand() % 20;
    gtex_zoom(owner.wire_trail, owner.canvas, cut[3], cut[2], frame_columns - cut[1], frame_rows - cut[0]);
}

// 11: the changes of scene.
void draw_bursts(show& owner, double t) {
    for (const burst& b : bursts)
        if (within(t, b.start, b.end))
            gtex_solarise(owner.canvas, owner.canvas, trunc_to_int((b.zero - t) * 255));
}

// 12: each flash falls from full to nothing within half a second; those that overlap apply one after the
// other.
void draw_flashes(show& owner, double t) {
    for (const flash& f : flashes)
        if (within(t, f.start, f.end))
            gtex_crossfade(owner.canvas, owner.*f.surface, trunc_to_int((f.end - t) * 510));
}

// 13: the plasma lays its light and shade over the noise and the card.
void draw_plasma_light(show& owner, double t) {
    if (t >= meshes_start) return;
    gtex_plasma(owner.title_layer, owner.plasma_a, owner.plasma_b, static_cast<float>(t * 0.5), 0);
    gtex_multiply(owner.canvas, owner.title_layer);
}

// 14: pictures laid over everything.
void draw_overlays(show& owner, double t) {
    if (within(t, cube_near, 114.69)) gtex_add(owner.canvas, owner.img_cubev);
    if (within(t, third_turn, 137.67)) gtex_add(owner.canvas, owner.img_velkadame);
}

} // namespace

void movement1_draw(show& owner, float t) {
    draw_background(owner, t);
    draw_card(owner, t);
    draw_meshes(owner, t);
    draw_titles(owner, t);
    draw_wires(owner, t);
    shake(owner, t);
    draw_bursts(owner, t);
    draw_flashes(owner, t);
    draw_plasma_light(owner, t);
    draw_overlays(owner, t);
}
