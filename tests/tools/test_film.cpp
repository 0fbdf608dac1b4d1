// Films, read back as a player reads them, and how a film ends that can't become whole.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <thread>

#include "tests/support/captured_output.h"
#include "tests/support/data_tree.h"
#include "tests/support/film_reader.h"
#include "tests/support/recorder.h"
#include "tests/support/wave_file.h"
#include "tools/record/film_writer.h"
#include "tools/record/off_screen_show.h"
#include "tools/record/show_source.h"

namespace {

constexpr std::int32_t width = 96, height = 64;

// Soft colours with a bright square that moves on with every frame.
std::vector<std::uint32_t> drawn_picture(std::int32_t frame) {
    std::vector<std::uint32_t> pixels;
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) {
            const bool inside = x / 8 == frame % 12 && y / 8 == frame / 12;
            const std::int32_t soft = (x * 2) << 16 | (y * 3) << 8 | 60;
            pixels.push_back(static_cast<std::uint32_t>(inside ? 0xf0c020 : soft));
        }
    return pixels;
}

// Mean distance of a channel between the drawn picture and the film's, at the middle of each enlarged pixel.
double distance(std::span<const std::uint32_t> drawn, const std::vector<float>& seen, std::int32_t columns,
                std::int32_t scale) {
    double sum = 0;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        const auto at = static_cast<std::int32_t>(i);
        const std::int32_t x = at % columns * scale + scale / 2, y = at / columns * scale + scale / 2;
        const auto there = static_cast<std::size_t>(y * columns * scale + x) * 3;
        for (std::size_t c = 0; c < 3; ++c) {
            const auto channel = static_cast<double>((drawn[i] >> (16 - 8 * c)) & 255U);
            sum += std::abs(channel - static_cast<double>(seen[there + c]));
        }
    }
    return sum / static_cast<double>(drawn.size() * 3);
}

std::vector<std::uint32_t> colours_of(gtex picture) {
    std::vector<std::uint32_t> pixels(picture.pixels, picture.pixels + picture.count);
    for (std::uint32_t& pixel : pixels)
        pixel &= 0xffffff;
    return pixels;
}

// Starts the recorder on a film that it will not finish, and gives its process.
pid_t start_long_film(const std::string& path, const temp_folder& folder) {
    const pid_t child = fork();
    if (child != 0) return child;
    const std::string program = std::string(MORVANE_TEST_TOOLS) + "/morvane-record";
    if (std::freopen(folder.path("out").c_str(), "w", stdout) == nullptr) _exit(99);
    if (std::freopen(folder.path("err").c_str(), "w", stderr) == nullptr) _exit(99);
    execl(program.c_str(), program.c_str(), path.c_str(), "--scale", "1", "--to", "20", nullptr);
    _exit(99);
}

int exit_code_of(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct kind {
    const char* name;
    const char *video, *audio;
    std::int32_t scale;
};

class film : public testing::TestWithParam<kind> {};

} // namespace

TEST_P(film, holds_every_picture_and_the_sound_in_place) {
    constexpr std::int32_t fps = 25, frames = 60; // 2.4 seconds
    const temp_folder folder;
    const std::string tone = write_tone(folder, "tone.wav", 44100, 3.0);
    const std::array tracks{placed_track{.path = tone, .start = 10.5, .end = 11.5}};
    const std::string path = folder.path(GetParam().name);
    {
        film_writer writer;
        ASSERT_EQ(writer.open({.path = path,
                               .width = width,
                               .height = height,
                               .scale = GetParam().scale,
                               .fps = fps,
                               .from = 10,
                               .tracks = tracks}),
                  "");
        for (std::int32_t i = 0; i < frames; ++i) {
            std::vector<std::uint32_t> pixels = drawn_picture(i);
            ASSERT_EQ(writer.add(gtex_wrap(pixels.data(), width, height)), "");
        }
        ASSERT_EQ(writer.finish(), "");
    }
    const film_content seen = read_film(path);
    EXPECT_EQ(seen.video_codec, GetParam().video);
    EXPECT_EQ(seen.audio_codec, GetParam().audio);
    EXPECT_EQ(seen.width, width * GetParam().scale);
    EXPECT_EQ(seen.height, height * GetParam().scale);
    EXPECT_NEAR(seen.fps, fps, 0.01);
    ASSERT_EQ(seen.pictures.size(), static_cast<std::size_t>(frames));
    for (std::int32_t i = 0; i < frames; ++i) {
        const auto at = static_cast<std::size_t>(i);
        EXPECT_NEAR(seen.times[at], i / static_cast<double>(fps), 0.001);
        EXPECT_LT(distance(drawn_picture(i), seen.pictures[at], width, GetParam().scale), 4) << i;
        EXPECT_GT(distance(drawn_picture((i + 1) % frames), seen.pictures[at], width, GetParam().scale), 1.5)
            << i;
    }
    // Half a second of silence, a second of the tone, silence again; a coded edge is soft.
    EXPECT_LT(seen.level(0, 0.45), 0.002);
    EXPECT_NEAR(seen.level(0.51, 1.49), tone_level, 0.02);
    EXPECT_LT(seen.level(1.56, 2.4), 0.002);
    EXPECT_NEAR(static_cast<double>(seen.sound.size()) / seen.rate, 2.4, 0.06);
    // Some containers round all times to milliseconds, those of the pictures and those of the sound.
    EXPECT_LT(tone_offset(seen.sound, seen.rate, 0.5), 0.001);
}

