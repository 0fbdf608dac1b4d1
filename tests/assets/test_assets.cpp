// The maker of the data tree: the forms of its files, what the score needs of each picture, and how the files
// come into the tree.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "assets/makers.h"
#include "morvane/media/image_png.h"
#include "tests/support/captured_output.h"
#include "tests/support/data_tree.h"
#include "tests/support/temp_file.h"
#include "tools/maker/command.h"
#include "tools/maker/data_tree.h"

namespace {

namespace fs = std::filesystem;
using bytes = std::vector<std::uint8_t>;

constexpr int width = 512;
constexpr int height = 288;

const std::vector<std::string> png_names = {"morvane",  "presents",    "lorrim",     "greets",
                                            "cred",     "hum",         "parental-1", "cubev",
                                            "violence", "velkadame2x", "accident1"};
const std::vector<std::string> added_names = {"morvane", "presents", "lorrim",     "cred",
                                              "cubev",   "violence", "velkadame2x"};
const std::vector<std::string> texture_names = {"texture", "intro1c", "tunnel3", "cubetex2"};
const std::vector<std::string> sprite_names = {"light", "light2", "light_3"};

void ignore_report(std::string_view, bool) {}

// The bytes of the file with this path, made when first asked for.
const bytes& made(const std::string& path) {
    static std::map<std::string, bytes> files;
    const auto found = files.find(path);
    if (found != files.end()) return found->second;
    for (const assets::maker& row : assets::makers())
        if (row.path == path) return files[path] = row.make();
    throw std::runtime_error("nobody makes " + path);
}
const bytes& made_png(const std::string& name) {
    return made("data/part1/" + name + ".png");
}
const bytes& made_texture(const std::string& name) {
    return made("data/part1/tex/" + name + ".tga");
}
const bytes& made_sprite(const std::string& name) {
    return made("data/gfx/sprites/" + name + ".tga");
}
bytes mask(const std::string& name) {
    const bytes& file = made("data/part1/" + name);
    return {file.begin() + 786, file.end()};
}

// The words of a picture as the show reads them.
std::vector<std::uint32_t> picture(const std::string& name) {
    const temp_folder folder;
    const std::string path = folder.write(name, made_png(name));
    const captured_descriptor quiet(STDOUT_FILENO);
    gtex image = gtex_load_png(path);
    std::vector<std::uint32_t> words(image.pixels, image.pixels + image.count);
    EXPECT_EQ(image.width, width);
    EXPECT_EQ(image.height, height);
    gtex_destroy(image);
    return words;
}

int channel(std::uint32_t word, int shift) {
    return static_cast<int>(word >> shift & 0xffU);
}
int brightest(std::uint32_t word) {
    return std::max({channel(word, 0), channel(word, 8), channel(word, 16)});
}
int darkest(std::uint32_t word) {
    return std::min({channel(word, 0), channel(word, 8), channel(word, 16)});
}

TEST(DataTree, HoldsEveryFileOfTheShowAndNothingElse) {
    std::set<std::string> wanted = {"data/part1/greets-1-256.tga",
                                    "data/part1/accident1-256.tga",
                                    "data/asc/meteor/inside.asc",
                                    "data/asc/meteor/meteor2.asc",
                                    "data/asc/cube.asc",
                                    "data/3d/xtelmar4.3ds",
                                    "data/clip2x.avi",
                                    "data/music/Ashwing1.mp3",
                                    "data/music/ferrow_amoeba2_test2.ogg"};
    for (const auto& name : png_names)
        wanted.insert("data/part1/" + name + ".png");
    for (const auto& name : texture_names)
        wanted.insert("data/part1/tex/" + name + ".tga");
    for (const auto& name : sprite_names)
        wanted.insert("data/gfx/sprites/" + name + ".tga");
    std::set<std::string> listed;
    for (const auto& row : assets::makers())
        EXPECT_TRUE(listed.emplace(row.path).second) << row.path << " stands twice";
    EXPECT_TRUE(std::includes(listed.begin(), listed.end(), wanted.begin(), wanted.end()));

    go_to_data_tree(); // which morvane-data has made, several files at a time
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator("data"))
        if (entry.is_regular_file()) found.insert(entry.path().generic_string());
    EXPECT_EQ(found, listed);
    // And once more, one after the other: the same bytes.
    for (const auto& path : listed) {
        std::ifstream file(path, std::ios::binary);
        const bytes there{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(made(path), there) << path;
    }
}

TEST(DataTree, PicturesAreEightBitRgb) {
    const bytes head = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 13,
                        'I',  'H', 'D', 'R', 0,    0,    2,    0,    0, 0, 1, 0x20, // 512 x 288
                        8,    2,   0,   0,   0}; // depth, RGB, no interlacing
    for (const auto& name : png_names) {
        bytes file = made_png(name);
        ASSERT_GT(file.size(), head.size()) << name;
        file.resize(head.size());
        EXPECT_EQ(file, head) << name;
        for (const std::uint32_t word : picture(name))
            ASSERT_EQ(word >> 24, 0U) << name;
    }
}

