// Start-up from the real data tree, and what it says and does when a file is missing.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "assets/makers.h"
#include "morvane/media/image_png.h"
#include "morvane/platform/console/ptc.h"
#include "morvane/platform/time/manual_clock.h"
#include "morvane/platform/time/winbase.h"
#include "show/data_files.h"
#include "show/frame_clock.h"
#include "show/frame_loop.h"
#include "show/score/score.h"
#include "show/show.h"
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

// With the clip, as the maker knows them.
std::vector<std::string> all_files() {
    std::vector<std::string> files;
    for (const auto& table : {needed_files(), wanted_files()})
        for (const char* file : table)
            files.push_back(data_path(file));
    files.push_back(data_path(clip_file));
    return files;
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

// Each picture takes 383 milliseconds and is shown to nobody.
class moving_console : public ptc::Console {
  public:
    explicit moving_console(winbase::manual_clock& clock) : clock_(clock) {
        open_off_screen(".", 512, 384, ptc::Format(32, 0xff0000, 0xff00, 0xff));
    }
    void update() override {
        Console::update();
        clock_.advance(383);
    }

  private:
    winbase::manual_clock& clock_;
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

TEST(start_up, every_picture_comes_from_its_file) {
    go_to_data_tree();
    show all;
    start(all);
    const std::pair<gtex, const char*> pictures[] = {
        {all.img_morvane, "morvane"},       {all.img_presents, "presents"}, {all.img_lorrim, "lorrim"},
        {all.img_greets, "greets"},         {all.img_cred, "cred"},         {all.img_hum, "hum"},
        {all.img_parental, "parental-1"},   {all.img_cubev, "cubev"},       {all.img_violence, "violence"},
        {all.img_velkadame, "velkadame2x"}, {all.img_accident, "accident1"}};
    captured_output quiet;
    for (const auto& [picture, name] : pictures) {
        gtex read = gtex_load_png(std::string("data/part1/") + name + ".png");
        for (std::int32_t i = 0; i < read.count; ++i)
            ASSERT_EQ(picture.pixels[i] & 0xffffff, read.pixels[i]) << name << " at " << i;
        gtex_destroy(read);
    }
    const auto bytes = [](const char* path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const auto byte = [](char c) { return static_cast<std::uint32_t>(static_cast<unsigned char>(c)); };
    const std::string accident = bytes("data/part1/accident1-256.tga"),
                      greets = bytes("data/part1/greets-1-256.tga");
    for (std::size_t i = 0; i < 147456; ++i) {
        ASSERT_EQ(all.img_accident.pixels[i] >> 24, byte(accident[786 + i]));
        ASSERT_EQ(all.img_greets.pixels[i] >> 24, byte(greets[786 + i]));
    }
    const auto pixel_in = [&](const std::string& file, std::size_t i) {
        return byte(file[18 + 4 * i]) | byte(file[19 + 4 * i]) << 8 | byte(file[20 + 4 * i]) << 16 |
               byte(file[21 + 4 * i]) << 24;
    };
    const std::pair<gtex, const char*> textures[] = {{all.tex_texture, "texture"},
                                                     {all.tex_intro, "intro1c"},
                                                     {all.tex_tunnel, "tunnel3"},
                                                     {all.tex_cube, "cubetex2"}};
    for (const auto& [texture, name] : textures) {
        const std::string file = bytes((std::string("data/part1/tex/") + name + ".tga").c_str());
        for (std::size_t i = 0; i < 65536; ++i)
            ASSERT_EQ(texture.pixels[i], pixel_in(file, i)) << name << " at " << i;
    }
    const std::pair<gtex, const char*> sprites[] = {
        {all.spr_light, "light"}, {all.spr_light2, "light2"}, {all.spr_light3, "light_3"}};
    for (const auto& [sprite, name] : sprites) { // whose rows run from the bottom up in the file
        const std::string file = bytes((std::string("data/gfx/sprites/") + name + ".tga").c_str());
        for (std::size_t y = 0; y < 32; ++y)
            for (std::size_t x = 0; x < 32; ++x)
                ASSERT_EQ(sprite.pixels[y * 32 + x], pixel_in(file, (31 - y) * 32 + x)) << name;
    }
}

TEST(start_up, meshes_are_read_and_lit_and_the_stars_lie_at_random) {
    go_to_data_tree();
    winbase::srand(1);
    show all;
    start(all);
    for (const object* mesh : {&all.obj_inside, &all.obj_meteor, &all.obj_cube}) {
        EXPECT_GT(mesh->vertex_count, 100);
        EXPECT_GT(mesh->face_count, 100);
        EXPECT_FLOAT_EQ(mesh->light.x, 0);
        EXPECT_FLOAT_EQ(mesh->light.y, 0.70710678F);
        EXPECT_FLOAT_EQ(mesh->light.z, 0.70710678F);
    }
    EXPECT_EQ(all.obj_stars.vertex_count, 250);
    winbase::srand(1); // nothing before the stars draws a random number
    for (std::size_t i = 0; i < 250; ++i) {
        const object_vertex& star = all.obj_stars.world_vertices[i];
        for (const float coordinate : {star.x, star.y, star.z})
            ASSERT_EQ(coordinate, static_cast<float>(winbase::rand() % 256 - 127));
        EXPECT_EQ(all.obj_stars.model_vertices[i].y, star.y);
        EXPECT_EQ(all.obj_stars.sort_order[i], static_cast<std::int32_t>(i));
    }
}

TEST(start_up, a_frame_allocates_nothing) {
    go_to_data_tree();
    show all;
    start(all);
    const long before_probe = allocations_so_far();
    gtex probe = gtex_create(1, 1, 0);
    gtex_destroy(probe);
    ASSERT_GT(allocations_so_far(), before_probe); // the counter counts

    // The whole road of a frame, a few frames in each second of the movement.
    winbase::manual_clock clock(1000);
    moving_console console(clock);
    ptc::Surface surface(512, 384, console.format());
    clock_start();
    const long before = allocations_so_far();
    const movement_end end = run_movement({.console = console, .surface = surface}, all,
                                          {.draw = movement1_draw, .end_time = movement1_end});
    EXPECT_EQ(allocations_so_far(), before);
    EXPECT_EQ(end, movement_end::left);
    EXPECT_EQ(frame_count, 386);
}

TEST(start_up, names_each_missing_file_with_the_command_that_makes_it) {
    const temp_folder empty;
    go_to_data_tree();
    captured_output whole;
    report_missing_files();
    EXPECT_EQ(whole.err(), "");
    EXPECT_TRUE(needed_files_there());

    std::filesystem::current_path(empty.path());
    captured_output none;
    report_missing_files();
    const std::string lines = none.err();
    EXPECT_FALSE(needed_files_there());
    const std::vector<std::string> files = all_files();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), static_cast<std::ptrdiff_t>(files.size()));
    for (const std::string& path : files)
        EXPECT_NE(lines.find("morvane: " + path + ": not there; morvane-data, beside this program, makes it"),
                  std::string::npos)
            << path;
    go_to_data_tree();
}

TEST(start_up, the_maker_makes_what_the_show_reads) {
    std::vector<std::string> files = all_files();
    files.push_back(data_path("music/Ashwing1.mp3"));
    for (const std::string& path : files) {
        const auto makers = assets::makers();
        EXPECT_TRUE(std::any_of(makers.begin(), makers.end(), [&](const auto& row) {
            return row.path == path;
        })) << path;
    }
}

TEST(start_up, a_mesh_that_is_missing_or_damaged_stays_empty_with_one_line) {
    const tree_without mesh("data/asc/cube.asc");
    std::ofstream("data/asc/meteor/meteor2.asc") << "Named object: \"nothing\"";
    captured_output printed;
    show all;
    frame_tables_init();
    create_spine(all);
    start_up(all);
    const std::string lines = printed.err();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2) << lines;
    EXPECT_NE(lines.find("data/asc/cube.asc: not there"), std::string::npos);
    EXPECT_NE(lines.find("data/asc/meteor/meteor2.asc: "), std::string::npos);
    EXPECT_EQ(all.obj_cube.face_count + all.obj_meteor.face_count, 0);
    EXPECT_GT(all.obj_inside.face_count, 0);
}

