// The meshes of the show, each as the bytes of its file.
#pragma once

#include "assets/file_forms.h"

namespace assets {

file_bytes mesh_inside(); // the cave around the viewer
file_bytes mesh_meteor();
file_bytes mesh_cube();

} // namespace assets
