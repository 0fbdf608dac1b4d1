// The music of the second movement, as the show will hear it.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vorbis/vorbisfile.h>

#include "assets/forms/ogg_writer.h"
#include "assets/music/ferrow.h"
#include "assets/music/filters.h"
#include "tests/support/data_tree.h"
#include "tests/support/loudness.h"
#include "tests/support/sound_levels.h"

namespace {

using namespace assets::sound;
using bytes = std::vector<unsigned char>;

struct decoded_file {
    stereo sound{0};
    long rate = 0;
    int channels = 0;
    long serial = 0;
    std::string title;
};

// Reads a file's bytes as the decoder asks for them.
struct byte_reader {
    const bytes* file;
    std::size_t at = 0;
};
std::size_t read_bytes(void* to, std::size_t size, std::size_t count, void* from) {
    auto& reader = *static_cast<byte_reader*>(from);
    const std::size_t wanted = std::min(size * count, reader.file->size() - reader.at);
    std::memcpy(to, reader.file->data() + reader.at, wanted);
    reader.at += wanted;
    return size == 0 ? 0 : wanted / size;
}

decoded_file decode(const bytes& file) {
    decoded_file result;
    byte_reader reader{&file};
    OggVorbis_File ogg{};
    const ov_callbacks calls{read_bytes, nullptr, nullptr, nullptr};
    if (ov_open_callbacks(&reader, &ogg, nullptr, 0, calls) != 0) return result;
    const vorbis_info* info = ov_info(&ogg, -1);
    result.rate = info->rate;
    result.channels = info->channels;
    result.serial = ov_serialnumber(&ogg, -1);
    vorbis_comment* comment = ov_comment(&ogg, -1);
    if (const char* title = vorbis_comment_query(comment, "TITLE", 0)) result.title = title;
    float** sides = nullptr;
    int stream = 0;
    for (long got = 0; (got = ov_read_float(&ogg, &sides, 4096, &stream)) > 0;) {
        result.sound.left.insert(result.sound.left.end(), sides[0], sides[0] + got);
        result.sound.right.insert(result.sound.right.end(), sides[1], sides[1] + got);
    }
    ov_clear(&ogg);
    return result;
}

TEST(Ogg, ComesBackInLengthPlaceAndPitch) {
    stereo sound = tone(1000, 0.7, 0.5F, 0.25F);
    std::fill(sound.left.begin(), sound.left.begin() + 8000, 0.0F);
    const bytes file = ogg_file(sound, "a title", 1234);
    const decoded_file back = decode(file);
    EXPECT_EQ(back.rate, 44100);
    EXPECT_EQ(back.serial, 1234);
    EXPECT_EQ(back.title, "a title");
    ASSERT_EQ(back.channels, 2);
    ASSERT_EQ(back.sound.frames(), sound.frames());
    double error = 0;
    for (std::size_t i = 10000; i < 28000; ++i) {
        error = std::max(error, static_cast<double>(std::fabs(back.sound.left[i] - sound.left[i])));
        error = std::max(error, static_cast<double>(std::fabs(back.sound.right[i] - sound.right[i])));
    }
    EXPECT_LT(error, 0.02);
    EXPECT_EQ(ogg_file(sound, "a title", 1234), file);
    EXPECT_EQ(decode(ogg_file(stereo(1), "", 0)).sound.frames(), 1);
    EXPECT_EQ(decode(ogg_file(stereo(0), "", 0)).sound.frames(), 0);
}

// The measure itself: a sine of 997 Hz at full scale on one side is told to be -3.01 LUFS.
TEST(Loudness, IsThatOfTheReferenceTone) {
    EXPECT_NEAR(loudness(tone(997, 3, 1, 0)), -3.01, 0.02);
    EXPECT_NEAR(loudness(tone(997, 3, 0.1F, 0.1F)), -20.0, 0.02);
    stereo rests = tone(997, 4, 0.1F, 0.1F); // silence doesn't count
    rests.left.resize(rests.left.size() * 2);
    rests.right.resize(rests.left.size());
    EXPECT_NEAR(loudness(rests), -20.2, 0.2);
    EXPECT_NEAR(true_peak(tone(11025, 0.1, 0.5F, 0)), -6.02, 0.1);
}

class Ferrow : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        go_to_data_tree();
        std::ifstream file("data/music/ferrow_amoeba2_test2.ogg", std::ios::binary);
        track = decode({std::istreambuf_iterator<char>(file), {}});
    }
    // Of the whole between two times of the show.
    static double level(double from, double to) {
        return decibels(power(track.sound, from - start, to - start));
    }
    static constexpr double start = 147.69; // of the show, when the track begins
    static inline decoded_file track;
};

TEST_F(Ferrow, LastsBeyondTheShowAndEndsWithIt) {
    EXPECT_EQ(track.rate, 44100);
    EXPECT_EQ(track.channels, 2);
    EXPECT_EQ(track.sound.frames(), 129 * 44100);
    EXPECT_GT(level(276.0, 276.2), -20);
    EXPECT_GT(level(276.3, 276.4), -35);
    EXPECT_LT(level(276.47, 276.69), -75);
}

