// Start-up from the real data tree, and what it says and does when a file is missing.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "driver/data_files.h"
#include "driver/movement1.h"
#include "driver/show.h"
#include "tests/support/allocations.h"
#include "tests/support/captured_output.h"
#include "tests/support/data_tree.h"
#include "tests/support/temp_file.h"

namespace {

bool same_pixels(gtex a, gtex b) {
    return a.count == b.count && std::equal(a.pixels, a.pixels + a.count, b.pixels);
}

std::uint32_t most_top(gtex surface) {
    std::uint32_t most = 0;
    for (std::int32_t i = 0; i < surface.count; ++i)
        most = std::max(most, surface.pixels[i] >> 24);
    return most;
}

void start(show& all) {
    frame_tables_init();
    create_spine(all);
    captured_output quiet;
    start_up(all);
}

// A copy of the tree with one file taken away, as the working directory.
class tree_without {
  public:
    explicit tree_without(const std::string& path) {
        go_to_data_tree();
        std::filesystem::copy("data", folder_.path() / "data", std::filesystem::copy_options::recursive);
        std::filesystem::remove(folder_.path() / path);
        std::filesystem::current_path(folder_.path());
    }
    ~tree_without() { go_to_data_tree(); }

  private:
    temp_folder folder_;
};

void start_anew() {
    show all;
    frame_tables_init();
    create_spine(all);
    start_up(all);
}

} // namespace

TEST(start_up, every_surface_of_the_score_has_its_size_and_first_colour) {
    go_to_data_tree();
    show all;
    start(all);
    EXPECT_EQ(frame_width, 512);
    EXPECT_EQ(frame_height, 288);
    for (const gtex& picture :
         {all.canvas, all.wire_layer, all.wire_trail, all.title_layer, all.title_trail, all.title_fade,
          all.white_frame, all.grey_frame, all.img_morvane, all.img_presents, all.img_lorrim, all.img_greets,
          all.img_cred, all.img_hum, all.img_parental, all.img_cubev, all.img_violence, all.img_velkadame,
          all.img_accident}) {
        EXPECT_EQ(picture.width, 512);
        EXPECT_EQ(picture.height, 288);
    }
    for (const gtex& sprite : {all.spr_light, all.spr_light2, all.spr_light3, all.spr_glow})
        EXPECT_EQ(sprite.count, 32 * 32);
    EXPECT_EQ(all.white_frame.pixels[9], 0xffffffU);
    EXPECT_EQ(all.grey_frame.pixels[147455], 0xc0c0c0U);
    EXPECT_EQ(all.wire_trail.pixels[77], 0U);
    EXPECT_EQ(all.spr_glow.pixels[16 * 32 + 16], 0x115533U);
    EXPECT_TRUE(same_pixels(all.tex_work, all.tex_texture));
    EXPECT_FALSE(same_pixels(all.tex_work, all.tex_intro));
    // The masks stand in the top bytes of their pictures, and nowhere else.
    EXPECT_GT(most_top(all.img_greets), 200U);
    EXPECT_GT(most_top(all.img_accident), 200U);
    EXPECT_EQ(most_top(all.img_parental), 0U);
    EXPECT_EQ(all.plasma_a.size(), 589824U);
    EXPECT_EQ(all.plasma_b[5 * 1024 + 7] > 0, true);
}

TEST(start_up, a_frame_allocates_nothing) {
    go_to_data_tree();
    show all;
    start(all);
    const long before_probe = allocations_so_far();
    gtex probe = gtex_create(1, 1, 0);
    gtex_destroy(probe);
    ASSERT_GT(allocations_so_far(), before_probe); // the counter counts

    const long before = allocations_so_far();
    for (int frame = 0; frame < 60 * 15; frame += 7)
        movement1_draw(all, static_cast<float>(frame) / 60);
    for (const float t : {43.1F, 44.3F, 47.6F, 51.4F})
        movement1_draw(all, t);
    EXPECT_EQ(allocations_so_far(), before);
}

TEST(start_up, names_each_missing_file_with_the_command_that_makes_it) {
    const temp_folder empty;
    go_to_data_tree();
    captured_output whole;
    EXPECT_EQ(report_missing_files(), 0);
    EXPECT_EQ(whole.err(), "");

    std::filesystem::current_path(empty.path());
    captured_output none;
    const auto files = static_cast<int>(show_files().size());
    EXPECT_EQ(report_missing_files(), files);
    const std::string lines = none.err();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), files);
    for (const char* path : show_files())
        EXPECT_NE(lines.find(std::string("morvane: ") + path + " is missing; build/release/bin/morvane-data"),
                  std::string::npos)
            << path;
    go_to_data_tree();
}

TEST(start_up, the_maker_makes_what_the_show_reads) {
    for (const char* path : show_files()) {
        const auto makers = assets::makers();
        EXPECT_TRUE(std::any_of(makers.begin(), makers.end(), [&](const auto& row) {
            return row.path == path;
        })) << path;
    }
}

TEST(start_up, a_missing_picture_ends_the_process_with_1_and_a_missing_raw_file_with_0) {
    {
        const tree_without picture("data/part1/lorrim.png");
        EXPECT_EXIT(start_anew(), testing::ExitedWithCode(1),
                    "morvane: data/part1/lorrim.png is missing(.|\n)*data/part1/lorrim.png");
    }
    for (const char* path : {"data/gfx/sprites/light2.tga", "data/part1/greets-1-256.tga"}) {
        const tree_without raw(path);
        EXPECT_EXIT(start_anew(), testing::ExitedWithCode(0),
                    std::string("morvane: ") + path + " is missing");
    }
}
