// Renderers of the object engine: a mesh that has been sorted (sort.h) and projected (transform.h), drawn
// into a frame.
//
// `dst` is the first pixel of a 512x288 surface, `texture` that of a 256x256 one; they don't overlap. All
// walk the sort slots from the last to the first, so that far faces are drawn first and near ones over them.
// A corner on the screen is truncated toward zero to whole pixels. Colours are packed as red << 16 | green <<
// 8 | blue; with the style's lit switch at 1 each channel is multiplied by the face's intensity (lighting.h)
// and truncated. A face is front-facing if its corners a, b, c give
//
//     (y0 - y2) * (x1 - x0) - (y1 - y0) * (x0 - x2) < 0
//
// Safe with any record: counts are limited to the capacity, channels to 0 to 255, slots and faces that point
// beyond the capacity are skipped.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"
#include "morvane/object/object.h"

// The edges flagged 1 of the front-facing visible faces, with `draw_line` in the wire colour. Facing is told
// by the truncated corners. An edge of two faces is drawn twice.
void object_draw_wire(std::uint32_t* dst, const object& mesh);

// `object_draw_wire` with `draw_line_smooth`.
void object_draw_wire_smooth(std::uint32_t* dst, const object& mesh);

// The front-facing visible faces, with `fill_triangle` in the fill colour, one pixel to the right of what the
// other styles draw: 1.0 is added to x before truncation. Facing is computed in floats on the corners before
// that and truncated, so that a face whose measure is above -1 isn't drawn.
void object_draw_flat(std::uint32_t* dst, const object& mesh);

// All visible faces, whichever way they face, with `fill_triangle_textured`. No light.
void object_draw_textured(std::uint32_t* dst, const object& mesh, const std::uint32_t* texture);

// The sprite centred on each visible vertex (object_sort_vertices), with `gtex_add_sprite`. `dst` is 512
// wide.
void object_draw_sprites(gtex dst, gtex sprite, const object& mesh);

// The three corners of each front-facing visible face (told by the truncated corners) as single pixels of the
// point colour. With `point_lit` 1 a channel whose colour isn't 0 becomes the intensity * 256, truncated and
// limited to 255.
void object_draw_points(std::uint32_t* dst, const object& mesh);
