// Moving an object: rotation, ripple, projection, and its light.
//
// Loops run over `vertex_count` and `face_count`, held to the capacity. Nothing fails; coordinates that grow
// beyond all bounds become infinite or no number, which the sorts and renderers stand.
#pragma once

#include "morvane/object/object.h"

// Chains the three angles (radians) onto both matrices by `mat_rotate_xyz` and applies them.
void object_rotate(object& mesh, float ax, float ay, float az);

// Takes `model_vertices` through `vertex_matrix` to `world_vertices`, and `model_normals` through
// `normal_matrix` to `world_normals`: the last step after the matrices have been changed by hand.
void object_apply_matrices(object& mesh);

// Waves the depth of `world_vertices`: the z of vertex i += sin(i + phase) * amplitude. The angle i + phase
// is rounded to a float; sine, product and sum are computed in double and rounded when stored.
void object_ripple(object& mesh, float phase, std::int32_t amplitude);

// Perspective with the focal constant 120: x * 120 / z + centre_x and the same for y go to `screen_vertices`.
// A z of exactly 0 in `world_vertices` becomes 1 and stays so. With z negative, positive x lands left of the
// centre and positive y above it.
void object_project(object& mesh, std::int32_t centre_x, std::int32_t centre_y);

// The second projection: with f = 120 / (120 - scale * z), scale * x * f + centre_x and the same for y.
void object_project_scaled(object& mesh, std::int32_t centre_x, std::int32_t centre_y, float scale);

// Sets `light` to the unit vector that points from `from` to `to`, or to zero where the two are the same.
void object_set_light(object& mesh, std::int32_t from_x, std::int32_t from_y, std::int32_t from_z,
                      std::int32_t to_x, std::int32_t to_y, std::int32_t to_z);
