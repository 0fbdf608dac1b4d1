// The recorder: its pictures, its command line, its failures.
#include <gtest/gtest.h>

#include <xxhash.h>

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <vector>

#include "morvane/media/image_png.h"
#include "show/frame_clock.h"
#include "tests/support/captured_output.h"
#include "tests/support/data_tree.h"
#include "tests/support/recorder.h"
#include "tests/support/temp_file.h"
#include "tools/record/contact_sheet.h"
#include "tools/record/off_screen_show.h"
#include "tools/record/picture_file.h"
#include "tools/record/record_options.h"

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

std::string hash_of(const words& pixels) {
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t pixel : pixels)
        for (const int shift : {0, 8, 16, 24})
            bytes.push_back(static_cast<std::uint8_t>(pixel >> shift));
    std::ostringstream text;
    text << std::hex << std::setw(16) << std::setfill('0') << XXH3_64bits(bytes.data(), bytes.size());
    return text.str();
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

TEST(recorder, a_still_is_the_console_picture_without_its_top_bytes_beside_a_sheet) {
    go_to_data_tree();
    const temp_folder folder;
    const std::string late = folder.path("late.png"), early = folder.path("early.png");
    ASSERT_EQ(run_recorder("--still 5 '" + late + "' --still 0.5 '" + early + "' --from 0.5 --to 1.5" +
                               " --every 0.25 --columns 3 --sheet '" + folder.path("sheet.png") + "'",
                           folder),
              0)
        << text_in(folder, "err");
    captured_output quiet;
    gtex sheet = gtex_load_png(folder.path("sheet.png"));
    EXPECT_EQ(std::pair(sheet.width / 192, sheet.height / 108), std::pair(3, 2));
    gtex_destroy(sheet);
    off_screen_show recorded(60);
    EXPECT_EQ(picture_in(early), colours_only(picture_of(recorded, 30))); // in the order of their times
    EXPECT_EQ(picture_in(late), colours_only(picture_of(recorded, 300)));
}

// The hash is taken here of bytes that are laid out one by one.
TEST(recorder, hashes_tell_whether_and_where_anything_differs) {
    go_to_data_tree();
    const temp_folder folder;
    const std::string path = folder.path("hashes"), other = folder.path("other");
    ASSERT_EQ(run_recorder("--to 1.5 --hashes " + path, folder), 0) << text_in(folder, "err");
    const std::string lines = text_in(folder, "hashes");
    ASSERT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2 + 90 + 2 + 1);
    {
        captured_output quiet;
        off_screen_show recorded(60);
        const words picture = picture_of(recorded, 75);
        const gtex canvas = recorded.canvas();
        std::string expected = "frame 75 1.250000 ";
        expected += hash_of({canvas.pixels, canvas.pixels + canvas.count});
        expected += std::string(" ") + hash_of(colours_only(picture)) + "\n";
        EXPECT_NE(lines.find(expected), std::string::npos) << expected;
    }
    const auto compare = [&](std::size_t length, std::initializer_list<const char*> changed) {
        std::string text = lines.substr(0, length);
        for (const char* place : changed)
            ++text[text.find(place) + std::string_view(place).size()];
        folder.write("other", {text.begin(), text.end()});
        return run_recorder("--compare " + other, folder);
    };
    EXPECT_EQ(compare(lines.size(), {}), 0) << text_in(folder, "err");
    EXPECT_EQ(compare(lines.size(), {"frame 7 0.116667 ", "frame 8 0.133333 ", "sound 1 "}), 1);
    const std::string said = text_in(folder, "out");
    EXPECT_NE(said.find("2 of 90 frames and 1 of 2 seconds of sound differ"), std::string::npos) << said;
    EXPECT_NE(said.find("the first: part show 0 60 1.5, frame 7 0.116667 s"), std::string::npos) << said;
    EXPECT_EQ(compare(lines.size() - 4, {}), 2); // without its end
    EXPECT_EQ(compare(lines.size() / 2, {}), 2);
    EXPECT_EQ(compare(lines.size(), {"part show 0 6"}), 2); // another rate
    EXPECT_EQ(run_recorder("--compare " + folder.path("none"), folder), 2);
}