INSTANTIATE_TEST_SUITE_P(kinds, film,
                         testing::Values(kind{"a.mp4", "h264", "aac", 2}, kind{"a.mkv", "h264", "aac", 1},
                                         kind{"a.webm", "vp9", "opus", 2}, kind{"a.avi", "mpeg4", "mp3", 3}),
                         [](const auto& each) { return std::string(each.param.name + 2); });

TEST(film_of_the_show, holds_the_frames_of_a_display_at_their_times_and_the_music) {
    go_to_data_tree();
    const temp_folder folder;
    const std::string path = folder.path("show.mp4");
    ASSERT_EQ(run_recorder(quoted(path) + " --from 2 --to 4 --fps 10 --scale 1", folder), 0)
        << text_in(folder, "err");
    EXPECT_EQ(files_in(folder), std::vector<std::string>{"show.mp4"});
    const film_content seen = read_film(path);
    ASSERT_EQ(seen.pictures.size(), 20U);
    EXPECT_EQ(seen.width, 512);
    EXPECT_EQ(seen.height, 384);

    captured_output quiet;
    off_screen_show drawn(60);
    double worst = 0, other = 1e9;
    for (std::size_t i = 0; i < seen.pictures.size(); ++i) {
        drawn.draw_up_to(120 + 6 * static_cast<std::int64_t>(i));
        const auto pixels = colours_of(drawn.picture());
        worst = std::max(worst, distance(pixels, seen.pictures[i], 512, 1));
        if (i > 0) other = std::min(other, distance(pixels, seen.pictures[i - 1], 512, 1));
    }
    quiet.stop();
    EXPECT_LT(worst, other / 2) << "the film's own frame is nearer than its neighbour";

    // The film's sound is that of the track from 2 seconds on.
    const film_content track = read_film("data/music/Ashwing1.mp3");
    ASSERT_EQ(track.rate, seen.rate);
    const auto product = [&](std::int64_t lag) {
        double sum = 0;
        for (std::int64_t i = 10000; i < 30000; ++i)
            sum += static_cast<double>(seen.sound[static_cast<std::size_t>(i)]) *
                   static_cast<double>(track.sound[static_cast<std::size_t>(i + 2 * seen.rate + lag)]);
        return sum;
    };
    std::int64_t best = -1200;
    double highest = product(best);
    for (std::int64_t lag = best + 1; lag <= 1200; ++lag)
        if (const double each = product(lag); each > highest) {
            highest = each;
            best = lag;
        }
    EXPECT_NEAR(static_cast<double>(best), 0, 2) << "samples";
    EXPECT_GT(seen.level(0, 2), 0.01);
}

TEST(film_of_the_show, draws_the_frames_between_its_own) {
    go_to_data_tree();
    EXPECT_EQ(drawn_frames_each(60), 1);
    EXPECT_EQ(drawn_frames_each(30), 2);
    EXPECT_EQ(drawn_frames_each(25), 2);
    EXPECT_EQ(drawn_frames_each(1), 60);
    EXPECT_EQ(drawn_frames_each(240), 1);
    captured_output quiet;
    std::vector<std::uint32_t> exact;
    {
        off_screen_show drawn(60);
        drawn.draw_up_to(240);
        exact = colours_of(drawn.picture());
    }
    const frame_source slow = timed_show(2);
    gtex picture;
    for (std::int64_t frame = 0; frame <= frame_at(slow, 4.2); ++frame)
        picture = slow.draw(frame);
    EXPECT_EQ(colours_of(picture), exact);
    EXPECT_EQ(frame_at(slow, 4.5), 9);
    EXPECT_EQ(frame_from(slow, 4.5), 9);
    EXPECT_EQ(frame_from(slow, 4.51), 10);
    EXPECT_EQ(time_of(slow, 9), 4.5);
}

