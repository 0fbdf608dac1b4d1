// The scene of the show, loaded and prepared once at start-up.
#pragma once

class moscene;

// Loads the scene's file and prepares everything that draws it: render modes, materials, normals, tracks, the
// third camera, the depth buffer, the clip planes. Prints the scene's contents on standard output. False if
// the file is none: one line on standard error says so, unless `report_missing_files` has said it is missing.
bool set_up_scene(moscene& scene);
