// The blurs, smear, glow, zoom and bump against plain sums and lookups, pixel by pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

#include "morvane/gtex/bump.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/inner/blur_run.h"
#include "morvane/gtex/zoom.h"
#include "tests/support/surfaces.h"

namespace {

using words = std::vector<std::uint32_t>;

std::uint32_t mean_word(const std::vector<std::uint32_t>& taps) {
    std::int64_t sums[3] = {};
    for (const std::uint32_t tap : taps)
        for (int k = 0; k < 3; ++k)
            sums[k] += byte_of(tap, k);
    const auto mean = [&](int k) {
        return static_cast<std::int32_t>(sums[k] / static_cast<std::int64_t>(taps.size()));
    };
    return word_of(0, mean(2), mean(1), mean(0));
}

words naive_blur_h_at(gtex dst, gtex src, std::int64_t ox, std::int64_t oy, std::int64_t n) {
    words expected(dst.pixels, dst.pixels + dst.count);
    n = std::clamp<std::int64_t>(n, 0, 512);
    for (std::int64_t y = 1; y <= std::min(dst.height - 2, 383); ++y)
        for (std::int64_t x = 0; x < dst.width; ++x) {
            const std::int64_t last_tap = y * 512 + x;
            const std::int64_t place = (y + oy) * 512 + x + ox;
            if (y + oy < 0 || y + oy > 383 || last_tap >= src.count) continue;
            if (place < dst.width || place >= dst.count - dst.width) continue;
            expected[static_cast<std::size_t>(place)] =
                mean_word({src.pixels + last_tap - n, src.pixels + last_tap + 1});
        }
    return expected;
}

words naive_blur_v_at(gtex dst, gtex src, std::int64_t ox, std::int64_t oy, std::int64_t n) {
    words expected(dst.pixels, dst.pixels + dst.count);
    n = std::clamp<std::int64_t>(n, 0, 512);
    for (std::int64_t y = 0; y < dst.height && (y + 1) * dst.width <= src.count; ++y)
        for (std::int64_t x = 1; x <= dst.width - 2; ++x) {
            words taps;
            for (std::int64_t tap = y - n; tap <= y; ++tap)
                taps.push_back(src.pixels[std::max<std::int64_t>(tap, 0) * dst.width + x]);
            const std::int64_t place = (y + oy) * dst.width + x + ox;
            if (place >= 0 && place < dst.count) expected[static_cast<std::size_t>(place)] = mean_word(taps);
        }
    return expected;
}

struct size {
    std::int32_t width, height;
};

class filters : public testing::Test {
  protected:
    static void SetUpTestSuite() { frame_tables_init(); }
};

using blurs = filters;
using blur_kernels = filters;
using zoom = filters;
using bump = filters;

TEST_F(blurs, horizontal_is_the_centred_box_mean_on_the_flat_run) {
    for (const std::int32_t n : {INT_MIN, -1, 0, 1, 2, 7, 31, 255, 256, 257, 511, 512, 513, INT_MAX}) {
        guarded_surface dst(512, 40, 1), src(512, 40, 2);
        const words expected = naive_blur_h_at(dst, src, -(std::clamp(n, 0, 512) / 2), 0, n);
        gtex_blur_h(dst, src, n);
        expect_pixels(dst, expected);
    }
}

TEST_F(blurs, horizontal_with_an_offset_drops_what_leaves_the_surface) {
    constexpr std::int32_t far[] = {0, 1, -1, 5, -300, 513, 383, -4097, INT_MIN, INT_MAX};
    for (const std::int32_t ox : far)
        for (const std::int32_t oy : far) {
            guarded_surface dst(512, 9, 7), src(512, 9, 8);
            const words expected = naive_blur_h_at(dst, src, ox, oy, 6);
            gtex_blur_h_at(dst, src, ox, oy, 6);
            expect_pixels(dst, expected);
        }
}

TEST_F(blurs, horizontal_stays_in_the_384_rows_of_the_console) {
    for (const std::int32_t oy : {20, -20, 390}) {
        guarded_surface dst(512, 420, 27), src(512, 420, 28);
        const words expected = naive_blur_h_at(dst, src, 1, oy, 2);
        gtex_blur_h_at(dst, src, 1, oy, 2);
        expect_pixels(dst, expected);
    }
}

TEST_F(blurs, horizontal_takes_surfaces_of_any_size) {
    constexpr size sizes[] = {{512, 400}, {512, 2}, {512, 1}, {512, 3}, {1, 1},
                              {100, 50},  {700, 9}, {511, 7}, {513, 7}, {3, 600}};
    for (const size d : sizes)
        for (const size s : sizes)
            for (const std::int32_t n : {0, 9, 512}) {
                if (n == 512 && d.height > 100) continue; // the plain sums take long
                guarded_surface dst(d.width, d.height, 9), src(s.width, s.height, 10);
                const words expected = naive_blur_h_at(dst, src, 3, -1, n);
                gtex_blur_h_at(dst, src, 3, -1, n);
                expect_pixels(dst, expected);
            }
}

TEST_F(blurs, vertical_is_the_box_mean_of_the_rows_above) {
    constexpr size sizes[] = {{512, 30}, {37, 70}, {2, 5}, {1, 4}, {3, 1}, {300, 9}};
    for (const size d : sizes)
        for (const size s : sizes)
            for (const std::int32_t n : {INT_MIN, 0, 1, 5, 60, 511, 512, INT_MAX}) {
                guarded_surface dst(d.width, d.height, 11), src(s.width, s.height, 12);
                const words expected = naive_blur_v_at(dst, src, -2, 1, n);
                gtex_blur_v_at(dst, src, -2, 1, n);
                expect_pixels(dst, expected);
            }
}

TEST_F(blurs, vertical_with_an_offset_stays_inside) {
    for (const std::int32_t ox : {0, 1, -40, 3000, INT_MIN, INT_MAX})
        for (const std::int32_t oy : {0, -1, 29, -31, INT_MIN, INT_MAX}) {
            guarded_surface dst(40, 30, 13), src(40, 30, 14);
            const words expected = naive_blur_v_at(dst, src, ox, oy, 3);
            gtex_blur_v_at(dst, src, ox, oy, 3);
            expect_pixels(dst, expected);
        }
}

TEST_F(blurs, work_in_place) {
    guarded_surface both(512, 20, 15), untouched(512, 20, 15);
    words expected = naive_blur_h_at(both, untouched, -10, 0, 20);
    gtex_blur_h(both, both, 20);
    expect_pixels(both, expected);

    guarded_surface column(64, 50, 16), same(64, 50, 16);
    expected = naive_blur_v_at(column, same, 0, 3, 7);
    gtex_blur_v_at(column, column, 0, 3, 7);
    expect_pixels(column, expected);
}

TEST_F(blur_kernels, division_by_multiplication_is_exact_for_every_sum) {
    for (std::int32_t taps = 1; taps <= 513; ++taps) {
        const float factor = box_factor(taps);
        std::int32_t wrong = 0;
        for (std::int32_t sum = 0; sum <= 255 * taps; ++sum) {
            const auto quotient = static_cast<std::uint32_t>(sum / taps);
            // As it is, and as the vector kernel gets a channel in its place in the pixel.
            wrong += box_mean(sum, factor) != quotient;
            wrong += box_mean(sum * 256, factor) >> 8 != quotient;
            wrong += box_mean(sum, factor * 65536) >> 16 != quotient;
        }
        ASSERT_EQ(wrong, 0) << taps << " taps";
    }
}

TEST_F(blur_kernels, all_versions_give_the_same_bits) {
    constexpr std::size_t history = 512;
    std::mt19937 random(17);
    words in(history + 20000);
    for (std::uint32_t& word : in)
        word = random() % 4 == 0 ? 0xffffffff : static_cast<std::uint32_t>(random());
    for (const blur_kernel version : blur_run_versions())
        for (const std::int32_t n : {0, 1, 15, 16, 17, 64, 300, 511, 512})
            for (const std::size_t count : {0U, 1U, 15U, 255U, 256U, 257U, 700U, 19999U}) {
                words plain(count + 1, 0xdeadbeef), out(count + 1, 0xdeadbeef);
                blur_run_plain(plain.data(), in.data() + history, count, n);
                version(out.data(), in.data() + history, count, n);
                ASSERT_EQ(out, plain) << "n " << n << " count " << count;
            }
}

TEST_F(filters, smear_follows_the_values_that_it_has_written) {
    for (const size s : {size{31, 17}, {512, 20}, {3, 3}, {2, 3}, {5, 2}, {1, 4}, {1, 1}}) {
        guarded_surface dst(s.width, s.height, 18);
        words expected = dst.copy();
        for (int k = 0; k < 3; ++k) {
            const auto channel = [&](std::int64_t i) {
                return byte_of(expected[static_cast<std::size_t>(i)], k);
            };
            std::int32_t previous = channel(0);
            for (std::int64_t i = s.width + 1; i <= std::int64_t{s.width} * s.height - s.width - 2; ++i) {
                const std::int32_t cross =
                    channel(i - 1) + channel(i + 1) + channel(i - s.width) + channel(i + s.width);
                previous = (cross / 4 + previous) / 2;
                std::uint32_t& word = expected[static_cast<std::size_t>(i)];
                word = (word & ~(0xffU << (8 * k)) & 0xffffff) | static_cast<std::uint32_t>(previous)
                                                                     << (8 * k);
            }
        }
        gtex_smear(dst);
        expect_pixels(dst, expected);
    }
}

TEST_F(filters, glow_adds_a_level_to_the_mean_of_four) {
    for (const std::int32_t level : {0, 1, 40, 255, 256, -1, -100, -255, INT_MIN, INT_MAX})
        for (const size s : {size{37, 11}, {5, 1}, {4, 1}, {3, 1}, {2, 1}, {1, 1}}) {
            guarded_surface dst(s.width, s.height, 19);
            const words before = dst.copy();
            words expected;
            const auto last = static_cast<std::int64_t>(before.size()) - 1;
            for (std::int64_t i = 0; i <= last; ++i) {
                std::int32_t glow[3];
                for (int k = 0; k < 3; ++k) {
                    std::int32_t sum = 0;
                    for (std::int64_t tap = i - 1; tap <= i + 2; ++tap)
                        sum += byte_of(
                            before[static_cast<std::size_t>(std::clamp<std::int64_t>(tap, 0, last))], k);
                    glow[k] = static_cast<std::int32_t>(
                        std::clamp<std::int64_t>(std::int64_t{sum / 4} + level, 0, 255));
                }
                expected.push_back(word_of(0, glow[2], glow[1], glow[0]));
            }
            gtex_glow(dst, level);
            expect_pixels(dst, expected);
        }
}

words naive_zoom(gtex dst, gtex src, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    words expected;
    const float sx = static_cast<float>((double{1} * x1 - x0) / dst.width);
    const float sy = static_cast<float>((double{1} * y1 - y0) / dst.height);
    const auto place = [](float distance, std::int32_t start, std::int32_t size) {
        return static_cast<std::int32_t>(std::clamp(std::trunc(double{distance}) + start, 0.0, size - 1.0));
    };
    float fy = 0;
    for (std::int32_t y = 0; y < dst.height; ++y, fy += sy) {
        float fx = 0;
        for (std::int32_t x = 0; x < dst.width; ++x, fx += sx)
            expected.push_back(src.pixels[place(fy, y0, src.height) * src.width + place(fx, x0, src.width)]);
    }
    return expected;
}

TEST_F(zoom, stretches_a_window_over_the_whole_surface) {
    struct {
        size dst, src;
        std::int32_t x0, y0, x1, y1;
    } constexpr cases[] = {
        {{512, 288}, {512, 288}, 0, 0, 512, 288},   // a plain copy
        {{512, 288}, {512, 288}, 100, 50, 100, 50}, // filled with one pixel
        {{512, 288}, {512, 288}, 17, 9, 497, 280},  // a little in
        {{512, 288}, {512, 288}, 100, 50, 111, 57}, // far in
        {{512, 288}, {320, 240}, 0, 0, 320, 240},   // another width
        {{100, 33}, {512, 288}, 0, 0, 512, 288},    // reduced by five
        {{300, 150}, {512, 288}, 3, 2, 512, 288},   // reduced by less than two
        {{512, 288}, {512, 288}, 511, 287, 0, 0},   // mirrored
        {{1200, 7}, {40, 40}, 1, 1, 39, 39},        // wider than a run
        {{1, 1}, {5, 5}, 2, 3, 5, 5},               // one pixel
        {{37, 19}, {31, 20}, 0, 0, 31, 20},         // no multiple of a vector
        {{64, 8}, {33, 9}, 30, 1, 33, 8},           // at the right edge
        {{64, 64}, {32, 32}, -10, -10, 50, 40},     // over all edges
        {{64, 16}, {64, 16}, 70, 20, 90, 30},       // outside
        {{64, 16}, {64, 16}, INT_MIN, INT_MIN, INT_MAX, INT_MAX},
        {{64, 16}, {64, 16}, INT_MAX, INT_MAX, INT_MIN, INT_MIN},
    };
    for (const auto& c : cases) {
        guarded_surface dst(c.dst.width, c.dst.height, 20), src(c.src.width, c.src.height, 21);
        const words expected = naive_zoom(dst, src, c.x0, c.y0, c.x1, c.y1);
        gtex_zoom(dst, src, c.x0, c.y0, c.x1, c.y1);
        expect_pixels(dst, expected);
    }
}

TEST_F(bump, light_falls_off_around_its_centre) {
    bump_table_init();
    EXPECT_EQ(bump_light[128][128], 255);
    EXPECT_EQ(bump_light[128][192], 127); // half way: 127.5
    EXPECT_EQ(bump_light[0][128], 0);
    EXPECT_EQ(bump_light[0][0], 0);
    for (int i = 0; i < 256; ++i)
        for (int j = 0; j < 256; ++j) {
            const double distance = std::hypot(i - 128, j - 128) / 128;
            const double expected = 255 * (1 - std::min(1.0, distance));
            const int seen = bump_light[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
            ASSERT_LE(seen, expected + 1e-9);
            ASSERT_GT(seen, expected - 1 - 1e-9);
        }
}

TEST_F(bump, lights_by_the_slope_of_the_height_map) {
    bump_table_init();
    constexpr std::int32_t map_rows = 13;
    std::mt19937 random(24);
    std::vector<std::uint8_t> height(320 * map_rows);
    for (std::uint8_t& h : height)
        h = static_cast<std::uint8_t>(random() % 60);
    const auto height_at = [&](std::int32_t x, std::int32_t y) {
        return height[static_cast<std::size_t>(std::clamp(y, 0, map_rows - 1) * 320 + std::clamp(x, 0, 319))];
    };
    for (const auto& [lx, ly] :
         {std::pair{0, 0}, {5, -9}, {127, 0}, {0, 127}, {-128, 1}, {-200, 3}, {INT_MAX, INT_MIN}})
        for (const auto& [d, s] :
             {std::pair{size{320, 13}, size{320, 13}}, {{400, 20}, {330, 30}}, {{50, 7}, {60, 5}}}) {
            guarded_surface dst(d.width, d.height, 25), src(s.width, s.height, 26);
            words expected = dst.copy();
            for (std::int32_t y = 0; y < std::min({d.height, s.height, map_rows}); ++y)
                for (std::int32_t x = 0; x < std::min({d.width, s.width, 320}); ++x) {
                    const std::int64_t column =
                        std::int64_t{lx} + height_at(x + 1, y) - height_at(x - 1, y) + 128;
                    const std::int64_t row =
                        std::int64_t{ly} + height_at(x, y + 1) - height_at(x, y - 1) + 128;
                    const bool in_table = column >= 0 && column < 256 && row >= 0 && row < 256;
                    const int light =
                        (in_table
                             ? bump_light[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]
                             : 0) -
                        224;
                    const std::uint32_t p = src.at(x, y);
                    expected[static_cast<std::size_t>(y * d.width + x)] = word_of(
                        0, std::clamp(byte_of(p, 2) + light, 0, 255),
                        std::clamp(byte_of(p, 1) + light, 0, 255), std::clamp(byte_of(p, 0) + light, 0, 255));
                }
            gtex_bump(dst, height, src, lx, ly);
            expect_pixels(dst, expected);
        }
}

} // namespace
