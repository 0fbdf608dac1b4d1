// Depth order and the visibility window.
//
// A sort fills `sort_key`, `sort_order` and the `visible` flags from `world_vertices`, then sorts the slots,
// greatest key (nearest to the viewer) first; the renderers walk them from the last to the first. The window
// is strict on its far side and inclusive on its near side; what has a z outside, or no number for one, is
// hidden. Equal keys come out in the order of Hoare's partition with the first key as pivot (C. A. R. Hoare,
// "Quicksort", The Computer Journal 5, 1962).
//
// Loops run over the counts, held to the capacity.
#pragma once

#include "morvane/object/object.h"

// Sorts the faces by the sum of the z of their three corners, truncated toward zero, whose limits are those
// of the type. Visible is a face whose three corners have far < z <= near.
void object_sort_faces_between(object& mesh, std::int32_t far, std::int32_t near);

// The same with -1024 < z <= -92.
void object_sort_faces(object& mesh);

// Sorts the vertices of a point cloud by z, truncated. The flag of vertex i is `faces[i].visible`: 1 where
// -1024 < z <= 0.
void object_sort_vertices(object& mesh);
