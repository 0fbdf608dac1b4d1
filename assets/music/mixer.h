// From stems to a finished track.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "assets/forms/buffers.h"
#include "assets/music/effects.h"

namespace assets::sound {

// One group of instruments and its way through the desk. Levels are plain factors.
struct stem {
    std::string_view name;
    void (*play)(stereo& out); // adds its notes
    float gain;
    float hall = 0;      // send to the reverberation
    float echo = 0;      // send to the echoes
    float duck = 0;      // how far it steps aside for the kick, 0 to 1
    float high_pass = 0; // Hz, 0 for none
    float chorus = 0;    // share of the moved copies
    bool broken = false; // goes through `desk::edit`
};

struct desk {
    std::span<const stem> stems;
    std::span<const int> kicks;  // frames where the ducked stems step aside
    void (*edit)(stereo& sound); // cuts, stutters and halts in the dry sound of the broken stems
    echo_shape echo;
    hall_shape hall;
    float echo_return;
    float echo_to_hall;
    float hall_return;
    std::span<const curve_point> drive; // gain into the bus compressor over the track's time
    float ceiling;                      // of the limiter, 1 is full scale
    std::span<const curve_point> fade;  // gain of the whole over its time, after everything else
};

// The finished track, `frames` long. `only` names the one stem that is to be heard; empty for all.
stereo mix_down(const desk& set_up, int frames, std::string_view only = {});

// The names of stems, in their order.
std::vector<std::string_view> names_of(std::span<const stem> stems);

} // namespace assets::sound
