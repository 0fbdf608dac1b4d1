#include "morvane/media/image_jpg.h"

#include <cmath>

#include <gtest/gtest.h>

#include "morvane/media/image_load.h"
#include "tests/support/captured_output.h"
#include "tests/support/memory_file.h"
#include "tests/support/picture_files.h"

namespace {

using words = std::vector<std::uint32_t>;

words read(const file_bytes& file) {
    std::FILE* stream = memory_file(file);
    std::uint32_t* block = gtex_load_jpg(stream);
    std::fclose(stream);
    if (block == nullptr) return {};
    const words all(block, block + gtex_load_width * gtex_load_height);
    std::free(block);
    return all;
}

// Slow ramps in every component, which JPEG keeps nearly as they are.
jpeg_form ramps(std::uint32_t width, std::uint32_t height, int components, J_COLOR_SPACE in,
                J_COLOR_SPACE stored) {
    jpeg_form form{.width = width, .height = height, .components = components, .in = in, .stored = stored};
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            for (std::uint32_t c = 0; c < static_cast<std::uint32_t>(components); ++c)
                form.samples.push_back(static_cast<std::uint8_t>(40 + c * 30 + (c % 2 == 0 ? x : y) * 2));
    return form;
}

// Largest difference of a channel between `got` and the colours that `colour(samples of a pixel, c)` tells.
template<class Colour>
int worst_difference(const words& got, const jpeg_form& form, Colour colour) {
    int worst = got.size() == std::size_t{form.width} * form.height ? 0 : 999;
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (got[i] >> 24 != 0) worst = 999;
        for (std::uint32_t c = 0; c < 3; ++c) {
            const int is = static_cast<int>(got[i] >> (16 - 8 * c) & 255);
            const int ought = colour(&form.samples[i * static_cast<std::size_t>(form.components)], c);
            worst = std::max(worst, std::abs(is - ought));
        }
    }
    return worst;
}

int same_channel(const std::uint8_t* samples, std::uint32_t c) {
    return samples[c];
}
int only_channel(const std::uint8_t* samples, std::uint32_t) {
    return samples[0];
}

} // namespace

TEST(image_jpg, colour_and_grey) {
    captured_output printed;
    for (const bool progressive : {false, true}) {
        for (const J_COLOR_SPACE stored : {JCS_YCbCr, JCS_RGB}) {
            jpeg_form colour = ramps(37, 21, 3, JCS_RGB, stored);
            colour.progressive = progressive;
            EXPECT_LE(worst_difference(read(jpeg_file(colour)), colour, same_channel), 3);
            EXPECT_EQ(gtex_load_width, 37);
            EXPECT_EQ(gtex_load_height, 21);
        }
        jpeg_form grey = ramps(37, 21, 1, JCS_GRAYSCALE, JCS_GRAYSCALE);
        grey.progressive = progressive;
        EXPECT_LE(worst_difference(read(jpeg_file(grey)), grey, only_channel), 3);
    }
    EXPECT_EQ(printed.out().substr(0, 38), "debug: gtex_load_jpg()\nimage loaded\nde");
    EXPECT_EQ(printed.err(), "");
}

TEST(image_jpg, four_inks_are_mixed_down) {
    captured_output quiet;
    const auto light = [](int colour, int black) {
        return static_cast<int>(std::lround(colour * black / 255.0));
    };
    const auto inverted = [&](const std::uint8_t* s, std::uint32_t c) { return light(s[c], s[3]); };
    const auto inks = [&](const std::uint8_t* s, std::uint32_t c) { return light(255 - s[c], 255 - s[3]); };
    for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
        const jpeg_form adobe = ramps(24, 24, 4, JCS_CMYK, stored);
        EXPECT_LE(worst_difference(read(jpeg_file(adobe)), adobe, inverted), 4);
    }
    jpeg_form plain = ramps(24, 24, 4, JCS_CMYK, JCS_CMYK); // YCCK can't be told from CMYK without the marker
    plain.adobe_marker = false;
    EXPECT_LE(worst_difference(read(jpeg_file(plain)), plain, inks), 4);
}

