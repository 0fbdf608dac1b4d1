// The drums of "ferrow". From 204.5 on a kick falls on every beat, which is every cut of the picture.
#include <algorithm>
#include <cstddef>

#include "assets/music/ferrow.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

constexpr auto kick_book = std::to_array<bar_text>({
    {'a', "9...9...9...9..."}, // four on the floor
    {'b', "9...9...9...9.6."},
    {'c', "9..69...9..69.66"},
    {'q', "9...9.5.9...9..5"},
    {'e', "9.6.9.6.9.6.9.6."},
    {'r', "9.8.9.8.98989898"},
    {'p', "........9...9..."},
    {'h', "7.3............."}, // a heart
    {'i', "7.3.......4.3..."},
    {'k', "9.9.......99...."}, // broken
    {'l', "9.9...9...9....6"},
    {'m', "9..9..9...9..9.."},
    {'s', "9..9.9.........."},
    {'2', "9.........9....."},
    {'3', "9.....6...9....."},
    {'g', "9..............."},
});
constexpr auto kick_rows = std::to_array<bar_row>({
    {scene_slow, "...hhihi"},
    {picture_alone, ".....klk"},
    {breaking, "mklms.22"},
    {clip_open, "23222323"},
    {clip_close, "23ggaaer"},
    {beat_bare, "paabaaab"},
    {beat_full, "aaabaaab"},
    {beat_greets, "aaaaaaab"},
    {smear, "aabaaqab"},
    {smear_lifted, "qaqbaaab"},
    {smear_whole, "qcqcqcer"},
});

constexpr auto snare_book = std::to_array<bar_text>({
    {'s', "........5......."}, // half time
    {'n', "........9......."},
    {'o', "........9..4..3."},
    {'y', "....9.......9..."},
    {'z', "....9..3....9.35"},
    {'A', "....9..4.4..9..4"}, // broken
    {'B', "....9..4.4....9."},
    {'C', "....9..4.49.9.99"},
    {'x', "....9.79........"},
    {'f', "........9..7.799"}, // fills
    {'F', "....9..5.5..9999"},
    {'u', "5...5...6...6..."}, // rolls
    {'v', "6.6.6.6.7.7.7.7."},
    {'w', "6666777788889999"},
});
constexpr auto snare_rows = std::to_array<bar_row>({
    {scene_slow, "....s.s."},
    {picture_alone, ".....ABA"},
    {breaking, "CABCx..n"},
    {clip_open, "nnnonnno"},
    {clip_close, "nouuvvww"},
    {beat_bare, ".nonnozf"},
    {beat_full, "yyyzyyzF"},
    {beat_greets, "yn...Fyz"},
    {smear, "yAyAzAzC"},
    {smear_lifted, "AzAC.uvC"},
    {smear_whole, "ABACABvw"},
});
constexpr auto clap_rows = std::to_array<bar_row>({
    {clip_close, "nn......"},
    {beat_bare, "....nnnn"},
    {beat_full, "yyyyyyy."},
    {beat_greets, "yn....yy"},
    {smear, "yyyyyyy."},
    {smear_lifted, "yyyy..y."},
    {smear_whole, "yyyyyy.."},
});

constexpr auto hat_book = std::to_array<bar_text>({
    {'q', "......5.....4..."},
    {'e', "7.5.7.5.7.5.7.57"},
    {'t', "..6...6...6...6."},
    {'c', "4.634.634.634.63"},
    {'d', "5364536453645365"},
    {'x', "..8...8...8...8."},
});
constexpr auto hat_rows = std::to_array<bar_row>({
    {scene_slow, "....qqqq"},
    {picture_alone, ".....eee"},
    {breaking, "eeeee.tt"},
    {clip_open, "ttttcccc"},
    {clip_close, "cc..ttcd"},
    {beat_bare, ".ttetccd"},
    {beat_full, "ccccccdd"},
    {beat_greets, "c...tccc"},
    {smear, "ccccdddd"},
    {smear_lifted, "dddd.tdd"},
    {smear_whole, "dddddd.."},
});
constexpr auto open_rows = std::to_array<bar_row>({
    {beat_bare, "....xxxx"},
    {beat_full, "xxxxxxxx"},
    {beat_greets, "xx....xx"},
    {smear, "xxxxxxxx"},
    {smear_lifted, "xxxx..xx"},
    {smear_whole, "xxxxxx.."},
});

