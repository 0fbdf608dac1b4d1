#include "morvane/object/render.h"

#include <algorithm>
#include <array>

#include "morvane/base/numbers.h"
#include "morvane/gtex/sprites.h"
#include "morvane/object/fill.h"
#include "morvane/object/lighting.h"
#include "morvane/object/lines.h"

namespace {

struct screen_point {
    std::int32_t x, y;
};
using triangle = std::array<screen_point, 3>;

struct style_colour {
    std::int32_t red, green, blue, lit;
};

// Calls `draw(index)` for each used slot, the last one first, with the face or vertex that it holds.
template<typename Draw>
void for_each_slot(const object& mesh, std::int32_t slots, Draw draw) {
    for (std::int32_t slot = slots - 1; slot >= 0; --slot) {
        const std::int32_t index = mesh.sort_order[static_cast<std::size_t>(slot)];
        if (index >= 0 && index < object_capacity) draw(index);
    }
}

// Calls `draw(face, index)` for each visible face whose corners exist.
template<typename Draw>
void for_each_visible_face(const object& mesh, Draw draw) {
    for_each_slot(mesh, faces_in_use(mesh), [&](std::int32_t index) {
        const object_face& face = mesh.faces[static_cast<std::size_t>(index)];
        if (face.visible != 0 && std::max({face.a, face.b, face.c}) < object_capacity) draw(face, index);
    });
}

screen_point truncated(const object_vertex& v) {
    return {trunc_to_int(v.x), trunc_to_int(v.y)};
}

triangle truncated_corners(const object& mesh, const object_face& face) {
    return {truncated(mesh.screen_vertices[face.a]), truncated(mesh.screen_vertices[face.b]),
            truncated(mesh.screen_vertices[face.c])};
}

// Corners may lie anywhere within 32 bits: the difference of the two products takes 66.
bool front_facing(const triangle& t) {
    __extension__ using wide = __int128;
    const auto [a, b, c] = t;
    return (wide{a.y} - c.y) * (wide{b.x} - a.x) - (wide{b.y} - a.y) * (wide{a.x} - c.x) < 0;
}

std::uint32_t packed(std::int32_t red, std::int32_t green, std::int32_t blue) {
    const auto channel = [](std::int32_t value) {
        return static_cast<std::uint32_t>(std::clamp(value, 0, 255));
    };
    return channel(red) << 16 | channel(green) << 8 | channel(blue);
}

std::uint32_t face_colour(const object& mesh, std::int32_t face, const style_colour& style) {
    if (style.lit != 1) return packed(style.red, style.green, style.blue);
    const float intensity = object_face_intensity(mesh, face);
    const auto scaled = [=](std::int32_t value) {
        return trunc_to_int(static_cast<float>(value) * intensity);
    };
    return packed(scaled(style.red), scaled(style.green), scaled(style.blue));
}

// Calls `line(from, to, colour)` for each edge of the wire frame.
template<typename Line>
void draw_edges(const object& mesh, Line line) {
    const style_colour style{mesh.wire_red, mesh.wire_green, mesh.wire_blue, mesh.wire_lit};
    for_each_visible_face(mesh, [&](const object_face& face, std::int32_t index) {
        const triangle t = truncated_corners(mesh, face);
        if (!front_facing(t)) return;
        const std::uint32_t colour = face_colour(mesh, index, style);
        if (face.ab == 1) line(t[0], t[1], colour);
        if (face.bc == 1) line(t[1], t[2], colour);
        if (face.ca == 1) line(t[2], t[0], colour);
    });
}

} // namespace

void object_draw_wire(std::uint32_t* dst, const object& mesh) {
    draw_edges(mesh, [dst](screen_point from, screen_point to, std::uint32_t colour) {
        draw_line(dst, from.x, from.y, to.x, to.y, colour);
    });
}

void object_draw_wire_smooth(std::uint32_t* dst, const object& mesh) {
    draw_edges(mesh, [dst](screen_point from, screen_point to, std::uint32_t colour) {
        draw_line_smooth(dst, from.x, from.y, to.x, to.y, colour);
    });
}

void object_draw_flat(std::uint32_t* dst, const object& mesh) {
    const style_colour style{mesh.fill_red, mesh.fill_green, mesh.fill_blue, mesh.fill_lit};
    const auto shifted = [](const object_vertex& v) {
        return screen_point{trunc_to_int(v.x + 1.0F), trunc_to_int(v.y)};
    };
    for_each_visible_face(mesh, [&](const object_face& face, std::int32_t index) {
        const object_vertex& a = mesh.screen_vertices[face.a];
        const object_vertex& b = mesh.screen_vertices[face.b];
        const object_vertex& c = mesh.screen_vertices[face.c];
        const float facing = (a.y - c.y) * (b.x - a.x) - (b.y - a.y) * (a.x - c.x);
        if (trunc_to_int(facing) >= 0) return;
        const screen_point p = shifted(a), q = shifted(b), r = shifted(c);
        fill_triangle(dst, p.x, p.y, q.x, q.y, r.x, r.y, face_colour(mesh, index, style));
    });
}

void object_draw_textured(std::uint32_t* dst, const object& mesh, const std::uint32_t* texture) {
    for_each_visible_face(mesh, [&](const object_face& face, std::int32_t) {
        const auto [a, b, c] = truncated_corners(mesh, face);
        const object_vertex& p = mesh.world_vertices[face.a];
        const object_vertex& q = mesh.world_vertices[face.b];
        const object_vertex& r = mesh.world_vertices[face.c];
        fill_triangle_textured(dst, texture, a.x, a.y, b.x, b.y, c.x, c.y, p.tu, p.tv, q.tu, q.tv, r.tu,
                               r.tv);
    });
}

void object_draw_sprites(gtex dst, gtex sprite, const object& mesh) {
    const float half_width = static_cast<float>(sprite.width) * 0.5F;
    const float half_height = static_cast<float>(sprite.height) * 0.5F;
    for_each_slot(mesh, vertices_in_use(mesh), [&](std::int32_t vertex) {
        const auto at = static_cast<std::size_t>(vertex);
        if (mesh.faces[at].visible == 0) return; // the vertex sort uses the flags of the faces
        const object_vertex& v = mesh.screen_vertices[at];
        gtex_add_sprite(dst, sprite, trunc_to_int(v.x - half_width), trunc_to_int(v.y - half_height));
    });
}

void object_draw_points(std::uint32_t* dst, const object& mesh) {
    for_each_visible_face(mesh, [&](const object_face& face, std::int32_t index) {
        const triangle t = truncated_corners(mesh, face);
        if (!front_facing(t)) return;
        style_colour colour{mesh.point_red, mesh.point_green, mesh.point_blue, mesh.point_lit};
        if (colour.lit == 1) {
            const std::int32_t light = trunc_to_int(object_face_intensity(mesh, index) * 256);
            for (std::int32_t* channel : {&colour.red, &colour.green, &colour.blue})
                if (*channel != 0) *channel = light;
        }
        for (const screen_point& p : t)
            if (in_frame(p.x, p.y))
                dst[p.y * frame_columns + p.x] = packed(colour.red, colour.green, colour.blue);
    });
}
