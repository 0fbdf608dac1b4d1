// The desk of "ferrow": its stems, their ways, and the finished track.
#include "assets/music/ferrow.h"

#include <algorithm>

#include "assets/forms/ogg_writer.h"
#include "assets/music/mixer.h"
#include "assets/music/tracks.h"

namespace assets::sound {
namespace {

constexpr auto stems = std::to_array<stem>({
    {.name = "kick", .play = ferrow_kick, .gain = 0.30F, .broken = true},
    {.name = "snares", .play = ferrow_snares, .gain = 0.52F, .hall = 0.14F, .high_pass = 120, .broken = true},
    {.name = "metal",
     .play = ferrow_metal,
     .gain = 0.36F,
     .hall = 0.05F,
     .duck = 0.15F,
     .high_pass = 600,
     .broken = true},
    {.name = "crashes", .play = ferrow_crashes, .gain = 0.40F, .hall = 0.15F, .duck = 0.1F, .high_pass = 400},
    {.name = "booms", .play = ferrow_booms, .gain = 0.26F, .hall = 0.04F},
    {.name = "negative",
     .play = ferrow_negative,
     .gain = 0.62F,
     .hall = 0.1F,
     .echo = 0.1F,
     .duck = 0.2F,
     .high_pass = 90,
     .broken = true},
    {.name = "plasma",
     .play = ferrow_plasma,
     .gain = 0.56F,
     .hall = 0.25F,
     .echo = 0.35F,
     .duck = 0.2F,
     .high_pass = 300,
     .chorus = 0.5F},
    {.name = "scene",
     .play = ferrow_scene,
     .gain = 0.56F,
     .hall = 0.3F,
     .echo = 0.1F,
     .duck = 0.2F,
     .high_pass = 90,
     .broken = true},
    {.name = "tunnel",
     .play = ferrow_tunnel,
     .gain = 0.95F,
     .hall = 0.3F,
     .echo = 0.2F,
     .duck = 0.2F,
     .high_pass = 150},
    {.name = "drone", .play = ferrow_drone, .gain = 0.50F, .hall = 0.25F, .duck = 0.5F, .chorus = 0.3F},
    {.name = "bass", .play = ferrow_bass, .gain = 0.27F, .duck = 0.88F, .broken = true},
    {.name = "acid",
     .play = ferrow_acid,
     .gain = 0.40F,
     .hall = 0.12F,
     .echo = 0.2F,
     .duck = 0.5F,
     .high_pass = 120,
     .broken = true},
    {.name = "pad",
     .play = ferrow_pad,
     .gain = 0.74F,
     .hall = 0.35F,
     .duck = 0.6F,
     .high_pass = 150,
     .chorus = 0.4F,
     .broken = true},
    {.name = "gated",
     .play = ferrow_gated,
     .gain = 0.60F,
     .hall = 0.2F,
     .echo = 0.15F,
     .duck = 0.6F,
     .high_pass = 200,
     .broken = true},
    {.name = "choir",
     .play = ferrow_choir,
     .gain = 0.50F,
     .hall = 0.5F,
     .duck = 0.5F,
     .high_pass = 180,
     .chorus = 0.3F,
     .broken = true},
    {.name = "strings",
     .play = ferrow_strings,
     .gain = 0.60F,
     .hall = 0.35F,
     .echo = 0.4F,
     .duck = 0.3F,
     .high_pass = 150,
     .broken = true},
    {.name = "bells",
     .play = ferrow_bells,
     .gain = 0.50F,
     .hall = 0.5F,
     .echo = 0.35F,
     .duck = 0.25F,
     .high_pass = 200},
    {.name = "lead",
     .play = ferrow_lead,
     .gain = 0.80F,
     .hall = 0.28F,
     .echo = 0.26F,
     .duck = 0.35F,
     .high_pass = 180,
     .broken = true},
    {.name = "pieces",
     .play = ferrow_pieces,
     .gain = 0.55F,
     .hall = 0.2F,
     .echo = 0.25F,
     .duck = 0.3F,
     .high_pass = 180,
     .broken = true},
    {.name = "stabs",
     .play = ferrow_stabs,
     .gain = 0.56F,
     .hall = 0.3F,
     .echo = 0.1F,
     .duck = 0.2F,
     .high_pass = 90},
    {.name = "wind", .play = ferrow_wind, .gain = 0.40F, .hall = 0.2F},
    {.name = "risers", .play = ferrow_risers, .gain = 0.60F, .hall = 0.25F, .duck = 0.3F, .high_pass = 150},
});

constexpr float echo_steps = 3; // a dotted eighth

// The echoes' feedback grows with that of the picture.
constexpr auto feedback_growth = from_show<curve_point>({
    {237.0, 0.0F},
    {262.0, 0.2F},
    {274.0, 0.26F},
    {276.0, 0.0F},
});

// The whole breathes with the form: the gain into the compressor.
constexpr auto levels = from_show<curve_point>({
    {147.69, 0.60F},  {155.9, 0.62F},  {156.0, 0.46F},   {162.99, 0.52F}, {162.996, 0.88F}, {174.99, 0.88F},
    {174.996, 0.72F}, {177.0, 0.70F},  {188.9, 0.76F},   {189.0, 0.82F},  {194.9, 0.82F},   {195.0, 0.62F},
    {203.9, 0.88F},   {204.49, 0.88F}, {204.496, 0.95F}, {206.0, 0.78F},  {215.9, 0.74F},   {215.996, 0.84F},
    {229.99, 0.80F},  {230.0, 0.86F},  {230.6, 0.68F},   {234.9, 0.66F},  {236.99, 0.72F},  {236.996, 0.90F},
    {240.0, 0.82F},   {251.99, 0.84F}, {251.996, 0.94F}, {257.9, 0.90F},  {258.0, 0.72F},   {263.99, 0.86F},
    {263.996, 1.04F}, {276.0, 1.12F},
});

// Black is silent, and the end is the picture's.
constexpr auto fades = from_show<curve_point>({
    {203.99, 1.0F},
    {204.04, 0.12F},
    {204.3, 0.02F},
    {204.495, 0.02F},
    {204.499, 1.0F},
    {276.12, 1.0F},
    {276.38, 0.35F},
    {276.455, 0.0F},
});

} // namespace

stereo ferrow_sound(double seconds, std::string_view only) {
    const std::vector<int> kicks = ferrow_kick_frames();
    const std::vector<curve_point> echoes = echo_times(ferrow_tempo, echo_steps);
    const desk set_up = {
        .stems = stems,
        .kicks = kicks,
        .edit = ferrow_edit,
        .echo = {.delay = echoes,
                 .feedback = 0.5F,
                 .growth = feedback_growth,
                 .low_hertz = 350.0F,
                 .high_hertz = 4500.0F},
        .hall = {.seconds = 2.2F,
                 .size = 1.0F,
                 .before_seconds = 0.018F,
                 .high_hertz = 5600.0F,
                 .low_hertz = 190.0F},
        .echo_return = 0.8F,
        .echo_to_hall = 0.25F,
        .hall_return = 0.8F,
        .drive = levels,
        .ceiling = from_decibels(-2.9F),
        .fade = fades,
    };
    return mix_down(set_up, frame_of(std::clamp(seconds, 0.0, ferrow_seconds)), only);
}

std::vector<std::string_view> ferrow_stem_names() {
    return names_of(stems);
}

} // namespace assets::sound

namespace assets {

file_bytes music_ferrow() {
    constexpr std::int32_t serial = 0x66657272; // any number, but always the same
    return sound::ogg_file(sound::ferrow_sound(), "ferrow", serial);
}

} // namespace assets
