// Whole frames of the first movement from the meshes' appearance on, against the steps called by hand in
// their order.
#include <gtest/gtest.h>

#include <memory>

#include "morvane/gtex/blend.h"
#include "morvane/gtex/wobble.h"
#include "morvane/gtex/zoom.h"
#include "morvane/object/render.h"
#include "morvane/object/transform.h"
#include "show/score/score.h"
#include "tests/support/score.h"
#include "tests/support/surfaces.h"

namespace {

// A box with edges, mapped anywhere; every mesh gets one of another size.
void make_box(object& mesh, float size) {
    mesh.vertex_count = 8;
    mesh.face_count = 12;
    for (std::size_t i = 0; i < 8; ++i) {
        const auto side = [&](std::size_t bit) { return (i & bit) != 0 ? size : -size; };
        mesh.model_vertices[i] = {.x = side(1), .y = side(2), .z = side(4)};
        mesh.world_vertices[i].tu = static_cast<std::int32_t>(i * 29);
        mesh.world_vertices[i].tv = static_cast<std::int32_t>(i * 53);
    }
    constexpr std::uint16_t corners[12][3] = {{0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6},
                                              {0, 1, 5}, {0, 5, 4}, {2, 6, 7}, {2, 7, 3},
                                              {0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}};
    for (std::size_t f = 0; f < 12; ++f) {
        mesh.faces[f] = {
            .a = corners[f][0], .b = corners[f][1], .c = corners[f][2], .ab = 1, .bc = 1, .ca = 0};
        mesh.model_normals[f] = {.x = f % 3 == 0 ? 200.0F : 20.0F, .y = 150, .z = 100};
    }
    object_set_light(mesh, 0, -1, -1, 0, 0, 0);
}

void fill_noise(gtex surface, std::uint32_t seed) {
    const guarded_surface noise(surface.width, surface.height, seed);
    gtex_copy(surface, noise);
}

// A quarter of the noise's brightness, so that sums don't saturate everywhere.
void fill_dim(gtex surface, std::uint32_t seed) {
    fill_noise(surface, seed);
    for (std::int32_t i = 0; i < surface.count; ++i)
        surface.pixels[i] = (surface.pixels[i] >> 2) & 0x3f3f3f;
}

class frames : public score {
  protected:
    frames() : by_hand(std::make_unique<score_show>()) {
        wobble_tables_init();
        for (show* each : {&all, &by_hand->all}) {
            make_box(each->obj_inside, 300);
            make_box(each->obj_meteor, 60);
            make_box(each->obj_cube, 70);
            fill_noise(each->tex_texture, 1);
            fill_noise(each->tex_intro, 2);
            fill_noise(each->tex_work, 3);
            fill_noise(each->tex_cube, 4);
            fill_dim(each->img_morvane, 5);
            fill_dim(each->img_presents, 6);
            fill_dim(each->img_lorrim, 7);
            fill_dim(each->img_cubev, 8);
            fill_dim(each->img_velkadame, 9);
        }
    }

    struct title {
        gtex picture;
        std::int32_t wobble;
        std::int32_t fade; // below 0: it doesn't fade
    };

    void draw_title(show& s, const title& what) {
        gtex_fill(s.title_layer, 0);
        gtex_wobble(s.title_layer, what.picture, 2, what.wobble);
        gtex_trail(s.title_trail, s.title_layer, 2);
        if (what.fade < 0) {
            gtex_add(s.canvas, s.title_layer);
            return;
        }
        gtex_fill(s.title_fade, 0);
        gtex_crossfade(s.title_fade, s.title_layer, what.fade);
        gtex_add(s.canvas, s.title_fade);
    }

    // Steps 1 to 9, from 14.2 seconds on.
    void draw_to_wires(show& s, float t, const title* open_title) {
        gtex_fill(s.canvas, 0);
        const bool cube = static_cast<double>(t) >= 100.36;
        move_inside(s.obj_inside, t);
        if (!cube) move_meteor(s.obj_meteor, t);
        object_draw_textured(s.canvas.pixels, s.obj_inside, s.tex_work.pixels);
        if (cube) {
            move_cube(s.obj_cube, t);
            object_draw_flat(s.canvas.pixels, s.obj_cube);
        } else if (static_cast<double>(t) >= 86.04) {
            object_draw_textured(s.canvas.pixels, s.obj_meteor, s.tex_cube.pixels);
        } else {
            object_draw_flat(s.canvas.pixels, s.obj_meteor);
        }
        if (open_title != nullptr) draw_title(s, *open_title);
        gtex_fill(s.wire_layer, 0);
        object_draw_wire(s.wire_layer.pixels, cube ? s.obj_cube : s.obj_meteor);
        gtex_trail(s.wire_trail, s.wire_layer, 2);
        gtex_add(s.canvas, s.wire_layer);
    }

    void shake(show& s) {
        const std::int32_t r1 = winbase::rand() % 20, r2 = winbase::rand() % 20;
        const std::int32_t r3 = winbase::rand() % 20, r4 = winbase::rand() % 20;
        gtex_zoom(s.wire_trail, s.canvas, r4, r3, 512 - r2, 288 - r1);
    }

