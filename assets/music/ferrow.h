// "ferrow", the track of the second movement: 129 seconds at 160 beats a minute, from F minor with the flat
// second up to G minor. The picture's clock is the clock of the beat: a bar takes 1.5 s, its four beats of
// 0.375 s are the four pictures, and every bar begins on a multiple of 1.5 s of the show. The picture's other
// times lie on thirds of a beat, so triplets lead into them.
//
// A section has eight bars, 12 s, whatever the picture does; the form, by the show's time:
//
//   scene_slow     147.69  scene below a picture    drone, heartbeat, strings; the motif at half its pace
//   picture_alone  156     picture on black         no beat; bells. At 163 the scene comes back: a break
//   breaking       168     scene till 175           broken drums, the motif's head in pieces; 175: the clip
//   clip_open      180     clip and credits         half time, pads, strings, the motif sung slowly
//   clip_close     192     clip till 204            from 195 all climbs; at 204 everything stops
//   beat_bare      204     204.5: four pictures     four on the floor and a colour for each picture
//   beat_full      216     four pictures            bass line, lead: the motif at its own pace
//   beat_greets    228     230 to 235 greetings     choir above the kick; at 237 the feedback begins
//   smear          240     feedback                 acid, breaks over the beat, the motif as a canon
//   smear_lifted   252     feedback                 a tone higher
//   smear_whole    264     feedback                 the climax of "Ashwing", a tone higher; strokes double
//   last_stroke    276     the end at 276.46        one stroke, closed when the picture goes
//
// The files: ferrow_form (times and chords), _drums, _beat (the four colours), _low (drone, bass, acid),
// _harmony (pads, choir, strings), _melody (bells, lead, stabs), _air (wind, risers, falls), ferrow (the
// desk).
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "assets/forms/buffers.h"
#include "assets/music/laying.h"

namespace assets::sound {

enum ferrow_section {
    scene_slow,
    picture_alone,
    breaking,
    clip_open,
    clip_close,
    beat_bare,
    beat_full,
    beat_greets,
    smear,
    smear_lifted,
    smear_whole,
    last_stroke
};

inline constexpr double ferrow_start = 147.69; // of the show, when the track begins
inline constexpr double ferrow_seconds = 129.0;

// The track's time at a time of the show, and tables whose times are told by the show.
constexpr double at_show(double show_time) {
    return show_time - ferrow_start;
}
template<typename Row, std::size_t count>
constexpr std::array<Row, count> from_show(const Row (&rows)[count]) {
    std::array<Row, count> moved = std::to_array(rows);
    for (Row& row : moved)
        row.time -= ferrow_start;
    return moved;
}

// The first section begins before the track does.
inline constexpr std::array<double, 13> ferrow_starts = {
    at_show(144), at_show(156), at_show(168), at_show(180), at_show(192), at_show(204), at_show(216),
    at_show(228), at_show(240), at_show(252), at_show(264), at_show(276), at_show(288)};
inline constexpr tempo_map ferrow_tempo{ferrow_starts};

// Time and harmony.
extern const form ferrow_form;

// The stems.
void ferrow_kick(stereo& out);
void ferrow_snares(stereo& out);
void ferrow_metal(stereo& out);
void ferrow_crashes(stereo& out);
void ferrow_booms(stereo& out);
void ferrow_negative(stereo& out);
void ferrow_plasma(stereo& out);
void ferrow_scene(stereo& out);
void ferrow_tunnel(stereo& out);
void ferrow_drone(stereo& out);
void ferrow_bass(stereo& out);
void ferrow_acid(stereo& out);
void ferrow_pad(stereo& out);
void ferrow_gated(stereo& out);
void ferrow_choir(stereo& out);
void ferrow_strings(stereo& out);
void ferrow_bells(stereo& out);
void ferrow_lead(stereo& out);
void ferrow_pieces(stereo& out);
void ferrow_stabs(stereo& out);
void ferrow_wind(stereo& out);
void ferrow_risers(stereo& out);

// Frames of all kicks, in order.
std::vector<int> ferrow_kick_frames();

// Stutters and breaths.
void ferrow_edit(stereo& sound);

// The first `seconds` of the finished track (all of it at most), or of one stem by its name.
stereo ferrow_sound(double seconds = ferrow_seconds, std::string_view only = {});

// The names of the stems, in the order of the desk.
std::vector<std::string_view> ferrow_stem_names();

} // namespace assets::sound
