// The kit of the music: time and text, oscillators, filters, effects, dynamics.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "assets/music/ashwing.h"
#include "assets/music/dynamics.h"
#include "assets/music/effects.h"
#include "assets/music/filters.h"
#include "assets/music/oscillators.h"
#include "assets/music/random.h"
#include "tests/support/sound_levels.h"

namespace {

using namespace assets::sound;

// Amplitude of one frequency, by correlation under a raised cosine.
double amplitude_at(const std::vector<float>& samples, double hertz) {
    double re = 0;
    double im = 0;
    const auto count = static_cast<double>(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto place = static_cast<double>(i);
        const double weight = 1.0 - std::cos(2 * pi * place / count);
        re += weight * static_cast<double>(samples[i]) * std::cos(2 * pi * hertz * place / sample_rate);
        im += weight * static_cast<double>(samples[i]) * std::sin(2 * pi * hertz * place / sample_rate);
    }
    return 2.0 * std::hypot(re, im) / count;
}

// --- time and text

TEST(Tempo, SectionsBeginAtTheirTimesAndStepsAreEven) {
    ASSERT_EQ(ashwing_tempo.sections(), 11);
    for (int in = 0; in + 1 < ashwing_tempo.sections(); ++in) {
        const double start = ashwing_starts[static_cast<std::size_t>(in)];
        const double next = ashwing_starts[static_cast<std::size_t>(in + 1)];
        EXPECT_EQ(ashwing_form.time(in, 0, 0), start);
        EXPECT_NEAR(ashwing_form.time(in, 8, 0), next, 1e-9);
        EXPECT_NEAR(ashwing_form.time(in, 3, 5.5), start + (next - start) * 53.5 / 128, 1e-9);
    }
    EXPECT_NEAR(ashwing_tempo.beats_a_minute(drop), 134.08, 0.01); // 32 beats in 14.32 s
    EXPECT_EQ(ashwing_tempo.time(99, 0), ashwing_tempo.time(tail, 0));
}

TEST(Score, ReadsPitchesHoldsRestsAndMarks) {
    const auto notes = read_line("C4 - - | Eb3! . ~F#5, - nonsense - H4 B-9 0 12! -2 Bb4");
    struct row {
        int step, length, pitch;
        float velocity;
        bool slide;
    };
    const std::vector<row> wanted = {
        {0, 3, 60, 0.8F, false},  {3, 1, 51, 1.0F, false},  {5, 2, 78, 0.6F, true},  {11, 1, 0, 0.8F, false},
        {12, 1, 12, 1.0F, false}, {13, 1, -2, 0.8F, false}, {14, 1, 70, 0.8F, false}};
    ASSERT_EQ(notes.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_EQ(notes[i].step, wanted[i].step);
        EXPECT_EQ(notes[i].length, wanted[i].length) << i;
        EXPECT_EQ(notes[i].pitch, wanted[i].pitch);
        EXPECT_EQ(notes[i].velocity, wanted[i].velocity);
        EXPECT_EQ(notes[i].slide, wanted[i].slide);
    }
    EXPECT_EQ(read_chord("F3 Ab3 - C4"), (std::vector<int>{53, 56, 60}));
    const auto hits = read_hits("9..3 | .1");
    ASSERT_EQ(hits.size(), 3U);
    EXPECT_EQ(hits[1].step, 3);
    EXPECT_EQ(hits[2].step, 5);
    EXPECT_FLOAT_EQ(hits[1].velocity, 3.0F / 9.0F);
    EXPECT_TRUE(read_line("").empty());
    EXPECT_TRUE(read_line("~ ! , ~! -").empty());
}

// --- oscillators, filters, envelopes

TEST(Oscillators, SineFollowsTheLibrarysSine) {
    for (int i = -4000; i <= 4000; ++i) {
        const double turns = i * 0.00137;
        EXPECT_NEAR(static_cast<double>(sine(static_cast<float>(turns))), std::sin(2 * pi * turns), 1e-5);
    }
}

TEST(Oscillators, AreInTuneAndFoldLittleBack) {
    constexpr double hertz = 3001;
    const auto dt = static_cast<float>(hertz / sample_rate);
    std::vector<float> smooth_saw(8820);
    std::vector<float> plain_saw(smooth_saw.size());
    std::vector<float> square(smooth_saw.size());
    saw_oscillator saw;
    pulse_oscillator pulse;
    for (std::size_t i = 0; i < smooth_saw.size(); ++i) {
        smooth_saw[i] = saw.step(dt);
        square[i] = pulse.step(dt, 0.5F);
        const double phase = std::fmod(hertz * static_cast<double>(i) / sample_rate, 1.0);
        plain_saw[i] = static_cast<float>(2 * phase - 1);
    }
    EXPECT_NEAR(amplitude_at(smooth_saw, hertz), 2 / pi, 0.03);
    EXPECT_NEAR(amplitude_at(square, hertz), 4 / pi, 0.05);
    const double folded = sample_rate - 12 * hertz; // the twelfth harmonic comes back here
    EXPECT_GT(amplitude_at(plain_saw, folded), 0.04);
    EXPECT_LT(amplitude_at(smooth_saw, folded), 0.004);
    EXPECT_NEAR(increment_of(69) * sample_rate, 440, 0.001);
    EXPECT_NEAR(increment_of(57) * sample_rate, 220, 0.001);
}

TEST(Filters, MeetTheirCurves) {
    const auto gain_of = [](double hertz, auto&& pass) {
        stereo sound = tone(hertz, 0.4, 1, 0);
        for (float& sample : sound.left)
            sample = pass(sample);
        return std::sqrt(2 * 2 * power(sound, 0.2, 0.4));
    };
    for (const double hertz : {250.0, 1000.0, 4000.0}) {
        state_variable low;
        state_variable high;
        low.set(1000, 0.70711F);
        high.set(1000, 0.70711F);
        // The bilinear transform bends the frequency scale; the curve is that of second order on it.
        const double bent = std::tan(pi * hertz / sample_rate) / std::tan(pi * 1000 / sample_rate);
        const double wanted = 1 / std::sqrt(1 + std::pow(bent, 4));
        EXPECT_NEAR(gain_of(hertz, [&](float x) { return low.low_pass(x); }), wanted, 0.01) << hertz;
        EXPECT_NEAR(gain_of(hertz, [&](float x) { return high.high_pass(x); }), wanted * bent * bent, 0.01);
    }
    ladder open;
    open.set(12000, 0.1F);
    ladder shut;
    shut.set(200, 0.1F);
    const double low_gain = gain_of(100, [&](float x) { return open.step(x * 0.1F) * 10; });
    EXPECT_NEAR(low_gain, 1, 0.2);
    EXPECT_LT(gain_of(3200, [&](float x) { return shut.step(x * 0.1F) * 10; }), 0.001); // 24 dB an octave
    ladder wild;
    wild.set(1e9F, 1.1F);
    for (int i = 0; i < 10000; ++i)
        ASSERT_LT(std::fabs(wild.step(i % 7 < 3 ? 100.0F : -100.0F)), 4.0F);
}

TEST(Envelopes, RiseHoldAndEnd) {
    const envelope shape = {.attack = 0.1F, .decay = 0.3F, .sustain = 0.5F, .release = 0.2F};
    EXPECT_FLOAT_EQ(shape.level(0.05F, 1), 0.5F);
    EXPECT_FLOAT_EQ(shape.level(0.1F, 1), 1.0F);
    EXPECT_NEAR(shape.level(0.999F, 1), 0.5F, 0.001F);
    EXPECT_NEAR(shape.level(1.1F, 1), 0.125F, 0.001F); // half way down, squared
    EXPECT_EQ(shape.level(1.2F, 1), 0.0F);
    EXPECT_EQ(shape.level(-1, 1), 0.0F);
    constexpr curve_point line[] = {{1, 2}, {3, 6}};
    EXPECT_EQ(curve_at(line, 0), 2);
    EXPECT_EQ(curve_at(line, 2.5), 5);
    EXPECT_EQ(curve_at(line, 9), 6);
    EXPECT_EQ(curve_at({}, 9), 0);
}

// --- effects and dynamics

TEST(Dynamics, TheLimiterKeepsItsCeilingAndLeavesQuietSoundAlone) {
    random_source noise = seeded(5);
    stereo sound(40000);
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        const float loud = i % 5000 < 300 ? 6.0F : 0.3F;
        sound.left[i] = noise.bipolar() * loud;
        sound.right[i] = noise.bipolar() * 0.3F;
    }
    const stereo before = sound;
    limit(sound, 0.5F, 0.008F);
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        ASSERT_LE(std::fabs(sound.left[i]), 0.5F);
        ASSERT_LE(std::fabs(sound.right[i]), std::fabs(before.right[i]) + 1e-6F);
        // The quiet side shows the gain, which alone must have brought the loud side down.
        if (std::fabs(before.right[i]) < 0.01F) continue;
        ASSERT_LE(std::fabs(before.left[i]) * (sound.right[i] / before.right[i]), 0.501F) << i;
    }
    EXPECT_NEAR(sound.right[4500], before.right[4500], 1e-3F); // far from the bursts

    // A quarter of the rate, sampled beside its crests: the wave is 3 dB higher than its samples.
    stereo between(20000);
    for (std::size_t i = 0; i < between.left.size(); ++i)
        between.left[i] = static_cast<float>(std::sin(pi * 0.5 * static_cast<double>(i) + pi / 4) * 1.2);
    limit(between, 0.5F, 0.02F);
    EXPECT_NEAR(between.left[10000], 0.5 / std::sqrt(2.0), 0.01);
}

