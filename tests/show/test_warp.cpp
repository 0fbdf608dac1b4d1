// The driver's kit: warp tables, displaced indices, the mix table, parts and beats.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "morvane/gtex/gtex.h"
#include "show/score/closing_routines.h"

namespace {

class warp : public testing::Test {
  protected:
    warp() {
        frame_tables_init();
        warp_tables_init();
        set_phases(0, 0, 0);
    }
    ~warp() override { set_phases(0, 0, 0); }

    static void set_phases(std::int32_t a, std::int32_t b, std::int32_t c) {
        warp_phase_a = a;
        warp_phase_b = b;
        warp_phase_c = c;
    }

    // The displaced pixel by the waves' own formulas, without a table.
    static std::int32_t by_formula(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
        const auto wave = [](double (*f)(double), double step, double size, std::int64_t at) {
            const std::int64_t index = ((at % 2048) + 2048) % 2048;
            return static_cast<std::int64_t>(f(static_cast<double>(index) * step) * size);
        };
        const std::int64_t new_x = wave(std::cos, 0.0122718463047, 10, warp_phase_b + (x + y * 2) * 3) +
                                   wave(std::sin, 0.0245436926094, 8, warp_phase_a + x * 2) + x;
        const std::int64_t new_y = wave(std::sin, 0.00613592315234, 12, warp_phase_c + (x + y) * 2) +
                                   wave(std::sin, 0.0245436926094, 8, warp_phase_b - x + y) + y;
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(new_y, 0, height - 1) * width +
                                         std::clamp<std::int64_t>(new_x, 0, width - 1));
    }
};

} // namespace

TEST_F(warp, indices_follow_the_waves_and_stay_inside) {
    for (const std::int32_t phase : {0, 1, 700, -1, -3000, INT_MAX, INT_MIN}) {
        set_phases(phase, phase / 3, 17);
        for (std::int32_t y = 0; y < 288; y += 7)
            for (std::int32_t x = 0; x < 512; x += 5) {
                ASSERT_EQ(warp_index(x, y), by_formula(x, y, 512, 288)) << x << ' ' << y << ' ' << phase;
                if (x < 256 && y < 256) {
                    ASSERT_EQ(warp_index_256(x, y), by_formula(x, y, 256, 256)) << x << ' ' << y;
                }
            }
    }
    for (const std::int32_t far : {INT_MIN, -5000, 5000, INT_MAX}) {
        EXPECT_TRUE(warp_index(far, far) >= 0 && warp_index(far, far) < 512 * 288);
        EXPECT_TRUE(warp_index_256(far, 3) >= 0 && warp_index_256(3, far) < 65536);
    }
}

TEST_F(warp, a_step_moves_a_and_c_forward_and_b_back_round_the_ends) {
    set_phases(INT_MAX, INT_MIN, 4);
    warp_step();
    EXPECT_EQ(warp_phase_a, INT_MIN);
    EXPECT_EQ(warp_phase_b, INT_MAX);
    EXPECT_EQ(warp_phase_c, 5);
}

TEST(mix, colours_mix_channel_by_channel_without_their_top_bytes) {
    mix_table_init(0.875F, 0.125F);
    const auto mixed = [](std::uint32_t p, std::uint32_t q) { // seven eighths of p, one of q
        std::uint32_t sum = 0;
        for (const int shift : {0, 8, 16})
            sum |= (((p >> shift & 255) * 7 + (q >> shift & 255)) / 8) << shift;
        return sum;
    };
    for (const std::uint32_t p : {0U, 0xffffffU, 0x102030U, 0xff8001U})
        for (const std::uint32_t q : {0U, 0xffffffU, 0x30f011U, 0x0080feU}) {
            EXPECT_EQ(mix_colours(p, q), mixed(p, q)) << std::hex << p << ' ' << q;
            EXPECT_EQ(mix_colours(p | 0xff000000U, q | 0x7f000000U), mixed(p, q));
        }
    mix_table_init(1, 0);
    EXPECT_EQ(mix_colours(0x123456, 0xffffff), 0x123456U);
    mix_table_init(0.875F, 0.125F);
}

TEST(parts, bounds_belong_to_the_part_that_begins_there) {
    EXPECT_TRUE(in_part(0, 0));
    EXPECT_FALSE(in_part(0, 19.18F));
    EXPECT_TRUE(in_part(1, 19.18F));
    EXPECT_TRUE(in_part(4, std::nextafter(29.67F, 0.0F)));
    for (const float t : {29.67F, 147.0F, 276.46F, 9998.0F}) {
        EXPECT_TRUE(in_part(5, t)) << t;
        for (int i = 0; i < 5; ++i)
            EXPECT_FALSE(in_part(i, t)) << t;
    }
    EXPECT_FALSE(in_part(5, 9999));
    EXPECT_FALSE(in_part(-1, 5) || in_part(6, 9999));
    EXPECT_FALSE(in_part(0, std::nanf("")));
}

TEST(parts, sixty_three_beats_rise_from_14_57_to_64_45) {
    EXPECT_EQ(beat_times.size(), 63U);
    constexpr float first[] = {14.57F, 15.08F, 15.84F, 16.7F, 17.47F};
    EXPECT_TRUE(std::equal(std::begin(first), std::end(first), beat_times.begin()));
    EXPECT_EQ(beat_times.back(), 64.45F);
    for (std::size_t i = 4; i + 1 < beat_times.size(); ++i)
        EXPECT_NEAR(beat_times[i + 1] - beat_times[i], 0.8, 0.05);
    EXPECT_TRUE(in_beat(0, 14.57F) && !in_beat(0, 15.08F) && in_beat(61, 64.0F));
    EXPECT_FALSE(in_beat(62, 64.45F) || in_beat(-1, 3) || in_beat(0, 14));
}
