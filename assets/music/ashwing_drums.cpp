// The drums of "Ashwing".
#include <algorithm>
#include <cstddef>

#include "assets/music/ashwing.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

constexpr auto kick_book = std::to_array<bar_text>({
    {'a', "9...9...9...9..."},
    {'b', "9...9...9...9.6."},
    {'c', "9..6..9...6.9..."},
    {'d', "9.....9.....4..."},
    {'h', "9..7......9..6.."},
    {'e', "9...9...9.8.9.8."},
    {'f', "9...9...9......."},
    {'g', "9..............."},
    {'i', "....9.......9.6."},
    {'j', "9.....9.....6.6."},
    {'k', "9.9.9.99........"},
    {'n', "9.....9........."},
    {'o', "......9...9...6."},
    {'l', "9...9..69...9.69"},
});
constexpr auto kick_rows = std::to_array<bar_row>({
    {meteor, "aabaaabf"},
    {name, "aabaaabf"},
    {flashes, "..iaibaf"},
    {shaking, "dhondhcj"},
    {rising, "g.gdaaek"},
    {drop, "abaabaal"},
    {cube, "cacbcacf"},
    {turning, "dhdjaabf"},
    {height, "abalbdhg"},
});

constexpr auto snare_book = std::to_array<bar_text>({
    {'a', "....9.......9..."},
    {'b', "....9..3....9..4"},
    {'c', "....9.......9.57"},
    {'d', "........9......."},
    {'e', "........9..4.3.."},
    {'f', "....9...7..79.99"},
    {'h', "....9..7..8..3.9"},
    {'r', "3.3.4.4.4.5.5.5."},
    {'s', "4444555556666777"},
    {'t', "788888888......."},
    {'m', "..3....9..3..4.."},
    {'w', "..3....9..3....."},
    {'y', "....9..5.78....."},
    {'x', "....9......9..3."},
});
constexpr auto snare_rows = std::to_array<bar_row>({
    {meteor, "....aaaf"},
    {name, "aabaabac"},
    {flashes, "...a.bcf"},
    {shaking, "dexwdehx"},
    {rising, "....ddrs"},
    {drop, "babcbabf"},
    {cube, "xabxaxby"},
    {turning, "....debf"},
    {height, "babcb.d."},
});

constexpr auto clap_rows = std::to_array<bar_row>({
    {name, "....aaac"},
    {drop, "aaaaaaac"},
    {cube, "....aaa."},
    {height, "aaaaa..."},
    {turning, "....aaa."},
});

constexpr auto hat_book = std::to_array<bar_text>({
    {'a', "..7...7...7...7."},
    {'b', "4.7.4.7.4.7.4.73"},
    {'c', "5375537553755376"},
    {'d', "6..5..6..5..6.5."},
    {'e', "5.35.37.5.35.373"},
    {'g', "5.5.555.5.555533"},
    {'f', "6.6.6.6.66669999"},
    {'q', "......7......7.."},
});
constexpr auto hat_rows = std::to_array<bar_row>({
    {meteor, "aabbbebc"},
    {name, "ebececbc"},
    {flashes, "...d.ebc"},
    {shaking, "qdgdqgde"},
    {rising, "..qqbbcf"},
    {drop, "cecccecc"},
    {cube, "dededede"},
    {turning, "..qqebec"},
    {height, "cecceddq"},
});
constexpr auto open_rows = std::to_array<bar_row>({
    {name, "....aaaa"},
    {drop, "aaaaaaaa"},
    {height, "aaaaa..."},
    {turning, "....aaa."},
    {cube, "...a..aa"},
});

constexpr auto shaker_book = std::to_array<bar_text>({
    {'a', "3264326432643265"},
    {'b', "3.6.3.6433643.65"},
});
constexpr auto shaker_rows = std::to_array<bar_row>({
    {meteor, "..babaab"},
    {name, "abaabaab"},
    {drop, "abaabaab"},
    {rising, "bbabaab."},
    {turning, "babababa"},
    {height, "abaababb"},
    {cube, "bb.bbb.a"},
});

// Struck wires: left and right, three against four.
constexpr auto wire_book = std::to_array<bar_text>({
    {'a', "7..5..7.....5..3"},
    {'b', "..6..4..6..4..65"},
    {'c', "7.7...5...77...."},
    {'d', "....8.......8.4."},
});
constexpr auto wire_rows = std::to_array<bar_row>({
    {meteor, "..a.a.ab"},
    {name, "ab.aabab"},
    {shaking, "cabcacbc"},
    {rising, "a.b.abab"},
    {drop, "dadbdadb"},
    {cube, "abcbabca"},
    {turning, "a.b.abab"},
    {height, "dadba.b."},
});

constexpr auto tom_book = std::to_array<bar_text>({
    {'a', "............8.68"},
    {'b', "........8..8..87"},
    {'c', "8..7..8.8.787878"},
    {'d', "8..............."},
    {'e', "......7...6....."},
    {'f', "......8.8.7....."},
});
constexpr auto tom_rows = std::to_array<bar_row>({
    {meteor, "...a...b"},
    {name, ".......a"},
    {flashes, ".b.....c"},
    {shaking, "e.ebe.ec"},
    {rising, "d.d.e.eb"},
    {drop, "...a...b"},
    {cube, "e.ebe.ef"},
    {turning, "d.e.d..b"},
    {height, "...b...."},
});

std::vector<stroke> strokes(const voice_part& part) {
    return strokes_of(ashwing_form, part);
}

// Plays a part with the strokes of a kit in turn.
void play(stereo& out, const voice_part& part, std::span<const stereo> kit, float gain, float pan,
          std::uint32_t seed) {
    add_strokes(out, strokes(part), kit, gain, pan, seed);
}

