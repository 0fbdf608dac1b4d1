// The clip of the show: the mirrored copy, the position by the tick count, failures that go on.
#include "morvane/media/video.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "morvane/platform/time/manual_clock.h"
#include "tests/support/captured_output.h"
#include "tests/support/clip_files.h"
#include "tests/support/environment.h"
#include "tests/support/surfaces.h"
#include "tests/support/temp_file.h"

namespace {

using clip_files::numbered;
using clip_files::picture;

constexpr clip_files::form lossless{.codec = AV_CODEC_ID_FFV1, .pixels = AV_PIX_FMT_BGR0};

// No display, so that message boxes are lines on standard error; the clip closed and forgotten at the end.
class video : public testing::Test {
  protected:
    ~video() override {
        video_close();
        gtex_destroy(surface);
    }

    // A clip whose pictures tell their numbers.
    void open_clip(int width, int height, int frames, int rate = 25) {
        std::vector<picture> pictures;
        for (int i = 0; i < frames; ++i)
            pictures.push_back(numbered(width, height, i));
        ASSERT_TRUE(clip_files::write(folder.path("clip.avi"), pictures, lossless, rate));
        surface = video_open(folder.path("clip.avi").c_str());
        ASSERT_EQ(video_length, frames);
    }

    // What a word of the surface holds when `p` is shown mirrored.
    static std::uint32_t mirrored(const picture& p, int x, int y) {
        const std::uint8_t* rgb = p.at(p.width - 1 - x, y);
        return word_of(0, rgb[0], rgb[1], rgb[2]);
    }

    // The number of the picture on the surface, -1 if it is none of the clip's.
    int shown() const {
        for (int n = 0; n < video_length; ++n) {
            const picture p = numbered(surface.width, surface.height, n);
            bool same = true;
            for (int i = 0; same && i < surface.count; ++i)
                same = surface.pixels[i] == mirrored(p, i % surface.width, i / surface.width);
            if (same) return n;
        }
        return -1;
    }

    static long lines(const std::string& text, const std::string& line) {
        long count = 0;
        for (std::size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1))
            ++count;
        return count;
    }

    no_display display;
    temp_folder folder;
    gtex surface;
};

TEST_F(video, opens_on_a_black_surface_of_the_clips_size) {
    open_clip(36, 22, 7, 30); // 233 ms
    EXPECT_EQ(video_width, 36);
    EXPECT_EQ(video_height, 22);
    EXPECT_EQ(video_ms_per_frame, 33);
    EXPECT_EQ(video_position, 0);
    EXPECT_EQ(surface.width, 36);
    EXPECT_EQ(surface.height, 22);
    EXPECT_TRUE(std::all_of(surface.pixels, surface.pixels + surface.count, [](auto w) { return w == 0; }));
}

// Upright, mirrored, top bytes zero; widths that are no multiple of 4 as well.
TEST_F(video, frames_come_upright_and_mirrored) {
    for (const int width : {1, 7, 64}) {
        open_clip(width, 10, 6);
        for (const int frame : {5, 0, 3}) {
            gtex_fill(surface, 0xdeadbeef);
            video_frame_read(surface, frame);
            const picture p = numbered(width, 10, frame);
            for (int y = 0; y < 10; ++y)
                for (int x = 0; x < width; ++x)
                    ASSERT_EQ(surface.pixels[y * width + x], mirrored(p, x, y)) << x << ", " << y;
        }
        gtex_destroy(surface);
    }
}

// The last pixels of a surface take the first of the bitmap; nothing outside it is touched.
TEST_F(video, surfaces_of_another_size_are_filled_from_their_end) {
    open_clip(16, 10, 3);
    video_frame_read(surface, 2);
    for (const auto& [width, height] : {std::pair{5, 7}, {16, 9}, {20, 12}, {1, 1}}) {
        guarded_surface other(width, height);
        other.fill(0x12345678);
        video_frame_read(other, 2);
        const int both = std::min(width * height, 160);
        for (int k = 0; k < both; ++k)
            ASSERT_EQ(other[width * height - 1 - k], surface.pixels[159 - k]);
        for (int i = 0; i < width * height - both; ++i)
            ASSERT_EQ(other[i], 0x12345678U);
        EXPECT_TRUE(other.intact());
    }
    video_frame_read({}, 2);
}

