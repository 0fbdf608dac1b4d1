// "Ashwing", the track of the first movement, in F minor with a flat second: 147.49 seconds, ten sections of
// eight bars and a tail of two. The form, with what the picture does:
//
//   opening    0       noise and a card     drone, wind, single bells; at 13 it holds its breath
//   meteor    14.2     wires appear         the beat; bass; wires play broken chords; the motif's head
//   name      28.5     first title          the motif (a leap of a fourth, steps down) and its answer
//   flashes   43.08    nine flashes         the beat gives way to chords that fall on them
//   shaking   57.35    second title         everything broken: half time, stutters, three ripples
//   rising    72       third title          the motif's head climbs from step to step; rolls; one beat empty
//   drop      86.04    the mesh turns back  all together; the motif, then upside down
//   cube     100.36    the cube             short and square: the motif as a canon of two pulses
//   turning  114.69    textures change      choir and bells, the motif at half its pace
//   height   128.99    last picture         the drop's chords with all voices; thins out from 137.67
//   tail     143.3     the end              bells alone, the drone, closed by 147.4
//
// The files: ashwing_form (times, chords, text into notes), _drums, _low (drone, bass), _harmony (pads,
// choir, wires, cube), _melody (bells, lead, stabs), _air (wind, risers, falls, ripples), ashwing (the desk).
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "assets/forms/buffers.h"
#include "assets/music/laying.h"

namespace assets::sound {

enum section { opening, meteor, name, flashes, shaking, rising, drop, cube, turning, height, tail };

inline constexpr double ashwing_seconds = 147.49;

// Starts of the sections; the last number only gives the tail the tempo of the section before it.
inline constexpr std::array<double, 12> ashwing_starts = {0,     14.2,   28.5,   43.08,  57.35, 72,
                                                          86.04, 100.36, 114.69, 128.99, 143.3, 157.61};
inline constexpr tempo_map ashwing_tempo{ashwing_starts};

// The picture's flashes: three white, six grey.
inline constexpr std::array<double, 9> ashwing_flashes = {43.08, 43.93, 44.26, 46.65, 47.53,
                                                          47.74, 50.22, 51.11, 51.35};
inline constexpr std::array<double, 3> ashwing_ripples = {57.35, 61.03, 64.41};
inline constexpr double ashwing_burst = 114.29; // just before a section's end

// Time and harmony.
extern const form ashwing_form;

// The stems.
void ashwing_kick(stereo& out);
void ashwing_snares(stereo& out);
void ashwing_metal(stereo& out);
void ashwing_toms(stereo& out);
void ashwing_crashes(stereo& out);
void ashwing_booms(stereo& out);
void ashwing_drone(stereo& out);
void ashwing_bass(stereo& out);
void ashwing_pad(stereo& out);
void ashwing_choir(stereo& out);
void ashwing_wires(stereo& out);
void ashwing_cube(stereo& out);
void ashwing_bells(stereo& out);
void ashwing_lead(stereo& out);
void ashwing_stabs(stereo& out);
void ashwing_wind(stereo& out);
void ashwing_risers(stereo& out);
void ashwing_shapes(stereo& out);

// Frames of all kicks, in order.
std::vector<int> ashwing_kick_frames();

// Stutters, gaps and the one halt.
void ashwing_edit(stereo& sound);

// The first `seconds` of the finished track (all of it at most), or of one stem by its name.
stereo ashwing_sound(double seconds = ashwing_seconds, std::string_view only = {});

// The names of the stems, in the order of the desk.
std::vector<std::string_view> ashwing_stem_names();

} // namespace assets::sound
