#include <iterator>
#include <utility>

#include "assets/meshes/meshes.h"
#include "assets/scene/solids.h"
#include "assets/scene/xtelmar.h"

namespace assets {

file_bytes scene_xtelmar() {
    scene_description scene{.materials = xtelmar::paints(),
                            .cameras = xtelmar::cameras(),
                            .lights = xtelmar::lights(),
                            .ambient = {1, 1, 1},
                            .first_frame = xtelmar::first_frame,
                            .last_frame = xtelmar::last_frame};
    const auto add = [&scene](std::vector<scene_body> bodies) {
        for (scene_body& body : bodies) {
            weld(body.shape);
            scene.bodies.push_back(std::move(body));
        }
    };
    add(xtelmar::sky_bodies());
    add(xtelmar::ground_bodies());
    add(xtelmar::standing_bodies());
    add(xtelmar::floating_bodies(static_cast<int>(scene.bodies.size())));
    return scene_file(scene);
}

} // namespace assets
