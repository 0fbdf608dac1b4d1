// What lays and plays the tracks: bars by letters, chords, gates, and the kit's later colours.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "assets/music/effects.h"
#include "assets/music/oscillators.h"
#include "assets/music/playing.h"
#include "tests/support/sound_levels.h"

namespace {

using namespace assets::sound;

// Two sections: a second a bar, then two.
constexpr std::array<double, 3> starts = {0, 8, 24};
constexpr auto chords = std::to_array<chord>({{'A', 33, {57, 60, 64, 67}}, {'D', 38, {57, 62, 65, 69}}});
constexpr std::array<std::string_view, 2> harmony = {"AADD.DA?", "DDDDDDDD"};
constexpr form song{{starts}, chords, harmony};
constexpr auto book = std::to_array<bar_text>({{'a', "0! . - 7"}, {'b', "9..5"}});

TEST(Laying, BarsComeByTheirLetters) {
    constexpr auto rows = std::to_array<bar_row>({{0, "a.x.a..."}, {1, "...b...."}});
    const auto bars = bars_of({book, rows});
    ASSERT_EQ(bars.size(), 3U);
    EXPECT_EQ(bars[1].bar, 4);
    EXPECT_EQ(bars[2].in, 1);
    EXPECT_EQ(bars[2].steps, "9..5");
}

TEST(Laying, NotesStandOnTheRootsOfTheirBars) {
    constexpr auto rows = std::to_array<bar_row>({{0, "a..a...."}});
    const auto notes = notes_over_roots(song, {book, rows});
    ASSERT_EQ(notes.size(), 4U);
    EXPECT_EQ(notes[0].pitch, 33);
    EXPECT_EQ(notes[1].pitch, 40);
    EXPECT_EQ(notes[3].pitch, 45);
    EXPECT_DOUBLE_EQ(notes[3].start, 3 + 3.0 / 16);
    EXPECT_DOUBLE_EQ(notes[3].length, 1.0 / 16);
    constexpr auto lines = std::to_array<line_at>({{1, 2, "C4! - .", 12, 0.5F}});
    const auto sung = notes_of(song, lines);
    ASSERT_EQ(sung.size(), 1U);
    EXPECT_EQ(sung[0].pitch, 72);
    EXPECT_EQ(sung[0].start, 12);
    EXPECT_EQ(sung[0].length, 0.25);
    EXPECT_FLOAT_EQ(sung[0].velocity, 0.5F);
}

TEST(Laying, ChordsThatAreAlikeBecomeOne) {
    const auto spans = song.spans(0, 0, 8);
    ASSERT_EQ(spans.size(), 5U);
    EXPECT_EQ(spans[0].length, 2);
    EXPECT_EQ(spans[1].start, 2);
    EXPECT_EQ(spans[1].harmony->letter, 'D');
    EXPECT_EQ(spans[2].start, 5);             // after the bar without a chord
    EXPECT_EQ(spans[4].harmony->letter, 'A'); // an unknown letter
    EXPECT_EQ(song.spans(1, 2, 3).front().length, 6);
    constexpr auto rows = std::to_array<bar_row>({{0, "a......."}});
    constexpr auto broken = std::to_array<bar_text>({{'a', "0 3 4 9 -1"}});
    const auto notes = broken_chords(song, {broken, rows});
    ASSERT_EQ(notes.size(), 5U);
    EXPECT_EQ(notes[1].pitch, 79);
    EXPECT_EQ(notes[2].pitch, 81);
    EXPECT_EQ(notes[3].pitch, 96);
    EXPECT_EQ(notes[4].pitch, 69); // below the chord there is nothing
}

TEST(Laying, StrokesAreInOrderAndEchoesFollowTheTempo) {
    constexpr auto rows = std::to_array<bar_row>({{1, "b......."}, {0, ".......b"}});
    const auto strokes = strokes_of(song, {book, rows});
    ASSERT_EQ(strokes.size(), 4U);
    EXPECT_EQ(strokes[0].time, 7);
    EXPECT_EQ(strokes[3].time, 8 + 3.0 / 8);
    EXPECT_EQ(strokes[3].step, 3);
    const auto echoes = echo_times(song.tempo, 3);
    EXPECT_FLOAT_EQ(curve_at(echoes, 4), 3.0F / 16);
    EXPECT_FLOAT_EQ(curve_at(echoes, 20), 3.0F / 8);
}

TEST(Playing, GatesOpenInTheirRhythm) {
    constexpr auto rows = std::to_array<bar_row>({{0, ".b......"}});
    stereo sound(4 * sample_rate);
    std::fill(sound.left.begin(), sound.left.end(), 1.0F);
    add_gates(sound, song, {book, rows});
    const auto at = [&](double seconds) { return sound.left[static_cast<std::size_t>(frame_of(seconds))]; };
    EXPECT_EQ(at(0.99), 1);
    EXPECT_EQ(at(1.03), 1);
    EXPECT_EQ(at(1.0 + 0.9 / 16), 0);
    EXPECT_EQ(at(1.1), 0);
    EXPECT_FLOAT_EQ(at(1.0 + 3.4 / 16), 5.0F / 9.0F);
    EXPECT_EQ(at(1.9), 0);
    EXPECT_EQ(at(2.1), 1);
    float step = 0; // no clicks
    for (std::size_t i = 1; i < sound.left.size(); ++i)
        step = std::max(step, std::fabs(sound.left[i] - sound.left[i - 1]));
    EXPECT_LT(step, 0.006F);
}

TEST(Strings, SoundAtTheirPitchAndDieAway) {
    for (const float pitch : {40.0F, 57.0F, 69.0F, 93.0F}) {
        stereo sound(2 * sample_rate);
        add_string(sound, {.start = 0.1, .length = 1.0, .pitch = pitch, .velocity = 0.8F},
                   {.seconds = 3.0F, .shimmer = 0}, 7);
        EXPECT_EQ(power(sound, 0, 0.1), 0);
        EXPECT_GT(decibels(power(sound, 0.1, 0.2)), -35) << pitch;
        EXPECT_LT(decibels(power(sound, 1.0, 1.1)), decibels(power(sound, 0.1, 0.2)) - 6);
        EXPECT_EQ(power(sound, 1.51, 2), 0);
        // The fundamental, by the phase that it gains from one stretch to one a tenth of a second later.
        const double hertz = 440.0 * std::exp2((static_cast<double>(pitch) - 69) / 12);
        const auto phase = [&](int from) {
            double re = 0;
            double im = 0;
            for (int i = 0; i < 8192; ++i) {
                const double weight = 1 - std::cos(2 * pi * i / 8192);
                const double turn = 2 * pi * hertz * (from + i) / sample_rate;
                const auto x = static_cast<double>(sound.left[static_cast<std::size_t>(from + i)]);
                re += weight * x * std::cos(turn);
                im -= weight * x * std::sin(turn);
            }
            return std::atan2(im, re);
        };
        const double gained = std::remainder(phase(10000 + 4410) - phase(10000), 2 * pi);
        const double cents = 1200 * std::log2(1 + gained / (2 * pi * 0.1) / hertz);
        EXPECT_NEAR(cents, 0, 3) << pitch;
    }
}

TEST(Effects, CrushHoldsAndRounds) {
    stereo sound = tone(50, 0.1, 1, 1);
    const stereo before = sound;
    crush(sound, sample_rate / 10.0F, 4);
    for (std::size_t i = 0; i + 30 < sound.left.size(); ++i) {
        const float steps = sound.left[i] * 4;
        ASSERT_EQ(steps, std::round(steps));
        ASSERT_NEAR(sound.left[i], before.left[i], 0.125 + 10 * 2 * pi * 50 / sample_rate);
    }
    int changes = 0;
    for (std::size_t i = 1; i < sound.left.size(); ++i)
        changes += sound.left[i] != sound.left[i - 1] ? 1 : 0;
    EXPECT_GT(changes, 30); // nine levels up and down five times
    EXPECT_LT(changes, 100);
}

TEST(Effects, FeedbackOfTheEchoesGrows) {
    constexpr curve_point delay[] = {{0, 0.1F}};
    constexpr curve_point growth[] = {{0, 0.3F}};
    constexpr curve_point wild[] = {{0, 9.0F}};
    const auto tail = [&](std::span<const curve_point> more) {
        stereo out(sample_rate * 2);
        std::vector<float> send(static_cast<std::size_t>(sample_rate) * 2);
        send[100] = 1;
        ping_pong(out, send, {.delay = delay, .feedback = 0.5F, .growth = more});
        return decibels(power(out, 1.0, 1.1));
    };
    EXPECT_GT(tail(growth), tail({}) + 20);
    EXPECT_LT(tail(wild), -20); // it never sings by itself
}

} // namespace
