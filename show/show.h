// What the run owns: every surface, picture, texture, sprite and mesh of the show, under the names of the
// score.
//
// Start-up fills it once; afterwards only pixel contents change, and a frame allocates nothing. The movements
// get it by reference and draw into `canvas` and its layers.
#pragma once

#include <cstdint>
#include <vector>

#include "morvane/gtex/gtex.h"
#include "morvane/object/object.h"
#include "morvane/scene/moscene.h"

// Large (some 3 MB): keep it on the heap.
struct show {
    show() = default;
    show(const show&) = delete;
    show& operator=(const show&) = delete;
    ~show(); // frees every surface and closes the clip

    gtex screen; // its `pixels` is the address of the locked console surface; only `gtex_present` reads it
    gtex screen_memory; // what `screen` was created with, before that address takes its place
    gtex canvas;        // the frame being composed

    // 512x288 layers.
    gtex wire_layer;  // the wire drawing of the current frame
    gtex wire_trail;  // the running mix of earlier wire frames, kept across frames
    gtex title_layer; // a title, or a plasma, of the current frame
    gtex title_trail; // the running mix of earlier title frames, kept across frames
    gtex title_fade;  // a title on its way out
    gtex white_frame; // source of the white flashes
    gtex grey_frame;  // source of the grey flashes

    // Pictures of 512x288.
    gtex img_morvane, img_presents, img_lorrim, img_greets, img_cred, img_hum;
    gtex img_parental, img_cubev, img_violence, img_velkadame, img_accident;

    // Sprites of 32x32.
    gtex spr_light, spr_light2, spr_light3, spr_glow;

    // Textures of 256x256; `tex_work` is the one of the inner mesh and changes during a movement.
    gtex tex_work, tex_texture, tex_intro, tex_tunnel, tex_cube;

    // Meshes; `obj_stars` is a cloud of points and comes from no file.
    object obj_inside, obj_meteor, obj_cube, obj_stars;

    moscene scene;      // the canyon of the second movement
    gtex video_frame{}; // the clip's picture, of the clip's own size

    // Plasma maps, 1024 by 576 bytes.
    std::vector<std::uint8_t> plasma_a, plasma_b;
};

// Creates `screen` and `canvas`. The first of the two steps of a start-up; `frame_tables_init` comes before.
void create_spine(show& all);

// Builds everything else but the music, in the order in which the show has always been built: tables, scene,
// plasma maps, clip, meshes, layers, pictures, sprites, textures. Looks first whether every file is there and
// says on standard error which ones are missing. A missing or damaged picture then ends the process as its
// reader does; a mesh that can't be read stays empty; a clip that can't be opened is told in a box, and its
// picture stays black. False, with one line on standard error, if the scene can't be read: the run ends then.
bool start_up(show& all);
