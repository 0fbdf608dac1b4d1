// The recorder: its pictures, its command line, its failures.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "driver/frame_clock.h"
#include "media/image_png.h"
#include "tests/support/captured_output.h"
#include "tests/support/data_tree.h"
#include "tests/support/temp_file.h"
#include "tools/off_screen_show.h"
#include "tools/picture_file.h"
#include "tools/record_options.h"

namespace {

using words = std::vector<std::uint32_t>;

words picture_of(off_screen_show& recorded, std::int64_t frame) {
    recorded.draw_up_to(frame);
    const gtex picture = recorded.picture();
    return {picture.pixels, picture.pixels + picture.count};
}

words picture_in(const std::string& path) {
    const captured_output quiet;
    gtex picture = gtex_load_png(path);
    words pixels(picture.pixels, picture.pixels + picture.count);
    gtex_destroy(picture);
    return pixels;
}

words colours_only(words pixels) {
    for (std::uint32_t& pixel : pixels)
        pixel &= 0xffffff;
    return pixels;
}

// What the recorder prints goes to a file in `folder`; returns its exit code.
int record(const std::string& arguments, const temp_folder& folder) {
    const auto quoted = [](const std::string& path) { return "'" + path + "'"; };
    const std::string command = quoted(std::string(MORVANE_TEST_TOOLS) + "/morvane-record") + " " +
                                arguments + " >" + quoted(folder.path("out")) + " 2>" +
                                quoted(folder.path("err"));
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string text_in(const temp_folder& folder, const char* name) {
    const std::vector<std::uint8_t> bytes = folder.read(name);
    return {bytes.begin(), bytes.end()};
}

} // namespace

TEST(recorder, two_shows_draw_the_same_frames_and_each_frame_has_its_exact_time) {
    go_to_data_tree();
    words first[2];
    for (words& picture : first) {
        captured_output quiet;
        off_screen_show recorded(60);
        picture = picture_of(recorded, recorded.frame_at(3.0));
        EXPECT_EQ(recorded.frame_at(3.0), 180);
        EXPECT_EQ(recorded.frame_at(7.8), 468); // 7.8 * 60 is a little less in binary
        EXPECT_EQ(recorded.frame_at(7.79999), 467);
        EXPECT_EQ(picture_of(recorded, 100), picture); // an earlier frame is past

        EXPECT_EQ(show_time, 3.0F);
    }
    EXPECT_EQ(first[0], first[1]);
    EXPECT_TRUE(std::all_of(first[0].begin(), first[0].begin() + 49 * 512, [](auto p) { return p == 0; }));
    EXPECT_TRUE(std::all_of(first[0].end() - 49 * 512, first[0].end(), [](auto p) { return p == 0; }));
    EXPECT_GT(std::count_if(first[0].begin(), first[0].end(), [](auto p) { return p != 0; }), 100000);
}

TEST(recorder, a_still_is_the_console_picture_without_its_top_bytes) {
    go_to_data_tree();
    const temp_folder folder;
    const std::string late = folder.path("late.png"), early = folder.path("early.png");
    ASSERT_EQ(record("--still 5 '" + late + "' --still 0.5 '" + early + "'", folder), 0)
        << text_in(folder, "err");
    captured_output quiet;
    off_screen_show recorded(60);
    EXPECT_EQ(picture_in(early), colours_only(picture_of(recorded, 30))); // in the order of their times
    EXPECT_EQ(picture_in(late), colours_only(picture_of(recorded, 300)));
}

TEST(recorder, wrong_words_end_with_2_and_one_line) {
    const temp_folder folder;
    for (const char* arguments :
         {"", "--still", "--still 3", "--still x a.png", "--still -1 a.png", "--still nan a.png",
          "--still 147.49 a.png", "--still 1e999 a.png", "--still 3s a.png", "--film", "a.png"}) {
        EXPECT_EQ(record(arguments, folder), 2) << arguments;
        const std::string said = text_in(folder, "err");
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_EQ(text_in(folder, "out"), "");
    }
    EXPECT_EQ(record("--help", folder), 0);
    EXPECT_NE(text_in(folder, "out").find("--still SECONDS FILE.png"), std::string::npos);
    EXPECT_EQ(record("--version", folder), 0);
}

TEST(recorder, an_unwritable_picture_ends_with_1_and_leaves_nothing) {
    go_to_data_tree();
    const temp_folder folder;
    const std::string path = folder.path("missing folder/a.png");
    EXPECT_EQ(record("--still 0 '" + path + "'", folder), 1);
    EXPECT_NE(text_in(folder, "err").find(path + ": No such file or directory"), std::string::npos);

    std::filesystem::create_directory(folder.path("taken.png")); // a folder is in the place of the file
    EXPECT_EQ(record("--still 0 '" + folder.path("taken.png") + "'", folder), 1);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_EQ(entry.path().string().find(".part"), std::string::npos) << entry.path();
}

TEST(recorder, without_its_data_it_says_what_is_missing) {
    const temp_folder folder;
    std::filesystem::current_path(MORVANE_TEST_TREE);
    std::filesystem::copy("data", folder.path("data"), std::filesystem::copy_options::recursive);
    std::filesystem::current_path(folder.path());
    std::filesystem::remove("data/gfx/sprites/light.tga"); // whose reader would end the process with 0
    EXPECT_EQ(record("--still 0 a.png", folder), 1);
    EXPECT_FALSE(std::filesystem::exists("a.png"));
    std::filesystem::remove("data/part1/morvane.png");
    EXPECT_EQ(record("--still 0 a.png", folder), 1);
    EXPECT_NE(text_in(folder, "err").find("data/part1/morvane.png is missing"), std::string::npos);
    go_to_data_tree();
}
