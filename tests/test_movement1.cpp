// The score of the opening, frame by frame, against the operators called by hand at the times of its windows.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "driver/movement1.h"
#include "driver/show.h"
#include "gtex/blend.h"
#include "gtex/filters.h"
#include "gtex/noise.h"
#include "gtex/plasma.h"
#include "platform/winbase.h"
#include "tests/support/surfaces.h"

namespace {

// A show with noise for its card, and no files.
class score : public testing::Test {
  protected:
    score() : card(512, 288, 1) {
        frame_tables_init();
        frame_width = 512;
        frame_height = 288;
        create_spine(all);
        all.title_layer = gtex_create(512, 288, 0);
        all.white_frame = gtex_create(512, 288, 0xffffff);
        all.grey_frame = gtex_create(512, 288, 0xc0c0c0);
        all.img_parental = gtex_create(512, 288, 0);
        gtex_copy(all.img_parental, card);
        all.plasma_a.resize(plasma_map_size);
        all.plasma_b.resize(plasma_map_size);
        plasma_tables_init(all.plasma_a, all.plasma_b);
    }

    std::vector<std::uint32_t> drawn(float t) {
        winbase::srand(5);
        movement1_draw(all, t);
        return {all.canvas.pixels, all.canvas.pixels + all.canvas.count};
    }

    // The frame that `steps` draws on the background of that time, under the plasma while it runs.
    void expect_frame(float t, const std::function<void(gtex canvas)>& steps) {
        guarded_surface canvas(512, 288), plasma(512, 288);
        winbase::srand(5);
        if (t < 13)
            gtex_noise(canvas, static_cast<std::int32_t>(std::sin(static_cast<double>(t)) * 80 + 160));
        else
            canvas.fill(0);
        steps(canvas);
        if (static_cast<double>(t) < 14.2) {
            gtex_plasma(plasma, all.plasma_a, all.plasma_b, t * 0.5F, 0);
            gtex_multiply(canvas, plasma);
        }
        EXPECT_EQ(drawn(t), canvas.copy()) << "at " << t;
    }

    void expect_card_at_level(float t, std::int32_t level) {
        expect_frame(t, [&](gtex canvas) { gtex_crossfade(canvas, card, level); });
    }

    float just_below(double t) { return std::nextafter(static_cast<float>(t), 0.0F); }

    guarded_surface card;
    show all;
};

void nothing(gtex) {}

} // namespace

TEST_F(score, noise_until_the_card_fades_in) {
    expect_frame(0, nothing);
    expect_frame(just_below(2), nothing);
    expect_card_at_level(2, 0);
    expect_card_at_level(4, 128);
    expect_card_at_level(just_below(6), 255); // the level never passes 255
}

TEST_F(score, the_card_stands_blurs_and_fades_out) {
    const auto whole = [&](gtex canvas) { gtex_copy(canvas, card); };
    expect_frame(6, whole);
    expect_frame(just_below(7.5), whole);
    for (const float t : {7.5F, 7.8F, 8.6F, just_below(9)})
        expect_frame(t, [&](gtex canvas) {
            gtex_copy(canvas, card);
            gtex_blur_h(canvas, card,
                        static_cast<std::int32_t>((std::sin(static_cast<double>(t) * 4) + 1) * 16));
        });
    expect_card_at_level(9, 0); // 256 acts as 0
    expect_card_at_level(just_below(9.5), 224);
    expect_card_at_level(11, 128);
    expect_card_at_level(just_below(13), 0);
}

TEST_F(score, black_from_13_on) {
    for (const float t : {13.0F, 13.9F, 14.2F, 14.3F, 30.0F, 43.0F, 52.0F})
        EXPECT_EQ(drawn(t), std::vector<std::uint32_t>(147456, 0)) << t;
}

TEST_F(score, the_plasma_stops_at_14_2) {
    all.title_layer.pixels[5] = 0x123;
    drawn(std::nextafter(14.2F, 15.0F));
    EXPECT_EQ(all.title_layer.pixels[5], 0x123U);
    drawn(14.19F);
    EXPECT_NE(all.title_layer.pixels[5], 0x123U);
}

TEST_F(score, flashes_fall_from_full_to_nothing_in_half_a_second) {
    struct window {
        double start, end;
        std::uint32_t colour;
    };
    const window windows[] = {{43.08, 43.58, 255}, {43.93, 44.43, 255}, {44.26, 44.76, 255},
                              {46.65, 47.15, 192}, {47.53, 48.03, 192}, {47.74, 48.24, 192},
                              {50.22, 50.72, 192}, {51.11, 51.61, 192}, {51.35, 51.85, 192}};
    const auto seen = [&](float t) {
        movement1_draw(all, t);
        return all.canvas.pixels[4000];
    };
    for (int i = 42800; i < 52200; i += 5) {
        const float t = static_cast<float>(i) / 1000;
        std::uint32_t grey = 0;
        for (const window& w : windows)
            if (static_cast<double>(t) >= w.start && static_cast<double>(t) < w.end) {
                const auto level = static_cast<std::uint32_t>((w.end - static_cast<double>(t)) * 510) & 255;
                grey = (w.colour * level + grey * (255 - level)) / 256;
            }
        ASSERT_EQ(seen(t), grey * 0x010101) << "at " << t;
    }
}
