// The light record of the scene. All lights shine as directional ones: from `position` towards the origin.
#pragma once

#include "morvane/math/vector3d.h"
#include "morvane/scene/inner/names.h"

struct light {
    char name[name_capacity] = {};
    vector3d start_position; // as the file gives it; all `start_` fields are for the debug dump
    vector3d direction;      // `position` normalised, by the scene renderer
    bool is_spot = false;
    vector3d start_target; // of a spotlight
    float start_hotspot = 0, start_falloff = 0;
    float start_color_r = 0, start_color_g = 0, start_color_b = 0;
    bool cast_shadows = false;
    vector3d position, target; // written each frame by the light's nodes
    // 0 to 1, written each frame by a light node (0 without colour keys). A spotlight, and a light without a
    // node, keep the start colour.
    float color_r = 0, color_g = 0, color_b = 0;
    float hotspot = 0, falloff = 0; // degrees; read by nothing
    light* next = nullptr;          // in the scene's list
};

// The start colour, which is the current colour too until a node writes that.
void light_set_color(light& l, float r, float g, float b);

// Makes it a spotlight that is aimed at (x, y, z).
void light_set_spot(light& l, float x, float y, float z);

void light_set_hotspot(light& l, float angle);
void light_set_falloff(light& l, float angle);
void light_set_shadows(light& l, bool value);
