#include "tools/record/metaballs_source.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

#include "morvane/base/random.h"
#include "morvane/gtex/gtex.h"
#include "morvane/isosurface/isosurface.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"
#include "morvane/scene/moscene.h"
#include "tools/kit/quiet_output.h"

namespace {

constexpr std::int32_t grid = 56;
constexpr double pace = 2.2; // units of the balls' time a second
constexpr std::uint32_t backdrop = 0x0b0a26;

// A level at which the balls are about a fifth of the cube each, and bridge to their neighbours. It grows
// with their number, as the field does, so that the surface never fills its mesh.
float level_for(std::int32_t balls) {
    return 14.0F * static_cast<float>(std::max(balls, 3));
}

struct wandering_light {
    float r, g, b;
    double turn, tilt, speed;
};
constexpr std::array<wandering_light, 3> lights = {{
    {0.70F, 0.20F, 0.62F, 0.4, 0.7, 0.31},
    {0.10F, 0.14F, 0.62F, 2.6, -0.2, -0.23},
    {0.03F, 0.48F, 0.26F, 4.4, -0.9, 0.17},
}};

class metaball_show {
  public:
    metaball_show(std::int32_t balls, std::int32_t fps)
        : fps_(fps), pixels_(static_cast<std::size_t>(frame_columns) * console_rows, 0),
          surface_(balls, level_for(balls)) {
        random_seed(1); // the surface has seeded by the time of day
        for (sphere& each : surface_.spheres) {
            surface_.sphere_init(each);
            each.position = each.target; // or all begin as one
        }
        surface_.set_gridsize(grid);
        raster_init(frame_columns, frame_rows);
        raster_set_window(1, frame_columns, frame_rows, 0);
        poly_clip_set_frame(frame_columns, frame_rows);
        build_scene();
    }

    gtex draw_up_to(std::int64_t frame) {
        for (; next_frame_ <= frame; ++next_frame_)
            surface_.spheres_step(static_cast<float>(pace / fps_));
        move_lights(static_cast<double>(frame) / fps_);
        turn_faces(*surface_.polygonise());
        const gtex picture = canvas();
        gtex_fill(picture, backdrop);
        raster_clear_depth();
        scene_.scene_render(picture.pixels);
        return gtex_wrap(pixels_.data(), frame_columns, console_rows);
    }

    gtex canvas() {
        return gtex_wrap(pixels_.data() + letterbox_rows * frame_columns, frame_columns, frame_rows);
    }

  private:
    void build_scene() {
        scene_.set_width(frame_columns);
        scene_.set_height(frame_rows);
        scene_.add_material("surface");
        material& skin = *scene_.last_material;
        material_set_ambient(skin, 8, 6, 26);
        material_set_diffuse(skin, 255, 255, 255);
        scene_.set_ambient(1, 1, 1);
        scene_.add_mesh(surface_.mesh);
        surface_.mesh.material = &skin;
        mesh_set_render_mode(surface_.mesh, mode_gouraud | mode_per_vertex | mode_depth);
        for (const wandering_light& each : lights) {
            scene_.add_light("light", 0, 0, 0);
            scene_.last_light->color_r = each.r;
            scene_.last_light->color_g = each.g;
            scene_.last_light->color_b = each.b;
        }
        scene_.add_camera("camera", 0, 0, 210, 0, 0, 0, 0, 50);
        camera& eye = *scene_.last_camera;
        eye.position = {0, 0, 210};
        eye.current_fov = 58;
        scene_.set_camera(0);
    }

    void move_lights(double seconds) {
        std::size_t i = 0;
        for (light* each = scene_.first_light; each != nullptr; each = each->next, ++i) {
            const double angle = lights[i].turn + lights[i].speed * seconds * 2 * std::numbers::pi;
            each->position = {static_cast<float>(std::cos(angle)), static_cast<float>(lights[i].tilt),
                              static_cast<float>(std::sin(angle))};
        }
    }

    // The renderer shows faces whose corners run clockwise; those of the surface run the other way.
    static void turn_faces(mesh& m) {
        for (std::int32_t i = 0; i < m.face_count; ++i) {
            face& f = m.faces[static_cast<std::size_t>(i)];
            std::swap(f.b, f.c);
        }
    }

    std::int32_t fps_;
    std::vector<std::uint32_t> pixels_;
    isosurface surface_;
    moscene scene_;
    std::int64_t next_frame_ = 0;
};

} // namespace

frame_source metaballs(std::int32_t balls, double seconds, std::int32_t fps) {
    std::shared_ptr<metaball_show> all;
    {
        const quiet_output hidden; // the targets of the balls
        all = std::make_shared<metaball_show>(balls, fps);
    }
    frame_source source{
        .width = frame_columns, .height = console_rows, .black_rows = letterbox_rows, .fps = fps};
    source.end = seconds;
    source.canvas = all->canvas();
    source.draw = [all](std::int64_t frame) { return all->draw_up_to(frame); };
    return source;
}