TEST_F(Ferrow, IsAsLoudAsTheFirstTrackAndNeverClips) {
    EXPECT_NEAR(loudness(track.sound), -14.0, 0.5);
    EXPECT_LT(true_peak(track.sound), -1.0);
    double left = 0;
    double right = 0;
    for (std::size_t i = 0; i < track.sound.left.size(); ++i) {
        left += static_cast<double>(track.sound.left[i]);
        right += static_cast<double>(track.sound.right[i]);
    }
    EXPECT_LT(std::fabs(left / track.sound.frames()), 0.001);
    EXPECT_LT(std::fabs(right / track.sound.frames()), 0.001);
}

// The beats that a listener hears: the strongest rise of the wave's steps in each window of 160 ms around a
// cut of the picture.
TEST_F(Ferrow, BeatsFallOnTheCutsOfThePicture) {
    constexpr std::size_t hop = 110; // 2.5 ms
    constexpr double hop_seconds = hop / 44100.0;
    const auto& left = track.sound.left;
    const auto& right = track.sound.right;
    std::vector<double> logs(left.size() / hop, 0.0);
    for (std::size_t i = 1; i < logs.size() * hop; ++i) {
        const auto l = static_cast<double>(left[i] - left[i - 1]);
        const auto r = static_cast<double>(right[i] - right[i - 1]);
        logs[i / hop] += l * l + r * r;
    }
    for (double& value : logs)
        value = std::log(value + 1e-6);
    const auto rise = [&](std::size_t at) {
        return logs[at] - 0.25 * (logs[at - 1] + logs[at - 2] + logs[at - 3] + logs[at - 4]);
    };
    std::vector<double> distances;
    int on_time = 0;
    for (int beat = 546; beat <= 736; ++beat) { // 204.75 to 276
        const double cut_time = beat * 0.375;
        const auto first = static_cast<std::size_t>((cut_time - 0.08 - start) / hop_seconds);
        std::size_t best = first;
        for (std::size_t at = first; at < first + static_cast<std::size_t>(0.16 / hop_seconds); ++at)
            if (rise(at) > rise(best)) best = at;
        distances.push_back(static_cast<double>(best) * hop_seconds + start - cut_time);
        if (std::fabs(distances.back()) < 0.008) ++on_time;
    }
    EXPECT_GE(on_time, 172) << "of " << distances.size();
    std::nth_element(distances.begin(), distances.begin() + 95, distances.end());
    EXPECT_NEAR(distances[95], 0.0, 0.002);
}

TEST_F(Ferrow, AccentsFallOnThePicturesTimes) {
    constexpr double window = 0.03;
    for (const double time : {148.5, 156.0, 163.0, 163.5, 175.0, 195.0, 204.5, 204.75, 216.0, 235.0, 237.0,
                              252.0, 264.0, 276.0}) {
        const double rise = level(time, time + window) - level(time - window - 0.004, time - 0.004);
        EXPECT_GT(rise, 3.5) << "at " << time;
    }
}

TEST_F(Ferrow, SectionsHaveTheShapeOfTheMovement) {
    const double slow = level(148, 156);
    const double alone = level(156, 162);
    const double broken = level(163.5, 174.5);
    const double clip = level(177, 195);
    const double bare = level(204.5, 216);
    const double full = level(216, 228);
    const double greetings = level(231, 235);
    const double smeared = level(240, 252);
    const double lifted = level(252, 264);
    const double whole = level(264, 276);
    EXPECT_LT(slow + 4, clip);
    EXPECT_LT(alone + 4, clip);
    EXPECT_LT(clip + 0.5, broken);
    EXPECT_LT(level(195, 198) + 2, level(201, 204)); // all climbs
    EXPECT_LT(level(204.05, 204.48), bare - 25);     // black
    EXPECT_LT(bare, full);
    EXPECT_LT(greetings + 0.5, full);
    EXPECT_LT(full, smeared);
    EXPECT_LT(smeared, lifted);
    EXPECT_LT(lifted + 0.5, whole);
}

TEST_F(Ferrow, TheBassIsThereThroughoutAndTheSameOnBothSides) {
    stereo low = track.sound;
    for (std::vector<float>* side : {&low.left, &low.right}) {
        for (int pass = 0; pass < 2; ++pass) {
            state_variable filter;
            filter.set(90, 0.7F);
            for (float& sample : *side)
                sample = filter.low_pass(sample);
        }
    }
    stereo apart = low;
    for (std::size_t i = 0; i < low.left.size(); ++i)
        apart.left[i] = apart.right[i] = 0.5F * (low.left[i] - low.right[i]);
    for (const double from : {148.5, 163.5, 177.0, 195.0, 204.5, 216.0, 228.0, 237.0, 252.0, 264.0}) {
        const double of_bass = decibels(power(low, from - start, from - start + 9));
        EXPECT_GT(of_bass, level(from, from + 9) - 9) << from;
        EXPECT_LT(decibels(power(apart, from - start, from - start + 9)), of_bass - 9) << from;
    }
}

TEST(FerrowSound, IsMadeAlikeWhateverItsLength) {
    const stereo brief = ferrow_sound(1.0);
    const stereo longer = ferrow_sound(1.5);
    ASSERT_EQ(brief.frames(), 44100);
    for (std::size_t i = 0; i < 43000; ++i) { // the limiter looks 4 ms ahead
        ASSERT_EQ(brief.left[i], longer.left[i]) << i;
        ASSERT_EQ(brief.right[i], longer.right[i]) << i;
    }
    EXPECT_EQ(ferrow_sound(-1).frames(), 0);
    EXPECT_GT(ferrow_stem_names().size(), 10U);
}

} // namespace
