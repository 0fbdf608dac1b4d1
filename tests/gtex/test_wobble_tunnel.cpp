// The wobble and the tunnel against their tables, and the tables against their formulas.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

#include "morvane/gtex/tunnel.h"
#include "morvane/gtex/wobble.h"
#include "tests/support/surfaces.h"

namespace {

using words = std::vector<std::uint32_t>;

class distortions : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        frame_tables_init();
        tunnel_tables_init();
    }
};

using wobble = distortions;
using tunnel = distortions;

// The source index of one pixel by the mode's own sum, base rows and correction and all.
std::int64_t wobbled(std::int32_t mode, std::size_t a, std::int64_t x, std::int64_t y, std::int64_t i) {
    const auto phase = [](std::int32_t p, std::int64_t k) { return static_cast<std::size_t>((p + k) & 255); };
    const std::size_t ax = phase(wob_phase_a, x), bx = phase(wob_phase_b, x);
    const std::size_t ay = phase(wob_phase_a, y), by = phase(wob_phase_b, y);
    const auto row = [](int index) { return frame_row[static_cast<std::size_t>(index)]; };
    if (mode == 2)
        return row(127 + wob_sin_amp[ax][a]) + wob_sin_amp[bx][a] + wob_cos_amp[ay][a] +
               row(127 + wob_sin_amp[by][a]) + i - 130048;
    if (mode == 0)
        return row(64 + wob_sin8[ax]) + wob_sin8[bx] + wob_cos4[ay] + row(64 + wob_sin8[by]) + i - 73728;
    return wob_sin32[bx] - row(64 + wob_sin32[ax]) + wob_cos16[ay] + row(64 + wob_sin32[by]) + i;
}

// Expects that a call with `dst` and `src` draws what the phases after it say.
void expect_wobble(guarded_surface& dst, guarded_surface& src, std::int32_t mode, std::int32_t amplitude,
                   std::int32_t used_amplitude) {
    gtex_wobble(dst, src, mode, amplitude);
    const gtex d = dst;
    words expected;
    for (std::int32_t i = 0; i < d.count; ++i) {
        const std::int64_t s =
            wobbled(mode, static_cast<std::size_t>(used_amplitude), i % d.width, i / d.width, i);
        expected.push_back(src[static_cast<std::int32_t>(
            std::clamp<std::int64_t>(s, 0, std::min(d.count, src.count()) - 1))]);
    }
    expect_pixels(dst, expected);
}

TEST_F(wobble, tables_hold_truncated_waves_of_255_steps) {
    const float k = 0.024639944F;
    for (std::size_t i = 0; i < 256; ++i) {
        const float s = std::sin(static_cast<float>(i) * k), c = std::cos(static_cast<float>(i) * k);
        ASSERT_EQ(wob_sin8[i], std::trunc(s * 8));
        ASSERT_EQ(wob_cos4[i], std::trunc(c * 4));
        ASSERT_EQ(wob_sin32[i], std::trunc(s * 32));
        ASSERT_EQ(wob_cos16[i], std::trunc(c * 16));
        for (std::size_t a = 0; a < 64; ++a) {
            ASSERT_EQ(wob_sin_amp[i][a], std::trunc(s * static_cast<float>(a) * 1.5F));
            ASSERT_EQ(wob_cos_amp[i][a], std::trunc(c * static_cast<float>(a) * 0.5F));
        }
    }
    EXPECT_EQ(wob_sin_amp[64][63], 94);
    EXPECT_EQ(wob_sin_amp[191][63], -94);
    EXPECT_EQ(wob_cos4[0], 4);
    EXPECT_EQ(wob_cos4[255], 4); // a whole period
}

TEST_F(wobble, modes_take_each_pixel_from_its_displaced_place) {
    guarded_surface dst(512, 288, 1), src(512, 288, 2);
    for (int call = 0; call < 5; ++call) {
        for (const std::int32_t amplitude : {1, 20, 63})
            expect_wobble(dst, src, 2, amplitude, amplitude);
        expect_wobble(dst, src, 0, 7, 0);
        expect_wobble(dst, src, 1, 7, 0);
    }
}

TEST_F(wobble, smears_at_the_first_and_last_pixel) {
    // Of many heights, so that the edges fall on every row of the bands in which the picture is drawn.
    for (std::int32_t height = 33; height < 49; ++height) {
        guarded_surface dst(512, height, 18), src(512, height, 19);
        for (int call = 0; call < 12; ++call)
            for (const std::int32_t amplitude : {1, 2, 5})
                expect_wobble(dst, src, 2, amplitude, amplitude);
    }
}

TEST_F(wobble, takes_any_width) {
    for (const std::int32_t width : {700, 300}) {
        guarded_surface dst(width, 200, 20), src(width, 200, 21);
        for (int call = 0; call < 3; ++call)
            expect_wobble(dst, src, 2, 3, 3);
    }
}

TEST_F(wobble, amplitude_zero_copies_on_any_call) {
    guarded_surface dst(512, 288, 3), src(512, 288, 4);
    for (int call = 0; call < 3; ++call) {
        dst.fill(0);
        gtex_wobble(dst, src, 2, 0);
        expect_pixels(dst, src.copy());
    }
}

TEST_F(wobble, amplitude_is_limited_to_the_tables) {
    guarded_surface dst(512, 64, 5), src(512, 64, 6);
    expect_wobble(dst, src, 2, 64, 63);
    expect_wobble(dst, src, 2, INT_MAX, 63);
    expect_wobble(dst, src, 2, -1, 0);
    expect_wobble(dst, src, 2, INT_MIN, 0);
}

