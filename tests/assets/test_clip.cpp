// The clip of the data tree, as the show reads it, and the writer that made its file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "assets/forms/avi_writer.h"
#include "morvane/media/video.h"
#include "tests/support/temp_file.h"

namespace {

using words = std::vector<std::uint32_t>;

int channel(std::uint32_t word, int shift) {
    return static_cast<int>(word >> shift & 0xffU);
}
int brightest(std::uint32_t word) {
    return std::max({channel(word, 0), channel(word, 8), channel(word, 16)});
}

double difference(const words& a, const words& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        for (const int shift : {0, 8, 16})
            sum += std::abs(channel(a[i], shift) - channel(b[i], shift));
    return sum / (3.0 * static_cast<double>(a.size()));
}

class made_clip : public testing::Test {
  protected:
    made_clip() : surface(video_open(path.c_str())) {}
    ~made_clip() override {
        video_close();
        gtex_destroy(surface);
    }

    words frame(int number) {
        gtex_fill(surface, 0);
        video_frame_read(surface, number);
        return {surface.pixels, surface.pixels + surface.count};
    }

    const std::string path = std::string(MORVANE_TEST_TREE) + "/data/clip2x.avi";
    gtex surface;
};

TEST_F(made_clip, has_the_size_and_length_that_the_show_is_made_for) {
    EXPECT_GE(video_width, 256);
    EXPECT_GE(video_height, 144);
    EXPECT_EQ(video_width % 4, 0);
    EXPECT_EQ(video_width * 144, video_height * 256);
    const int milliseconds = video_length * video_ms_per_frame;
    EXPECT_GE(milliseconds, 18000);
    EXPECT_LE(milliseconds, 22000);
    EXPECT_EQ(milliseconds % 3000, 0) << "the pulses would leave the beat as the clip starts again";
    EXPECT_LT(std::filesystem::file_size(path), 30000000U);
}

TEST_F(made_clip, loops_without_a_seam_and_never_stands_still) {
    words before = frame(video_length - 1);
    std::vector<double> steps;
    for (int i = 0; i < video_length; ++i) {
        words now = frame(i);
        steps.push_back(difference(before, now));
        before = std::move(now);
    }
    const std::size_t last = steps.size() - 1;
    EXPECT_LE(steps[0], std::max({steps[1], steps[2], steps[last], steps[last - 1]}));
    EXPECT_GT(*std::min_element(steps.begin(), steps.end()), 1.5);
}

// The credits stand in the middle, bright: what is behind them is darker, at every moment and everywhere.
TEST_F(made_clip, leaves_the_credits_readable) {
    for (int i = 0; i < video_length; i += 5) {
        const words picture = frame(i);
        for (int y = 65; y < 205; y += 28) {
            for (int x = 130; x < 400; x += 54) {
                long sum = 0;
                for (int v = y; v < y + 28; ++v)
                    for (int u = x; u < x + 54; ++u)
                        sum += brightest(picture[static_cast<std::size_t>(v * 512 + u)]);
                ASSERT_LT(sum / (28 * 54), 150) << "frame " << i << " at " << x << ", " << y;
            }
        }
        const long all = std::accumulate(picture.begin(), picture.end(), 0L,
                                         [](long sum, std::uint32_t w) { return sum + brightest(w); });
        EXPECT_LT(all / std::ssize(picture), 90) << "frame " << i;
        EXPECT_GT(all / std::ssize(picture), 20) << "frame " << i;
    }
}

TEST(clip_writer, frames_come_back_in_order_and_in_their_colours) {
    constexpr int width = 40;
    constexpr int height = 24;
    const std::vector<std::vector<int>> colours = {
        {255, 0, 0}, {10, 200, 60}, {0, 0, 0}, {250, 250, 255}, {90, 20, 140}};
    std::vector<assets::file_bytes> frames;
    assets::jpeg_encoder encoder(width, height, 2);
    for (const auto& colour : colours) {
        std::vector<std::uint8_t> pixels;
        for (int i = 0; i < width * height; ++i) // the lower half black
            for (const int c : colour)
                pixels.push_back(static_cast<std::uint8_t>(i < width * height / 2 ? c : 0));
        frames.push_back(encoder.encode(pixels));
        ASSERT_FALSE(frames.back().empty());
    }
    const temp_folder folder;
    const std::string path = folder.write("clip.avi", assets::avi_file(width, height, 50, frames));
    gtex surface = video_open(path.c_str());
    EXPECT_EQ(surface.width, width);
    EXPECT_EQ(surface.height, height);
    EXPECT_EQ(video_length, static_cast<int>(colours.size()));
    EXPECT_EQ(video_ms_per_frame, 20);
    for (const int i : {4, 0, 1, 3, 2}) {
        video_frame_read(surface, i);
        for (const int x : {0, width / 2, width - 1}) {
            for (std::size_t c = 0; c < 3; ++c) {
                const int shift = 16 - 8 * static_cast<int>(c);
                EXPECT_NEAR(channel(surface.pixels[x], shift), colours[static_cast<std::size_t>(i)][c], 3);
                EXPECT_NEAR(channel(surface.pixels[(height - 1) * width + x], shift), 0, 3);
            }
        }
    }
    video_close();
    gtex_destroy(surface);
}

} // namespace
