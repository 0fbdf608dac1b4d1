// The image record, the transfer operations, the frame tables and the clip tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "morvane/base/numbers.h"
#include "tests/support/surfaces.h"

TEST(gtex_record, create_fills_every_word_and_computes_the_sizes) {
    gtex surface = gtex_create(8, 8, 0x80ffffff);
    EXPECT_EQ(surface.count, 64);
    EXPECT_EQ(surface.size, 256);
    EXPECT_EQ(static_cast<void*>(surface.bytes), static_cast<void*>(surface.pixels));
    for (std::int32_t i = 0; i < surface.count; ++i)
        EXPECT_EQ(surface.pixels[i], 0x80ffffffU);

    const gtex alias = surface;
    gtex_fill(alias, 5);
    EXPECT_EQ(surface.pixels[63], 5U);
    gtex_destroy(surface);
    EXPECT_EQ(surface.pixels, nullptr);
}

TEST(gtex_record, sizes_that_cannot_be_had_give_an_empty_record) {
    for (const auto& [width, height] : {std::pair{0, 5},
                                        {5, -1},
                                        {INT32_MIN, INT32_MIN},
                                        {INT32_MAX, INT32_MAX},
                                        {65536, 65536},
                                        {32768, 8193}}) {
        const gtex surface = gtex_create(width, height, 1);
        EXPECT_EQ(surface.pixels, nullptr) << width << " by " << height;
        EXPECT_EQ(surface.count, 0);
        gtex_fill(surface, 7); // a count of zero does nothing
        gtex_copy(surface, surface);
    }
}

TEST(gtex_transfer, copy_is_a_flat_run_bounded_by_the_source) {
    guarded_surface frame(512, 8, 1), sprite(33, 31, 2);
    std::vector<std::uint32_t> expected = frame.copy();
    for (std::int32_t i = 0; i < sprite.count(); ++i)
        expected[static_cast<std::size_t>(i)] = sprite[i];
    gtex_copy(frame, sprite);
    expect_pixels(frame, expected);

    guarded_surface small(7, 3, 3);
    gtex_copy(small, frame); // more than it holds: nothing outside is touched
    EXPECT_EQ(small[20], frame[20]);
    EXPECT_TRUE(small.intact());
    gtex_copy_raw(small, sprite.copy().data(), -4);
    EXPECT_EQ(small[0], frame[0]);
}

TEST(gtex_transfer, copies_run_from_the_first_word_to_the_last_and_keyed_ones_skip_zero_words) {
    constexpr void (*plain)(gtex, gtex) = [](gtex dst, gtex src) {
        gtex_copy_raw(dst, src.pixels, src.count);
    };
    for (const auto copy : {plain, &gtex_copy, &gtex_copy_keyed, &gtex_copy_keyed_dst})
        for (const std::size_t place : {0U, 50U, 293U, 299U, 300U, 301U, 307U, 549U, 550U}) {
            std::vector<std::uint32_t> block(800);
            for (std::uint32_t i = 0; i < block.size(); ++i)
                block[i] = (i % 41) << 24; // black with a mask value is no key
            std::vector<std::uint32_t> expected = block;
            const bool keyed = copy == gtex_copy_keyed || copy == gtex_copy_keyed_dst;
            for (std::size_t i = 0; i < 250; ++i)
                if (!keyed || expected[300 + i] != 0) expected[place + i] = expected[300 + i];
            copy(gtex_wrap(block.data() + place, 250, 1), gtex_wrap(block.data() + 300, 250, 1));
            EXPECT_EQ(block, expected) << "from 300 to " << place;
        }
}

TEST(gtex_transfer, copy_rect_takes_a_window_and_stays_inside_the_source) {
    guarded_surface src(40, 30, 6);
    for (const auto& [x, y] : {std::pair{5, 7}, {0, 0}, {-3, 25}, {35, -2}, {INT32_MIN, 3}, {3, INT32_MAX}}) {
        guarded_surface dst(9, 11, 7);
        std::vector<std::uint32_t> expected = dst.copy();
        for (std::int64_t row = 0; row < 11; ++row)
            for (std::int64_t column = 0; column < 9; ++column)
                if (x + column >= 0 && x + column < 40 && y + row >= 0 && y + row < 30)
                    expected[static_cast<std::size_t>(row * 9 + column)] =
                        src.at(static_cast<std::int32_t>(x + column), static_cast<std::int32_t>(y + row));
        gtex_copy_rect(dst, src, x, y);
        expect_pixels(dst, expected);
    }
}

