// Plasma, noise, patterns, and the random numbers behind the noise.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "morvane/base/random.h"
#include "morvane/gtex/noise.h"
#include "morvane/gtex/patterns.h"
#include "morvane/gtex/plasma.h"
#include "tests/support/surfaces.h"

namespace {

using words = std::vector<std::uint32_t>;

std::vector<int> draw(int count) {
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.push_back(random_next());
    return numbers;
}

// Drawn before anything can have seeded the generator.
const std::vector<int> from_program_start = draw(500);

TEST(random_numbers, sequence_from_program_start_is_that_of_seed_1) {
    random_seed(1);
    EXPECT_EQ(draw(500), from_program_start);
    random_seed(2);
    EXPECT_NE(draw(500), from_program_start);
    random_seed(0);
    EXPECT_NE(draw(500), from_program_start);
}

TEST(random_numbers, filling_draws_from_the_same_sequence_in_any_interleaving) {
    random_seed(5);
    const std::vector<int> expected = draw(20000);
    random_seed(5);
    std::mt19937 random(1);
    std::vector<int> seen;
    while (seen.size() < 19000) {
        for (auto singles = random() % 5; singles > 0; --singles)
            seen.push_back(random_next());
        std::vector<std::uint16_t> run(random() % 700);
        random_fill(run);
        seen.insert(seen.end(), run.begin(), run.end());
    }
    EXPECT_TRUE(std::equal(seen.begin(), seen.end(), expected.begin()));
}

// Pearson's statistic of `bins` against an even spread; its mean is bins - 1, its deviation sqrt(2 * bins).
double chi_square(const std::vector<int>& bins) {
    double total = 0, sum = 0;
    for (const int n : bins)
        total += n;
    const double even = total / static_cast<double>(bins.size());
    for (const int n : bins)
        sum += (n - even) * (n - even) / even;
    return sum;
}

void expect_even(const std::vector<int>& bins) {
    const auto freedom = static_cast<double>(bins.size()) - 1;
    EXPECT_NEAR(chi_square(bins), freedom, 5 * std::sqrt(2 * freedom));
}

TEST(random_numbers, are_even_over_15_bits_and_independent_of_their_neighbours) {
    random_seed(1);
    std::vector<std::uint16_t> numbers(1 << 21);
    random_fill(numbers);
    EXPECT_LE(*std::max_element(numbers.begin(), numbers.end()), random_max);
    std::vector<int> values(32768);
    for (const std::uint16_t v : numbers)
        ++values[v];
    expect_even(values);
    // Pairs of a few high bits and of a few low bits, next to each other and a generator's step apart.
    for (const std::size_t distance : {1U, 2U, 64U, 127U, 128U, 129U}) {
        std::vector<int> high(1024), low(1024);
        for (std::size_t i = distance; i < numbers.size(); ++i) {
            ++high[static_cast<std::size_t>((numbers[i] >> 10) * 32 + (numbers[i - distance] >> 10))];
            ++low[static_cast<std::size_t>((numbers[i] & 31) * 32 + (numbers[i - distance] & 31))];
        }
        expect_even(high);
        expect_even(low);
    }
}

TEST(noise, division_by_multiplication_is_exact) {
    // The quotient rises with v, so that it is right everywhere if it is on both sides of each step.
    for (std::int32_t range = 1; range <= 32768; ++range) {
        const noise_divisor divisor = noise_divisor_of(range);
        const auto is_right = [&](std::int32_t v) {
            return divisor.remainder(static_cast<std::uint16_t>(v)) == v % range;
        };
        bool all = is_right(32767);
        for (std::int32_t v = 0; v <= 32767; v += range)
            all = all && is_right(v) && is_right(std::max(0, v - 1));
        ASSERT_TRUE(all) << "range " << range;
    }
}

TEST(noise, is_the_remainder_of_the_next_numbers_in_grey) {
    for (const std::int32_t range :
         {1, 2, 80, 240, 255, 256, 257, 1000, 32767, 32768, 100000, INT_MAX, -1, -80, INT_MIN})
        for (const auto& [width, height] : {std::pair{512, 288}, {37, 11}, {1, 1}}) {
            random_seed(3);
            words expected;
            for (const int number : draw(width * height))
                expected.push_back(static_cast<std::uint32_t>(number % range & 255) * 0x010101);
            const int following = random_next();
            guarded_surface dst(width, height, 2);
            random_seed(3);
            gtex_noise(dst, range);
            expect_pixels(dst, expected);
            EXPECT_EQ(random_next(), following);
        }
}

TEST(noise, range_0_is_black) {
    guarded_surface dst(40, 30, 3);
    gtex_noise(dst, 0);
    expect_pixels(dst, words(40 * 30, 0));
}

class plasma : public testing::Test {
  protected:
    static void SetUpTestSuite() { plasma_tables_init(a, b); }
    static inline std::vector<std::uint8_t> a = std::vector<std::uint8_t>(plasma_map_size);
    static inline std::vector<std::uint8_t> b = std::vector<std::uint8_t>(plasma_map_size);
};

TEST_F(plasma, maps_hold_rings_and_waves) {
    for (int j = 0; j < 576; ++j)
        for (int i = 0; i < 1024; ++i) {
            const auto entry = static_cast<std::size_t>(j * 1024 + i);
            const double rings = std::sin(std::hypot(288 - j, 512 - i) * 0.0625) * 63 + 64;
            const double d1 = std::cos(j * static_cast<double>(0.013513514F)) * 15 + 37;
            const double d2 = std::sin(i * static_cast<double>(0.01754386F)) * 11 + 31;
            const double waves = std::cos(j / d2) * std::sin(i / d1) * 63 + 64;
            ASSERT_EQ(a[entry], std::trunc(rings));
            ASSERT_EQ(b[entry], std::trunc(waves));
        }
    EXPECT_EQ(a[288 * 1024 + 512], 64);
    for (const auto* map : {&a, &b}) {
        EXPECT_EQ(*std::min_element(map->begin(), map->end()), 1);
        EXPECT_LE(*std::max_element(map->begin(), map->end()), 127);
    }
}

words naive_plasma(gtex dst, std::span<const std::uint8_t> map_a, std::span<const std::uint8_t> map_b,
                   float time, int shift) {
    words expected(dst.pixels, dst.pixels + dst.count);
    const double t = time;
    const auto offset = [](double across, double down) {
        const double column = 256 - std::trunc(across * -255), row = 144 - std::trunc(down * -143);
        return static_cast<std::size_t>(row * 1024 + column);
    };
    std::size_t o[3] = {offset(std::cos(t * 0.97), std::sin(t * 1.23)),
                        offset(std::sin(-t * 1.14), std::cos(-t * 0.75)),
                        offset(std::sin(-t * 1.37), std::cos(-t * 1.08))};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::max({o[0], o[1], o[2]}) < map_a.size()) {
            const int sum = (map_a[o[0]] + map_b[o[1]] + map_b[o[2]]) >> shift;
            expected[i] = static_cast<std::uint32_t>(std::min(sum, 255)) * 0x01010101U;
        }
        const bool row_ends = (i + 1) % static_cast<std::size_t>(dst.width) == 0;
        for (std::size_t& k : o)
            k += row_ends ? 513 : 1;
    }
    return expected;
}

