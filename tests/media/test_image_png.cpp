#include "morvane/media/image_png.h"

#include <gtest/gtest.h>

#include "morvane/media/image_load.h"
#include "tests/support/captured_output.h"
#include "tests/support/memory_file.h"
#include "tests/support/picture_files.h"
#include "tests/support/temp_file.h"

namespace {

using words = std::vector<std::uint32_t>;

// A picture of every sample value that its depth has (up to 6 bits of it), so that keys match and nearly
// match.
png_form make_form(int colour_type, int depth, bool interlaced) {
    png_form form{
        .width = 19, .height = 13, .colour_type = colour_type, .depth = depth, .interlaced = interlaced};
    const std::size_t count = form.width * form.height * form.channels();
    const file_bytes noise = mixed_bytes(count * 2, static_cast<std::uint32_t>(colour_type * 32 + depth));
    const std::uint32_t mask = (1U << depth) - 1U;
    for (std::size_t i = 0; i < count; ++i)
        form.samples.push_back(
            static_cast<std::uint16_t>((noise[i] * 0x0101U ^ noise[count + i] % 4U) & mask));
    if (colour_type == PNG_COLOR_TYPE_PALETTE) {
        const file_bytes colours = mixed_bytes(768, 5);
        for (std::size_t i = 0; i < (1U << depth); ++i)
            form.palette.push_back({colours[i * 3], colours[i * 3 + 1], colours[i * 3 + 2]});
    }
    return form;
}

// The same picture with a transparent colour, that of the pixel in the middle, or with a palette's opacities.
png_form with_transparency(png_form form) {
    const std::size_t middle = form.samples.size() / 2 / form.channels() * form.channels();
    if (form.colour_type == PNG_COLOR_TYPE_PALETTE)
        for (std::size_t i = 0; i < form.palette.size() - 1; ++i) // one entry short: the last is opaque
            form.palette_opacity.push_back(static_cast<png_byte>(i * 77));
    if (form.colour_type == PNG_COLOR_TYPE_GRAY) form.transparent_grey = {form.samples[middle]};
    if (form.colour_type == PNG_COLOR_TYPE_RGB)
        form.transparent_rgb = {form.samples[middle], form.samples[middle + 1], form.samples[middle + 2]};
    return form;
}

std::uint32_t word_of(std::uint32_t a, std::uint32_t r, std::uint32_t g, std::uint32_t b) {
    return a << 24 | r << 16 | g << 8 | b;
}

// The word that a pixel ought to become, from its samples alone.
std::uint32_t expected_word(const png_form& form, const std::uint16_t* s) {
    const auto byte = [&form](std::uint32_t sample) {
        return form.depth == 16 ? sample >> 8 : sample * 255U / ((1U << form.depth) - 1U);
    };
    const auto key = [](bool matches) { return matches ? 0U : 255U; };
    switch (form.colour_type) {
    case PNG_COLOR_TYPE_PALETTE: {
        const png_color colour = form.palette[s[0]];
        std::uint32_t opacity = 0;
        if (!form.palette_opacity.empty())
            opacity = s[0] < form.palette_opacity.size() ? form.palette_opacity[s[0]] : 255U;
        return word_of(opacity, colour.red, colour.green, colour.blue);
    }
    case PNG_COLOR_TYPE_GRAY: {
        const std::uint32_t opacity =
            form.transparent_grey.empty() ? 0 : key(s[0] == form.transparent_grey[0]);
        return word_of(opacity, byte(s[0]), byte(s[0]), byte(s[0]));
    }
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        return word_of(byte(s[1]), byte(s[0]), byte(s[0]), byte(s[0]));
    case PNG_COLOR_TYPE_RGB: {
        const bool same = std::equal(form.transparent_rgb.begin(), form.transparent_rgb.end(), s);
        const std::uint32_t opacity = form.transparent_rgb.empty() ? 0 : key(same);
        return word_of(opacity, byte(s[0]), byte(s[1]), byte(s[2]));
    }
    default:
        return word_of(byte(s[3]), byte(s[0]), byte(s[1]), byte(s[2]));
    }
}

words expected_words(const png_form& form) {
    words all;
    for (std::size_t i = 0; i < form.samples.size(); i += form.channels())
        all.push_back(expected_word(form, &form.samples[i]));
    return all;
}

// All colour types in all depths that they have, straight and interlaced, with and without a transparent
// colour.
std::vector<png_form> all_forms() {
    const std::vector<std::pair<int, std::vector<int>>> depths = {{PNG_COLOR_TYPE_GRAY, {1, 2, 4, 8, 16}},
                                                                  {PNG_COLOR_TYPE_PALETTE, {1, 2, 4, 8}},
                                                                  {PNG_COLOR_TYPE_GRAY_ALPHA, {8, 16}},
                                                                  {PNG_COLOR_TYPE_RGB, {8, 16}},
                                                                  {PNG_COLOR_TYPE_RGB_ALPHA, {8, 16}}};
    std::vector<png_form> forms;
    for (const auto& [colour_type, of_type] : depths) {
        for (const int depth : of_type) {
            for (const bool interlaced : {false, true}) {
                forms.push_back(make_form(colour_type, depth, interlaced));
                if ((colour_type & PNG_COLOR_MASK_ALPHA) == 0)
                    forms.push_back(with_transparency(forms.back()));
            }
        }
    }
    return forms;
}

words read_stream(const file_bytes& file) {
    std::uint32_t* block = gtex_load_png_stream(memory_file(file));
    if (block == nullptr) return {};
    const words all(block, block + gtex_load_width * gtex_load_height);
    std::free(block);
    return all;
}

// Changes the size in the header and makes the checksum right again.
file_bytes resized(file_bytes file, std::uint32_t width, std::uint32_t height) {
    for (std::size_t i = 0; i < 4; ++i) {
        file[16 + i] = static_cast<std::uint8_t>(width >> (24 - 8 * i));
        file[20 + i] = static_cast<std::uint8_t>(height >> (24 - 8 * i));
    }
    repair_png_checksums(file);
    return file;
}

const png_form small_rgb{.width = 2, .height = 1, .samples = {1, 2, 3, 250, 251, 252}};

} // namespace