TEST(DataTree, MasksAreColourMappedWithAGreyRamp) {
    const bytes head = {0, 1, 1, 0, 0, 0, 1, 24, 0, 0, 0, 0, 0, 2, 0x20, 1, 8, 0x20};
    for (const char* name : {"greets-1-256.tga", "accident1-256.tga"}) {
        const bytes& file = made("data/part1/" + std::string(name));
        ASSERT_EQ(file.size(), 786U + width * height) << name;
        EXPECT_TRUE(std::equal(head.begin(), head.end(), file.begin())) << name;
        for (std::size_t i = 0; i < 768; ++i)
            ASSERT_EQ(file[18 + i], i / 3) << name;
    }
}

TEST(DataTree, TexturesAndSpritesAreThirtyTwoBitTga) {
    const bytes texture_head = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 32, 0x20};
    const bytes sprite_head = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 32, 0, 32, 0};
    std::map<std::string, std::pair<bytes, std::size_t>> files;
    for (const auto& name : texture_names)
        files["data/part1/tex/" + name + ".tga"] = {texture_head, 256 * 256 * 4};
    for (const auto& name : sprite_names)
        files["data/gfx/sprites/" + name + ".tga"] = {sprite_head, 32 * 32 * 4};
    for (const auto& [path, form] : files) {
        const bytes& file = made(path);
        ASSERT_EQ(file.size(), 18 + form.second) << path;
        EXPECT_TRUE(std::equal(form.first.begin(), form.first.end(), file.begin())) << path;
        for (std::size_t i = 21; i < file.size(); i += 4)
            ASSERT_EQ(file[i], 0) << path << ": a top byte";
    }
}

TEST(FileForms, TgaRowsStandInTheOrderAskedFor) {
    const bytes pixels = {1, 2, 3, 4, 5, 6}; // two rows of one pixel, R, G, B
    const bytes top = assets::tga_colour_file(1, 2, pixels, assets::row_order::top_first);
    const bytes bottom = assets::tga_colour_file(1, 2, pixels, assets::row_order::bottom_first);
    EXPECT_EQ(bytes(top.begin() + 18, top.end()), (bytes{3, 2, 1, 0, 6, 5, 4, 0}));
    EXPECT_EQ(bytes(bottom.begin() + 18, bottom.end()), (bytes{6, 5, 4, 0, 3, 2, 1, 0}));
    EXPECT_EQ(top[17], 0x20);
    EXPECT_EQ(bottom[17], 0);
}

TEST(DataTree, AddedPicturesStandOnBlackAndAreBright) {
    for (const auto& name : added_names) {
        const auto words = picture(name);
        const auto black = std::count(words.begin(), words.end(), 0U);
        const auto white =
            std::count_if(words.begin(), words.end(), [](auto w) { return darkest(w) >= 220; });
        EXPECT_GT(black, width * height / 4) << name;
        EXPECT_GT(white, 800) << name << " would drown in the wires";
        for (const int corner : {0, width - 1, width * (height - 1), width * height - 1})
            EXPECT_EQ(words[static_cast<std::size_t>(corner)], 0U) << name;
    }
}

// The hole is what a walk from the middle reaches over zero words.
TEST(DataTree, PanelHasOneWindowThatHoldsTheCredits) {
    const auto panel = picture("hum");
    std::vector<char> window(panel.size(), 0);
    std::vector<int> open = {width * (height / 2) + width / 2};
    while (!open.empty()) {
        const int i = open.back();
        open.pop_back();
        if (window[static_cast<std::size_t>(i)] != 0 || panel[static_cast<std::size_t>(i)] != 0) continue;
        window[static_cast<std::size_t>(i)] = 1;
        ASSERT_TRUE(i % width > 0 && i % width < width - 1 && i >= width && i < width * (height - 1))
            << "the window reaches the frame's edge";
        for (const int step : {-1, 1, -width, width})
            open.push_back(i + step);
    }
    EXPECT_GT(std::count(window.begin(), window.end(), 1), width * height * 35 / 100);
    const auto credits = picture("cred");
    for (std::size_t i = 0; i < panel.size(); ++i) {
        if (window[i] != 0) continue;
        ASSERT_GE(darkest(panel[i]), 1) << "a hole in the panel at " << i % width << ", " << i / width;
        ASSERT_LT(brightest(credits[i]), 40) << "credits on the panel at " << i % width << ", " << i / width;
    }
}

