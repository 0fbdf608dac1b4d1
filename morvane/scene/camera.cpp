#include "morvane/scene/camera.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr double pi = 3.141592654;
constexpr float degree = 0.0055555557F; // of pi

struct lens_row {
    float lens, fov;
};
constexpr std::array<lens_row, 9> lenses{{
    {15, 115},
    {20, 94.285713F},
    {24, 84},
    {28, 76},
    {35, 63},
    {50, 46},
    {85, 28},
    {135, 18},
    {200, 12},
}};

} // namespace

camera::camera(std::string_view camera_name, const vector3d& from, const vector3d& at, float bank_angle,
               float lens)
    : start_position(from), start_target(at), bank(bank_angle), focus(lens) {
    set_name_field(name, camera_name);
    camera_lens_fov(lens); // for its line alone: the track of the camera's node sets the field of view
}

float camera_lens_fov(float lens) {
    for (const lens_row& row : lenses)
        if (row.lens == lens) return row.fov;
    const float fov = static_cast<float>(15 / double{lens} * 160);
    std::printf("FOV: %f\n", double{fov});
    return fov;
}

void camera_update(camera& c) {
    c.fov = c.current_fov;

    vector3d back = c.position - c.target; // a point in front of the camera ends up with negative z
    back.normalize();
    vector3d right = vector3d{0, 1, 0}.cross(back);
    vector3d up = back.cross(right);
    right.normalize();
    up.normalize();
    c.view.m = {right.x, up.x, back.x, 0, right.y, up.y, back.y, 0, right.z, up.z, back.z, 0, 0, 0, 0, 1};

    matrix roll;
    roll.set_rotation(0, 0, static_cast<float>(double{c.current_roll} * degree * pi));
    c.view = roll * c.view;
    vector3d origin = c.position;
    origin.negate();
    c.view.set_translation(origin);

    const double half_angle = double{c.current_fov} * 0.5 * degree * pi;
    const auto t = static_cast<float>(std::tan(half_angle)); // a float, so that 90 degrees gives exactly 1
    c.aspect = static_cast<float>(double(c.height) / c.width);
    c.factor_x = static_cast<float>(c.width * 0.5 / double{t});
    c.factor_y = static_cast<float>(c.height * 0.5 / c.aspect / double{t});
}
