// What a film is made of: planes, placed music, progress, the closing movements' clock.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "show/frame_clock.h"
#include "tests/support/captured_output.h"
#include "tests/support/data_tree.h"
#include "tests/support/temp_file.h"
#include "tests/support/wave_file.h"
#include "tools/kit/progress.h"
#include "tools/record/off_screen_show.h"
#include "tools/record/picture_planes.h"
#include "tools/record/sound_track.h"

namespace {

struct planes {
    planes(std::int32_t width, std::int32_t height) : luma_stride(width + 5), chroma_stride(width / 2 + 3) {
        samples[0].assign(static_cast<std::size_t>(luma_stride * height), 7);
        for (std::size_t i : {1U, 2U})
            samples[i].assign(static_cast<std::size_t>(chroma_stride * height / 2), 7);
    }
    picture_planes view() {
        return {.samples = {samples[0].data(), samples[1].data(), samples[2].data()},
                .stride = {luma_stride, chroma_stride, chroma_stride}};
    }
    double luma(std::int32_t x, std::int32_t y) const {
        return samples[0][static_cast<std::size_t>(y * luma_stride + x)];
    }
    double chroma(std::size_t which, std::int32_t x, std::int32_t y) const {
        return samples[which][static_cast<std::size_t>(y * chroma_stride + x)];
    }
    std::int32_t luma_stride, chroma_stride;
    std::array<std::vector<std::uint8_t>, 3> samples;
};

// Y, Cb and Cr of a word by the definition of BT.709.
std::array<double, 3> by_definition(std::uint32_t pixel) {
    const double r = ((pixel >> 16) & 255) / 255.0, g = ((pixel >> 8) & 255) / 255.0,
                 b = (pixel & 255) / 255.0;
    const double y = 0.2126 * r + 0.7152 * g + 0.0722 * b;
    return {16 + 219 * y, 128 + 224 * (b - y) / 1.8556, 128 + 224 * (r - y) / 1.5748};
}

std::vector<std::uint32_t> noise(std::size_t count) {
    std::vector<std::uint32_t> words{0xffffffff, 0,        0xff0000, 0x00ff00,
                                     0x0000ff,   0xffff00, 0x00ffff, 0xff00ff};
    std::uint32_t seed = 1;
    while (words.size() < count)
        words.push_back(seed = seed * 1664525 + 1013904223);
    return words;
}

// A file whose sample i tells i, and what the track gives for it at `from`.
constexpr int rate = 1000, file_samples = 500;
double ramp(int i) {
    return i / 1000.0;
}

std::vector<float> sound_of(const std::vector<placed_track>& tracks, double from, std::size_t samples) {
    sound_track track(tracks, rate, from);
    std::vector<float> left(samples, 9), right(samples, 9);
    for (std::size_t at = 0; at < samples; at += 77) { // in pieces, as encoders ask
        const std::size_t count = std::min<std::size_t>(77, samples - at);
        track.read(std::span(left).subspan(at, count), std::span(right).subspan(at, count));
    }
    EXPECT_EQ(left, right);
    return left;
}

} // namespace

TEST(film_planes, are_the_picture_enlarged_with_hard_edges) {
    constexpr std::int32_t width = 8, height = 6;
    std::vector<std::uint32_t> pixels = noise(width * height);
    for (const std::int32_t scale : {1, 2, 3, 4}) {
        planes made(width * scale, height * scale);
        plane_maker(width, height, scale).convert(gtex_wrap(pixels.data(), width, height), made.view());
        const auto of = [&](std::int32_t x, std::int32_t y) {
            return by_definition(pixels[static_cast<std::size_t>(y / scale * width + x / scale)]);
        };
        for (std::int32_t y = 0; y < height * scale; ++y)
            for (std::int32_t x = 0; x < width * scale; ++x)
                ASSERT_NEAR(made.luma(x, y), of(x, y)[0], 0.51) << scale << ": " << x << ", " << y;
        for (std::int32_t y = 0; y < height * scale; y += 2)
            for (std::int32_t x = 0; x < width * scale; x += 2)
                for (const std::size_t which : {1U, 2U}) {
                    const double mean = (of(x, y)[which] + of(x + 1, y)[which] + of(x, y + 1)[which] +
                                         of(x + 1, y + 1)[which]) /
                                        4;
                    ASSERT_NEAR(made.chroma(which, x / 2, y / 2), mean, scale % 2 == 0 ? 0.51 : 1.01)
                        << scale;
                }
        for (std::int32_t y = 0; y < height * scale; ++y) // what lies between the rows isn't touched
            ASSERT_EQ(made.luma(width * scale, y), 7);
    }
}