TEST_F(wobble, stays_inside_surfaces_of_any_size) {
    struct {
        std::int32_t width, height, src_width, src_height;
    } constexpr cases[] = {
        {512, 20, 512, 3}, {512, 3, 512, 20}, {37, 21, 37, 21}, {1100, 5, 700, 9}, {1, 1, 1, 1}};
    for (const auto& c : cases)
        for (const std::int32_t mode : {0, 1, 2}) {
            guarded_surface dst(c.width, c.height, 7), src(c.src_width, c.src_height, 8);
            expect_wobble(dst, src, mode, 40, 40);
        }
}

TEST_F(wobble, phases_move_with_each_call_whatever_the_mode_and_wrap) {
    guarded_surface dst(512, 4, 9), src(512, 4, 10);
    const words before = dst.copy();
    wob_phase_a = INT_MAX - 1;
    wob_phase_b = INT_MIN;
    for (const std::int32_t mode : {3, -1})
        gtex_wobble(dst, src, mode, 10);
    expect_pixels(dst, before);
    EXPECT_EQ(wob_phase_a, INT_MIN + 2);
    EXPECT_EQ(wob_phase_b, INT_MAX - 1);
    wob_phase_a = wob_phase_b = 0;
    expect_wobble(dst, src, 2, 30, 30);
    EXPECT_EQ(wob_phase_a, 2);
    EXPECT_EQ(wob_phase_b, -1);
}

std::uint8_t low_byte(double value) {
    return static_cast<std::uint8_t>(static_cast<std::int64_t>(std::trunc(value)) & 255);
}

TEST_F(tunnel, tables_hold_angle_distance_and_warp_column_by_column) {
    std::size_t i = 0;
    for (int x = -256; x <= 255; ++x)
        for (int y = -144; y <= 143; ++y, ++i) {
            ASSERT_EQ(tun_angle[i], low_byte(std::atan2(y, x) * 81.646484375));
            ASSERT_EQ(tun_dist[i], low_byte(std::sqrt(x * x + y * y)));
            const int d = tun_dist[i] < 128 ? tun_dist[i] : tun_dist[i] - 256;
            ASSERT_EQ(tun_warp[i], low_byte(std::sin(d * 0.0200625) * 256 + d));
        }
    EXPECT_EQ(i, tun_angle.size());
    EXPECT_EQ(tun_dist[256 * 288 + 144], 0);
    EXPECT_EQ(tun_dist[0], 37);
    EXPECT_EQ(tun_angle[0 * 288 + 144], 0); // straight left: 256 and a half
}

using tunnel_operator = void (*)(gtex, gtex, std::int32_t, std::int32_t);

// What an operator draws: frame row first, first + step, ... from table row y - first, texture rows of
// `stride`.
words naive_tunnel(gtex dst, gtex src, const tunnel_table& depth, std::int32_t a, std::int32_t b, int first,
                   int step, int stride) {
    words expected(dst.pixels, dst.pixels + dst.count);
    const int rows = std::min(dst.height, 288);
    const int drawn = step == 1 ? rows : rows / 2;
    for (int r = 0; r < drawn; ++r)
        for (int x = 0; x < std::min(dst.width, 512); ++x) {
            const auto t = static_cast<std::size_t>(x * 288 + r * step);
            const int place = (r * step + first) * 512 + x;
            if (place >= dst.count) continue;
            const std::int64_t v = (std::int64_t{depth[t]} + a) & 255,
                               u = (std::int64_t{tun_angle[t]} + b) & 255;
            expected[static_cast<std::size_t>(place)] = src.pixels[v * stride + u];
        }
    return expected;
}

TEST_F(tunnel, looks_the_texture_up_by_distance_and_angle) {
    struct {
        tunnel_operator draw;
        const tunnel_table& depth;
        int first, step;
    } const operators[] = {{gtex_tunnel, tun_dist, 0, 1},
                           {gtex_tunnel_warp, tun_warp, 0, 1},
                           {gtex_tunnel_even, tun_warp, 0, 2},
                           {gtex_tunnel_odd, tun_dist, 1, 2}};
    guarded_surface texture(256, 256, 11), large(300, 270, 12);
    for (const auto& op : operators)
        for (guarded_surface* src : {&texture, &large})
            for (const auto& [a, b] :
                 {std::pair{0, 0}, {256, -256}, {77, 201}, {-1000, 350}, {INT_MAX, INT_MIN}})
                for (const auto& [width, height] :
                     {std::pair{512, 288}, {512, 31}, {90, 40}, {600, 300}, {3, 2}}) {
                    guarded_surface dst(width, height, 13);
                    const int stride = op.step == 1 ? static_cast<gtex>(*src).width : 256;
                    const words expected = naive_tunnel(dst, *src, op.depth, a, b, op.first, op.step, stride);
                    op.draw(dst, *src, a, b);
                    expect_pixels(dst, expected);
                }
}

TEST_F(tunnel, draws_nothing_from_a_texture_that_is_too_small) {
    guarded_surface narrow(255, 300, 14), low(300, 255, 15), tiny(255, 256, 16);
    guarded_surface dst(512, 288, 17);
    const words before = dst.copy();
    for (guarded_surface* src : {&narrow, &low, &tiny}) {
        gtex_tunnel(dst, *src, 1, 2);
        gtex_tunnel_warp(dst, *src, 1, 2);
    }
    gtex_tunnel_even(dst, tiny, 1, 2);
    gtex_tunnel_odd(dst, tiny, 1, 2);
    expect_pixels(dst, before);
}

} // namespace