    // Both frames from the same state of trails, phases and random numbers.
    template<typename Steps>
    void expect_frame(float t, Steps steps) {
        show& hand = by_hand->all;
        for (show* each : {&all, &hand}) {
            fill_dim(each->wire_trail, 20);
            fill_dim(each->title_trail, 21);
            winbase::srand(9);
            wob_phase_a = 40;
            wob_phase_b = 90;
            if (each == &all)
                movement1_draw(all, t);
            else
                steps(hand);
        }
        for (gtex show::*surface : {&show::canvas, &show::wire_trail, &show::title_trail, &show::tex_work})
            for (std::int32_t i = 0; i < (all.*surface).count; ++i)
                ASSERT_EQ((all.*surface).pixels[i], (hand.*surface).pixels[i])
                    << "pixel " << i << " at " << t;
    }

    struct score_show : score {
        using score::all;
        void TestBody() override {}
    };
    std::unique_ptr<score_show> by_hand;
};

} // namespace

TEST_F(frames, quiet_stretches_are_meshes_and_wires) {
    for (const float t :
         {just_above(15.2), 20.0F, 28.4F, 56.0F, just_above(87.04), 95.0F, 120.0F, 127.0F, 140.0F})
        if (t < 115.0F || t > 119.0F) expect_frame(t, [&](show& s) { draw_to_wires(s, t, nullptr); });
}

TEST_F(frames, the_meteor_is_burnt_in_before_its_wires) {
    for (const float t : {just_above(14.2), 14.7F})
        expect_frame(t, [&](show& s) {
            gtex_fill(s.canvas, 0);
            move_inside(s.obj_inside, t);
            move_meteor(s.obj_meteor, t);
            object_draw_textured(s.canvas.pixels, s.obj_inside, s.tex_work.pixels);
            object_draw_flat(s.canvas.pixels, s.obj_meteor);
            gtex_solarise(s.canvas, s.canvas,
                          static_cast<std::int32_t>((15.2 - static_cast<double>(t)) * 255));
            gtex_fill(s.wire_layer, 0);
            object_draw_wire(s.wire_layer.pixels, s.obj_meteor);
            gtex_trail(s.wire_trail, s.wire_layer, 2);
            gtex_add(s.canvas, s.wire_layer);
        });
}

TEST_F(frames, titles_lie_under_the_wires) {
    expect_frame(30.9F, [&](show& s) {
        const title morvane{s.img_morvane, 48, -1};
        draw_to_wires(s, 30.9F, &morvane);
    });
    expect_frame(51.9F, [&](show& s) { // behind the last flash
        const title morvane{s.img_morvane, 55, 121};
        draw_to_wires(s, 51.9F, &morvane);
    });
}

TEST_F(frames, the_shaken_picture_is_the_finished_one) {
    expect_frame(60.3F, [&](show& s) {
        const title presents{s.img_presents, 27, -1};
        draw_to_wires(s, 60.3F, &presents);
        shake(s);
    });
    expect_frame(71.0F, [&](show& s) {
        draw_to_wires(s, 71.0F, nullptr);
        shake(s);
    });
    expect_frame(just_below(86.04), [&](show& s) {
        draw_to_wires(s, just_below(86.04), nullptr);
        shake(s);
    });
}

TEST_F(frames, bursts_flashes_and_overlays_come_last) {
    for (const float t : {just_above(86.04), 86.5F})
        expect_frame(t, [&](show& s) {
            draw_to_wires(s, t, nullptr);
            gtex_solarise(s.canvas, s.canvas,
                          static_cast<std::int32_t>((87.04 - static_cast<double>(t)) * 255));
        });
    expect_frame(43.2F, [&](show& s) {
        const title morvane{s.img_morvane, 3, -1};
        draw_to_wires(s, 43.2F, &morvane);
        gtex_crossfade(s.canvas, s.white_frame,
                       static_cast<std::int32_t>((43.58 - static_cast<double>(43.2F)) * 510));
    });
    for (const float t : {just_above(100.35), just_above(100.36), 100.6F, 110.0F})
        expect_frame(t, [&](show& s) {
            draw_to_wires(s, t, nullptr);
            gtex_add(s.canvas, s.img_cubev);
        });
    expect_frame(129.5F, [&](show& s) {
        draw_to_wires(s, 129.5F, nullptr);
        gtex_solarise(s.canvas, s.canvas,
                      static_cast<std::int32_t>((129.99 - static_cast<double>(129.5F)) * 255));
        gtex_add(s.canvas, s.img_velkadame);
    });
}

TEST_F(frames, the_texture_turns_before_the_inner_mesh_is_drawn) {
    expect_frame(116.5F, [&](show& s) {
        gtex_copy(s.tex_work, s.tex_texture);
        gtex_crossfade(s.tex_work, s.tex_intro,
                       static_cast<std::int32_t>((static_cast<double>(116.5F) - 115.6) * 85));
        draw_to_wires(s, 116.5F, nullptr);
    });
}