TEST(DataTree, CardIsBrightButForTheStripOfTheClosingWords) {
    const auto card = picture("parental-1");
    const auto words = picture("violence");
    auto mean = [](const std::vector<std::uint32_t>& image, int from, int to) {
        long sum = 0;
        for (int i = from * width; i < to * width; ++i)
            sum += brightest(image[static_cast<std::size_t>(i)]);
        return sum / (width * (to - from));
    };
    EXPECT_GT(mean(card, 14, 252), 120);
    EXPECT_LT(mean(card, 260, 284), 50);
    EXPECT_GT(mean(words, 264, 278), 60);
}

TEST(DataTree, MasksAreSmooth) {
    // The largest step between neighbours, either way.
    auto steepest = [](const bytes& mask) {
        int step = 0;
        for (std::size_t i = width; i < mask.size(); ++i) {
            step = std::max(step, std::abs(mask[i] - mask[i - width]));
            if (i % width != 0) step = std::max(step, std::abs(mask[i] - mask[i - 1]));
        }
        return step;
    };
    const bytes greets = mask("greets-1-256.tga");
    const bytes accident = mask("accident1-256.tga");
    EXPECT_LE(steepest(greets), 32);
    EXPECT_LE(steepest(accident), 160); // broken glass: soft over two pixels
    for (const bytes& mask : {greets, accident}) {
        EXPECT_GT(std::count(mask.begin(), mask.end(), 0), width * height / 12) << "the scene must show";
        EXPECT_GT(*std::max_element(mask.begin(), mask.end()), 220);
    }
}

// Mean differences between row or column i and the one before it, the last and the first being neighbours.
std::vector<double> differences(const bytes& file, bool columns) {
    std::vector<double> result(256, 0);
    for (std::size_t i = 0; i < 256; ++i) {
        const std::size_t before = (i + 255) % 256;
        for (std::size_t j = 0; j < 256; ++j) {
            const std::size_t a = 18 + 4 * (columns ? j * 256 + i : i * 256 + j);
            const std::size_t b = 18 + 4 * (columns ? j * 256 + before : before * 256 + j);
            for (std::size_t c = 0; c < 3; ++c)
                result[i] += std::abs(file[a + c] - file[b + c]) / 768.0;
        }
    }
    return result;
}

TEST(DataTree, TexturesRepeatWithoutASeam) {
    for (const auto& name : texture_names) {
        const bytes& file = made_texture(name);
        for (const bool columns : {false, true}) {
            const auto all = differences(file, columns);
            EXPECT_LE(all[0], *std::max_element(all.begin() + 1, all.end()))
                << name << (columns ? " columns" : " rows");
        }
    }
}

TEST(DataTree, SpritesHaveASoftCoreAndABlackRim) {
    std::set<std::string> different;
    for (const auto& name : sprite_names) {
        const bytes& file = made_sprite(name);
        auto light = [&](int x, int y) {
            const std::size_t i = 18 + 4 * static_cast<std::size_t>(y * 32 + x);
            return std::max({file[i], file[i + 1], file[i + 2]});
        };
        int most = 0;
        double sum = 0;
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x) {
                most = std::max<int>(most, light(x, y));
                sum += light(x, y);
                if (x == 0 || y == 0 || x == 31 || y == 31) {
                    EXPECT_EQ(light(x, y), 0) << name;
                }
            }
        }
        EXPECT_GT(most, 120) << name;
        EXPECT_LT(sum / 1024, 80) << name << ": 250 of them would fill the frame";
        different.emplace(file.begin(), file.end());
    }
    EXPECT_EQ(different.size(), sprite_names.size());
}

// --- the way into the tree, with small makers

bytes three_bytes() {
    return {1, 2, 3};
}
bytes many_bytes() {
    return bytes(100000, 7);
}
bytes no_bytes() {
    return {};
}

