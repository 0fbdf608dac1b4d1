// The finished music, as the show will hear it.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

#include <gtest/gtest.h>
#include <lame/lame.h>

#include "assets/forms/mp3_writer.h"
#include "assets/music/ashwing.h"
#include "assets/music/filters.h"
#include "tests/support/data_tree.h"
#include "tests/support/loudness.h"
#include "tests/support/sound_levels.h"

namespace {

using namespace assets::sound;

struct decoded_file {
    stereo sound{0};
    int rate = 0;
    int channels = 0;
};

// Decodes a whole MP3 and takes off what the encoder says it has added.
decoded_file decode(std::vector<unsigned char> file) {
    decoded_file result;
    hip_t decoder = hip_decode_init();
    std::vector<short> left(1152 * 64);
    std::vector<short> right(left.size());
    int delay = -1;
    int padding = -1;
    const auto take = [&](int count) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(count, 0)); ++i) {
            result.sound.left.push_back(static_cast<float>(left[i]) / 32768.0F);
            result.sound.right.push_back(static_cast<float>(right[i]) / 32768.0F);
        }
        return count;
    };
    // The decoder keeps what it has not got round to; calls with no bytes fetch it.
    constexpr std::size_t chunk = 1024;
    constexpr int idle_calls = 16;
    for (std::size_t at = 0, idle = 0; at < file.size() || idle < idle_calls;) {
        mp3data_struct head{};
        const std::size_t given = std::min(chunk, file.size() - at);
        int found_delay = -1;
        int found_padding = -1;
        const int got = take(hip_decode1_headersB(decoder, file.data() + at, given, left.data(), right.data(),
                                                  &head, &found_delay, &found_padding));
        at += given;
        idle = given == 0 && got == 0 ? idle + 1 : 0;
        if (got < 0) break;
        if (found_delay >= 0) delay = found_delay;
        if (found_padding >= 0) padding = found_padding;
        if (head.header_parsed == 1) {
            result.rate = head.samplerate;
            result.channels = head.stereo;
        }
    }
    hip_decode_exit(decoder);
    if (delay < 0 || padding < 0) return {};
    constexpr int decoder_delay = 529;
    for (std::vector<float>* side : {&result.sound.left, &result.sound.right}) {
        const auto whole = static_cast<int>(side->size());
        const int skip = std::min(delay + decoder_delay, whole);
        side->erase(side->begin(), side->begin() + skip);
        side->resize(static_cast<std::size_t>(std::max(whole - delay - padding, 0)));
    }
    return result;
}

TEST(Mp3, ComesBackInLengthPlaceAndPitch) {
    stereo sound = tone(1000, 0.7, 0.5F, 0.25F);
    std::fill(sound.left.begin(), sound.left.begin() + 8000, 0.0F);
    const decoded_file back = decode(mp3_file(sound));
    ASSERT_EQ(back.rate, 44100);
    ASSERT_EQ(back.channels, 2);
    ASSERT_EQ(back.sound.frames(), sound.frames());
    double error = 0;
    for (std::size_t i = 10000; i < 28000; ++i) {
        error = std::max(error, static_cast<double>(std::fabs(back.sound.left[i] - sound.left[i])));
        error = std::max(error, static_cast<double>(std::fabs(back.sound.right[i] - sound.right[i])));
    }
    EXPECT_LT(error, 0.02);
}

class Ashwing : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        go_to_data_tree();
        std::ifstream file("data/music/Ashwing1.mp3", std::ios::binary);
        track = decode({std::istreambuf_iterator<char>(file), {}});
    }
    static double level(double from, double to) { return decibels(power(track.sound, from, to)); }
    static inline decoded_file track;
};

TEST_F(Ashwing, LastsAsLongAsItsMovementAndEndsInSilence) {
    EXPECT_EQ(track.rate, 44100);
    EXPECT_EQ(track.channels, 2);
    EXPECT_EQ(track.sound.frames(), frame_of(147.49));
    EXPECT_LT(level(147.4, 147.49), -80);
    EXPECT_GT(level(144.0, 145.0), -30);
    float peak = 0;
    double mean = 0;
    for (std::size_t i = 0; i < track.sound.left.size(); ++i) {
        peak = std::max({peak, std::fabs(track.sound.left[i]), std::fabs(track.sound.right[i])});
        mean += static_cast<double>(track.sound.left[i] + track.sound.right[i]);
    }
    EXPECT_LT(peak, 0.95F);
    EXPECT_GT(peak, 0.5F);
    EXPECT_LT(std::fabs(mean / track.sound.frames()), 0.001);
    EXPECT_NEAR(loudness(track.sound), -14.0, 0.5);
    EXPECT_LT(true_peak(track.sound), -1.0);
}

TEST_F(Ashwing, SectionsRiseAndFallWithTheForm) {
    const auto of = [](section in) {
        const auto at = static_cast<std::size_t>(in);
        return level(ashwing_starts[at], std::min(ashwing_starts[at + 1], 147.0));
    };
    EXPECT_LT(of(opening) + 5, of(drop));
    EXPECT_LT(of(opening), of(meteor));
    EXPECT_LT(of(meteor), of(name));
    EXPECT_LT(of(shaking), of(flashes));
    EXPECT_LT(of(tail), of(height));
    for (const section in : {opening, meteor, name, flashes, shaking, rising, cube, turning, tail})
        EXPECT_LT(of(in), std::min(of(drop), of(height)) - 1) << in;
    EXPECT_LT(level(13.5, 14.0) + 8, level(10, 12));     // the breath before the beat
    EXPECT_LT(level(85.75, 86.0) + 15, level(86.1, 87)); // the empty beat
}

TEST_F(Ashwing, AccentsFallOnThePicturesTimes) {
    std::vector<double> accents(ashwing_flashes.begin(), ashwing_flashes.end());
    accents.insert(accents.end(), ashwing_ripples.begin(), ashwing_ripples.end());
    accents.insert(accents.end(), {14.2, 28.5, 72.0, 86.04, 100.36, ashwing_burst, 128.99});
    constexpr double window = 0.03;
    for (const double time : accents) {
        const double rise = level(time, time + window) - level(time - window - 0.004, time - 0.004);
        EXPECT_GT(rise, 3.5) << "at " << time;
    }
}

TEST_F(Ashwing, TheBassIsTheSameOnBothSides) {
    state_variable middle;
    state_variable apart;
    middle.set(70, 0.7F);
    apart.set(70, 0.7F);
    double together = 0;
    double beside = 0;
    for (std::size_t i = 0; i < track.sound.left.size(); ++i) {
        const auto m = static_cast<double>(middle.low_pass(track.sound.left[i] + track.sound.right[i]));
        const auto s = static_cast<double>(apart.low_pass(track.sound.left[i] - track.sound.right[i]));
        together += m * m;
        beside += s * s;
    }
    EXPECT_LT(decibels(beside / together), -18);
}

TEST(AshwingSound, IsMadeAlikeWhateverItsLength) {
    // The beginning, made by itself, is the beginning of a longer piece (the limiter looks 4 ms ahead).
    const stereo brief = ashwing_sound(1.0);
    const stereo longer = ashwing_sound(1.5);
    ASSERT_EQ(brief.frames(), 44100);
    for (std::size_t i = 0; i < 43000; ++i) {
        ASSERT_EQ(brief.left[i], longer.left[i]) << i;
        ASSERT_EQ(brief.right[i], longer.right[i]) << i;
    }
    EXPECT_EQ(ashwing_sound(-1).frames(), 0);
    EXPECT_GT(ashwing_stem_names().size(), 10U);
}

} // namespace