constexpr auto shaker_book = std::to_array<bar_text>({
    {'a', "3264326432643265"},
    {'b', "3.6.3.6433643.65"},
});
constexpr auto shaker_rows = std::to_array<bar_row>({
    {clip_open, "bbabbaba"},
    {clip_close, "ab..bbaa"},
    {beat_full, "..bbabab"},
    {smear, "abababaa"},
    {smear_lifted, "aaaabbaa"},
    {smear_whole, "aaaaaaaa"},
});

// Struck wires, as in the first track.
constexpr auto wire_book = std::to_array<bar_text>({
    {'a', "7..5..7.....5..3"},
    {'b', "..6..4..6..4..65"},
    {'c', "7.7...5...77...."},
});
constexpr auto wire_rows = std::to_array<bar_row>({
    {picture_alone, ".....cac"},
    {breaking, "acbc...."},
    {clip_open, "a.b.abab"},
    {beat_full, "..a.b.ab"},
    {smear, "abababcb"},
    {smear_lifted, "abcb..cb"},
    {smear_whole, "abcbcb.."},
});

// Triplets lead into the picture's times that lie between the beats.
constexpr auto triplets = from_show<timed_hit>({
    {163.0, 0.85F, -0.2F},
    {163.125, 0.5F, 0.1F},
    {163.25, 0.6F, 0.2F},
    {163.375, 0.75F, -0.1F},
    {204.5, 0.8F, 0.0F},
    {204.625, 0.4F, 0.1F},
    {229.875, 0.4F, -0.2F},
    {230.0, 0.9F, 0.1F},
    {234.75, 0.45F, -0.2F},
    {234.875, 0.55F, 0.2F},
    {235.0, 0.8F, 0.0F},
    {235.125, 0.6F, 0.0F},
});

std::vector<stroke> strokes(const voice_part& part) {
    return strokes_of(ferrow_form, part);
}

// Kicks of the picture's own times.
constexpr std::array<double, 4> free_kicks = {at_show(163), at_show(175), at_show(204.5), at_show(276)};

void reverse(stereo& hit) {
    std::reverse(hit.left.begin(), hit.left.end());
    std::reverse(hit.right.begin(), hit.right.end());
}

} // namespace

std::vector<int> ferrow_kick_frames() {
    return kick_frames(strokes({kick_book, kick_rows}), free_kicks);
}

void ferrow_kick(stereo& out) {
    // Round while the scene is slow, hard where the pictures cut, in the key of each.
    const stereo round =
        make_kick({.high = 150.0F, .sweep = 0.035F, .body = 0.16F, .drive = 1.4F, .click = 0.1F});
    const stereo hard = make_kick({.body = 0.11F, .drive = 2.8F, .click = 0.5F, .seconds = 0.36F});
    const stereo high =
        make_kick({.low = 49.0F, .body = 0.11F, .drive = 2.8F, .click = 0.5F, .seconds = 0.36F});
    const auto kick_at = [&](double time) -> const stereo& {
        if (time < at_show(160)) return round;
        return time < at_show(252) - 0.01 ? hard : high;
    };
    for (const stroke& hit : strokes({kick_book, kick_rows}))
        add_hit(out, kick_at(hit.time), frame_of(hit.time),
                scaled({1, 1}, 0.25F + 0.75F * hit.velocity * hit.velocity));
    for (const double time : free_kicks)
        add_hit(out, kick_at(time), frame_of(time), {1, 1});
}

void ferrow_snares(stereo& out) {
    const std::array<stereo, 3> snares = {make_snare({.tone = 205.0F, .snap = 0.11F}, 11),
                                          make_snare({.tone = 205.0F, .snap = 0.12F}, 12),
                                          make_snare({.tone = 210.0F, .snap = 0.10F, .bright = 2100.0F}, 13)};
    add_strokes(out, strokes({snare_book, snare_rows}), snares, 1.0F, 0.0F, 241);
    add_hits(out, triplets, snares);
    const std::array<stereo, 3> claps = {make_clap(15), make_clap(16), make_clap(17)};
    add_strokes(out, strokes({snare_book, clap_rows}), claps, 0.6F, 0.0F, 242);
}