TEST(recorder, wrong_words_end_with_2_and_one_line) {
    const temp_folder folder;
    for (const char* arguments : {"", "--still", "--still nan a.png", "a.mp4 --from 5 --to 5"}) {
        EXPECT_EQ(run_recorder(arguments, folder), 2) << arguments;
        const std::string said = text_in(folder, "err");
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_EQ(text_in(folder, "out"), "");
    }
    EXPECT_EQ(run_recorder("--help", folder), 0);
    EXPECT_NE(text_in(folder, "out").find("--still SECONDS FILE.png"), std::string::npos);
    EXPECT_EQ(run_recorder("--version", folder), 0);
}

TEST(recorder, its_words_become_options) {
    constexpr double length = 100;
    const auto read = [](std::vector<const char*> words) { return read_record_options(words, length); };
    const record_options all =
        read({"--from",     "1.5",    "--to",    "100",   "--fps",     "25",      "--scale", "3",
              "--no-sound", "a.webm", "--still", "99.99", "b.png",     "--still", "0",       "c.png",
              "--sheet",    "d.png",  "--every", "0.5",   "--columns", "9"});
    EXPECT_EQ(all.error, "");
    EXPECT_EQ(all.film, "a.webm");
    EXPECT_EQ(all.from, 1.5);
    EXPECT_EQ(all.to, 100.0);
    EXPECT_EQ(all.fps, 25);
    EXPECT_EQ(all.scale, 3);
    EXPECT_FALSE(all.sound);
    ASSERT_EQ(all.stills.size(), 2U);
    EXPECT_EQ(all.stills[0].seconds, 99.99);
    EXPECT_EQ(all.stills[1].path, "c.png");
    EXPECT_EQ(all.sheet, "d.png");
    EXPECT_EQ(all.every, 0.5);
    EXPECT_EQ(all.columns, 9);

    const record_options closing =
        read({"a.mkv", "--movement", "4", "--seconds", "8", "--still", "107", "b.png"});
    EXPECT_EQ(closing.error, "");
    EXPECT_EQ(range_of(closing, length).start, length);
    EXPECT_EQ(range_of(closing, length).end, length + 8);
}

TEST(recorder, words_that_can_not_be_meant_are_an_error) {
    for (const char* line : {"a.mov",
                             ".mp4",
                             "a.mp4 b.mp4",
                             "a.mp4 --quick",
                             "a.mp4 --scale",
                             "a.mp4 --scale 9",
                             "a.mp4 --scale 1.5",
                             "a.mp4 --fps 0",
                             "a.mp4 --fps 241",
                             "a.mp4 --fps 99999999999",
                             "a.mp4 --from 100",
                             "a.mp4 --to 100.01",
                             "a.mp4 --from 9 --to 8",
                             "a.mp4 --from -1",
                             "a.mp4 --movement 2",
                             "a.mp4 --movement 7",
                             "a.mp4 --movement 3 --seconds 0",
                             "a.mp4 --movement 3 --seconds inf",
                             "--movement 3 --still 5 a.png",
                             "a.mp4 --movement 3 --from 3",
                             "a.mp4 --seconds 3",
                             "a.mp4 --every 3",
                             "a.mp4 --columns 3",
                             "--still 1 a.png --scale 3",
                             "--still 1 a.png --no-sound",
                             "--still 1 a.png --from 1",
                             "--still 1 a.png --to 2",
                             "--sheet",
                             "--sheet a.png --every 0",
                             "--sheet a.png --every 0.01",
                             "--sheet a.png --columns 0",
                             "--fps 30",
                             "--hashes a --compare a",
                             "--hashes a --sheet a.png",
                             "--hashes a --metaballs 3 --to 3",
                             "--compare a --fps 30",
                             "--still 1 a.jpg",
                             "--still 1 .png",
                             "--sheet a.mp4"}) {
        std::istringstream split(line);
        const std::vector<std::string> texts{std::istream_iterator<std::string>(split), {}};
        std::vector<const char*> words;
        for (const std::string& text : texts)
            words.push_back(text.c_str());
        EXPECT_NE(read_record_options(words, 100).error, "") << line;
    }
}

