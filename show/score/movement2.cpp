// The score of the second movement: seven steps, each behind its windows of time.
#include "show/score/score.h"

#include <cmath>

#include "morvane/base/numbers.h"
#include "morvane/gtex/blend.h"
#include "morvane/gtex/plasma.h"
#include "morvane/gtex/tunnel.h"
#include "morvane/gtex/zoom.h"
#include "morvane/media/video.h"
#include "morvane/poly/raster.h"
#include "show/show.h"

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
void draw_scene(show& owner) {
    raster_clear_depth();
    owner.scene.scene_update();
    owner.scene.scene_render(owner.canvas.pixels);
}

// 2 and 3: the scene, with a gap, under the picture of the accident.
void draw_accident(show& owner, double t) {
    if (within(t, start, scene_stops) || within(t, scene_resumes, clip_start)) draw_scene(owner);
    if (within(t, start, clip_start)) gtex_alpha_mix(owner.canvas, owner.img_accident);
}

// 4: the clip over the whole frame, behind the panel, and the credits.
void draw_clip(show& owner, double t) {
    if (!inside(t, clip_start, clip_end)) return;
    video_step(owner.video_frame);
    gtex_zoom(owner.title_trail, owner.video_frame, 0, 0, owner.video_frame.width, owner.video_frame.height);
    gtex_add(owner.canvas, owner.title_trail);
    gtex_copy_keyed(owner.canvas, owner.img_hum);
    if (inside(t, credits_start, credits_end)) gtex_add(owner.canvas, owner.img_cred);
}

// 5: four pictures cut on the beat.
void draw_beat(show& owner, double t) {
    if (t < beat_start) return;
    const bool first_half = std::fmod(t, beat_cycle) <= beat_half;
    const bool first_cut = std::fmod(t, beat_half) <= beat_cut;
    if (first_cut) {
        draw_scene(owner);
        if (first_half) gtex_negate(owner.canvas, owner.canvas);
    } else if (first_half) {
        gtex_plasma(owner.canvas, owner.plasma_a, owner.plasma_b, static_cast<float>(t * 0.5), 0);
    } else {
        gtex_tunnel(owner.canvas, owner.tex_texture, trunc_to_int(t * -100), trunc_to_int(t * 50));
    }
}

} // namespace

void movement2_draw(show& owner, float t) {
    gtex_fill(owner.canvas, 0);
    draw_accident(owner, t);
    draw_clip(owner, t);
    draw_beat(owner, t);
    if (within(t, greets_start, greets_end)) gtex_alpha_mix(owner.canvas, owner.img_greets);
    if (static_cast<double>(t) >= feedback_start) gtex_trail(owner.wire_trail, owner.canvas, 3);
}