TEST(gtex_transfer, flip_reverses_the_rows) {
    frame_tables_init();
    EXPECT_EQ(gtex_scratch.size, 16662528);
    for (const std::int32_t rows : {1, 2, 5, 32}) {
        guarded_surface dst(13, rows, 8);
        const std::vector<std::uint32_t> before = dst.copy();
        std::vector<std::uint32_t> expected(before.size());
        for (std::int32_t y = 0; y < rows; ++y)
            for (std::int32_t x = 0; x < 13; ++x)
                expected[static_cast<std::size_t>((rows - 1 - y) * 13 + x)] =
                    before[static_cast<std::size_t>(y * 13 + x)];
        gtex_flip(dst);
        expect_pixels(dst, expected);
    }
}

TEST(gtex_transfer, flip_leaves_what_the_scratch_surface_cannot_hold) {
    frame_tables_init();
    EXPECT_EQ(gtex_scratch.width, 1024);
    gtex large = gtex_create(1024, 4069, 0);
    large.pixels[0] = 77;
    gtex_flip(large);
    EXPECT_EQ(large.pixels[0], 77U);
    gtex_destroy(large);
}

TEST(gtex_present, blacks_the_first_and_last_row_and_keeps_the_letterbox) {
    guarded_surface console(512, 384, 9), canvas(512, 288, 10);
    console.fill(0x12345678);
    const std::vector<std::uint32_t> frame = canvas.copy();
    gtex_present(console, canvas);
    for (std::int32_t y = 0; y < 384; ++y)
        for (std::int32_t x = 0; x < 512; ++x) {
            std::uint32_t expected = 0x12345678;
            if (y == 48 || y == 335)
                expected = 0;
            else if (y > 48 && y < 335)
                expected = frame[static_cast<std::size_t>((y - 48) * 512 + x)];
            ASSERT_EQ(console.at(x, y), expected) << x << ", " << y;
        }
    EXPECT_EQ(canvas.at(17, 0), 0U); // the frame itself loses the two rows
    EXPECT_EQ(canvas.at(17, 287), 0U);
    EXPECT_TRUE(console.intact() && canvas.intact());

    guarded_surface small(100, 4, 11), large(512, 400, 12);
    gtex_present(console, small);
    gtex_present(console, large);
    EXPECT_TRUE(console.intact() && small.intact() && large.intact());
}

TEST(frame_tables, rows_and_clip_tests) {
    frame_tables_init();
    for (std::int32_t y = 0; y < 384; ++y)
        EXPECT_EQ(frame_row[static_cast<std::size_t>(y)], y * 512);
    for (std::int32_t y = 0; y < 256; ++y)
        EXPECT_EQ(tex_row[static_cast<std::size_t>(y)], y * 256);

    EXPECT_FALSE(in_frame(0, 100) || in_frame(100, 0) || in_frame(512, 287) || in_frame(511, 288));
    EXPECT_FALSE(in_frame(-1, 5) || in_frame(5, INT32_MIN));
    EXPECT_TRUE(in_frame(511, 287) && in_frame(1, 1));
    EXPECT_TRUE(in_rect(1, 2047, 512, 2048) && !in_rect(1, 2048, 512, 2048) && !in_rect(0, 5, 512, 2048));
    EXPECT_TRUE(in_frame_index(1) && in_frame_index(147455));
    EXPECT_FALSE(in_frame_index(0) || in_frame_index(147456) || in_frame_index(-1));
}

TEST(numbers, truncation_has_limits_and_takes_no_number_as_0) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {0.0, 0.9, -0.9, 1.0, -1.0, 12345.99, -12345.99, 2147483646.9, -2147483647.9})
        EXPECT_EQ(trunc_to_int(value), static_cast<std::int32_t>(value)) << value;
    for (const double value : {2147483647.0, 2147483648.0, 1e300, infinity})
        EXPECT_EQ(trunc_to_int(value), INT32_MAX) << value;
    for (const double value : {-2147483648.0, -2147483649.0, -1e300, -infinity})
        EXPECT_EQ(trunc_to_int(value), INT32_MIN) << value;
    EXPECT_EQ(trunc_to_int(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(trunc_to_byte(-1.5), 255);
    EXPECT_EQ(trunc_to_byte(256.7), 0);
    EXPECT_EQ(trunc_to_int64(-1.9), -1);
    EXPECT_EQ(trunc_to_int64(1e19), INT64_MAX);
    EXPECT_EQ(trunc_to_int64(-infinity), INT64_MIN);
    EXPECT_EQ(trunc_to_int64(std::numeric_limits<double>::quiet_NaN()), 0);
}