TEST_F(video, position_follows_the_tick_count) {
    winbase::manual_clock clock(1000); // a tick a millisecond
    clock.set(77);
    open_clip(64, 8, 25); // a second
    video_clock_start();
    EXPECT_EQ(video_last_tick, 77U);
    struct row {
        int ticks;
        std::int32_t elapsed, position;
    };
    const row rows[] = {
        {0, 0, 0},      {95, 95, 2}, {24, 119, 2}, {1, 120, 3}, // whole frames only
        {879, 999, 24}, {1, 0, 0},   {39, 39, 0},  {1, 40, 1},  // at the end from the start again
        {960, 0, 0},                                            // its last frame passed by
        {5000, 0, 0},   {40, 40, 1},                            // whatever the overshoot was
    };
    for (const row& r : rows) {
        clock.advance(r.ticks);
        video_step(surface);
        EXPECT_EQ(video_elapsed_ms, r.elapsed);
        EXPECT_EQ(video_position, r.position);
        EXPECT_EQ(video_last_tick, winbase::GetTickCount());
        EXPECT_EQ(shown(), r.position);
    }
}

TEST_F(video, the_tick_count_may_wrap_and_the_clock_stand_for_weeks) {
    winbase::manual_clock clock(1000);
    open_clip(64, 8, 25);
    clock.set(0xffffffffLL - 49);
    video_clock_start();
    clock.advance(100); // across 2^32
    video_step(surface);
    EXPECT_EQ(video_elapsed_ms, 100);
    EXPECT_EQ(shown(), 2);
    clock.advance(0x90000000LL);
    video_step(surface);
    EXPECT_EQ(video_elapsed_ms, 0);
    EXPECT_EQ(shown(), 0);
}

// More than a thousand frames a second leave no whole millisecond for one.
TEST_F(video, too_fast_a_clip_stands_at_its_start) {
    winbase::manual_clock clock(1000);
    ASSERT_TRUE(
        clip_files::write(folder.path("clip.avi"), {numbered(16, 8, 0), numbered(16, 8, 1)}, lossless));
    std::vector<std::uint8_t> file = folder.read("clip.avi");
    const auto head = std::search(file.begin(), file.end(), "strh", "strh" + 4);
    ASSERT_GT(file.end() - head, 36);
    *(head + 33) = 0x20; // frames a second, the second byte of four
    folder.write("clip.avi", file);
    surface = video_open(folder.path("clip.avi").c_str());
    EXPECT_EQ(video_length, 2);
    EXPECT_EQ(video_ms_per_frame, 0);
    video_clock_start();
    clock.advance(100);
    video_step(surface);
    EXPECT_EQ(video_position, 0);
    EXPECT_EQ(video_elapsed_ms, 0);
    EXPECT_EQ(shown(), 0);
}

// Where the clip can't be opened, or is in a code that nobody knows.
TEST_F(video, a_failure_gives_one_box_and_a_black_frame) {
    winbase::manual_clock clock(1000);
    ASSERT_TRUE(clip_files::write(folder.path("clip.avi"), {numbered(16, 8, 0)}, lossless));
    std::vector<std::uint8_t> file = folder.read("clip.avi");
    for (auto at = file.begin(); (at = std::search(at, file.end(), "FFV1", "FFV1" + 4)) != file.end();)
        std::copy_n("QQ~~", 4, at);
    folder.write("clip.avi", file);
    for (const bool missing : {true, false}) {
        captured_output printed;
        surface = video_open(folder.path(missing ? "none.avi" : "clip.avi").c_str());
        video_clock_start();
        clock.advance(100);
        video_step(surface);
        video_frame_read(surface, 0);
        EXPECT_EQ(surface.width, missing ? 512 : 16);
        EXPECT_EQ(surface.height, missing ? 288 : 8);
        EXPECT_TRUE(
            std::all_of(surface.pixels, surface.pixels + surface.count, [](auto w) { return w == 0; }));
        EXPECT_EQ(video_length, missing ? 0 : 1);
        EXPECT_EQ(video_position, 0);
        video_close();
        gtex_destroy(surface);
        const std::string text = printed.err();
        EXPECT_EQ(lines(text, "Error: Failed to open avi stream\n"), missing ? 1 : 0) << text;
        EXPECT_EQ(lines(text, "Error: Failed to open AVI frame\n"), missing ? 0 : 1) << text;
        EXPECT_EQ(lines(text, "\n"), 1) << text; // the box says it all
    }
}

TEST_F(video, may_be_closed_twice_and_opened_again) {
    open_clip(16, 8, 4);
    video_close();
    video_close();
    EXPECT_EQ(video_stream, nullptr);
    EXPECT_EQ(video_length, 0);
    gtex_fill(surface, 5);
    video_frame_read(surface, 0);
    EXPECT_EQ(surface.pixels[0], 5U);
    gtex_destroy(surface);
    open_clip(20, 8, 3);
    video_frame_read(surface, 2);
    EXPECT_EQ(shown(), 2);
}

} // namespace
