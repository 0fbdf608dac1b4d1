// What the first movement lays over its meshes, by a second telling of its tables: with pictures of one
// colour and no mesh, each frame is one grey, which the test sums up from the windows that are open.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "morvane/gtex/blend.h"
#include "morvane/gtex/wobble.h"
#include "morvane/gtex/zoom.h"
#include "tests/support/score.h"
#include "tests/support/surfaces.h"

namespace {

struct window {
    double start, end;
};

constexpr window title_windows[] = {{28.5, 53.8}, {57.35, 70}, {72, 84.75}};
constexpr double title_fades[] = {49.8, 68, 82.65};
constexpr double fade_rates[] = {63.75, 127.5, 121.42};
constexpr int title_greys[] = {40, 50, 60};

constexpr window burst_windows[] = {{86.04, 87.04}, {114.29, 115.29}, {128.99, 129.99}};
constexpr double burst_zeros[] = {87.04, 115.19, 129.99};

constexpr window white_flashes[] = {{43.08, 43.58}, {43.93, 44.43}, {44.26, 44.76}};
constexpr window grey_flashes[] = {{46.65, 47.15}, {47.53, 48.03}, {47.74, 48.24},
                                   {50.22, 50.72}, {51.11, 51.61}, {51.35, 51.85}};
constexpr window cubev_window = {100.35, 114.69};
constexpr window velkadame_window = {128.99, 137.67};

bool open_at(const window& w, double t) {
    return t >= w.start && t < w.end;
}

int crossfaded(int below, int above, double level) {
    const int l = static_cast<int>(level) & 255;
    return (above * l + below * (255 - l)) / 256;
}

// The grey of the frame at `t`, whose trails start out as the titles have them.
int expected_grey(double t) {
    int grey = 0;
    if (t >= 14.2 && t < 15.2) grey = static_cast<int>((15.2 - t) * 255); // black folded around the level
    for (std::size_t i = 0; i < 3; ++i) {
        if (!open_at(title_windows[i], t)) continue;
        const int title = title_greys[i];
        grey += t < title_fades[i] ? title : crossfaded(0, title, 255 - (t - title_fades[i]) * fade_rates[i]);
    }
    for (std::size_t i = 0; i < 3; ++i)
        if (open_at(burst_windows[i], t)) {
            const int level = static_cast<int>((burst_zeros[i] - t) * 255);
            grey = std::min(std::max(level - grey, 0) + std::max(grey - level, 0), 255);
        }
    for (const window& w : white_flashes)
        if (open_at(w, t)) grey = crossfaded(grey, 255, (w.end - t) * 510);
    for (const window& w : grey_flashes)
        if (open_at(w, t)) grey = crossfaded(grey, 192, (w.end - t) * 510);
    if (open_at(cubev_window, t)) grey += 70;
    if (open_at(velkadame_window, t)) grey += 80;
    return std::min(grey, 255);
}

class layers : public score {
  protected:
    layers() {
        wobble_tables_init();
        for (int i = 0; i < 3; ++i)
            gtex_fill(all.*titles[i], grey_word(title_greys[i]));
        gtex_fill(all.img_cubev, grey_word(70));
        gtex_fill(all.img_velkadame, grey_word(80));
    }

    static std::uint32_t grey_word(int grey) { return word_of(0, grey, grey, grey); }

    // Trails that change nothing: the title that is open, and no wires.
    void settle_trails(double t) {
        gtex_fill(all.wire_trail, 0);
        for (std::size_t i = 0; i < 3; ++i)
            if (open_at(title_windows[i], t)) gtex_fill(all.title_trail, grey_word(title_greys[i]));
    }

    void expect_grey(float t) {
        settle_trails(t);
        movement1_draw(all, t);
        ASSERT_EQ(all.canvas.pixels[70000], grey_word(expected_grey(t))) << "at " << t;
        ASSERT_EQ(all.canvas.pixels[147455], all.canvas.pixels[70000]);
    }

    static constexpr gtex show::*titles[3] = {&show::img_morvane, &show::img_presents, &show::img_lorrim};
};

} // namespace

TEST_F(layers, every_window_opens_and_closes_at_its_bounds) {
    std::vector<window> all_windows = {cubev_window, velkadame_window, {14.2, 15.2}};
    for (const auto* windows : {title_windows, burst_windows, white_flashes})
        all_windows.insert(all_windows.end(), windows, windows + 3);
    all_windows.insert(all_windows.end(), std::begin(grey_flashes), std::end(grey_flashes));
    for (const window& w : all_windows)
        for (const double t : {w.start, w.end}) {
            expect_grey(just_below(t));
            expect_grey(just_above(t));
        }
    for (const double t : title_fades) {
        expect_grey(just_below(t));
        expect_grey(just_above(t));
    }
}

TEST_F(layers, every_level_follows_its_formula_between) {
    for (int i = 14200; i < 147490; i += 37)
        expect_grey(static_cast<float>(i) / 1000);
    for (int i = 42900; i < 52000; i += 5)
        expect_grey(static_cast<float>(i) / 1000);
}