TEST(output, goes_where_its_name_leads_or_is_refused) {
    const temp_folder folder;
    const auto record = [&](const std::string& outputs) {
        return run_recorder(outputs + " --metaballs 1 --seconds 0.5", folder,
                            "cd '" + folder.path("") + "'; timeout 20 ");
    };
    const auto refused = [&](const std::string& outputs, int code, const std::string& line) {
        const std::vector<std::string> before = files_in(folder);
        EXPECT_EQ(record(outputs), code) << outputs;
        EXPECT_EQ(text_in(folder, "err"), "morvane-record: " + line + "\n");
        EXPECT_EQ(files_in(folder), before) << outputs;
    };
    std::filesystem::create_directory(folder.path("folder.mp4"));
    folder.write("there.png", "an older picture");
    std::filesystem::create_symlink("there.png", folder.path("link.png"));
    std::filesystem::create_symlink("folder.mp4/new.png", folder.path("loose.png"));
    for (const char* name : {"pipe.mkv", "pipe.mp4", "pipe.png"})
        ASSERT_EQ(mkfifo(folder.path(name).c_str(), 0600), 0);

    refused("none/a.mp4", 1, "none/a.mp4: No such file or directory");
    refused("folder.mp4", 1, "folder.mp4: Is a directory");
    refused("--still 0 a.png --still 0.4 folder.mp4/../a.png", 2,
            "folder.mp4/../a.png: two outputs can't have one name");
    refused("--still 0 link.png --sheet there.png", 2, "link.png: two outputs can't have one name");
    refused("pipe.mp4", 1,
            "pipe.mp4: this kind of film can't be written to a device or pipe; .mkv and .webm can");

    std::thread reader([&] {
        for (const char* name : {"pipe.mkv", "pipe.png"})
            folder.write(std::string("from ") + name, folder.read(name));
    });
    EXPECT_EQ(record("pipe.mkv"), 0) << text_in(folder, "err");
    EXPECT_EQ(record("--still 0.2 pipe.png --still 0.2 link.png --still 0.2 loose.png"), 0)
        << text_in(folder, "err");
    reader.join();
    for (const char* name : {"pipe.mkv", "pipe.png"})
        EXPECT_TRUE(std::filesystem::is_fifo(folder.path(name))) << name;
    EXPECT_EQ(read_film(folder.path("from pipe.mkv")).pictures.size(), 30U);
    for (const char* name : {"link.png", "loose.png"}) {
        EXPECT_TRUE(std::filesystem::is_symlink(folder.path(name))) << name;
        EXPECT_EQ(folder.read(name), folder.read("from pipe.png")) << name;
    }
    EXPECT_GT(folder.read("from pipe.png").size(), 1000U);
}

TEST(film_that_fails, leaves_what_was_there) {
    for (const char* name : {"a.mp4", "a.mkv", "a.avi"}) {
        const temp_folder folder;
        const std::string path = folder.write(name, "an older film");
        // The limit stands for a full disk: the write that meets it fails.
        EXPECT_EQ(run_recorder(quoted(path) + " --metaballs 9 --seconds 2", folder, "ulimit -f 100; "), 1)
            << name;
        EXPECT_EQ(text_in(folder, "err"), "morvane-record: " + path + ": File too large\n");
        EXPECT_EQ(text_in(folder, name), "an older film");
        EXPECT_EQ(files_in(folder), std::vector<std::string>{name});
    }
}

TEST(film_that_is_stopped, can_be_played_as_far_as_it_goes) {
    go_to_data_tree();
    for (const int signal : {SIGINT, SIGTERM}) {
        const temp_folder folder;
        const std::string path = folder.path("a.mp4");
        const pid_t child = start_long_film(path, folder);
        ASSERT_GT(child, 0);
        while (text_in(folder, "out").find("10%") == std::string::npos &&
               waitpid(child, nullptr, WNOHANG) == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_FALSE(std::filesystem::exists(path)) << "not before it is whole";
        kill(child, signal);
        EXPECT_EQ(exit_code_of(child), 128 + signal) << text_in(folder, "err");
        EXPECT_EQ(files_in(folder), std::vector<std::string>{"a.mp4"});
        EXPECT_NE(text_in(folder, "out").find("cut by the interruption"), std::string::npos);
        const film_content seen = read_film(path);
        EXPECT_GE(seen.pictures.size(), 120U);
        EXPECT_LT(seen.pictures.size(), 1200U);
        EXPECT_NEAR(static_cast<double>(seen.sound.size()) / seen.rate,
                    static_cast<double>(seen.pictures.size()) / 60, 0.05);
    }
}
