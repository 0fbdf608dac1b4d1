// The score of the second movement: seven steps, each behind its windows of time.
#include "driver/movement2.h"

#include <cmath>

#include "driver/show.h"
#include "driver/windows.h"
#include "gtex/blend.h"
#include "gtex/plasma.h"
#include "gtex/tunnel.h"
#include "gtex/zoom.h"
#include "math/numbers.h"
#include "media/video.h"
#include "poly/raster.h"

namespace {

constexpr double start = 147.49;
constexpr double scene_stops = 156, scene_resumes = 163;
constexpr double clip_start = 175, clip_end = 204;
constexpr double credits_start = 177, credits_end = 194.94;
constexpr double beat_start = 204.5;
constexpr double beat_cycle = 1.5, beat_half = 0.75, beat_cut = 0.375; // four pictures a cycle
constexpr double greets_start = 230, greets_end = 235;
constexpr double feedback_start = 237;

// The scene moves on and is drawn over what `canvas` holds.
void draw_scene(show& all) {
    raster_clear_depth();
    all.scene.scene_update();
    all.scene.scene_render(all.canvas.pixels);
}

// 2 and 3: the scene, with a gap, under the picture of the accident.
void draw_accident(show& all, double t) {
    if (within(t, start, scene_stops) || within(t, scene_resumes, clip_start)) draw_scene(all);
    if (within(t, start, clip_start)) gtex_alpha_mix(all.canvas, all.img_accident);
}

// 4: the clip over the whole frame, behind the panel, and the credits.
void draw_clip(show& all, double t) {
    if (!inside(t, clip_start, clip_end)) return;
    video_step(all.video_frame);
    gtex_zoom(all.title_trail, all.video_frame, 0, 0, all.video_frame.width, all.video_frame.height);
    gtex_add(all.canvas, all.title_trail);
    gtex_copy_keyed(all.canvas, all.img_hum);
    if (inside(t, credits_start, credits_end)) gtex_add(all.canvas, all.img_cred);
}

// 5: four pictures cut on the beat.
void draw_beat(show& all, double t) {
    if (t < beat_start) return;
    const bool first_half = std::fmod(t, beat_cycle) <= beat_half;
    const bool first_cut = std::fmod(t, beat_half) <= beat_cut;
    if (first_cut) {
        draw_scene(all);
        if (first_half) gtex_negate(all.canvas, all.canvas);
    } else if (first_half) {
        gtex_plasma(all.canvas, all.plasma_a, all.plasma_b, static_cast<float>(t * 0.5), 0);
    } else {
        gtex_tunnel(all.canvas, all.tex_texture, trunc_to_int(t * -100), trunc_to_int(t * 50));
    }
}

} // namespace

void movement2_draw(show& all, float t) {
    gtex_fill(all.canvas, 0);
    draw_accident(all, t);
    draw_clip(all, t);
    draw_beat(all, t);
    if (within(t, greets_start, greets_end)) gtex_alpha_mix(all.canvas, all.img_greets);
    if (static_cast<double>(t) >= feedback_start) gtex_trail(all.wire_trail, all.canvas, 3);
}
