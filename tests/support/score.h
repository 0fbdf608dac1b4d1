// A show for tests of the first movement: pictures that the test sets, empty meshes, no files.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "morvane/gtex/plasma.h"
#include "morvane/platform/time/winbase.h"
#include "show/score/score.h"
#include "show/show.h"

class score : public testing::Test {
  protected:
    score() {
        frame_tables_init();
        frame_width = 512;
        frame_height = 288;
        create_spine(all);
        for (gtex show::*layer :
             {&show::wire_layer, &show::wire_trail, &show::title_layer, &show::title_trail, &show::title_fade,
              &show::img_morvane, &show::img_presents, &show::img_lorrim, &show::img_parental,
              &show::img_cubev, &show::img_velkadame})
            all.*layer = gtex_create(512, 288, 0);
        all.white_frame = gtex_create(512, 288, 0xffffff);
        all.grey_frame = gtex_create(512, 288, 0xc0c0c0);
        for (gtex show::*texture : {&show::tex_work, &show::tex_texture, &show::tex_intro, &show::tex_cube})
            all.*texture = gtex_create(256, 256, 0);
        all.plasma_a.resize(plasma_map_size);
        all.plasma_b.resize(plasma_map_size);
        plasma_tables_init(all.plasma_a, all.plasma_b);
    }

    std::vector<std::uint32_t> drawn(float t) {
        winbase::srand(5);
        movement1_draw(all, t);
        return {all.canvas.pixels, all.canvas.pixels + all.canvas.count};
    }

    static float just_below(double t) {
        const auto nearest = static_cast<float>(t);
        return static_cast<double>(nearest) < t ? nearest : std::nextafter(nearest, 0.0F);
    }
    static float just_above(double t) { return std::nextafter(just_below(t), 1e9F); } // or exactly there

    show all;
};
