// The score of the first movement: a fixed list of steps, each behind its window of time. Windows may
// overlap; a later step works on what the earlier ones left. Formulas are floating point, truncated toward
// zero.
#include "driver/movement1.h"

#include <cmath>

#include "driver/show.h"
#include "gtex/blend.h"
#include "gtex/filters.h"
#include "gtex/noise.h"
#include "gtex/plasma.h"
#include "math/numbers.h"

namespace {

constexpr double plasma_end = 14.2; // the meshes appear

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

// Noise that swings in brightness, then black.
void draw_background(show& all, double t) {
    if (t < 13)
        gtex_noise(all.canvas, trunc_to_int(std::sin(t) * 80 + 160));
    else
        gtex_fill(all.canvas, 0);
}

// The card fades in, stands, blurs and fades out.
void draw_card(show& all, double t) {
    if (t >= 2 && t < 6) gtex_crossfade(all.canvas, all.img_parental, trunc_to_int((t - 2) * 64));
    if (t >= 6 && t < 9) gtex_copy(all.canvas, all.img_parental);
    if (t >= 7.5 && t < 9)
        gtex_blur_h(all.canvas, all.img_parental, trunc_to_int((std::sin(t * 4) + 1) * 16));
    if (t >= 9 && t < 13) gtex_crossfade(all.canvas, all.img_parental, trunc_to_int((4 - (t - 9)) * 64));
}

// Each flash falls from full to nothing within half a second; those that overlap apply one after the other.
void draw_flashes(show& all, double t) {
    for (const flash& f : flashes)
        if (t >= f.start && t < f.end)
            gtex_crossfade(all.canvas, all.*f.surface, trunc_to_int((f.end - t) * 510));
}

// The plasma lays its light and shade over the noise and the card.
void draw_plasma_light(show& all, double t) {
    if (t >= plasma_end) return;
    gtex_plasma(all.title_layer, all.plasma_a, all.plasma_b, static_cast<float>(t * 0.5), 0);
    gtex_multiply(all.canvas, all.title_layer);
}

} // namespace

void movement1_draw(show& all, float t) {
    draw_background(all, t);
    draw_card(all, t);
    draw_flashes(all, t);
    draw_plasma_light(all, t);
}