TEST(image_png, every_colour_type_and_depth_becomes_the_same_words_in_both_readers) {
    const temp_folder folder;
    for (const png_form& form : all_forms()) {
        SCOPED_TRACE(testing::Message() << "colour type " << form.colour_type << ", depth " << form.depth
                                        << (form.interlaced ? ", interlaced" : ""));
        file_bytes file = png_file(form);
        const file_bytes warning = {0, 0, 0, 4, 'g', 'A', 'M', 'A', 0, 0, 0, 0, 0, 0, 0, 0}; // no such gamma
        file.insert(file.begin() + 33, warning.begin(), warning.end());
        repair_png_checksums(file);
        captured_output printed;
        gtex picture = gtex_load_png(folder.write("picture.png", file));
        const words from_stream = read_stream(file);
        EXPECT_EQ(printed.out(), "gtex_load_png()\nfile loaded\nfile loaded\n");
        EXPECT_EQ(printed.err(), "");

        ASSERT_EQ(picture.width, 19);
        ASSERT_EQ(picture.height, 13);
        EXPECT_EQ(words(picture.pixels, picture.pixels + picture.count), expected_words(form));
        EXPECT_EQ(from_stream, expected_words(form));
        gtex_destroy(picture);
    }
}

TEST(image_png, path_reader_ends_the_process_with_the_path_and_the_reason) {
    const temp_folder folder;
    const file_bytes good = png_file(small_rgb);
    const auto exit_1 = testing::ExitedWithCode(1);

    captured_output printed;
    EXPECT_EXIT(gtex_load_png(folder.path("none.png")), exit_1,
                "^morvane: .*none\\.png: No such file[^\n]*\n$");
    EXPECT_EXIT(gtex_load_png(folder.write("short.png", file_bytes(good.begin(), good.begin() + 3))), exit_1,
                "^morvane: .*short\\.png: not a PNG picture\n$");
    EXPECT_EXIT(gtex_load_png(folder.write("text.png", "GIF89a, or nearly")), exit_1,
                "^morvane: .*text\\.png: not a PNG picture\n$");
    EXPECT_EXIT(gtex_load_png(folder.write("cut.png", file_bytes(good.begin(), good.end() - 20))), exit_1,
                "^morvane: .*cut\\.png: [^\n]+\n$");
    EXPECT_EXIT(gtex_load_png(folder.write("huge.png", resized(good, 20000, 20000))), exit_1,
                "^morvane: .*huge\\.png: too large[^\n]*\n$");
    EXPECT_EXIT(gtex_load_png(folder.path().string()), exit_1, "^morvane: .*: Is a directory\n$");
    const std::string line = "gtex_load_png()\n";
    EXPECT_EQ(printed.out(), line + line + line + line + line + line);
}

TEST(image_png, stream_reader_fails_without_a_word) {
    const file_bytes good = png_file(small_rgb);
    file_bytes bad_checksum = good;
    bad_checksum[30] ^= 1;
    gtex_load_width = gtex_load_height = -1;

    captured_output printed;
    const words of_wrong_signature = read_stream({'G', 'I', 'F', '8', '9', 'a'});
    const words of_bad_checksum = read_stream(bad_checksum);
    const std::int32_t width_before_header = gtex_load_width;
    const words of_cut_file = read_stream(file_bytes(good.begin(), good.end() - 20));
    const std::int32_t width_after_header = gtex_load_width;
    const words of_huge = read_stream(resized(good, 900000, 900001));
    EXPECT_EQ(printed.out(), "");
    EXPECT_EQ(printed.err(), "");

    EXPECT_TRUE(of_wrong_signature.empty() && of_bad_checksum.empty() && of_cut_file.empty() &&
                of_huge.empty());
    EXPECT_EQ(width_before_header, -1);
    EXPECT_EQ(width_after_header, 2);
    EXPECT_EQ(gtex_load_height, 900001);
}

TEST(image_png, damage_anywhere_gives_null_or_a_picture) {
    for (const auto& [colour_type, depth] :
         {std::pair{PNG_COLOR_TYPE_PALETTE, 4}, {PNG_COLOR_TYPE_RGB, 16}}) {
        const png_form form = with_transparency(make_form(colour_type, depth, true));
        const file_bytes file = png_file(form);
        int pictures = 0;
        captured_output printed;
        for_each_damage(file, [&pictures](file_bytes damaged) {
            pictures += read_stream(damaged).empty() ? 0 : 1;
            repair_png_checksums(damaged);
            pictures += read_stream(damaged).empty() ? 0 : 1;
        });
        EXPECT_GT(pictures, 0); // some damage does no harm: a colour of the palette, the end
        EXPECT_EQ(read_stream(file), expected_words(form));
    }
}
