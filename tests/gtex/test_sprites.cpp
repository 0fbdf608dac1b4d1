// Sprites at any position, against a plot of each pixel with its clip test.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "morvane/base/random.h"
#include "morvane/gtex/sprites.h"
#include "tests/support/surfaces.h"

namespace {

using pixel_rule = std::function<std::uint32_t(std::uint32_t d, std::uint32_t s)>;

std::uint32_t add_rule(std::uint32_t d, std::uint32_t s) {
    const auto add = [&](int k) { return std::min(byte_of(d, k) + byte_of(s, k), 255); };
    return word_of(add(3), add(2), add(1), add(0));
}
std::uint32_t store_rule(std::uint32_t, std::uint32_t s) {
    return s;
}

// Each sprite pixel by itself: the clip test of the frame with `rows` rows, then what `dst` holds.
void plot_naive(std::vector<std::uint32_t>& dst, guarded_surface& sprite, std::int64_t x, std::int64_t y,
                std::int64_t rows, const pixel_rule& rule) {
    const gtex record = sprite;
    for (std::int32_t j = 0; j < record.height; ++j)
        for (std::int32_t i = 0; i < record.width; ++i) {
            const std::int64_t column = x + i, row = y + j;
            if (column < 1 || column >= 512 || row < 1 || row >= rows) continue;
            const std::int64_t index = row * 512 + column;
            if (index >= static_cast<std::int64_t>(dst.size())) continue;
            auto& pixel = dst[static_cast<std::size_t>(index)];
            pixel = rule(pixel, sprite.at(i, j));
        }
}

struct position {
    std::int32_t x, y;
};
constexpr position positions[] = {{100, 50},        {-16, -16},       {600, 100},     {500, 280},
                                  {0, 0},           {1, 1},           {511, 287},     {512, 288},
                                  {-40, 5},         {5, 2000},        {5, 386},       {490, 290},
                                  {INT32_MAX, 100}, {100, INT32_MAX}, {INT32_MIN, 3}, {3, INT32_MIN}};

} // namespace

TEST(sprites, every_position_plots_what_the_clip_test_lets_through) {
    guarded_surface sprite(32, 32, 1);
    struct operation {
        void (*call)(gtex, gtex, std::int32_t, std::int32_t);
        std::int32_t rows;
        pixel_rule rule;
    };
    const operation operations[] = {
        {gtex_add_sprite, 288, add_rule}, {gtex_blit, 2048, store_rule}, {gtex_add_blit, 2048, add_rule}};
    for (const operation& op : operations)
        for (const position& at : positions)
            for (const std::int32_t height : {288, 400, 3}) {
                guarded_surface dst(512, height, 2);
                std::vector<std::uint32_t> expected = dst.copy();
                plot_naive(expected, sprite, at.x, at.y, op.rows, op.rule);
                op.call(dst, sprite, at.x, at.y);
                expect_pixels(dst, expected);
            }
}

TEST(sprites, a_surface_that_ends_within_a_row_is_not_passed) {
    guarded_surface dst(100, 9, 3), sprite(300, 4, 4); // 900 pixels: the second row of 512 is cut
    std::vector<std::uint32_t> expected = dst.copy();
    plot_naive(expected, sprite, 250, 1, 2048, store_rule);
    gtex_blit(dst, sprite, 250, 1);
    expect_pixels(dst, expected);
}

TEST(sprites, jitter_moves_each_row_by_one_random_number) {
    for (const std::int32_t range : {20, 1, 0, -7, 32768, INT32_MIN, INT32_MAX}) {
        guarded_surface src(512, 300, 5), dst(512, 288, 6);
        std::vector<std::uint32_t> expected = dst.copy();
        random_seed(7);
        for (std::int32_t j = 0; j < 300; ++j) {
            const std::int64_t shift = random_next() % std::max(range, 1) - std::int64_t{range / 2};
            for (std::int32_t i = 0; i < 512; ++i) {
                const std::int64_t column = i + shift;
                if (column < 1 || column >= 512 || j < 1 || j >= 288 || src.at(i, j) == 0) continue;
                expected[static_cast<std::size_t>(j * 512 + column)] = src.at(i, j);
            }
        }
        const int following = random_next();
        random_seed(7);
        gtex_copy_jitter(dst, src, range);
        EXPECT_EQ(random_next(), following); // one number for each row, also for those off the frame
        expect_pixels(dst, expected);
    }
}
