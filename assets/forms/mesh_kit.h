// Meshes as they are modelled, and their way into the text form that the show reads.
//
// x points left on the screen, y up, z towards the viewer. The corners of a face run counter-clockwise as
// seen from the side that it shows (from the tip of the normal, the cross product of the edges a-b and b-c).
#pragma once

#include <cmath>
#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "assets/forms/file_forms.h"

namespace assets {

struct vec3 {
    double x = 0, y = 0, z = 0;
};

constexpr vec3 operator+(vec3 a, vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr vec3 operator-(vec3 a, vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr vec3 operator*(vec3 a, double k) {
    return {a.x * k, a.y * k, a.z * k};
}
constexpr double dot(vec3 a, vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr vec3 cross(vec3 a, vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(vec3 a) {
    return std::sqrt(dot(a, a));
}
// Unit length; a zero vector stays zero.
inline vec3 normalised(vec3 a) {
    const double l = length(a);
    return l > 0 ? a * (1 / l) : a;
}

// A smooth value of about -1 to 1 for each place, its waves about `1 / frequency` long. No generator: sums of
// sines along skew axes, each bent by the one before it.
double smooth_noise(vec3 p, double frequency, int octaves);

struct mesh_vertex {
    vec3 position;
    double u = 0, v = 0; // in textures; beyond 0 to 1 the texture repeats
};

struct mesh_face {
    std::size_t a = 0, b = 0, c = 0;
    bool ab = false, bc = false, ca = false; // whether the edge belongs to the wire drawing
};

struct mesh {
    std::vector<mesh_vertex> vertices;
    std::vector<mesh_face> faces;
};

// Adds a vertex and tells its index.
std::size_t add_vertex(mesh& m, vec3 position, double u, double v);

// Adds a vertex of a body around the origin, with the place in the texture that its direction asks for:
// planar on the octahedron |x| + |y| + |z| = 1, so continuous all around. No vertex is needed twice for a
// seam, and the ripple tears nothing. The planes slant, lest the two halves mirror each other. `repeats`
// textures lie across.
std::size_t add_seamless_vertex(mesh& m, vec3 position, double repeats);

// Adds the quad a, b, c, d, split from a to c. Its four sides belong to the wire drawing if `outlined`, the
// diagonal never does.
void add_quad(mesh& m, std::size_t a, std::size_t b, std::size_t c, std::size_t d, bool outlined);

// Puts the vertices into an order in which the show's ripple, which moves vertex i by sin(i + t), runs over
// the body as a wave: `wave` gives each place its phase in turns (its fraction counts). The phases i mod 2 pi
// of the indices lie evenly on the circle, so the vertices are ranked by the phase that they ask for and get
// the indices ranked by theirs. Each vertex then differs from its wish by the unevenness of all wishes only.
void order_for_ripple(mesh& m, const std::function<double(vec3)>& wave);

// The mesh as an ASC text: the named object, a line for each vertex with X, Y, Z, U and V, a line for each
// face with its corners and edge flags. Three decimals, four for U and V.
file_bytes asc_file(std::string_view name, const mesh& m);

} // namespace assets
