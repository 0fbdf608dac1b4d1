#include "show/scene_set_up.h"

#include <string>

#include "morvane/base/program.h"
#include "morvane/gtex/gtex.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"
#include "morvane/scene/moscene.h"
#include "morvane/scene/sceneload.h"
#include "show/data_files.h"

namespace {

constexpr std::int32_t flat_with_depth = mode_flat | mode_depth;
constexpr std::int32_t flight_camera = 2;

void prepare(moscene& scene) {
    scene.use_lights = true;
    scene.use_materials = true;
    scene.debug();
    scene.prepare_materials();
    scene.calc_normals();
    scene.prepare_keys(nullptr);
    scene.set_camera(flight_camera);
    scene.calc_bounds();
}

} // namespace

bool set_up_scene(moscene& scene) {
    render_mode_init();
    scene.set_width(frame_columns);
    scene.set_height(frame_rows);
    scene.set_render_mode(flat_with_depth);
    const std::string path = data_path(scene_file);
    if (!sceneload_file(scene, path.c_str())) {
        // A file that isn't there, or can't be opened, has been reported by now.
        if (can_be_read(path)) program::complain(path, "not a scene that can be read");
        return false;
    }
    prepare(scene);
    raster_init(frame_columns, frame_rows);
    raster_set_window(1, frame_columns, frame_rows, 0);
    poly_clip_set_frame(raster_width, raster_height);
    return true;
}
