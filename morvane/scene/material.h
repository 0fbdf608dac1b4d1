// The material record of the scene, with the pictures that may lie on a surface.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "morvane/scene/inner/names.h"

// A picture of a material. Words are 0xAARRGGBB, rows follow each other, top row first.
struct map_slot {
    char file_name[name_capacity] = {}; // from the file
    std::int32_t percent = 0;
    const std::uint32_t* pixels = nullptr; // null: no picture
    std::int32_t pixels_width = 0, pixels_height = 0;
    std::shared_ptr<const std::uint32_t> picture; // holds `pixels` where `material_load_maps` read them
};

struct material {
    char name[name_capacity] = {};
    std::int32_t ambient_r = 0, ambient_g = 0, ambient_b = 0; // all colours 0 to 255
    std::int32_t diffuse_r = 0, diffuse_g = 0, diffuse_b = 0;
    std::int32_t specular_r = 0, specular_g = 0, specular_b = 0;
    std::int32_t shininess = 0; // percent; read by nothing
    std::int32_t opacity = 0;   // blend weight, 0 to 255; 0 until `material_set_transparency`
    map_slot texture_map, spec_map, opac_map, refl_map, bump_map;
    bool has_texture = false, has_spec = false, has_opac = false, has_refl = false, has_bump = false;
    material* next = nullptr; // in the scene's list
};

void material_set_ambient(material& m, std::int32_t r, std::int32_t g, std::int32_t b);
void material_set_diffuse(material& m, std::int32_t r, std::int32_t g, std::int32_t b);
void material_set_specular(material& m, std::int32_t r, std::int32_t g, std::int32_t b);
void material_set_shininess(material& m, std::int32_t percent);

// `opacity` = 255 - percent * 2.5, truncated toward zero; beyond 0 to 255 for percentages that are none. The
// blends limit it.
void material_set_transparency(material& m, std::int32_t percent);

// Each copies the file's name, cut to its field, and the percentage, and sets the slot's flag.
void material_set_texture(material& m, std::string_view file_name, std::int32_t percent);
void material_set_spec(material& m, std::string_view file_name, std::int32_t percent);
void material_set_opac(material& m, std::string_view file_name, std::int32_t percent);
void material_set_refl(material& m, std::string_view file_name, std::int32_t percent);
void material_set_bump(material& m, std::string_view file_name, std::int32_t percent);

// Reads the pictures of all flagged slots that have none yet, from the files of those names in `folder`, of
// any size and in a form that media/image_load.h knows by their extension. Always 1.
//
// Names are those of the file, in any case, and may have folders in them ('/' or '\'); an absolute name, or
// one with ".." in it, is refused: no scene reaches out of its folder. An empty `folder` holds no pictures.
// What isn't there, or isn't a picture, leaves the slot without one and a line in the log (level 4). Behind
// `pixels` lie pixels_width * pixels_height words and no more: a filler whose coordinates can pass them gets
// the height along with the width and wraps there.
int material_load_maps(material& m, const std::string& folder);
