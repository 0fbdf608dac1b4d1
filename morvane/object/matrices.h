// Matrices and vectors of the object engine.
//
// A matrix is 16 floats row by row, a point is a row, p' = p * M, and the translation sits in the last row.
// Chaining M := M * R therefore applies R after what M already holds. Sums are 32-bit floats, taken from left
// to right. Angles are radians; sines and cosines are computed in double and rounded when stored. Arguments
// may be the same record throughout. Nothing fails.
//
// Textbook forms: Foley, van Dam, Feiner, Hughes, "Computer Graphics: Principles and Practice", chapter 5.
#pragma once

#include "morvane/object/object.h"

void mat_identity(object_matrix& m);

// out := a * b.
void mat_multiply(const object_matrix& a, const object_matrix& b, object_matrix& out);

void mat_copy(const object_matrix& from, object_matrix& to);

// out := in * m for one point with w = 1. Only `x`, `y` and `z` are touched.
inline void mat_apply(const object_matrix& m, const object_vertex& in, object_vertex& out) {
    const float x = in.x * m[0] + in.y * m[4] + in.z * m[8] + m[12];
    const float y = in.x * m[1] + in.y * m[5] + in.z * m[9] + m[13];
    const float z = in.x * m[2] + in.y * m[6] + in.z * m[10] + m[14];
    out.x = x;
    out.y = y;
    out.z = z;
}

// m := m * T, with T the identity whose last row is (x, y, z, 1).
void mat_translate(object_matrix& m, float x, float y, float z);

// m := m * S, with S the diagonal (x, y, z, 1).
void mat_scale(object_matrix& m, float x, float y, float z);

// m := m * Rx(ax) * Ry(ay) * Rz(az), in that order.
void mat_rotate_xyz(object_matrix& m, float ax, float ay, float az);

// m := m * R(a) about one axis. With c and s the cosine and sine, the upper left 3 by 3 of R is
//     x: (1, 0, 0), (0, c, s), (0, -s, c)    y: (c, 0, -s), (0, 1, 0), (s, 0, c)
//     z: (c, s, 0), (-s, c, 0), (0, 0, 1)
void mat_rotate_x(object_matrix& m, float a);
void mat_rotate_y(object_matrix& m, float a);
void mat_rotate_z(object_matrix& m, float a);

// Divides `x`, `y`, `z` by their Euclidean length, in place. A zero vector, and one whose length is no finite
// number, stays as it is.
void vec_normalize(object_vertex& v);

// Normalises `a` and `b` in place; out := their dot product.
void vec_cos_angle(object_vertex& a, object_vertex& b, float& out);

// out := a x b. Only `x`, `y` and `z` are touched.
void vec_cross(const object_vertex& a, const object_vertex& b, object_vertex& out);

// A look-at camera out of `camera_position` and `camera_target`. The rows of `m` are right, up and forward in
// elements 0 to 2, 4 to 6 and 8 to 10; 3, 7 and 11 hold minus the dot product of the row with the position;
// the last row is (0, 0, 0, 1). Forward points to the target, up is (0, -1, 0) less its part along forward,
// right is up x forward. A camera that looks along the y axis, or nowhere, has zero rows for what it can't
// tell.
void camera_matrix(const object_vertex& position, const object_vertex& target, object_matrix& m);
void camera_matrix(const object& camera, object_matrix& m);
