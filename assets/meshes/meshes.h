// The meshes of the show, each as the bytes of its file.
#pragma once

#include "assets/forms/file_forms.h"
#include "assets/forms/mesh_kit.h"

namespace assets {

file_bytes mesh_inside(); // the cave around the viewer
file_bytes mesh_meteor();
file_bytes mesh_cube();
file_bytes scene_xtelmar(); // the canyon of the second movement, with its cameras, lights and motion

// The meteor before it becomes a file: each face is a plate's border `ab` and, as `c`, the plate's middle.
mesh meteor_model();

} // namespace assets
