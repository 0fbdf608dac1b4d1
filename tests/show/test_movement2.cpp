// The second movement against the operators called by hand at the times of its windows.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "morvane/gtex/blend.h"
#include "morvane/gtex/tunnel.h"
#include "morvane/gtex/zoom.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/raster.h"
#include "show/score/score.h"
#include "tests/support/score.h"
#include "tests/support/surfaces.h"

namespace {

using pixels = std::vector<std::uint32_t>;

// One red triangle, unlit, before a camera that looks at it from (0, 0, 10).
void make_scene(moscene& scene) {
    scene.set_width(512);
    scene.set_height(288);
    scene.set_render_mode(36);
    scene.use_lights = false;
    scene.use_materials = false;
    scene.set_ambient(1, 0, 0);
    scene.start_frame = 0;
    scene.end_frame = 1000;
    scene.add_mesh("triangle");
    mesh& triangle = *scene.last_mesh;
    mesh_alloc_vertices(triangle, 3);
    mesh_add_vertex(triangle, -3, -2, 0);
    mesh_add_vertex(triangle, 3, -2, 0);
    mesh_add_vertex(triangle, 0, 3, 0);
    mesh_alloc_faces(triangle, 2);
    mesh_add_face(triangle, 0, 1, 2, 7);
    mesh_add_face(triangle, 0, 2, 1, 7); // one of the two faces the camera
    scene.add_camera("camera", 0, 0, 10, 0, 0, 0, 0, 35);
    scene.add_node(4, 0xffff);
    mokey_node& node = *scene.current_node;
    node.camera = scene.last_camera;
    node.alloc_keys(1, 1);
    node.add_key_pos(0, 0, 0, 10, 0, 0, 0, 0, 0);
    node.alloc_keys(1, 5);
    node.add_key_fov(0, 60, 0, 0, 0, 0, 0);
    scene.calc_normals();
    scene.prepare_keys(nullptr);
    scene.set_camera(0);
}

class second : public score {
  protected:
    second()
        : accident(512, 288, 1), greets(512, 288, 2), panel(512, 288, 3), credits(512, 288, 4),
          texture(256, 256, 5), clip(512, 288, 6) {
        tunnel_tables_init();
        raster_init(512, 288);
        raster_set_window(1, 512, 288, 0);
        poly_clip_set_frame(512, 288);
        make_scene(all.scene);
        for (gtex show::*picture :
             {&show::img_accident, &show::img_greets, &show::img_hum, &show::img_cred, &show::video_frame})
            all.*picture = gtex_create(512, 288, 0);
        gtex_copy(all.img_accident, accident);
        gtex_copy(all.img_greets, greets);
        gtex_copy(all.img_hum, panel);
        gtex_copy(all.img_cred, credits);
        gtex_copy(all.tex_texture, texture);
        gtex_copy(all.video_frame, clip); // no clip is open: its picture stays
    }

    pixels shown(float t) {
        movement2_draw(all, t);
        return {all.canvas.pixels, all.canvas.pixels + all.canvas.count};
    }

    // The frame of `t`, which must move the scene on by one step or leave it alone.
    void expect_frame(float t, bool scene_moves, const std::function<void(gtex canvas)>& steps) {
        guarded_surface canvas(512, 288);
        canvas.fill(0);
        steps(canvas);
        const float before = all.scene.frame;
        EXPECT_EQ(shown(t), canvas.copy()) << "at " << t;
        EXPECT_EQ(all.scene.frame - before, scene_moves ? 2.0F : 0.0F) << "at " << t;
    }

    // Draws the scene as it stands, without moving it on.
    std::function<void(gtex)> scene_drawn() {
        return [this](gtex canvas) {
            const float frame = all.scene.frame;
            raster_clear_depth();
            all.scene.scene_update();
            all.scene.frame = frame;
            all.scene.scene_render(canvas.pixels);
        };
    }

    guarded_surface accident, greets, panel, credits, texture, clip;
};

void nothing(gtex) {}

} // namespace

TEST_F(second, the_scene_under_the_accident_rests_from_156_to_163) {
    const auto under = [&](const std::function<void(gtex)>& scene) {
        return [&, scene](gtex canvas) {
            scene(canvas);
            gtex_alpha_mix(canvas, accident);
        };
    };
    guarded_surface visible(512, 288);
    visible.fill(0);
    scene_drawn()(visible);
    EXPECT_EQ(visible.at(256, 144), 0xff0000U); // the test's scene shows at all

    expect_frame(just_below(147.49), false, nothing);
    for (const float t : {just_above(147.49), 150.0F, just_below(156), 163.0F, just_below(175)})
        expect_frame(t, true, under(scene_drawn()));
    for (const float t : {156.0F, 160.0F, just_below(163)})
        expect_frame(t, false, under(nothing));
    expect_frame(175, false, nothing);
}