TEST_F(plasma, sums_three_windows) {
    for (const float time : {0.0F, 0.5F, 13.37F, 137.2F, -4.0F, 1e9F})
        for (const int shift : {0, 1, 3, 31}) {
            guarded_surface dst(512, 288, 4);
            const words expected = naive_plasma(dst, a, b, time, shift);
            gtex_plasma(dst, a, b, time, shift);
            expect_pixels(dst, expected);
        }
}

TEST_F(plasma, starts_at_the_windows_of_time_0) {
    guarded_surface dst(512, 288, 5);
    gtex_plasma(dst, a, b, 0, 2);
    const int sum = a[144 * 1024 + 511] + 2 * b[287 * 1024 + 256];
    EXPECT_EQ(byte_of(dst[0], 0), sum / 4);
    gtex_plasma(dst, a, b, 3, 1);
    for (std::int32_t i = 0; i < dst.count(); ++i)
        ASSERT_LE(byte_of(dst[i], 3), 190);
}

TEST_F(plasma, draws_what_the_maps_hold) {
    for (const auto& [width, height] : {std::pair{37, 20}, {1024, 600}, {2000, 300}, {300, 900}, {1, 1}})
        for (const float time : {0.0F, 2.5F}) {
            guarded_surface dst(width, height, 6);
            const words expected = naive_plasma(dst, a, b, time, 0);
            gtex_plasma(dst, a, b, time, 0);
            expect_pixels(dst, expected);
        }
}

