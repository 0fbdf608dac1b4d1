// Reads a mesh from the ASCII mesh export format: keywords, letters and numbers in free text.
//
//     Named object: "Cube"
//     Tri-mesh, Vertices: 8     Faces: 12
//     Vertex list:
//     Vertex 0:  X:-1.0     Y:-1.0     Z:-1.0     U:0.0     V:1.0
//     Face list:
//     Face 0:    A:0 B:1 C:2 AB:1 BC:1 CA:0
//
// A keyword is the beginning of a token (at most 99 characters between blanks), a letter is the next such
// character wherever it stands, and the one character behind it is dropped. Whatever stands between is passed
// over. Entries are stored in the order of the file; the numbers in them are read and dropped. Only the first
// named object is read, and the program's locale has no say.
#pragma once

#include <string>
#include <string_view>

#include "morvane/object/object.h"

// Reads the file at `path` into `mesh`, whose `read_mapping` and `read_camera` are set first (1: the file has
// U and V on each vertex line, a camera section after the faces). Fills `name`, the counts, `model_vertices`,
// `world_vertices` with `tu` and `tv`, `faces`, `model_normals` and `sort_order`, and sets `wire_lit` and
// `fill_lit` to 0. Light, matrices and colours stay as they are.
//
// A name longer than 19 characters is cut. The file is refused if it can't be read, is longer than 64 MiB,
// ends before everything is there, lacks a number where one belongs, has one that is not finite, counts more
// than 4096 vertices or faces (or fewer than none), or has a face of a vertex that isn't there. `mesh` is
// then empty, both counts 0, one line "morvane: PATH: REASON" goes to standard error, and the result is
// false.
bool object_load(const std::string& path, object& mesh);

// The same from memory: returns what is wrong with `text` (and leaves `mesh` empty), or nothing.
std::string object_read_asc(std::string_view text, object& mesh);
