// The opening of the first movement against the operators called by hand at the times of its windows.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "morvane/gtex/blend.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/noise.h"
#include "tests/support/score.h"
#include "tests/support/surfaces.h"

namespace {

class opening : public score {
  protected:
    opening() : card(512, 288, 1) { gtex_copy(all.img_parental, card); }

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

    guarded_surface card;
};

void nothing(gtex) {}

} // namespace

TEST_F(opening, noise_until_the_card_fades_in) {
    expect_frame(0, nothing);
    expect_frame(just_below(2), nothing);
    expect_card_at_level(2, 0);
    expect_card_at_level(4, 128);
    expect_card_at_level(just_below(6), 255); // the level never passes 255
}

TEST_F(opening, the_card_stands_blurs_and_fades_out) {
    const auto whole = [&](gtex canvas) { gtex_copy(canvas, card); };
    expect_frame(6, whole);
    expect_frame(just_below(7.5), whole);
    for (const float t : {7.5F, 7.8F, 8.6F, just_below(9)})
        expect_frame(t, [&](gtex canvas) {
            gtex_copy(canvas, card);
            gtex_blur_h(canvas, card,
                        static_cast<std::int32_t>((std::sin(static_cast<double>(t) * 4) + 1) * 16));
        });
    expect_card_at_level(9, 255); // never 256, which would act as 0
    expect_card_at_level(just_below(9.5), 224);
    expect_card_at_level(11, 128);
    expect_card_at_level(just_below(13), 0);
}

TEST_F(opening, black_from_13_on_and_no_plasma_from_14_2_on) {
    for (const float t : {13.0F, 13.9F, just_below(14.2)})
        EXPECT_EQ(drawn(t), std::vector<std::uint32_t>(147456, 0)) << t;
    all.title_layer.pixels[5] = 0x123;
    drawn(just_above(14.2));
    EXPECT_EQ(all.title_layer.pixels[5], 0x123U); // the layer that a plasma would be drawn to
    drawn(just_below(14.2));
    EXPECT_NE(all.title_layer.pixels[5], 0x123U);
}