TEST_F(plasma, takes_maps_of_any_content_and_any_shift) {
    const std::vector<std::uint8_t> bright(plasma_map_size, 255);
    guarded_surface dst(512, 20, 7);
    gtex_plasma(dst, bright, bright, 1, 0);
    expect_pixels(dst, words(512 * 20, 0xffffffff));
    gtex_plasma(dst, bright, bright, 1, -5); // as 0
    expect_pixels(dst, words(512 * 20, 0xffffffff));
    gtex_plasma(dst, bright, bright, 1, INT_MAX); // as 31
    expect_pixels(dst, words(512 * 20, 0));
    gtex_plasma(dst, bright, bright, 1, 2); // 765 / 4 = 191
    expect_pixels(dst, words(512 * 20, 0xbfbfbfbf));
}

TEST_F(plasma, a_short_map_or_no_time_at_all_does_no_harm) {
    guarded_surface dst(512, 288, 8);
    const words before = dst.copy();
    gtex_plasma(dst, std::span(a).first(plasma_map_size - 1), b, 0, 0);
    expect_pixels(dst, before);
    for (const float time : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()})
        gtex_plasma(dst, a, b, time, 0);
    EXPECT_TRUE(dst.intact());
}

TEST(radial, falls_off_to_the_edges) {
    for (const auto& [width, height] : {std::pair{32, 32}, {31, 17}, {1, 1}, {64, 8}}) {
        guarded_surface dst(width, height, 9);
        words expected;
        const float cx = static_cast<float>(width) * 0.5F, cy = static_cast<float>(height) * 0.5F;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const float across = (static_cast<float>(x) - cx) / cx,
                            down = (static_cast<float>(y) - cy) / cy;
                const float a = 1 - std::sqrt(across * across + down * down);
                const auto part = [&](int channel) {
                    return a < 0 ? 0 : static_cast<int>(std::trunc(static_cast<float>(channel) * a));
                };
                expected.push_back(word_of(0, part(0x11), part(0x55), part(0x33)));
            }
        gtex_radial(dst, 0xff115533);
        expect_pixels(dst, expected);
    }
    guarded_surface dst(32, 32, 10);
    gtex_radial(dst, 0x115533);
    EXPECT_EQ(dst.at(16, 16), 0x115533U);
    EXPECT_EQ(dst.at(0, 0), 0U);
    EXPECT_EQ(dst.at(0, 16), 0U);
    EXPECT_EQ(byte_of(dst.at(24, 16), 0), 25); // half of 0x33
}

TEST(patterns, are_bits_of_the_place) {
    for (const std::uint32_t mask : {0U, 15U, 0xaaU, 255U, 300U, 0xffffffffU}) {
        guarded_surface blue(300, 70), green(300, 70), red(300, 70), product(300, 70);
        gtex_pattern_blue(blue, mask);
        gtex_pattern_green(green, mask);
        gtex_pattern_red(red, mask);
        gtex_pattern_product(product, mask);
        for (std::uint32_t y = 0; y < 70; ++y)
            for (std::uint32_t x = 0; x < 300; ++x) {
                const auto column = static_cast<std::int32_t>(x), row = static_cast<std::int32_t>(y);
                ASSERT_EQ(blue.at(column, row), (y & mask) ^ ((255 - mask) & x));
                ASSERT_EQ(green.at(column, row), ((y & mask) << 8) ^ ((0xff00 - mask * 256) & (x << 8)));
                ASSERT_EQ(red.at(column, row), ((x ^ y) & mask) << 16);
                const std::uint64_t wide = std::uint64_t{x ^ mask} * (y ^ mask);
                ASSERT_EQ(product.at(column, row), wide & 0xffffffff);
            }
        EXPECT_TRUE(blue.intact() && green.intact() && red.intact() && product.intact());
    }
}

} // namespace