void ferrow_metal(stereo& out) {
    const std::array<stereo, 4> closed = {make_hat(0.026F, 11), make_hat(0.022F, 12), make_hat(0.031F, 13),
                                          make_hat(0.024F, 14)};
    add_strokes(out, strokes({hat_book, hat_rows}), closed, 1.0F, 0.18F, 243);
    const std::array<stereo, 2> open = {make_hat(0.085F, 15), make_hat(0.095F, 16)};
    add_strokes(out, strokes({hat_book, open_rows}), open, 0.75F, -0.1F, 244);
    const std::array<stereo, 3> shakers = {make_shaker(11), make_shaker(12), make_shaker(13)};
    add_strokes(out, strokes({shaker_book, shaker_rows}), shakers, 0.8F, -0.45F, 245);
    const std::array<stereo, 3> wires = {make_wire(1864.7F, 0.05F), make_wire(1396.9F, 0.07F),
                                         make_wire(2093.0F, 0.04F)};
    add_strokes(out, strokes({wire_book, wire_rows}), wires, 0.5F, 0.55F, 246);
}

void ferrow_crashes(stereo& out) {
    constexpr auto crashes = from_show<timed_hit>({
        {156.0, 0.35F, -0.3F}, {163.5, 0.9F, 0.2F},  {169.5, 0.6F, -0.3F}, {175.0, 0.6F, 0.0F},
        {177.0, 0.3F, 0.3F},   {189.0, 0.6F, -0.3F}, {195.0, 0.5F, 0.2F},  {204.5, 1.0F, -0.4F},
        {204.5, 1.0F, 0.4F},   {210.0, 0.5F, 0.2F},  {216.0, 0.9F, -0.4F}, {216.0, 0.9F, 0.4F},
        {222.0, 0.6F, 0.2F},   {228.0, 0.7F, -0.2F}, {230.0, 0.9F, 0.3F},  {237.0, 1.0F, -0.4F},
        {237.0, 1.0F, 0.4F},   {240.0, 0.5F, 0.2F},  {246.0, 0.6F, -0.3F}, {252.0, 1.0F, 0.4F},
        {252.0, 1.0F, -0.4F},  {258.0, 0.6F, 0.3F},  {264.0, 1.0F, -0.4F}, {264.0, 1.0F, 0.4F},
        {267.0, 0.5F, -0.2F},  {270.0, 0.8F, 0.2F},  {273.0, 0.6F, -0.2F}, {276.0, 0.9F, 0.4F},
        {276.0, 0.9F, -0.4F},
    });
    const std::array<stereo, 3> kit = {make_crash(0.6F, 11), make_crash(0.5F, 12), make_crash(0.7F, 13)};
    add_hits(out, crashes, kit);
    // Backwards they suck the ear into the turn: each ends where the table says.
    constexpr auto swells = from_show<timed_hit>({
        {156.0, 0.3F, 0.2F},
        {163.0, 0.6F, -0.2F},
        {175.0, 0.4F, 0.1F},
        {204.0, 0.7F, 0.0F},
        {216.0, 0.5F, 0.3F},
        {237.0, 0.7F, 0.0F},
        {252.0, 0.6F, -0.3F},
        {264.0, 0.6F, 0.3F},
        {276.0, 0.6F, 0.0F},
    });
    stereo swell = make_crash(0.45F, 14);
    reverse(swell);
    for (const timed_hit& hit : swells)
        add_hit(out, swell, frame_of(hit.time) - swell.frames(), scaled(panned(hit.pan), hit.gain));
}

void ferrow_booms(stereo& out) {
    constexpr auto booms = from_show<timed_boom>({
        {147.75, 0.7F, 43.65F, 3.0F},
        {156.0, 0.9F, 43.65F, 3.2F},
        {159.0, 0.4F, 34.65F, 2.6F},
        {163.0, 0.7F, 43.65F, 0.5F},
        {175.0, 0.9F, 34.65F, 2.4F},
        {204.5, 1.0F, 43.65F, 0.3F},
        {216.0, 0.5F, 43.65F, 0.9F},
        {230.0, 0.8F, 34.65F, 1.4F},
        {237.0, 0.7F, 43.65F, 0.9F},
        {252.0, 0.7F, 49.0F, 0.9F},
        {264.0, 0.7F, 49.0F, 0.9F},
        {276.0, 1.0F, 49.0F, 0.46F},
    });
    add_booms(out, booms);
}

} // namespace assets::sound