// Kicks that follow the picture and not the grid.
std::vector<double> free_kicks() {
    std::vector<double> times(ashwing_flashes.begin(), ashwing_flashes.end());
    times.insert(times.end(), {ashwing_ripples[1], ashwing_ripples[2], ashwing_burst});
    return times;
}

} // namespace

std::vector<int> ashwing_kick_frames() {
    return kick_frames(strokes({kick_book, kick_rows}), free_kicks());
}

void ashwing_kick(stereo& out) {
    const stereo kick = make_kick({});
    for (const stroke& hit : strokes({kick_book, kick_rows}))
        add_hit(out, kick, frame_of(hit.time), scaled({1, 1}, 0.25F + 0.75F * hit.velocity * hit.velocity));
    for (const double time : free_kicks())
        add_hit(out, kick, frame_of(time), {1, 1});
}

void ashwing_snares(stereo& out) {
    const std::array<stereo, 3> snares = {make_snare({}, 1), make_snare({}, 2),
                                          make_snare({.tone = 193.0F, .snap = 0.12F}, 3)};
    play(out, {snare_book, snare_rows}, snares, 1.0F, 0.0F, 41);
    const std::array<stereo, 3> claps = {make_clap(5), make_clap(6), make_clap(7)};
    play(out, {snare_book, clap_rows}, claps, 0.6F, 0.0F, 42);
}

void ashwing_metal(stereo& out) {
    const std::array<stereo, 4> closed = {make_hat(0.032F, 1), make_hat(0.026F, 2), make_hat(0.038F, 3),
                                          make_hat(0.029F, 4)};
    play(out, {hat_book, hat_rows}, closed, 1.0F, 0.18F, 43);
    const std::array<stereo, 2> open = {make_hat(0.11F, 5), make_hat(0.12F, 6)};
    play(out, {hat_book, open_rows}, open, 0.75F, -0.1F, 44);
    const std::array<stereo, 3> shakers = {make_shaker(1), make_shaker(2), make_shaker(3)};
    play(out, {shaker_book, shaker_rows}, shakers, 0.8F, -0.45F, 45);
    const std::array<stereo, 3> wires = {make_wire(1864.7F, 0.05F), make_wire(1396.9F, 0.07F),
                                         make_wire(2093.0F, 0.04F)};
    play(out, {wire_book, wire_rows}, wires, 0.5F, 0.55F, 46);
}

void ashwing_toms(stereo& out) {
    constexpr std::array<float, 4> hertz = {131.0F, 104.0F, 87.3F, 69.3F};
    random_source hand = seeded(47);
    std::array<stereo, 4> toms = {make_tom(hertz[0], 1), make_tom(hertz[1], 2), make_tom(hertz[2], 3),
                                  make_tom(hertz[3], 4)};
    for (const stroke& hit : strokes({tom_book, tom_rows})) {
        // A roll goes down and across from the bar's start to its end.
        const auto which = static_cast<std::size_t>(std::clamp((hit.step - 4) / 3, 0, 3));
        const float pan = 0.6F - 0.4F * static_cast<float>(which);
        add_hit(out, toms[which], played_frame(hit, hand), scaled(panned(pan), hit.velocity));
    }
}

void ashwing_crashes(stereo& out) {
    constexpr auto crashes = std::to_array<timed_hit>({
        {14.2, 0.8F, 0.2F},    {28.5, 0.8F, -0.3F},   {43.08, 1.0F, 0.0F},   {43.93, 0.9F, -0.4F},
        {44.26, 0.9F, 0.4F},   {46.65, 0.75F, 0.0F},  {47.53, 0.6F, -0.4F},  {47.74, 0.6F, 0.4F},
        {50.22, 0.75F, 0.0F},  {51.11, 0.6F, 0.4F},   {51.35, 0.6F, -0.4F},  {57.35, 0.7F, 0.3F},
        {72.0, 0.5F, -0.2F},   {86.04, 1.0F, -0.4F},  {86.04, 1.0F, 0.4F},   {93.19, 0.6F, -0.3F},
        {100.36, 0.9F, 0.1F},  {114.29, 0.8F, -0.2F}, {121.84, 0.6F, 0.3F},  {128.99, 1.0F, 0.4F},
        {128.99, 1.0F, -0.4F}, {136.145, 0.6F, 0.2F}, {137.67, 0.4F, -0.2F},
    });
    const std::array<stereo, 3> kit = {make_crash(0.75F, 1), make_crash(0.6F, 2), make_crash(0.85F, 3)};
    add_hits(out, crashes, kit);
}

void ashwing_booms(stereo& out) {
    constexpr auto booms = std::to_array<timed_boom>({
        {2.0, 0.3F, 43.65F, 2.5F},
        {6.0, 0.35F, 43.65F, 2.5F},
        {13.0, 0.5F, 40.0F, 1.0F},
        {14.2, 0.7F, 43.65F, 1.6F},
        {43.08, 0.8F, 43.65F, 0.55F},
        {43.93, 0.55F, 43.65F, 0.32F},
        {44.26, 0.8F, 43.65F, 2.2F},
        {57.35, 0.9F, 41.2F, 2.6F},
        {61.03, 0.6F, 46.25F, 1.8F},
        {64.41, 0.6F, 43.65F, 1.8F},
        {72.0, 0.6F, 58.27F, 1.8F},
        {86.04, 0.8F, 43.65F, 1.5F},
        {100.36, 0.7F, 43.65F, 1.4F},
        {114.29, 0.9F, 58.27F, 2.2F},
        {128.99, 0.8F, 43.65F, 1.5F},
        {137.67, 0.5F, 43.65F, 2.0F},
        {143.3, 0.45F, 43.65F, 3.6F},
    });
    add_booms(out, booms);
}

} // namespace assets::sound
