// Every blend against its formula, channel by channel, on random surfaces: in place and out of place, with
// sizes that are no multiple of a vector.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "morvane/gtex/blend.h"
#include "tests/support/surfaces.h"

namespace {

using word = std::uint32_t;
using channel_formula = std::function<int(int d, int s)>;
enum class top { zero, kept };

// What a per-channel operator makes of one pixel.
word per_channel(word d, word s, top rule, const channel_formula& formula) {
    int channel[3];
    for (int k = 0; k < 3; ++k)
        channel[k] = formula(byte_of(d, k), byte_of(s, k));
    return word_of(rule == top::kept ? byte_of(d, 3) : 0, channel[2], channel[1], channel[0]);
}

using pixel_formula = std::function<word(word d, word s)>;

// Runs `call` on surfaces of several sizes, out of place and in place, and compares each pixel.
void expect_formula(const std::function<void(gtex, gtex)>& call, const pixel_formula& formula) {
    word seed = 100;
    for (const auto& [width, height] : {std::pair{512, 9}, {37, 11}, {1, 1}, {15, 1}, {67, 3}})
        for (const bool in_place : {false, true}) {
            guarded_surface dst(width, height, ++seed), src(width, height, ++seed);
            std::vector<word> expected(static_cast<std::size_t>(dst.count()));
            for (std::int32_t i = 0; i < dst.count(); ++i)
                expected[static_cast<std::size_t>(i)] = formula(dst[i], in_place ? dst[i] : src[i]);
            in_place ? call(dst, dst) : call(dst, src);
            expect_pixels(dst, expected);
        }
}

int saturated(int value) {
    return std::min(value, 255);
}

// Arithmetic shift, spelled as the division that it is: toward minus infinity.
int shifted(int value, int bits) {
    const int divisor = 1 << bits;
    return value >= 0 ? value / divisor : -((-value + divisor - 1) / divisor);
}

constexpr int levels[] = {0,   1,   100, 127, 128,  254,  255,   256,       257,      510,
                          511, 800, -1,  -25, -255, -256, -4000, INT32_MAX, INT32_MIN};

} // namespace

TEST(blend, crossfade_has_weights_that_add_up_to_255) {
    for (const int level : levels) {
        const int l = level & 255;
        expect_formula([&](gtex d, gtex s) { gtex_crossfade(d, s, level); },
                       [&](word dw, word sw) {
                           return per_channel(dw, sw, top::zero,
                                              [&](int d, int s) { return (s * l + d * (255 - l)) / 256; });
                       });
    }
    guarded_surface white(3, 1), other(3, 1);
    white.fill(0xffffffff);
    other.fill(0xff123456);
    gtex_crossfade(other, white, 255);
    EXPECT_EQ(other[1], 0x00fefefeU);
    other.fill(0xff123456);
    gtex_crossfade(white, other, 256);
    EXPECT_EQ(white[2], 0x00fefefeU);
}

TEST(blend, adds_saturate) {
    expect_formula(gtex_add, [](word d, word s) {
        return word_of(saturated(byte_of(d, 3) + byte_of(s, 3)), saturated(byte_of(d, 2) + byte_of(s, 2)),
                       saturated(byte_of(d, 1) + byte_of(s, 1)), saturated(byte_of(d, 0) + byte_of(s, 0)));
    });
    expect_formula(gtex_add_keyed, [](word dw, word sw) {
        if (sw == 0) return dw;
        return per_channel(dw, sw, top::zero, [](int d, int s) { return saturated(d + s); });
    });
    guarded_surface dst(1, 1), src(1, 1);
    dst[0] = 0x77123456;
    src[0] = 0x01000000;
    gtex_add_keyed(dst, src); // black with a mask value is added, and clears the top byte
    EXPECT_EQ(dst[0], 0x00123456U);
}

TEST(blend, solarise_folds_around_any_level) {
    for (const int level : levels)
        expect_formula([&](gtex d, gtex s) { gtex_solarise(d, s, level); },
                       [&](word dw, word sw) {
                           return per_channel(dw, sw, top::kept, [&](int d, int s) {
                               const std::int64_t below = std::max<std::int64_t>(std::int64_t{level} - s, 0);
                               const std::int64_t above = std::max<std::int64_t>(std::int64_t{d} - level, 0);
                               return static_cast<int>(std::min<std::int64_t>(below + above, 255));
                           });
                       });
}

