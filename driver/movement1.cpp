// The score of the first movement: fourteen steps, each behind its windows of time. Windows may overlap; a
// later step works on what the earlier ones left. Formulas are floating point, truncated toward zero.
#include "driver/movement1.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "driver/movement1_meshes.h"
#include "driver/movement1_times.h"
#include "driver/show.h"
#include "driver/windows.h"
#include "gtex/blend.h"
#include "gtex/filters.h"
#include "gtex/noise.h"
#include "gtex/plasma.h"
#include "gtex/wobble.h"
#include "gtex/zoom.h"
#include "math/numbers.h"
#include "object/render.h"
#include "platform/winbase.h"

namespace {

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
void draw_background(show& all, double t) {
    if (t < 13)
        gtex_noise(all.canvas, trunc_to_int(std::sin(t) * 80 + 160));
    else
        gtex_fill(all.canvas, 0);
}

// 2: the card fades in, stands, blurs and fades out.
void draw_card(show& all, double t) {
    if (within(t, 2, 6)) gtex_crossfade(all.canvas, all.img_parental, trunc_to_int((t - 2) * 64));
    if (within(t, 6, 9)) gtex_copy(all.canvas, all.img_parental);
    if (within(t, 7.5, 9))
        gtex_blur_h(all.canvas, all.img_parental, trunc_to_int((std::sin(t * 4) + 1) * 16));
    if (within(t, 9, 13)) { // at 9 itself the formula gives 256, which would act as 0
        const std::int32_t level = std::min(trunc_to_int((4 - (t - 9)) * 64), 255);
        gtex_crossfade(all.canvas, all.img_parental, level);
    }
}

// 5: the inner mesh in its texture, which turns into another one within three seconds and stays so.
void draw_inside(show& all, double t) {
    if (t >= 115.6 && t <= 118.6) {
        const std::int32_t level = trunc_to_int((t - 115.6) * 85);
        gtex_copy(all.tex_work, level >= 255 ? all.tex_intro : all.tex_texture);
        if (level < 255) gtex_crossfade(all.tex_work, all.tex_intro, level);
    }
    object_draw_textured(all.canvas.pixels, all.obj_inside, all.tex_work.pixels);
}

// 7: the meteor, flat and then textured, or the cube; burnt in during the first second.
void draw_solid(show& all, double t) {
    if (t < meteor_textured)
        object_draw_flat(all.canvas.pixels, all.obj_meteor);
    else if (t < cube_start)
        object_draw_textured(all.canvas.pixels, all.obj_meteor, all.tex_cube.pixels);
    else
        object_draw_flat(all.canvas.pixels, all.obj_cube);
    if (t < first_second_end)
        gtex_solarise(all.canvas, all.canvas, trunc_to_int((first_second_end - t) * 255));
}

// 3 to 7: what turns.
void draw_meshes(show& all, double t) {
    if (t < meshes_start) return;
    move_inside(all.obj_inside, t);
    if (t < cube_start) move_meteor(all.obj_meteor, t);
    draw_inside(all, t);
    if (t >= cube_start) move_cube(all.obj_cube, t);
    draw_solid(all, t);
}

void draw_title(show& all, const title& what, double t) {
    gtex_fill(all.title_layer, 0);
    const double level = t < what.turn ? 63 - (t - what.start) * what.wobble : (t - what.turn) * what.wobble;
    gtex_wobble(all.title_layer, all.*what.picture, 2, level <= 0 ? 0 : trunc_to_int(level));
    gtex_trail(all.title_trail, all.title_layer, 2);
    if (t < what.fade) {
        gtex_add(all.canvas, all.title_layer);
        return;
    }
    gtex_fill(all.title_fade, 0);
    gtex_crossfade(all.title_fade, all.title_layer, trunc_to_int(255 - (t - what.fade) * what.fade_rate));
    gtex_add(all.canvas, all.title_fade);
}

// 8: the three titles; their trail is emptied between them.
void draw_titles(show& all, double t) {
    for (const title& each : titles)
        if (within(t, each.start, each.end)) draw_title(all, each, t);
    if (within(t, 53.8, 54) || within(t, 70, 70.2)) gtex_fill(all.title_trail, 0);
}

// 9: the wire model, fading from frame to frame.
void draw_wires(show& all, double t) {
    if (t < meshes_start) return;
    gtex_fill(all.wire_layer, 0);
    object_draw_wire(all.wire_layer.pixels, t < cube_start ? all.obj_meteor : all.obj_cube);
    gtex_trail(all.wire_trail, all.wire_layer, 2);
    gtex_add(all.canvas, all.wire_layer);
}

// 10: the finished picture, cut a little on each side, goes into the next frame's wire trail.
void shake(show& all, double t) {
    if (!within(t, 57.35, meteor_textured)) return;
    std::array<std::int32_t, 4> cut;
    for (std::int32_t& side : cut)
        side = winbase::rand() % 20;
    gtex_zoom(all.wire_trail, all.canvas, cut[3], cut[2], frame_columns - cut[1], frame_rows - cut[0]);
}

// 11: the changes of scene.
void draw_bursts(show& all, double t) {
    for (const burst& b : bursts)
        if (within(t, b.start, b.end))
            gtex_solarise(all.canvas, all.canvas, trunc_to_int((b.zero - t) * 255));
}

// 12: each flash falls from full to nothing within half a second; those that overlap apply one after the
// other.
void draw_flashes(show& all, double t) {
    for (const flash& f : flashes)
        if (within(t, f.start, f.end))
            gtex_crossfade(all.canvas, all.*f.surface, trunc_to_int((f.end - t) * 510));
}

// 13: the plasma lays its light and shade over the noise and the card.
void draw_plasma_light(show& all, double t) {
    if (t >= meshes_start) return;
    gtex_plasma(all.title_layer, all.plasma_a, all.plasma_b, static_cast<float>(t * 0.5), 0);
    gtex_multiply(all.canvas, all.title_layer);
}

// 14: pictures laid over everything.
void draw_overlays(show& all, double t) {
    if (within(t, cube_near, 114.69)) gtex_add(all.canvas, all.img_cubev);
    if (within(t, third_turn, 137.67)) gtex_add(all.canvas, all.img_velkadame);
}

} // namespace

void movement1_draw(show& all, float t) {
    draw_background(all, t);
    draw_card(all, t);
    draw_meshes(all, t);
    draw_titles(all, t);
    draw_wires(all, t);
    shake(all, t);
    draw_bursts(all, t);
    draw_flashes(all, t);
    draw_plasma_light(all, t);
    draw_overlays(all, t);
}
