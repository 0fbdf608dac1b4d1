#include "morvane/media/image_tga.h"

#include <optional>

#include <gtest/gtest.h>

#include "morvane/media/image_load.h"
#include "tests/support/captured_output.h"
#include "tests/support/memory_file.h"
#include "tests/support/picture_files.h"
#include "tests/support/temp_file.h"

namespace {

using words = std::vector<std::uint32_t>;

// The words of a TGA in memory, nothing where the reader gives null. The file stays open and is closed here.
std::optional<words> read_bytes(const file_bytes& file) {
    std::FILE* stream = memory_file(file);
    std::uint32_t* block = gtex_load_tga(stream);
    std::fclose(stream);
    if (block == nullptr) return std::nullopt;
    const words all(block, block + gtex_load_width * gtex_load_height);
    std::free(block);
    return all;
}

std::optional<words> read(const tga_form& form) {
    return read_bytes(tga_file(form));
}

file_bytes joined(std::initializer_list<file_bytes> parts) {
    file_bytes all;
    for (const file_bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace

TEST(image_tga, uncompressed_pixels_of_every_depth) {
    captured_output quiet;
    EXPECT_EQ(read({.width = 2, .height = 1, .depth = 32, .body = {1, 2, 3, 4, 0xfd, 0xfe, 0xff, 0x80}}),
              (words{0x04030201, 0x80fffefd}));
    EXPECT_EQ(read({.width = 2, .height = 1, .depth = 24, .body = {1, 2, 3, 0xfd, 0xfe, 0xff}}),
              (words{0x00030201, 0x00fffefd}));
    // Blue, green and red full; half of green with the top bit; nothing at all.
    EXPECT_EQ(read({.width = 5,
                    .height = 1,
                    .depth = 16,
                    .body = {0x1f, 0x00, 0xe0, 0x03, 0x00, 0x7c, 0x00, 0x82, 0x00, 0x00}}),
              (words{0x000000ff, 0x0000ff00, 0x00ff0000, 0xff008400, 0}));
    EXPECT_EQ(read({.width = 2, .height = 1, .depth = 8, .body = {9, 9, 9, 9, 9, 9, 9, 9}}), (words{0, 0}));
}

TEST(image_tga, rows_stay_in_file_order_and_the_id_field_is_skipped) {
    captured_output quiet;
    const file_bytes body = mixed_bytes(std::size_t{300} * 70 * 4, 1);
    const std::optional<words> all =
        read({.width = 300, .height = 70, .id = file_bytes(255, 'i'), .body = body});
    EXPECT_EQ(gtex_load_width, 300);
    EXPECT_EQ(gtex_load_height, 70);
    ASSERT_TRUE(all);
    for (std::size_t i = 0; i < all->size(); ++i)
        ASSERT_EQ((*all)[i], body[i * 4] + body[i * 4 + 1] * 0x100U + body[i * 4 + 2] * 0x10000U +
                                 body[i * 4 + 3] * 0x1000000U);
}

TEST(image_tga, run_length_packets) {
    captured_output quiet;
    // A run of four that crosses the end of the first row, four single pixels, and a run past the last pixel.
    const tga_form form{
        .image_type = 10, .width = 3, .height = 3, .depth = 24, .body = {0x83, 1,  2,  3,    0x03, 4,  5,
                                                                         6,    7,  8,  9,    10,   11, 12,
                                                                         13,   14, 15, 0xff, 16,   17, 18}};
    EXPECT_EQ(read(form), (words{0x030201, 0x030201, 0x030201, 0x030201, 0x060504, 0x090807, 0x0c0b0a,
                                 0x0f0e0d, 0x121110}));
    // Single pixels past the last one, in the other depths; a packet of 128.
    EXPECT_EQ(
        read(
            {.image_type = 10, .width = 1, .height = 2, .depth = 16, .body = {0x02, 0xff, 0xff, 0, 0, 1, 1}}),
        (words{0xffffffff, 0}));
    EXPECT_EQ(read({.image_type = 10, .width = 16, .height = 8, .depth = 32, .body = {0xff, 1, 2, 3, 4}}),
              words(128, 0x04030201));
    EXPECT_EQ(read({.image_type = 10, .width = 1, .height = 1, .depth = 8, .body = {0x80, 1}}), words{0});
}

TEST(image_tga, pixels_that_the_file_does_not_hold_are_zero) {
    captured_output quiet;
    const file_bytes pixel = {1, 2, 3, 4};
    EXPECT_EQ(read({.width = 3, .height = 1, .body = joined({pixel, {5, 6, 7}})}), (words{0x04030201, 0, 0}));
    EXPECT_EQ(
        read({.image_type = 10, .width = 4, .height = 1, .body = joined({{0x81}, pixel, {0x81, 1, 2}})}),
        (words{0x04030201, 0x04030201, 0, 0}));
    EXPECT_EQ(read({.image_type = 10, .width = 4, .height = 1, .body = joined({{0x03}, pixel, pixel, {1}})}),
              (words{0x04030201, 0x04030201, 0, 0}));
    EXPECT_EQ(read({.width = 2, .height = 1, .id = file_bytes(9, 'i')}), (words{0, 0}));
}

TEST(image_tga, types_and_sizes_that_are_no_picture) {
    captured_output quiet;
    for (std::uint8_t type = 0; type < 255; ++type) {
        const auto all = read({.image_type = type, .width = 2, .height = 1, .body = mixed_bytes(64, 2)});
        const bool pixels_or_zeros = type == 1 || type == 2 || type == 9 || type == 10;
        EXPECT_EQ(all.has_value(), pixels_or_zeros) << int{type};
        if (type == 1 || type == 9) {
            EXPECT_EQ(all, (words{0, 0}));
        }
    }
    for (const auto& [width, height] :
         {std::pair{0, 1}, {1, 0}, {-1, 5}, {-2, -2}, {32767, 32767}, {16385, 16384}})
        EXPECT_FALSE(
            read({.width = static_cast<std::int16_t>(width), .height = static_cast<std::int16_t>(height)}));
    EXPECT_EQ(gtex_load_width, 16385);
    EXPECT_FALSE(read_bytes(file_bytes(17, 2)));
    EXPECT_FALSE(read_bytes({}));
}

TEST(image_tga, printed_lines) {
    for (const auto& [type, lines] :
         {std::pair<std::uint8_t, std::string>{2, " - Uncompressed RGB image\nfile loaded\n"},
          {10, " - Compressed RGB image\nfile loaded\n"},
          {9, "file loaded\n"},
          {3, ""}}) {
        captured_output printed;
        read({.image_type = type, .body = {0x80, 1, 2, 3, 4}});
        EXPECT_EQ(printed.out() + printed.err(), "debug: gtex_load_tga()\n" + lines);
    }
}

TEST(image_tga, damage_anywhere_gives_null_or_a_picture) {
    captured_output printed;
    for (const std::uint8_t depth : file_bytes{16, 24, 32}) {
        const file_bytes body = mixed_bytes(200, depth);
        for (const std::uint8_t type : file_bytes{2, 10}) {
            int pictures = 0;
            for_each_damage(
                tga_file(
                    {.image_type = type, .width = 8, .height = 5, .depth = depth, .id = {1}, .body = body}),
                [&pictures](const file_bytes& damaged) {
                    std::FILE* stream = memory_file(damaged);
                    std::uint32_t* block = gtex_load_tga(stream); // its pages are only as many as it wrote
                    pictures += block == nullptr ? 0 : 1;
                    std::free(block);
                    std::fclose(stream);
                });
            EXPECT_GT(pictures, 200);
        }
    }
}

TEST(image_load, extension_picks_the_reader) {
    const temp_folder folder;
    const file_bytes tga = tga_file({.depth = 24, .body = {1, 2, 3}});
    const auto first_word = [&folder, &tga](const std::string& name) -> std::optional<std::uint32_t> {
        std::uint32_t* block = gtex_load(folder.write(name, tga));
        if (block == nullptr) return std::nullopt;
        const std::uint32_t word = *block;
        std::free(block);
        return word;
    };
    captured_output printed;
    EXPECT_EQ(first_word("PIC.TgA"), 0x030201U);
    EXPECT_EQ(printed.out(), "found the extention to be in list of loaders (TgA)\ndebug: gtex_load_tga()\n"
                             " - Uncompressed RGB image\nfile loaded\n");

    captured_output quiet;
    EXPECT_EQ(first_word("two.dots.tga"), 0x030201U);
    quiet.stop();

    captured_output nothing;
    for (const char* name :
         {"pic.bmp", "pic.PN", "pic.PNGX", "pic.TG", "pic.tgax", "pic", "pic.", "v1.tga/pic"})
        EXPECT_EQ(first_word(name), std::nullopt) << name;
    EXPECT_EQ(nothing.out() + nothing.err(), "");
}

TEST(image_load, every_row_of_the_table_reads_and_no_file_stays_open) {
    const temp_folder folder;
    const std::string png = folder.write("a.Png", png_file({.samples = {7, 7, 7}}));
    const std::string jpg = folder.write("a.jpG", jpeg_file({.samples = {7, 7, 7}}));
    const std::string tga = folder.write("a.tga", tga_file({.depth = 24, .body = {7, 7, 7}}));
    const std::string bad_png = folder.write("bad.png", "no picture");
    const std::string bad_jpg = folder.write("bad.jpg", "no picture");
    const std::string other = folder.write("other.bmp", "no picture");
    // A descriptor opened now and one opened afterwards have the same number if none got lost between.
    const auto next_descriptor = [] {
        const int next = dup(STDIN_FILENO);
        close(next);
        return next;
    };
    captured_output printed;
    const int before = next_descriptor();
    for (const std::string& path : {png, jpg, tga}) {
        std::uint32_t* block = gtex_load(path);
        ASSERT_NE(block, nullptr) << path;
        EXPECT_EQ(*block, 0x070707U) << path;
        std::free(block);
    }
    for (const std::string& path : {bad_png, bad_jpg, other})
        EXPECT_EQ(gtex_load(path), nullptr) << path;
    EXPECT_EQ(next_descriptor(), before);
}

TEST(image_load, missing_file_gives_the_system_reason) {
    const temp_folder folder;
    captured_output printed;
    EXPECT_EQ(gtex_load(folder.path("none.png")), nullptr);
    EXPECT_EQ(printed.out(), "");
    EXPECT_EQ(printed.err(), "Error loading file: No such file or directory\n");
}
