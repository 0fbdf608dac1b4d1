#include "driver/movement1_meshes.h"

#include "driver/movement1_times.h"
#include "driver/windows.h"
#include "object/matrices.h"
#include "object/object.h"
#include "object/sort.h"
#include "object/transform.h"

namespace {

constexpr float tilt = 0.314159274F; // a tenth of half a turn

constexpr std::int32_t centre_x = 256;
constexpr std::int32_t centre_y = 144;

float rounded(double value) {
    return static_cast<float>(value);
}

void start_from_identity(object& mesh) {
    mat_identity(mesh.vertex_matrix);
    mat_identity(mesh.normal_matrix);
}

// Magenta wires, indigo fills by the light.
void colour(object& mesh) {
    mesh.wire_red = 255;
    mesh.wire_green = 128;
    mesh.wire_blue = 255;
    mesh.wire_lit = 0;
    mesh.fill_red = 32;
    mesh.fill_green = 32;
    mesh.fill_blue = 128;
    mesh.fill_lit = 1;
}

// The tumbling that meteor and cube share.
void tumble(object& mesh, double t) {
    start_from_identity(mesh);
    object_rotate(mesh, 0, rounded(t * 1.25), 0);
    object_rotate(mesh, rounded(t * 0.8), 0, 0);
    object_rotate(mesh, 0, 0, rounded(-t * 0.5));
    mat_translate(mesh.vertex_matrix, 0, 0, -180);
}

void sort_and_project(object& mesh, std::int32_t far, std::int32_t near) {
    object_sort_faces_between(mesh, far, near);
    object_project(mesh, centre_x, centre_y);
}

} // namespace

void move_inside(object& inside, double t) {
    const float h = rounded(t * 0.5);
    const auto turn = [&](float y_angle, float z_angle) {
        object_rotate(inside, 0, y_angle, 0);
        object_rotate(inside, tilt, 0, 0);
        object_rotate(inside, 0, 0, z_angle);
    };
    start_from_identity(inside);
    if (t < meteor_textured) turn(h, h);
    if (within(t, meteor_textured, second_turn)) turn(-h, h);
    if (t > second_turn && t < third_turn) turn(h, -h); // at either moment itself nothing turns
    if (t > third_turn) turn(-h, -h);
    mat_translate(inside.vertex_matrix, 0, 0, 0);
    object_apply_matrices(inside);
    sort_and_project(inside, -2048, -20);
}

void move_meteor(object& meteor, double t) {
    colour(meteor);
    tumble(meteor, t);
    if (within(t, cube_near, cube_arrived))
        mat_translate(meteor.vertex_matrix, 0, 0, rounded((cube_arrived - t) * 120));
    if (t < first_second_end)
        mat_translate(meteor.vertex_matrix, 0, rounded((first_second_end - t) * -80), 0); // up into its place
    object_apply_matrices(meteor);
    const float phase = rounded(t);
    object_ripple(meteor, phase, 30);
    if (within(t, 57.35, 58.35)) object_ripple(meteor, phase, 50);
    if (within(t, 61.03, 62.33)) object_ripple(meteor, phase, 30);
    if (within(t, 64.41, 65.4)) object_ripple(meteor, phase, -20);
    sort_and_project(meteor, -2048, 0);
}

void move_cube(object& cube, double t) {
    colour(cube);
    tumble(cube, t);
    mat_translate(cube.vertex_matrix, 0, 0, -60);
    if (t < cube_arrived)
        mat_translate(cube.vertex_matrix, 0, 0, rounded((cube_arrived - t) * 120)); // from the viewer's side
    object_apply_matrices(cube);
    object_ripple(cube, rounded(t), t > 114.44 && t < 115.29 ? 15 : 30);
    sort_and_project(cube, -2048, 0);
}
