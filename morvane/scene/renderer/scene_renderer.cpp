// From the current state of a scene to pixels: the meshes into camera space, the lights, then face by face
// facing test, colour, texture, near clip, projection, and off to the rasterizer of the mesh's render mode.
//
// Nothing is sorted: what hides what is up to the facing test and the depth buffer. Everything computes in
// double and stores floats.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "morvane/base/numbers.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/poly.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"
#include "morvane/scene/moscene.h"

namespace {

bool draws(const mesh& m, render_mode_bits bit) {
    return (static_cast<std::uint32_t>(m.render_mode) & bit) != 0;
}

using face_vertices = std::array<std::size_t, 3>;

constexpr std::size_t nameable_vertices = std::size_t{INT16_MAX} + 1; // by a face

// How many vertices a face can use: those that all of the mesh's arrays hold.
std::size_t usable_vertices(const mesh& m) {
    return std::min(
        {m.vertices.size(), m.camera_vertices.size(), m.normals.size(), m.uv.size(), nameable_vertices});
}

// The three indices of the face; false if one of them is none of `vertices` vertices.
bool read_face(const face& f, std::size_t vertices, face_vertices& out) {
    if (f.a < 0 || f.b < 0 || f.c < 0) return false;
    out = {static_cast<std::size_t>(f.a), static_cast<std::size_t>(f.b), static_cast<std::size_t>(f.c)};
    return std::max({out[0], out[1], out[2]}) < vertices;
}

// A colour while it is summed up, 255 for full light.
struct colour_sum {
    std::array<float, 3> rgb;