TEST(blend, negate_rotates_the_bytes) {
    expect_formula(gtex_negate, [](word, word s) {
        return word_of(255 - byte_of(s, 0), 255 - byte_of(s, 3), 255 - byte_of(s, 2), 255 - byte_of(s, 1));
    });
    guarded_surface one(1, 1);
    one[0] = 0x00112233;
    gtex_negate(one, one);
    EXPECT_EQ(one[0], 0xccffeeddU);
    gtex_negate(one, one);
    EXPECT_EQ(one[0], 0x22330011U);
}

TEST(blend, trail_repeats_its_halving_and_both_surfaces_end_up_equal) {
    for (const int passes : {INT32_MIN, -1, 0, 1, 2, 3, 7, 8, 9, 40, INT32_MAX}) {
        guarded_surface trail(37, 11, 51), frame(37, 11, 52);
        std::vector<word> expected = frame.copy();
        for (std::int32_t i = 0; i < trail.count(); ++i) {
            word& f = expected[static_cast<std::size_t>(i)];
            const word t = trail[i];
            for (int pass = 0; pass < std::min(passes, 300); ++pass)
                f = per_channel(f, t, top::kept, [](int now, int old) { return (old + now) / 2; });
        }
        gtex_trail(trail, frame, passes);
        expect_pixels(frame, expected);
        expect_pixels(trail, expected);
    }
}

TEST(blend, alpha_mixes_take_their_weight_from_the_source) {
    const auto mixed = [](word below, word above) {
        const int w = byte_of(above, 3);
        return per_channel(below, above, top::zero,
                           [&](int d, int s) { return d + shifted((s - d) * w, 8); });
    };
    expect_formula(gtex_alpha_mix, mixed);

    guarded_surface dst(37, 3, 60), a(37, 3, 61), b(37, 3, 62);
    std::vector<word> expected;
    for (std::int32_t i = 0; i < dst.count(); ++i)
        expected.push_back(mixed(b[i], a[i]));
    gtex_alpha_mix3(dst, a, b);
    expect_pixels(dst, expected);
    gtex_alpha_mix3(b, a, b); // in place
    expect_pixels(b, expected);
}

TEST(blend, alpha_mix_of_every_triple_of_a_channel) {
    guarded_surface dst(256, 256), src(256, 256);
    for (int w = 0; w < 256; ++w) {
        for (int i = 0; i < 65536; ++i) {
            dst[i] = word_of(9, i & 255, 255 - (i & 255), i & 255);
            src[i] = word_of(w, i >> 8, i >> 8, 255 - (i >> 8));
        }
        gtex_alpha_mix(dst, src);
        for (int i = 0; i < 65536; ++i) {
            const int d = i & 255, s = i >> 8;
            const word expected =
                word_of(0, d + shifted((s - d) * w, 8), 255 - d + shifted((s - 255 + d) * w, 8),
                        d + shifted((255 - s - d) * w, 8));
            ASSERT_EQ(dst[i], expected) << "d " << d << " s " << s << " w " << w;
        }
    }
}

TEST(blend, multiply_truncates_the_product) {
    expect_formula(gtex_multiply, [](word dw, word sw) {
        return per_channel(dw, sw, top::zero,
                           [](int d, int s) { return static_cast<int>(s * (1.0 / 256) * d); });
    });
}

TEST(blend, masks) {
    expect_formula(gtex_copy_mask, [](word d, word s) {
        return word_of(byte_of(s, 3), byte_of(d, 2), byte_of(d, 1), byte_of(d, 0));
    });
    expect_formula(gtex_mask_from_luma, [](word d, word s) {
        return word_of((byte_of(s, 2) + byte_of(s, 1) + byte_of(s, 0)) / 3, byte_of(d, 2), byte_of(d, 1),
                       byte_of(d, 0));
    });
    expect_formula(gtex_average_keyed,
                   [](word d, word s) { return s == 0 ? d : ((d & 0xfefefe) + (s & 0xfefefe)) / 2; });
}

