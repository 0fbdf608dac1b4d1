#include "morvane/object/matrices.h"

#include <cmath>
#include <cstddef>

namespace {

constexpr object_matrix identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

struct turn {
    float s, c;
    explicit turn(float angle)
        : s(static_cast<float>(std::sin(double{angle}))), c(static_cast<float>(std::cos(double{angle}))) {}
};

void chain(object_matrix& m, const object_matrix& by) {
    mat_multiply(m, by, m);
}

float dot(const object_vertex& a, const object_vertex& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

object_vertex difference(const object_vertex& a, const object_vertex& b) {
    return {.x = a.x - b.x, .y = a.y - b.y, .z = a.z - b.z};
}

} // namespace

void mat_identity(object_matrix& m) {
    m = identity;
}

void mat_multiply(const object_matrix& a, const object_matrix& b, object_matrix& out) {
    object_matrix product;
    for (std::size_t row = 0; row < 16; row += 4)
        for (std::size_t column = 0; column < 4; ++column)
            product[row + column] = a[row] * b[column] + a[row + 1] * b[4 + column] +
                                    a[row + 2] * b[8 + column] + a[row + 3] * b[12 + column];
    out = product;
}

void mat_copy(const object_matrix& from, object_matrix& to) {
    to = from;
}

void mat_translate(object_matrix& m, float x, float y, float z) {
    chain(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1});
}

void mat_scale(object_matrix& m, float x, float y, float z) {
    chain(m, {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1});
}

void mat_rotate_xyz(object_matrix& m, float ax, float ay, float az) {
    mat_rotate_x(m, ax);
    mat_rotate_y(m, ay);
    mat_rotate_z(m, az);
}

void mat_rotate_x(object_matrix& m, float a) {
    const turn t(a);
    chain(m, {1, 0, 0, 0, 0, t.c, t.s, 0, 0, -t.s, t.c, 0, 0, 0, 0, 1});
}

void mat_rotate_y(object_matrix& m, float a) {
    const turn t(a);
    chain(m, {t.c, 0, -t.s, 0, 0, 1, 0, 0, t.s, 0, t.c, 0, 0, 0, 0, 1});
}

void mat_rotate_z(object_matrix& m, float a) {
    const turn t(a);
    chain(m, {t.c, t.s, 0, 0, -t.s, t.c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
}

void vec_normalize(object_vertex& v) {
    // In double, so that no square overflows.
    const double length = std::sqrt(double{v.x} * v.x + double{v.y} * v.y + double{v.z} * v.z);
    if (!std::isnormal(length)) return;
    v.x = static_cast<float>(v.x / length);
    v.y = static_cast<float>(v.y / length);
    v.z = static_cast<float>(v.z / length);
}

void vec_cos_angle(object_vertex& a, object_vertex& b, float& out) {
    vec_normalize(a);
    vec_normalize(b);
    out = dot(a, b);
}

void vec_cross(const object_vertex& a, const object_vertex& b, object_vertex& out) {
    const float x = a.y * b.z - a.z * b.y;
    const float y = a.z * b.x - a.x * b.z;
    const float z = a.x * b.y - a.y * b.x;
    out.x = x;
    out.y = y;
    out.z = z;
}

void camera_matrix(const object_vertex& position, const object_vertex& target, object_matrix& m) {
    object_vertex forward = difference(target, position);
    vec_normalize(forward);

    const object_vertex upright{.y = -1};
    const float along = dot(upright, forward);
    object_vertex up =
        difference(upright, {.x = forward.x * along, .y = forward.y * along, .z = forward.z * along});
    vec_normalize(up);

    object_vertex right;
    vec_cross(up, forward, right);

    m = {right.x,   right.y,   right.z,   -dot(right, position),   //
         up.x,      up.y,      up.z,      -dot(up, position),      //
         forward.x, forward.y, forward.z, -dot(forward, position), //
         0,         0,         0,         1};
}

void camera_matrix(const object& camera, object_matrix& m) {
    camera_matrix(camera.camera_position, camera.camera_target, m);
}