TEST(film_sound, plays_each_track_at_its_place_round_and_round) {
    const temp_folder folder;
    const std::string file = write_wave(folder, "ramp.wav", rate, file_samples, ramp);
    const std::string flat = write_wave(folder, "flat.wav", rate, file_samples, [](int) { return -0.5; });
    const std::vector<placed_track> tracks{{.path = file, .start = 1, .end = 1.8},
                                           {.path = flat, .start = 2, .end = 2.1}};
    for (const double from : {0.0, 0.9, 1.0, 1.25, 1.7, 2.05}) {
        const std::vector<float> sound = sound_of(tracks, from, 1600);
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const int at = static_cast<int>(std::lround(from * rate)) + static_cast<int>(i);
            double expected = 0;
            if (at >= 1000 && at < 1800) expected = ramp((at - 1000) % file_samples);
            if (at >= 2000 && at < 2100) expected = -0.5;
            if ((at >= 1800 && at < 1815) || (at >= 2100 && at < 2115)) continue; // it goes out
            ASSERT_NEAR(static_cast<double>(sound[i]), expected, 1e-4) << "from " << from << " at " << at;
        }
        EXPECT_TRUE(sound_track::trouble(tracks, from, from + 1.6).empty());
    }
    // It goes out evenly: no step is much higher than the mean one.
    const std::vector<float> end = sound_of(tracks, 2.099, 20);
    EXPECT_NEAR(static_cast<double>(end[0]), -0.5, 1e-4);
    for (std::size_t i = 1; i < 17; ++i) {
        EXPECT_GE(end[i], end[i - 1]);
        EXPECT_LT(static_cast<double>(end[i] - end[i - 1]), 0.06);
    }
    EXPECT_EQ(end[17], 0);
}

TEST(film_sound, is_resampled_to_what_the_film_takes) {
    const temp_folder folder;
    const std::string tone = write_tone(folder, "tone.wav", 22050, 1.0);
    const std::vector<placed_track> tracks{{.path = tone, .start = 0, .end = 1}};
    sound_track track(tracks, 48000, 0);
    std::vector<float> left(48000), right(48000);
    track.read(left, right);
    EXPECT_LT(tone_offset(left, 48000, 0), 0.0002);

    track_decoder decoder; // all of the second comes out, and no more
    ASSERT_EQ(decoder.open(tone, 48000), "");
    left.resize(96000);
    right.resize(96000);
    EXPECT_NEAR(static_cast<double>(decoder.read(left, right)), 48000, 1);
}

TEST(film_sound, is_silent_where_a_track_can_not_be_read) {
    const temp_folder folder;
    const std::string noise_file =
        folder.write("noise.mp3", "this is no music, however long one listens to it");
    const std::string file = write_wave(folder, "ramp.wav", rate, file_samples, [](int) { return 0.25; });
    const std::vector<placed_track> tracks{{.path = folder.path("none.mp3"), .start = 0, .end = 1},
                                           {.path = noise_file, .start = 1, .end = 2},
                                           {.path = file, .start = 2, .end = 3}};
    const std::vector<float> sound = sound_of(tracks, 0, 2500);
    EXPECT_EQ(sound[500], 0);
    EXPECT_EQ(sound[1500], 0);
    EXPECT_NEAR(static_cast<double>(sound[2400]), 0.25, 1e-4);

    const std::vector<std::string> lines = sound_track::trouble(tracks, 0, 3);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], folder.path("none.mp3") + ": No such file or directory");
    EXPECT_TRUE(lines[1].starts_with(noise_file));
    EXPECT_EQ(sound_track::trouble(tracks, 1.5, 3).size(), 1U);
    EXPECT_TRUE(sound_track::trouble(tracks, 2, 3).empty());
}

TEST(film_progress, tells_share_speed_and_time_left) {
    EXPECT_EQ(progress_text("filming", 300, 1200, 2.5), "filming  25%, 120 frames a second, 0:08 left");
    EXPECT_EQ(progress_text("filming", 10, 16588, 1), "filming   0%, 10 frames a second, 27:38 left");
    EXPECT_EQ(progress_text("drawing", 1200, 1200, 1), "drawing 100%, 1200 frames a second");
    EXPECT_EQ(progress_text("drawing", 0, 1200, 0), "drawing   0%, 0 frames a second");
}

TEST(film_of_a_closing_movement, stands_at_the_end_of_the_show) {
    go_to_data_tree();
    captured_output quiet;
    const auto end = static_cast<float>(off_screen_show::length());
    for (const int number : {4, 5}) {
        off_screen_show drawn(1); // a frame a second, for speed
        drawn.enter_closing(number);
        drawn.draw_closing_up_to(0);
        EXPECT_EQ(show_time, end) << number;
        const std::vector<std::uint32_t> first(drawn.picture().pixels,
                                               drawn.picture().pixels + drawn.picture().count);
        drawn.draw_closing_up_to(1);
        EXPECT_EQ(show_time, static_cast<float>(off_screen_show::length() + 1)) << number;
        const std::vector<std::uint32_t> second(drawn.picture().pixels,
                                                drawn.picture().pixels + drawn.picture().count);
        EXPECT_EQ(first == second, number == 5) << "movement 5 stands still, " << number;
    }
}
