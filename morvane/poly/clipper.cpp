#include "morvane/poly/clipper.h"

#include <algorithm>
#include <array>

#include "morvane/base/numbers.h"

namespace {

// The clip points. The show's values come from `poly_clip_set_frame`.
vector3d top_left, top_right, bottom_right, bottom_left;
vector3d near_point, far_point;
bool upright; // whether the four corners are those of a rectangle along the axes

// The edge that a pass cuts at.
const vector3d* clip_edge_from = &far_point;
const vector3d* clip_edge_to = &near_point;

// What a pass emits.
std::array<poly_vertex, poly_capacity> clip_scratch;
std::int32_t clip_scratch_count = 0;

// The edge that runs towards larger x keeps what lies at smaller y, and so on.
bool clip_inside(const poly_vertex& vertex) {
    const vector3d &a = *clip_edge_from, &b = *clip_edge_to, &p = vertex.pos;
    if (a.x < b.x && p.y <= a.y) return true;
    if (b.x < a.x && p.y >= a.y) return true;
    if (a.y < b.y && p.x <= b.x) return true;
    if (b.y < a.y && p.x >= b.x) return true;
    if (a.z < b.z && p.z <= b.z) return true;
    return b.z < a.z && p.z >= b.z;
}

void clip_emit(const poly_vertex& vertex) {
    if (clip_scratch_count == poly_capacity) return;
    clip_scratch[static_cast<std::size_t>(clip_scratch_count++)] = vertex;
}

// The vertex between s and e where the coordinate `axis` is `bound`.
poly_vertex cut_at(const poly_vertex& s, const poly_vertex& e, float vector3d::*axis, float bound) {
    const double way = double{bound} - s.pos.*axis;
    const double whole = double{e.pos.*axis} - s.pos.*axis;
    const auto real = [=](double from, double to) {
        return static_cast<float>((to - from) * way / whole + from);
    };
    const auto channel = [=](std::int32_t from, std::int32_t to) {
        return trunc_to_int((static_cast<double>(to) - from) * way / whole + from);
    };
    poly_vertex out{.pos = {real(s.pos.x, e.pos.x), real(s.pos.y, e.pos.y), real(s.pos.z, e.pos.z)},
                    .u = real(s.u, e.u),
                    .v = real(s.v, e.v),
                    .r = channel(s.r, e.r),
                    .g = channel(s.g, e.g),
                    .b = channel(s.b, e.b)};
    out.pos.*axis = bound;
    return out;
}

// Emits the vertex where the way from s to e meets the clip edge. The test for 0 lets the two depth points,
// which both lie at x = y = 0, through to the z axis. An edge that is no plane emits nothing.
void clip_intersect(const poly_vertex& s, const poly_vertex& e) {
    const vector3d &a = *clip_edge_from, &b = *clip_edge_to;
    if (a.y == b.y && a.y != 0)
        clip_emit(cut_at(s, e, &vector3d::y, a.y));
    else if (a.x == b.x && a.x != 0)
        clip_emit(cut_at(s, e, &vector3d::x, a.x));
    else if (a.z != b.z)
        clip_emit(cut_at(s, e, &vector3d::z, b.z));
}

// Brings the result of a pass back. A line that was cut comes as three vertices, of which two may coincide.
void poly_clip_commit(poly& polygon) {
    if (polygon.count == 2 && clip_scratch_count == 3) {
        polygon.v[0] = clip_scratch[0];
        polygon.v[1] = clip_scratch[0].pos.x != clip_scratch[1].pos.x ? clip_scratch[1] : clip_scratch[2];
        return;
    }
    polygon.count = clip_scratch_count;
    std::copy_n(clip_scratch.begin(), clip_scratch_count, polygon.v.begin());
}

void poly_clip_pass(const poly& polygon) {
    clip_scratch_count = 0;
    if (polygon.count <= 0) return;
    const auto count = static_cast<std::size_t>(std::min(polygon.count, poly_capacity));
    const poly_vertex* prev = &polygon.v[count - 1];
    bool prev_inside = clip_inside(*prev);
    for (std::size_t i = 0; i < count; ++i) {
        const poly_vertex& cur = polygon.v[i];
        const bool cur_inside = clip_inside(cur);
        if (cur_inside != prev_inside) clip_intersect(*prev, cur);
        if (cur_inside) clip_emit(cur);
        prev = &cur;
        prev_inside = cur_inside;
    }
}

void clip_at(poly& polygon, const vector3d& from, const vector3d& to) {
    clip_edge_from = &from;
    clip_edge_to = &to;
    poly_clip_pass(polygon);
    poly_clip_commit(polygon);
}

// Whether the four passes leave every vertex as it is, which is the rule for a small face.
bool wholly_on_screen(const poly& polygon) {
    if (!upright || polygon.count < 0 || polygon.count > poly_capacity) return false;
    for (std::int32_t i = 0; i < polygon.count; ++i) {
        const vector3d& p = polygon.v[static_cast<std::size_t>(i)].pos;
        if (!(p.x >= top_left.x && p.x <= bottom_right.x && p.y >= top_left.y && p.y <= bottom_right.y))
            return false;
    }
    return true;
}

// Whether the pass at the near plane leaves every vertex as it is.
bool wholly_in_front(const poly& polygon) {
    const bool straight = near_point.x == far_point.x && near_point.y == far_point.y;
    if (!straight || !(far_point.z < near_point.z) || polygon.count > poly_capacity) return false;
    for (std::int32_t i = 0; i < polygon.count; ++i) {
        if (!(polygon.v[static_cast<std::size_t>(i)].pos.z <= near_point.z)) return false;
    }
    return true;
}

} // namespace

void poly_clip_set_rect(const vector3d& new_top_left, const vector3d& new_top_right,
                        const vector3d& new_bottom_right, const vector3d& new_bottom_left) {
    top_left = new_top_left;
    top_right = new_top_right;
    bottom_right = new_bottom_right;
    bottom_left = new_bottom_left;
    upright = top_left.y == top_right.y && bottom_left.y == bottom_right.y && top_left.x == bottom_left.x &&
              top_right.x == bottom_right.x && top_left.x < top_right.x && top_left.y < bottom_left.y;
}

void poly_clip_set_depth(const vector3d& near, const vector3d& far) {
    near_point = near;
    far_point = far;
}

void poly_clip_set_frame(std::int32_t width, std::int32_t height) {
    const auto right = static_cast<float>(static_cast<float>(width) - 0.01);
    const auto bottom = static_cast<float>(static_cast<float>(height) - 0.01);
    poly_clip_set_rect({1.0F, 0.01F, 0}, {right, 0.01F, 0}, {right, bottom, 0}, {1.0F, bottom, 0});
    poly_clip_set_depth({0, 0, -0.000001F}, {0, 0, -2000000.0F});
}

void poly_clip_near(poly& polygon) {
    if (!wholly_in_front(polygon)) clip_at(polygon, far_point, near_point);
}

void poly_clip_screen(poly& polygon) {
    if (wholly_on_screen(polygon)) return;
    clip_at(polygon, bottom_left, top_left);
    clip_at(polygon, bottom_left, bottom_right);
    clip_at(polygon, top_right, bottom_right);
    clip_at(polygon, top_right, top_left);
}

std::int32_t poly_point_visible(const poly_vertex& vertex) {
    const vector3d& p = vertex.pos;
    return p.y >= top_left.y && p.y <= bottom_left.y && p.x >= top_left.x && p.x <= bottom_right.x &&
                   p.z <= near_point.z
               ? 1
               : 0;
}