    void add(const std::array<double, 3>& light) {
        for (std::size_t i = 0; i < rgb.size(); ++i)
            rgb[i] = static_cast<float>(rgb[i] + light[i]);
    }
    void limit() {
        for (float& channel : rgb)
            if (channel > 255.0F) channel = 255.0F;
    }
    std::int32_t channel(std::size_t i) const { return trunc_to_int(rgb[i]); }
};

struct face_colours {
    colour_sum face;
    std::array<colour_sum, 3> vertex;
};

// What the ambient light makes of the material, or of white without one.
colour_sum base_colour(const moscene& scene, const material* surface) {
    if (!surface)
        return {static_cast<float>(scene.ambient_r * 255.0), static_cast<float>(scene.ambient_g * 255.0),
                static_cast<float>(scene.ambient_b * 255.0)};
    return {static_cast<float>(static_cast<double>(surface->ambient_r) * scene.ambient_r),
            static_cast<float>(static_cast<double>(surface->ambient_g) * scene.ambient_g),
            static_cast<float>(static_cast<double>(surface->ambient_b) * scene.ambient_b)};
}

// |cosine| between the two where both have unit length: lit the same from both sides.
double incidence(const vector3d& direction, const vector3d& normal) {
    return std::abs(static_cast<double>(direction.x) * normal.x +
                    static_cast<double>(direction.y) * normal.y +
                    static_cast<double>(direction.z) * normal.z);
}

// What a light that falls in at `d` adds.
std::array<double, 3> reflected(const light& lamp, const material* surface, double d) {
    if (!surface) return {d * lamp.color_r * 255.0, d * lamp.color_g * 255.0, d * lamp.color_b * 255.0};
    return {static_cast<double>(surface->diffuse_r) * lamp.color_r * d,
            static_cast<double>(surface->diffuse_g) * lamp.color_g * d,
            static_cast<double>(surface->diffuse_b) * lamp.color_b * d};
}

void add_lights(face_colours& colours, const moscene& scene, const mesh& m, const face& f,
                const face_vertices& corners, const material* surface) {
    const bool per_vertex = draws(m, mode_per_vertex);
    for (const light* lamp = scene.first_light; lamp; lamp = lamp->next) {
        if (!per_vertex) {
            const double d = incidence(lamp->direction, f.normal);
            if (d != 0) colours.face.add(reflected(*lamp, surface, d));
            continue;
        }
        for (std::size_t k = 0; k < corners.size(); ++k)
            colours.vertex[k].add(
                reflected(*lamp, surface, incidence(lamp->direction, m.normals[corners[k]])));
    }
    if (per_vertex)
        for (colour_sum& vertex : colours.vertex)
            vertex.limit();
}

// The ambient light and, where the scene uses them, its lights.
face_colours face_lighting(const moscene& scene, const mesh& m, const face& f, const face_vertices& corners,
                           const material* surface) {
    const colour_sum base = base_colour(scene, surface);
    face_colours colours{base, {base, base, base}};
    if (scene.use_lights) add_lights(colours, scene, m, f, corners, surface);
    return colours;
}

void set_colours(poly& p, const face_colours& colours) {
    p.r = std::min(colours.face.channel(0), 255);
    p.g = std::min(colours.face.channel(1), 255);
    p.b = std::min(colours.face.channel(2), 255);
    for (std::size_t k = 0; k < colours.vertex.size(); ++k) {
        p.v[k].r = colours.vertex[k].channel(0);
        p.v[k].g = colours.vertex[k].channel(1);
        p.v[k].b = colours.vertex[k].channel(2);
    }
}

// The texture of a face and its coordinates in texels. Without a texture that can be read the polygon gets
// none, and its adapter draws it flat.
void set_texture(poly& p, const mesh& m, const face_vertices& corners, const material* surface) {
    p.texture = nullptr;
    if (!surface || !surface->has_texture) return;
    const map_slot& map = surface->texture_map;
    if (!map.pixels || map.pixels_width <= 0 || map.pixels_height <= 0) return;
    p.texture = map.pixels;
    p.texture_width = map.pixels_width;
    p.texture_height = map.pixels_height;
    for (std::size_t k = 0; k < corners.size(); ++k) {
        p.v[k].u = static_cast<float>(static_cast<double>(map.pixels_width) * m.uv[corners[k]].u);
        p.v[k].v = static_cast<float>(static_cast<double>(map.pixels_height) * m.uv[corners[k]].v);
    }
}

// Where a point lands on the screen, divided by `depth`; z stays.
vector3d projected(const vector3d& p, const camera& c, double depth) {
    return {static_cast<float>(static_cast<double>(p.x) * c.factor_x / depth + raster_center_x),
            static_cast<float>(static_cast<double>(p.y) * c.factor_y / depth + raster_center_y), p.z};
}

// The vertices on the screen as the facing test wants them: divided by the absolute depth, which keeps a face
// that reaches behind the camera in one piece. It mirrors the picture at the centre, which doesn't change how
// a face winds. Scratch of one mesh, once a vertex rather than once a face.
std::array<vector3d, nameable_vertices> facing_points;

// A vertex in the plane of the eye is at no place of the screen: its faces count as facing.
void project_for_facing(const mesh& m, const camera& c, std::size_t vertices) {
    constexpr float nowhere = std::numeric_limits<float>::quiet_NaN();
    for (std::size_t k = 0; k < vertices; ++k) {
        const vector3d& p = m.camera_vertices[k];
        facing_points[k] =
            p.z == 0 ? vector3d{nowhere, nowhere, p.z} : projected(p, c, std::abs(static_cast<double>(p.z)));
    }
}

// A textured mesh without any material is drawn flat and blended from now on, until its mode is set anew.
void substitute_mode(mesh& m) {
    if (draws(m, mode_textured) && faces_in_use(m) > 0 && !m.faces[0].material && !m.material)
        m.render_row = render_mode_find(mode_flat | mode_depth | mode_blended);
}

void draw_mesh(std::uint32_t* destination, const moscene& scene, const camera& c, mesh& m) {
    substitute_mode(m);
    const bool textured = draws(m, mode_textured);
    const std::size_t face_count = faces_in_use(m), vertices = usable_vertices(m);
    project_for_facing(m, c, vertices);
    face_vertices corners;
    poly face_poly;
    for (std::size_t i = 0; i < face_count; ++i) {
        const face& f = m.faces[i];
        if (!read_face(f, vertices, corners)) continue;
        if (!vector3d_facing(facing_points[corners[0]], facing_points[corners[1]], facing_points[corners[2]]))
            continue;
        const material* const surface = f.material ? f.material : m.material;
        const material* const coloured = scene.use_materials ? surface : nullptr;
        face_poly.count = 3;
        for (std::size_t k = 0; k < corners.size(); ++k) {
            face_poly.v[k].pos = m.camera_vertices[corners[k]];
            face_poly.v[k].u = face_poly.v[k].v = 10.0F; // of no meaning without a texture
        }
        face_poly.opacity = coloured ? coloured->opacity : 256;
        set_colours(face_poly, face_lighting(scene, m, f, corners, coloured));
        if (textured) set_texture(face_poly, m, corners, surface);
        poly_clip_near(face_poly);
        for (std::int32_t k = 0; k < face_poly.count; ++k) {
            vector3d& pos = face_poly.v[static_cast<std::size_t>(k)].pos;
            pos = projected(pos, c, pos.z);
        }
        render_mode_draw(destination, face_poly, m.render_row);
    }
}

} // namespace

void mesh_to_camera(mesh& m, const camera& c) {
    constexpr std::size_t bits = 64;
    std::array<std::uint64_t, nameable_vertices / bits> held{}; // a bit a vertex: whether a face holds it
    const std::size_t face_count = faces_in_use(m), vertices = usable_vertices(m);
    face_vertices corners;
    for (std::size_t i = 0; i < face_count; ++i) {
        if (!read_face(m.faces[i], vertices, corners)) continue;
        for (const std::size_t k : corners)
            held[k / bits] |= std::uint64_t{1} << k % bits;
    }
    for (std::size_t word = 0; word < held.size(); ++word)
        for (std::uint64_t rest = held[word]; rest != 0; rest &= rest - 1) {
            const std::size_t k = word * bits + static_cast<std::size_t>(std::countr_zero(rest));
            m.camera_vertices[k] = c.view.transform(m.vertices[k] + m.position);
        }
}

void moscene::scene_render(std::uint32_t* destination) {
    if (!camera) return;
    for (mesh* m = first_mesh; m; m = m->next)
        mesh_to_camera(*m, *camera);
    for (current_light = first_light; current_light; current_light = current_light->next) {
        current_light->direction = current_light->position;
        current_light->direction.normalize();
    }
    for (current_mesh = first_mesh; current_mesh; current_mesh = current_mesh->next)
        draw_mesh(destination, *this, *camera, *current_mesh);
}