TEST_F(second, the_clip_behind_its_panel_with_the_credits_in_their_window) {
    const auto panelled = [&](bool credited) {
        return [&, credited](gtex canvas) {
            gtex_add(canvas, clip);
            gtex_copy_keyed(canvas, panel);
            if (credited) gtex_add(canvas, credits);
        };
    };
    for (const float t : {just_above(175.00001), 177.0F, just_above(194.94), 203.0F, just_below(204)})
        expect_frame(t, false, panelled(false));
    for (const float t : {just_above(177.00001), 180.0F, just_below(194.94)})
        expect_frame(t, false, panelled(true));
    for (const float t : {204.0F, 204.2F, just_below(204.5)})
        expect_frame(t, false, nothing);
}

TEST_F(second, a_smaller_clip_is_stretched_over_the_frame) {
    gtex_destroy(all.video_frame);
    all.video_frame = gtex_create(64, 36, 0);
    guarded_surface small(64, 36, 9), whole(512, 288);
    gtex_copy(all.video_frame, small);
    gtex_zoom(whole, small, 0, 0, 64, 36);
    expect_frame(176, false, [&](gtex canvas) {
        gtex_add(canvas, whole);
        gtex_copy_keyed(canvas, panel);
    });
}

TEST_F(second, the_beat_cuts_between_four_pictures) {
    const auto negative = [&](gtex canvas) {
        scene_drawn()(canvas);
        gtex_negate(canvas, canvas);
    };
    const auto plasma = [&](float t) {
        return [&, t](gtex canvas) { gtex_plasma(canvas, all.plasma_a, all.plasma_b, t * 0.5F, 0); };
    };
    const auto tunnel = [&](float t) {
        return [&, t](gtex canvas) {
            gtex_tunnel(canvas, texture, static_cast<std::int32_t>(static_cast<double>(t) * -100),
                        static_cast<std::int32_t>(static_cast<double>(t) * 50));
        };
    };
    // 204 begins a cycle; each half holds its end, where the first cut of the next begins.
    expect_frame(204.5F, false, plasma(204.5F));
    expect_frame(just_below(204.75), false, plasma(just_below(204.75)));
    expect_frame(204.75F, true, negative);
    expect_frame(204.8F, true, scene_drawn());
    expect_frame(205.125F, true, scene_drawn());
    expect_frame(205.2F, false, tunnel(205.2F));
    expect_frame(205.5F, true, negative); // a and b both come out as 0
    expect_frame(205.6F, true, negative);
    expect_frame(205.875F, true, negative);
    expect_frame(205.9F, false, plasma(205.9F));
}

TEST_F(second, the_greets_lie_over_the_beat_from_230_to_235) {
    const auto with_greets = [&](float t, bool laid) {
        return [&, t, laid](gtex canvas) {
            gtex_plasma(canvas, all.plasma_a, all.plasma_b, t * 0.5F, 0);
            if (laid) gtex_alpha_mix(canvas, greets);
        };
    };
    expect_frame(229.9F, false, with_greets(229.9F, false)); // 229.9 - 229.5 = 0.4
    expect_frame(231.4F, false, with_greets(231.4F, true));
    expect_frame(234.4F, false, with_greets(234.4F, true));
    expect_frame(235.9F, false, with_greets(235.9F, false));
}

TEST_F(second, the_feedback_runs_from_237_on) {
    guarded_surface trail(512, 288, 21);
    gtex_copy(all.wire_trail, trail);
    const float before = just_below(237); // the end of a cycle
    expect_frame(before, false, [&](gtex canvas) {
        gtex_tunnel(canvas, texture, static_cast<std::int32_t>(static_cast<double>(before) * -100),
                    static_cast<std::int32_t>(static_cast<double>(before) * 50));
    });
    for (const float t : {237.4F, 237.45F})
        expect_frame(t, false, [&](gtex canvas) {
            gtex_plasma(canvas, all.plasma_a, all.plasma_b, t * 0.5F, 0);
            gtex_trail(trail, canvas, 3);
        });
}