TEST(blend, dual_fade_clamps_both_terms) {
    for (const int level : levels)
        expect_formula([&](gtex d, gtex s) { gtex_dual_fade(d, s, d, level); },
                       [&](word dw, word sw) {
                           return per_channel(dw, sw, top::zero, [&](int b, int a) {
                               const std::int64_t out =
                                   std::clamp<std::int64_t>(std::int64_t{a} - level, 0, 255);
                               const std::int64_t in =
                                   std::clamp<std::int64_t>(std::int64_t{b} + level - 255, 0, 255);
                               return static_cast<int>(out + in);
                           });
                       });
}

TEST(blend, unequal_sizes_never_reach_outside) {
    guarded_surface large(64, 8, 70), small(5, 3, 71); // the guards are shorter than the difference
    for (int turn = 0; turn < 2; ++turn) {
        const gtex d = turn == 0 ? gtex(large) : gtex(small);
        const gtex s = turn == 0 ? gtex(small) : gtex(large);
        gtex_crossfade(d, s, 9);
        gtex_add(d, s);
        gtex_add_keyed(d, s);
        gtex_solarise(d, s, 9);
        gtex_negate(d, s);
        gtex_trail(d, s, 2);
        gtex_trail(d, s, 0);
        gtex_alpha_mix3(d, s, d);
        gtex_multiply(d, s);
        gtex_copy_mask(d, s);
        gtex_dual_fade(d, s, d, 3);
        gtex_dual_fade(d, d, s, 3);
        gtex_alpha_mix(d, s);
        gtex_alpha_mix3(d, d, s);
        gtex_average_keyed(d, s);
        gtex_mask_from_luma(d, s);
        gtex_copy_keyed(d, s);
        gtex_copy_keyed_dst(d, s);
    }
    EXPECT_TRUE(large.intact() && small.intact());
}

TEST(blend, single_pixels) {
    frame_tables_init();
    guarded_surface dst(512, 3, 80);
    std::vector<word> expected = dst.copy();
    dst[0] = expected[0] = 0x64646464; // 100 in each byte
    constexpr std::int32_t values[] = {-20, 200, -101, INT32_MAX, 0, INT32_MIN, 155, -100};
    for (std::int32_t i = 0; i < 8; ++i) {
        const std::int32_t v[] = {values[(i + 2) % 8], values[(i + 1) % 8], values[i]}; // blue, green, red
        word& e = expected[static_cast<std::size_t>(i)];
        std::int64_t sums[3];
        for (int k = 0; k < 3; ++k)
            sums[k] =
                std::max<std::int64_t>(0, std::min<std::int64_t>(std::int64_t{byte_of(e, k)} + v[k], 255));
        e = static_cast<word>(sums[2] << 16 | sums[1] << 8 | sums[0]);
        pixel_add(dst, i, v[2], v[1], v[0]);
    }
    EXPECT_EQ(dst[0], 0x0050ff00U); // 100 and -20 give 80
    const auto add = [](int a, int b) { return saturated(a + b); };
    for (const int index : {9, 2 * 512 + 30}) {
        word& e = expected[static_cast<std::size_t>(index)];
        e = word_of(add(byte_of(e, 3), 0x80), add(byte_of(e, 2), 0x70), add(byte_of(e, 1), 0x60),
                    add(byte_of(e, 0), 0x50));
    }
    pixel_add_packed(dst, 9, 0x80706050);
    pixel_add_xy(dst, 30, 2, 0x80706050);
    for (const int index : {-1, 512 * 3, INT32_MAX, INT32_MIN}) {
        pixel_add(dst, index, 9, 9, 9);
        pixel_add_packed(dst, index, 0x09090909);
    }
    for (const auto& [x, y] : {std::pair{0, 3}, {5, -1}, {5, 384}, {INT32_MAX, 2}, {INT32_MIN, 0}})
        pixel_add_xy(dst, x, y, 0x09090909);
    expect_pixels(dst, expected);
}
