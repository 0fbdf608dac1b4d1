// The desk of "Ashwing": its stems, their ways, and the finished track.
#include "assets/music/ashwing.h"

#include <algorithm>

#include "assets/forms/mp3_writer.h"
#include "assets/music/mixer.h"
#include "assets/music/tracks.h"

namespace assets::sound {
namespace {

constexpr auto stems = std::to_array<stem>({
    {.name = "kick", .play = ashwing_kick, .gain = 0.30F, .broken = true},
    {.name = "snares",
     .play = ashwing_snares,
     .gain = 0.54F,
     .hall = 0.16F,
     .high_pass = 110,
     .broken = true},
    {.name = "metal",
     .play = ashwing_metal,
     .gain = 0.38F,
     .hall = 0.05F,
     .duck = 0.15F,
     .high_pass = 600,
     .broken = true},
    {.name = "toms", .play = ashwing_toms, .gain = 0.36F, .hall = 0.2F, .high_pass = 50, .broken = true},
    {.name = "crashes",
     .play = ashwing_crashes,
     .gain = 0.42F,
     .hall = 0.15F,
     .duck = 0.1F,
     .high_pass = 400},
    {.name = "booms", .play = ashwing_booms, .gain = 0.26F, .hall = 0.04F},
    {.name = "drone", .play = ashwing_drone, .gain = 0.50F, .hall = 0.25F, .duck = 0.5F, .chorus = 0.3F},
    {.name = "bass", .play = ashwing_bass, .gain = 0.27F, .duck = 0.88F, .broken = true},
    {.name = "pad",
     .play = ashwing_pad,
     .gain = 0.74F,
     .hall = 0.35F,
     .duck = 0.7F,
     .high_pass = 150,
     .chorus = 0.4F,
     .broken = true},
    {.name = "choir",
     .play = ashwing_choir,
     .gain = 0.50F,
     .hall = 0.5F,
     .duck = 0.55F,
     .high_pass = 180,
     .chorus = 0.3F,
     .broken = true},
    {.name = "wires",
     .play = ashwing_wires,
     .gain = 0.62F,
     .hall = 0.2F,
     .echo = 0.4F,
     .duck = 0.4F,
     .high_pass = 250,
     .broken = true},
    {.name = "cube",
     .play = ashwing_cube,
     .gain = 0.50F,
     .hall = 0.16F,
     .echo = 0.28F,
     .duck = 0.4F,
     .high_pass = 150,
     .broken = true},
    {.name = "bells",
     .play = ashwing_bells,
     .gain = 0.56F,
     .hall = 0.5F,
     .echo = 0.35F,
     .duck = 0.25F,
     .high_pass = 200},
    {.name = "lead",
     .play = ashwing_lead,
     .gain = 0.84F,
     .hall = 0.28F,
     .echo = 0.26F,
     .duck = 0.35F,
     .high_pass = 180,
     .broken = true},
    {.name = "stabs",
     .play = ashwing_stabs,
     .gain = 0.56F,
     .hall = 0.3F,
     .echo = 0.1F,
     .duck = 0.2F,
     .high_pass = 90,
     .broken = true},
    {.name = "wind", .play = ashwing_wind, .gain = 0.36F, .hall = 0.2F},
    {.name = "risers", .play = ashwing_risers, .gain = 0.62F, .hall = 0.25F, .duck = 0.3F, .high_pass = 150},
    {.name = "shapes", .play = ashwing_shapes, .gain = 0.62F, .hall = 0.3F, .echo = 0.2F, .high_pass = 120},
});

constexpr float echo_steps = 3; // a dotted eighth

// The whole breathes with the form: the gain into the compressor.
constexpr auto levels = std::to_array<curve_point>({
    {0.0, 0.66F},     {9.0, 0.72F},    {13.0, 0.66F},   {14.19, 0.66F},   {14.2, 0.80F},   {28.5, 0.84F},
    {43.07, 0.90F},   {43.075, 1.02F}, {43.5, 0.92F},   {43.92, 0.78F},   {43.927, 1.06F}, {44.05, 0.95F},
    {44.25, 0.80F},   {44.257, 1.06F}, {46.0, 0.95F},   {57.34, 0.92F},   {57.345, 0.76F}, {72.0, 0.78F},
    {72.01, 0.70F},   {85.55, 0.95F},  {85.66, 0.30F},  {86.03, 0.30F},   {86.036, 1.10F}, {100.35, 1.06F},
    {100.355, 0.88F}, {107.5, 0.90F},  {114.28, 0.90F}, {114.285, 0.95F}, {115.5, 0.74F},  {121.8, 0.80F},
    {128.98, 0.90F},  {128.985, 1.1F}, {137.67, 1.04F}, {143.3, 0.9F},
});

// The tail closes before the picture does.
constexpr auto fade_out =
    std::to_array<curve_point>({{144.9, 1.0F}, {146.0, 0.45F}, {146.8, 0.12F}, {147.35, 0.0F}});

} // namespace

stereo ashwing_sound(double seconds, std::string_view only) {
    const std::vector<int> kicks = ashwing_kick_frames();
    const std::vector<curve_point> echoes = echo_times(ashwing_tempo, echo_steps);
    const desk set_up = {
        .stems = stems,
        .kicks = kicks,
        .edit = ashwing_edit,
        .echo = {.delay = echoes, .feedback = 0.52F, .low_hertz = 350.0F, .high_hertz = 4500.0F},
        .hall = {.seconds = 2.6F,
                 .size = 1.1F,
                 .before_seconds = 0.022F,
                 .high_hertz = 5600.0F,
                 .low_hertz = 180.0F},
        .echo_return = 0.8F,
        .echo_to_hall = 0.25F,
        .hall_return = 0.8F,
        .drive = levels,
        .ceiling = from_decibels(-2.9F),
        .fade = fade_out,
    };
    return mix_down(set_up, frame_of(std::clamp(seconds, 0.0, ashwing_seconds)), only);
}

std::vector<std::string_view> ashwing_stem_names() {
    return names_of(stems);
}

} // namespace assets::sound

namespace assets {

file_bytes music_ashwing() {
    return sound::mp3_file(sound::ashwing_sound());
}

} // namespace assets