TEST(start_up, ends_with_one_line_without_a_scene) {
    const tree_without scene("data/3d/xtelmar4.3ds");
    for (const char* reason :
         {"data/3d/xtelmar4.3ds: not there", "data/3d/xtelmar4.3ds: not a scene that can be read"}) {
        captured_output printed;
        show all;
        frame_tables_init();
        create_spine(all);
        EXPECT_FALSE(start_up(all));
        const std::string lines = printed.err();
        EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1) << lines;
        EXPECT_NE(lines.find(reason), std::string::npos) << lines;
        std::ofstream("data/3d/xtelmar4.3ds") << "no scene at all";
    }
}

TEST(start_up, a_picture_that_is_not_there_ends_the_process_with_1_and_a_raw_file_with_0_and_one_line) {
    const std::pair<const char*, int> files[] = {
        {"data/part1/lorrim.png", 1}, {"data/gfx/sprites/light2.tga", 0}, {"data/part1/greets-1-256.tga", 0}};
    for (const auto& [path, code] : files) {
        const tree_without file(path);
        const std::string line = std::string("^morvane: ") + path + ": ";
        EXPECT_EXIT(start_anew(), testing::ExitedWithCode(code), line + "not there; [^\n]*\n$");
        std::filesystem::create_directory(path); // a folder in its place is no better
        EXPECT_EXIT(start_anew(), testing::ExitedWithCode(code), line + "Is a directory\n$");
    }
}

TEST(start_up, the_tree_is_found_from_the_working_directory_then_from_the_program) {
    const temp_folder folder;
    const std::filesystem::path program = folder.path() / "a" / "b" / "c" / "d" / "bin";
    std::filesystem::create_directories(program);
    std::filesystem::current_path(program);
    EXPECT_FALSE(search_data(program));
    EXPECT_FALSE(search_data({}));
    // From the last place to the first; each beats those before it.
    folder.write("a/data/3d/xtelmar4.3ds", ""); // four above the program, and so none of its own
    EXPECT_FALSE(search_data(program));
    for (const char* tree : {"a/b/c/d/share/morvane/data", "a/b/data", "a/b/c/data", "a/b/c/d/data"}) {
        folder.write(std::string(tree) + "/3d/xtelmar4.3ds", "");
        EXPECT_EQ(search_data(program), folder.path() / tree);
    }
    std::filesystem::create_directory("data"); // empty
    EXPECT_EQ(search_data(program), folder.path() / "a/b/c/d/data");
    folder.write("a/b/c/d/bin/data/3d/xtelmar4.3ds", "");
    EXPECT_EQ(search_data(program), "data");
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(search_data(program), program / "data");
    EXPECT_EQ(search_data({}), std::nullopt);
    go_to_data_tree();
}