TEST(Dynamics, DuckingIsDeepestOnTheKick) {
    const std::vector<int> kicks = {10000};
    const std::vector<float> curve = duck_curve(kicks, 30000, 0.2F);
    EXPECT_EQ(curve[9000], 0);
    EXPECT_EQ(curve[10000], 1);
    EXPECT_NEAR(curve[10000 + 4410], 0.5F, 0.01F);
    EXPECT_EQ(curve[20000], 0);
}

TEST(Effects, EchoesGoFromSideToSide) {
    constexpr curve_point delay[] = {{0, 0.1F}};
    stereo out(30000);
    std::vector<float> send(30000);
    send[100] = 1;
    ping_pong(out, send, {.delay = delay, .feedback = 0.5F});
    const auto strongest = [](const std::vector<float>& side) {
        return std::max_element(side.begin(), side.end(),
                                [](float a, float b) { return std::fabs(a) < std::fabs(b); }) -
               side.begin();
    };
    EXPECT_NEAR(static_cast<double>(strongest(out.left)), 100 + 4410, 2);
    EXPECT_NEAR(static_cast<double>(strongest(out.right)), 100 + 8820, 8);
}

TEST(Effects, TheHallFadesInItsTime) {
    stereo sound(sample_rate * 3);
    sound.left[1000] = 1;
    hall(sound, {.seconds = 2.0F, .before_seconds = 0.05F, .high_hertz = 18000.0F});
    EXPECT_EQ(power(sound, 0, 0.07), 0); // nothing before its first line has come round
    const double fall = decibels(power(sound, 0.5, 0.6)) - decibels(power(sound, 1.5, 1.6));
    EXPECT_NEAR(fall, 30, 5); // a second of two, to -60 dB
    EXPECT_GT(power(sound, 0.5, 0.6), 1e-9);
}

TEST(Effects, CutAndRepeat) {
    stereo sound(8000);
    for (std::size_t i = 0; i < 8000; ++i)
        sound.left[i] = static_cast<float>(i);
    stutter(sound, 1000, 800, 3);
    EXPECT_EQ(sound.left[1400], 1400);
    EXPECT_EQ(sound.left[2200], 1400);
    EXPECT_EQ(sound.left[3800], 1400);
    EXPECT_EQ(sound.left[4200], 4200);
    silence(sound, 5000, 1000);
    EXPECT_EQ(sound.left[5900], 0);
    EXPECT_EQ(sound.left[6000], 6000);
    stutter(sound, 7900, 800, 3); // more than there is
    halt(sound, 7000, 99999);
    stutter(sound, -5, 10, 1);

    stereo wide = tone(40, 1, 1, -1);
    narrow_below(wide, 130);
    EXPECT_LT(decibels(power(wide, 0.5, 1)), -20);
    stereo high = tone(2000, 1, 1, -1);
    narrow_below(high, 130);
    EXPECT_NEAR(decibels(power(high, 0.5, 1)), -3, 0.2);
}

} // namespace