TEST(image_jpg, errors_inside_the_library_give_null_and_leave_the_reader_whole) {
    const jpeg_form form = ramps(16, 16, 3, JCS_RGB, JCS_YCbCr);
    const file_bytes good = jpeg_file(form);
    captured_output printed;
    EXPECT_TRUE(read({}).empty());
    EXPECT_TRUE(read({'G', 'I', 'F', '8', '9', 'a'}).empty());
    EXPECT_TRUE(read(file_bytes(good.begin(), good.begin() + 30)).empty());
    EXPECT_LE(worst_difference(read(good), form, same_channel), 3);
    EXPECT_EQ(printed.err(), "");
    EXPECT_EQ(printed.out(), "debug: gtex_load_jpg()\ndebug: gtex_load_jpg()\ndebug: gtex_load_jpg()\n"
                             "debug: gtex_load_jpg()\nimage loaded\n");
}

TEST(image_jpg, picture_out_of_proportion_to_its_file_is_refused) {
    struct row {
        bool progressive, arithmetic;
        std::uint8_t marker; // of the frame
        int side;
    };
    for (const row& r :
         {row{false, false, 0xc0, 0x3fff}, {true, false, 0xc2, 0x3fff}, {false, true, 0xc9, 0x2001}}) {
        jpeg_form form = ramps(16, 16, 1, JCS_GRAYSCALE, JCS_GRAYSCALE);
        form.progressive = r.progressive;
        form.arithmetic = r.arithmetic;
        file_bytes file = jpeg_file(form);
        const file_bytes marker = {0xff, r.marker};
        const auto frame = std::search(file.begin(), file.end(), marker.begin(), marker.end());
        ASSERT_NE(frame, file.end());
        for (int i = 5; i < 9; ++i) // height and width
            frame[i] = static_cast<std::uint8_t>(i % 2 == 1 ? r.side >> 8 : r.side);
        captured_output printed;
        EXPECT_TRUE(read(file).empty());
        EXPECT_EQ(printed.out(), "debug: gtex_load_jpg()\n");
    }
}

// Arithmetic coding says a plain colour in some 200 bytes, however large.
TEST(image_jpg, plain_pictures_of_arithmetic_coding_are_read_whole) {
    for (const std::uint32_t side : {16U, 1600U}) {
        jpeg_form form{.width = side, .height = side, .arithmetic = true};
        form.samples.resize(std::size_t{side} * side * 3, 120);
        const file_bytes file = jpeg_file(form);
        EXPECT_LT(file.size(), 400U);
        captured_output quiet;
        EXPECT_LE(worst_difference(read(file), form, same_channel), 1);
    }
}

TEST(image_jpg, endless_refinement_is_refused) {
    jpeg_form form = ramps(16, 16, 1, JCS_GRAYSCALE, JCS_GRAYSCALE);
    form.progressive = true;
    const file_bytes file = jpeg_file(form);
    const file_bytes start_of_scan = {0xff, 0xda};
    const file_bytes::const_iterator last_scan =
        std::find_end(file.begin(), file.end(), start_of_scan.begin(), start_of_scan.end());
    const auto with_scans = [&](int more) {
        file_bytes longer(file.begin(), file.end() - 2); // up to the end marker
        for (int i = 0; i < more; ++i)
            longer.insert(longer.end(), last_scan, file.end() - 2);
        longer.insert(longer.end(), file.end() - 2, file.end());
        return longer;
    };
    captured_output printed;
    EXPECT_EQ(read(with_scans(20)).size(), 256U);
    EXPECT_TRUE(read(with_scans(1000)).empty());
}

TEST(image_jpg, damage_anywhere_gives_null_or_a_picture) {
    for (const bool progressive : {false, true}) {
        jpeg_form form = ramps(16, 16, 3, JCS_RGB, JCS_YCbCr);
        form.progressive = progressive;
        int pictures = 0;
        captured_output printed;
        for_each_damage(jpeg_file(form), [&pictures](const file_bytes& damaged) {
            const words all = read(damaged);
            pictures += all.empty() ? 0 : 1;
            EXPECT_TRUE(std::ranges::all_of(all, [](std::uint32_t word) { return word >> 24 == 0; }));
        });
        EXPECT_GT(pictures, 100);
        EXPECT_EQ(printed.err(), "");
    }
}
