#include "assets/makers.h"

#include <array>

#include "assets/clip/clip.h"
#include "assets/meshes/meshes.h"
#include "assets/music/tracks.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

constexpr auto table = std::to_array<maker>({
    {"data/clip2x.avi", clip_file},
    {"data/music/Ashwing1.mp3", music_ashwing},
    {"data/music/ferrow_amoeba2_test2.ogg", music_ferrow},
    {"data/part1/accident1.png", accident_picture},
    {"data/part1/accident1-256.tga", accident_mask},
    {"data/part1/parental-1.png", parental_card},
    {"data/part1/hum.png", hum_panel},
    {"data/part1/velkadame2x.png", title_velkadame},
    {"data/part1/greets.png", greets_picture},
    {"data/part1/greets-1-256.tga", greets_mask},
    {"data/part1/morvane.png", title_morvane},
    {"data/part1/presents.png", title_presents},
    {"data/part1/lorrim.png", title_lorrim},
    {"data/part1/cubev.png", overlay_cubev},
    {"data/part1/cred.png", overlay_cred},
    {"data/part1/violence.png", overlay_violence},
    {"data/part1/tex/texture.tga", texture_inside},
    {"data/part1/tex/intro1c.tga", texture_intro},
    {"data/part1/tex/tunnel3.tga", texture_tunnel},
    {"data/part1/tex/cubetex2.tga", texture_cube},
    {"data/gfx/sprites/light.tga", sprite_light},
    {"data/gfx/sprites/light2.tga", sprite_light2},
    {"data/gfx/sprites/light_3.tga", sprite_light3},
    {"data/asc/meteor/inside.asc", mesh_inside},
    {"data/asc/meteor/meteor2.asc", mesh_meteor},
    {"data/asc/cube.asc", mesh_cube},
    {"data/3d/xtelmar4.3ds", scene_xtelmar},
});

} // namespace

std::span<const maker> makers() {
    return table;
}

} // namespace assets