TEST_F(layers, titles_wobble_by_their_levels) {
    struct level_at {
        int title;
        double t;
        int level;
    };
    const level_at levels[] = {{0, 28.52, 62}, {0, 33.45, 33}, {0, 39.1, 0},   {0, 42.5, 0},
                               {0, 43.75, 6},  {0, 53.0, 61},  {1, 57.4, 62},  {1, 60.3, 27},
                               {1, 63.0, 0},   {1, 66.47, 24}, {1, 69.0, 54},  {2, 72.01, 62},
                               {2, 74.95, 27}, {2, 78.0, 0},   {2, 80.15, 12}, {2, 84.0, 58}};
    for (const level_at& each : levels) {
        const auto t = static_cast<float>(each.t);
        guarded_surface picture(512, 288, 3), wobbled(512, 288);
        gtex_copy(all.*titles[each.title], picture);
        gtex_fill(all.title_trail, 0);
        wob_phase_a = 31;
        wob_phase_b = 77;
        movement1_draw(all, t);
        wob_phase_a = 31;
        wob_phase_b = 77;
        gtex_wobble(wobbled, picture, 2, each.level);
        guarded_surface trail(512, 288);
        trail.fill(0);
        gtex_trail(trail, wobbled, 2);
        for (std::int32_t i = 0; i < trail.count(); ++i)
            ASSERT_EQ(all.title_trail.pixels[i], trail[i]) << "title " << each.title << " at " << t;
    }
}

TEST_F(layers, the_title_trail_is_emptied_between_titles_only) {
    const auto emptied = [&](float t) {
        gtex_fill(all.title_trail, 0x123456);
        movement1_draw(all, t);
        return all.title_trail.pixels[9] == 0;
    };
    for (const window& w : {window{53.8, 54}, {70, 70.2}}) {
        EXPECT_TRUE(emptied(just_above(w.start)) && emptied(just_below(w.end)));
        EXPECT_FALSE(emptied(just_above(w.end)));
    }
    EXPECT_FALSE(emptied(85.0F)); // nothing is emptied behind the third
}

TEST_F(layers, wires_fade_from_frame_to_frame) {
    gtex_fill(all.wire_trail, 0x646464);
    movement1_draw(all, 20.0F);
    EXPECT_EQ(all.wire_trail.pixels[9], 0x4b4b4bU); // three quarters of the old
    EXPECT_EQ(all.canvas.pixels[9], 0x4b4b4bU);
    gtex_fill(all.wire_trail, 0x646464);
    movement1_draw(all, just_below(14.2));
    EXPECT_EQ(all.wire_trail.pixels[9], 0x646464U);
}

TEST_F(layers, the_shaken_picture_goes_into_the_wire_trail) {
    guarded_surface picture(512, 288, 4), shaken(512, 288);
    gtex_copy(all.img_presents, picture);
    for (const float t : {just_above(57.35), 65.0F, just_below(86.04)}) {
        gtex_fill(all.wire_trail, 0);
        winbase::srand(11);
        movement1_draw(all, t);
        winbase::srand(11);
        std::int32_t r[4];
        for (std::int32_t& each : r)
            each = winbase::rand() % 20;
        gtex_zoom(shaken, all.canvas, r[3], r[2], 512 - r[1], 288 - r[0]);
        for (std::int32_t i = 0; i < shaken.count(); ++i)
            ASSERT_EQ(all.wire_trail.pixels[i], shaken[i]) << "at " << t;
    }
    for (const float t : {just_below(57.35), just_above(86.04)}) {
        gtex_fill(all.wire_trail, 0);
        movement1_draw(all, t);
        EXPECT_EQ(all.wire_trail.pixels[70000], 0U) << "at " << t;
    }
}

TEST_F(layers, the_inner_texture_turns_within_three_seconds_and_stays) {
    gtex_fill(all.tex_texture, 0x404040);
    gtex_fill(all.tex_intro, 0x80c0ff);
    gtex_fill(all.tex_work, 0x111111);
    const auto texture_at = [&](float t) {
        movement1_draw(all, t);
        return all.tex_work.pixels[777];
    };
    EXPECT_EQ(texture_at(just_below(115.6)), 0x111111U);
    EXPECT_EQ(texture_at(just_above(115.6)),
              word_of(0, crossfaded(64, 128, 0), crossfaded(64, 192, 0), crossfaded(64, 255, 0)));
    EXPECT_EQ(texture_at(117.1F),
              word_of(0, crossfaded(64, 128, 127), crossfaded(64, 192, 127), crossfaded(64, 255, 127)));
    texture_at(just_below(118.6));
    EXPECT_EQ(texture_at(130.0F), all.tex_work.pixels[0]);
    EXPECT_EQ(texture_at(145.0F),
              word_of(0, crossfaded(64, 128, 254), crossfaded(64, 192, 254), crossfaded(64, 255, 254)));
}
