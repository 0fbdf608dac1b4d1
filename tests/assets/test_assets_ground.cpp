// The ground that the pictures of the data tree stand on: lettering, noise, canvas.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "assets/forms/alphabet.h"
#include "assets/forms/canvas.h"
#include "assets/forms/lettering.h"
#include "assets/forms/noise.h"

namespace {

TEST(Lettering, EveryLetterHasInkAndKeepsToItsBox) {
    const std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.:-'!?/+*&";
    const assets::type_style style{.size = 40};
    for (const char letter : letters) {
        const std::string_view text(&letter, 1);
        const float box = assets::line_width(text, style);
        const assets::plane d = assets::distances_to(assets::set_line(text, {20, 20}, style), 120, 80, 8);
        int inside = 0;
        for (int y = 0; y < 80; ++y) {
            for (int x = 0; x < 120; ++x) {
                if (d.at(x, y) >= 0) continue;
                ++inside;
                const float px = static_cast<float>(x) + 0.5F;
                const float py = static_cast<float>(y) + 0.5F;
                EXPECT_TRUE(py > 19.5F && py < 60.5F && px > 20 - 7 && px < 20 + box + 7) << letter;
            }
        }
        EXPECT_GT(inside, 30) << letter;
    }
    EXPECT_EQ(assets::skeleton_width('q'), assets::skeleton_width('Q'));
    EXPECT_TRUE(assets::strokes_of(' ').empty());
}

TEST(Lettering, LinesKeepTheWidthTheyAreSetTo) {
    const assets::type_style style{.size = 20};
    const assets::setting line = assets::set_justified("WAVE OF IT", {10, 5}, 300, style);
    EXPECT_NEAR(line.front().origin.x, 10, 1e-3);
    EXPECT_NEAR(line.back().origin.x + assets::line_width("T", style), 310, 0.01);
    const assets::setting right = assets::set_line("WAVE", {200, 5}, style, assets::align::right);
    EXPECT_NEAR(right.back().origin.x + assets::line_width("E", style), 200, 0.01);
    EXPECT_LT(assets::line_width("AV", style), assets::line_width("AH", style) + 20 * 0.2F);
}

TEST(Noise, RepeatsWithItsPeriod) {
    for (int i = 1; i < 100; ++i) {
        const assets::vec2 p{static_cast<float>(i) * 0.37F, static_cast<float>(i % 17) * 0.61F};
        const assets::vec2 far = p + assets::vec2{-14, 7};
        EXPECT_NEAR(assets::gradient_noise(p, 3, 7), assets::gradient_noise(far, 3, 7), 1e-4);
        EXPECT_NEAR(assets::fbm(p, 4, 3, 7), assets::fbm(far, 4, 3, 7), 1e-3);
        EXPECT_NEAR(assets::cells(p, 3, 7).edge, assets::cells(far, 3, 7).edge, 1e-4);
        EXPECT_NE(assets::gradient_noise(p, 3, 0), assets::gradient_noise(far, 3, 0));
    }
}

TEST(Canvas, BlurSpreadsLightAndLosesNone) {
    assets::plane point(64, 64);
    point.at(30, 33) = 1;
    const assets::plane soft = assets::blurred(point, 4);
    double sum = 0;
    double square = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            sum += static_cast<double>(soft.at(x, y));
            square += static_cast<double>(soft.at(x, y)) * (x - 30) * (x - 30);
        }
    }
    EXPECT_NEAR(sum, 1, 0.01);
    EXPECT_NEAR(std::sqrt(square), 4, 0.6);
    EXPECT_NEAR(soft.at(25, 33), soft.at(35, 33), 1e-5);
    EXPECT_NEAR(soft.at(30, 28), soft.at(30, 38), 1e-5);
}

TEST(Canvas, BytesKeepBlackBlackAndOpaqueAboveIt) {
    assets::picture ramp(256, 4);
    assets::for_each_pixel(ramp, [](assets::vec2 p, assets::rgb& c) {
        const float v = p.x < 16 ? 0 : p.x / 200;
        c = {v, v * 0.5F, 0};
    });
    const std::vector<std::uint8_t> keyed = assets::to_bytes(ramp, {.grain = 6});
    const std::vector<std::uint8_t> opaque = assets::to_bytes(ramp, {.grain = 6, .opaque = true});
    for (std::size_t i = 0; i < keyed.size(); i += 3) {
        EXPECT_EQ(keyed[i + 2], 0);
        EXPECT_GE(std::min({opaque[i], opaque[i + 1], opaque[i + 2]}), 1);
        if (i / 3 % 256 < 16) {
            EXPECT_EQ(keyed[i] | keyed[i + 1], 0);
        }
    }
    // sRGB of half the light, by the formula.
    assets::picture half(64, 64, {0.5F, 0.5F, 0.5F});
    double mean = 0;
    for (const std::uint8_t v : assets::to_bytes(half, {}))
        mean += v / (64.0 * 64 * 3);
    EXPECT_NEAR(mean, 255 * (1.055 * std::pow(0.5, 1 / 2.4) - 0.055), 0.2);
}

} // namespace
