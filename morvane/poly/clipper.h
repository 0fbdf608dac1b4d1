// Cuts a polygon against the near plane and the rectangle of the screen, in place.
//
// A plane is told by two points, the clip edge: the direction from one to the other decides which side stays.
// What lies exactly on an edge is inside. Sutherland and Hodgman, "Reentrant Polygon Clipping" (1974).
//
// Every vertex carries x, y, z, u, v and its colour through a cut; the other fields of the polygon stay as
// they are. Cuts are computed in double and stored as floats; colours are truncated toward zero. A polygon
// that lies outside ends with `count` 0. A pass makes a convex polygon longer by one vertex at most; what
// would pass `poly_capacity` is dropped. Working state is shared: not re-entrant.
#pragma once

#include <cstdint>

#include "morvane/math/vector3d.h"
#include "morvane/poly/poly.h"

// The corners of the screen, of which x and y count. No edge may lie at exactly 0.
void poly_clip_set_rect(const vector3d& top_left, const vector3d& top_right, const vector3d& bottom_right,
                        const vector3d& bottom_left);

// The near plane is z = near.z; the far point tells only on which side of it the scene lies.
void poly_clip_set_depth(const vector3d& near, const vector3d& far);

// Both, with the values of the show for a frame of `width` by `height`: x from 1.0 to width - 0.01, y from
// 0.01 to height - 0.01, z at most -0.000001. Start-up calls it once, behind `raster_init`.
void poly_clip_set_frame(std::int32_t width, std::int32_t height);

// Keeps what lies in front of the camera, beyond the near plane. For vertices in camera space.
void poly_clip_near(poly& polygon);

// Keeps what lies inside the rectangle: left, bottom, right and top edge, in this order. For projected
// vertices. A polygon of two vertices is a line and stays two vertices long; an
// upright one whose second end is cut off shrinks to the cut.
void poly_clip_screen(poly& polygon);

// 1 if the projected vertex lies inside the rectangle, bounds included, and beyond the near plane; otherwise
// 0, also for a coordinate that is not a number.
std::int32_t poly_point_visible(const poly_vertex& vertex);