TEST(MakeDataTree, LeavesAloneWhatIsThere) {
    const assets::maker rows[] = {
        {"a/kept.bin", three_bytes}, {"a/b/new.bin", three_bytes}, {"a/link", three_bytes}};
    const temp_folder root;
    root.write("a/kept.bin", "mine");
    fs::create_symlink("nowhere", root.path("a/link"));
    std::map<std::string, bool, std::less<>> told;
    const auto first = assets::make_data_tree(
        root.path(), rows, 2, [&](std::string_view path, bool made) { told.emplace(path, made); });
    EXPECT_EQ(first.error, "");
    EXPECT_EQ(first.made, 1);
    EXPECT_EQ(first.already_there, 2);
    EXPECT_EQ(told, (std::map<std::string, bool, std::less<>>{
                        {"a/kept.bin", false}, {"a/b/new.bin", true}, {"a/link", false}}));
    EXPECT_EQ(root.read("a/kept.bin"), (bytes{'m', 'i', 'n', 'e'}));
    EXPECT_EQ(root.read("a/b/new.bin"), three_bytes());
    EXPECT_TRUE(fs::is_symlink(root.path("a/link")));
    EXPECT_FALSE(fs::exists(root.path("a/nowhere")));
    EXPECT_EQ(assets::make_data_tree(root.path(), rows, 1, ignore_report).already_there, 3);
}

TEST(MakeDataTree, TellsWhatItCannotMake) {
    const assets::maker rows[] = {{"data/a.bin", three_bytes}};
    const temp_folder root;
    root.write("data", "a file where the folder should be");
    const auto in_the_way = assets::make_data_tree(root.path(), rows, 1, ignore_report);
    EXPECT_EQ(in_the_way.made, 0);
    EXPECT_NE(in_the_way.error.find(root.path("data")), std::string::npos);
    EXPECT_NE(in_the_way.error.find("Not a directory"), std::string::npos) << in_the_way.error;

    const assets::maker empty[] = {{"b.bin", no_bytes}};
    EXPECT_NE(assets::make_data_tree(root.path(), empty, 1, ignore_report).error.find("b.bin"),
              std::string::npos);
    EXPECT_FALSE(fs::exists(root.path("b.bin")));
}

TEST(MakeDataTree, LeavesNoHalfFileWhenTheDiskIsFull) {
    const assets::maker rows[] = {{"large.bin", many_bytes}};
    const temp_folder root;
    // A limit on the size of files stands in for the full disk: the write fails halfway.
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto signal_before = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{10000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto result = assets::make_data_tree(root.path(), rows, 1, ignore_report);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signal_before);
    EXPECT_EQ(result.made, 0);
    EXPECT_NE(result.error.find("large.bin: File too large"), std::string::npos) << result.error;
    EXPECT_TRUE(fs::is_empty(root.path()));
}

// --- the command

struct outcome {
    int code;
    std::string out, err;
};

outcome run(std::vector<std::string_view> words) {
    auto text_of = [](std::FILE* file) {
        std::string text(static_cast<std::size_t>(std::ftell(file)), ' ');
        std::rewind(file);
        text.resize(std::fread(text.data(), 1, text.size(), file));
        std::fclose(file);
        return text;
    };
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    const int code = assets::run_command(words, out, err);
    return {code, text_of(out), text_of(err)};
}

TEST(Command, TellsItsUsage) {
    const outcome help = run({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_EQ(help.out.rfind("Usage: morvane-data [DIR]", 0), 0U);
    EXPECT_EQ(help.err, "");
    for (const std::vector<std::string_view>& words :
         {std::vector<std::string_view>{"--nonsense"}, {"a", "b"}, {""}, {"--list", "a"}}) {
        const outcome wrong = run(words);
        EXPECT_EQ(wrong.code, 2);
        EXPECT_EQ(wrong.out, "");
        EXPECT_EQ(wrong.err, help.out);
    }
}

TEST(Command, ListsThePathsThatItMakes) {
    std::string paths;
    for (const auto& row : assets::makers())
        paths += std::string(row.path) + "\n";
    const outcome list = run({"--list"});
    EXPECT_EQ(list.code, 0);
    EXPECT_EQ(list.out, paths);
}

TEST(Command, GivesOneLineForAPlaceThatItCannotWrite) {
    const temp_folder root;
    const std::string blocked = root.write("file", "in the way");
    const outcome failed = run({blocked});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.err.rfind("morvane-data: " + blocked, 0), 0U) << failed.err;
    EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1);
    EXPECT_EQ(failed.out, "");
}

} // namespace