TEST(recorder, a_sheet_has_its_pictures_in_rows_with_the_time_under_each) {
    constexpr std::int32_t width = 384, height = 240,
                           bars = 12; // of the 216 rows between the bars 108 are left
    contact_sheet made(2, 3, width, height, bars);
    words source(std::size_t{width} * height);
    const gtex picture = gtex_wrap(source.data(), width, height);
    for (const std::uint32_t colour : {0xff0000U, 0x00ff00U}) {
        gtex_fill(picture, colour);
        made.add(picture, 1.5);
    }
    for (std::int32_t i = 0; i < picture.count; ++i) // stripes, of which every small pixel holds one of each
        source[static_cast<std::size_t>(i)] = i % 2 == 0 ? 0x0000ffU : 0x000001U;
    made.add(picture, 10);
    const gtex sheet = made.sheet();

    struct found {
        std::int32_t count = 0, left = 1 << 20, top = 1 << 20;
    };
    const auto find = [&](std::uint32_t colour) {
        found area;
        for (std::int32_t i = 0; i < sheet.count; ++i)
            if (sheet.pixels[i] == colour) {
                ++area.count;
                area.left = std::min(area.left, i % sheet.width);
                area.top = std::min(area.top, i / sheet.width);
            }
        return area;
    };
    const found red = find(0xff0000), green = find(0x00ff00), grey = find(0x000080);
    for (const found& each : {red, green, grey})
        EXPECT_EQ(each.count, 192 * 108);
    EXPECT_EQ(red.top, green.top);
    EXPECT_GT(green.left, red.left + 191);
    EXPECT_EQ(grey.left, red.left);
    EXPECT_GT(grey.top, red.top + 107);

    // Bright letters, some under each picture and nowhere else; "1.5" twice, "10" once.
    const auto letters_under = [&](const found& area) {
        words cell;
        for (std::int32_t y = area.top + 108; y < std::min(area.top + 108 + 15, sheet.height); ++y)
            for (std::int32_t x = area.left; x < area.left + 192; ++x)
                cell.push_back(sheet.pixels[y * sheet.width + x]);
        return cell;
    };
    EXPECT_EQ(letters_under(red), letters_under(green));
    EXPECT_NE(letters_under(red), letters_under(grey));
    for (const found& each : {red, grey}) {
        const words cell = letters_under(each);
        EXPECT_GT(std::ranges::count_if(cell, [](auto pixel) { return (pixel & 0xff) > 0xc0; }), 10);
    }
}

TEST(recorder, without_its_data_it_says_what_is_missing) {
    const temp_folder folder;
    std::filesystem::current_path(MORVANE_TEST_TREE);
    std::filesystem::copy("data", folder.path("data"), std::filesystem::copy_options::recursive);
    std::filesystem::current_path(folder.path());
    std::filesystem::remove("data/gfx/sprites/light.tga"); // whose reader would end the process with 0
    EXPECT_EQ(run_recorder("--still 0 a.png", folder), 1);
    EXPECT_FALSE(std::filesystem::exists("a.png"));
    std::filesystem::remove("data/part1/morvane.png");
    EXPECT_EQ(run_recorder("--still 0 a.png", folder), 1);
    EXPECT_NE(text_in(folder, "err").find("morvane-record: data/part1/morvane.png: not there"),
              std::string::npos);
    go_to_data_tree();
}
