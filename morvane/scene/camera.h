// The camera record of the scene.
#pragma once

#include <cstdint>
#include <string_view>

#include "morvane/math/matrix.h"
#include "morvane/math/vector3d.h"
#include "morvane/scene/inner/names.h"

struct camera {
    char name[name_capacity] = {};
    vector3d start_position, start_target; // as the file gives them, axes swapped; the debug dump shows them
    float bank = 0;                        // degrees; debug dump only
    float focus = 0;                       // lens in millimetres; debug dump only
    float fov = 0;                         // working copy of `current_fov`
    matrix view;                           // world to camera, which looks down negative z
    vector3d position, target;             // written each frame by the camera's two nodes
    float current_fov = 0;                 // horizontal, degrees; written each frame by the camera's node
    float current_roll = 0;                // degrees, likewise
    float factor_x = 0, factor_y = 0;      // projection factors: x * factor_x / z
    float aspect = 0;                      // height / width
    std::int32_t width = 0, height = 0;    // frame size in pixels
    std::int32_t half_width = 0, half_height = 0;
    camera* next = nullptr; // in the scene's list

    camera() = default;

    // A lens that is none of 15, 20, 24, 28, 35, 50, 85, 135 and 200 prints its field of view on standard
    // output. The track of the camera's node alone sets the field of view; it starts at 0.
    camera(std::string_view camera_name, const vector3d& from, const vector3d& at, float bank_angle,
           float lens);
};

// Field of view of a lens, in degrees: from the table, or 15 / lens * 160 and a line about it.
float camera_lens_fov(float lens);

// Rebuilds `view`, `aspect` and the factors from `position`, `target`, `current_roll`, `current_fov` and the
// frame size. A camera that looks along the y axis, or whose target is its position, gets a view that
// collapses (zero rows), one with a field of view of 0 infinite factors, one without a frame size factors
// that are no number. Nothing is reported.
void camera_update(camera& c);
