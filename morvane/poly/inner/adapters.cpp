#include "morvane/poly/inner/adapters.h"

#include <algorithm>

#include "morvane/base/numbers.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/lines.h"
#include "morvane/poly/raster.h"

namespace {

// A vertex as the rasterizers take it.
struct whole_vertex {
    std::int32_t x, y, z;
    explicit whole_vertex(const poly_vertex& vertex)
        : x(trunc_to_int(vertex.pos.x)), y(trunc_to_int(vertex.pos.y)), z(trunc_to_int(vertex.pos.z)) {}
};

std::int32_t vertex_count(const poly& polygon) {
    return std::clamp(polygon.count, 0, poly_capacity);
}

// `plot(vertex)` for each vertex on the screen.
template<typename Plot>
void each_visible_point(const poly& polygon, Plot plot) {
    for (std::int32_t i = 0; i < vertex_count(polygon); ++i) {
        const poly_vertex& vertex = polygon.v[static_cast<std::size_t>(i)];
        if (poly_point_visible(vertex) != 0) plot(vertex);
    }
}

// `draw(from, to)` for each edge of the clipped polygon; the last vertex joins the first.
template<typename Draw>
void each_edge(poly& polygon, Draw draw) {
    poly_clip_screen(polygon);
    for (std::int32_t i = 0; i < polygon.count; ++i) {
        const auto next = static_cast<std::size_t>((i + 1) % polygon.count);
        draw(whole_vertex(polygon.v[static_cast<std::size_t>(i)]), whole_vertex(polygon.v[next]));
    }
}

} // namespace

void adapt_point(std::uint32_t* destination, poly& polygon) {
    const std::uint32_t colour = poly_packed_colour(polygon);
    each_visible_point(polygon, [=](const poly_vertex& vertex) {
        const whole_vertex p(vertex);
        if (p.x < 0 || p.x >= raster_width || p.y < 0 || p.y >= raster_height)
            return; // a larger clip rectangle
        destination[std::int64_t{p.y} * raster_width + p.x] = colour;
    });
}

void adapt_point_aa(std::uint32_t* destination, poly& polygon) {
    each_visible_point(polygon, [&](const poly_vertex& vertex) {
        plot_aa(destination, vertex.pos.x, vertex.pos.y, polygon.r, polygon.g, polygon.b);
    });
}

void adapt_line(std::uint32_t* destination, poly& polygon) {
    const std::uint32_t colour = poly_packed_colour(polygon);
    each_edge(polygon, [=](const whole_vertex& from, const whole_vertex& to) {
        line_plain(destination, from.x, from.y, to.x, to.y, colour);
    });
}

void adapt_line_aa(std::uint32_t* destination, poly& polygon) {
    each_edge(polygon, [&](const whole_vertex& from, const whole_vertex& to) {
        line_aa(destination, static_cast<float>(from.x), static_cast<float>(from.y), static_cast<float>(to.x),
                static_cast<float>(to.y), polygon.r, polygon.g, polygon.b);
    });
}

void adapt_flat(std::uint32_t* destination, poly& polygon) {
    const std::uint32_t colour = poly_packed_colour(polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_flat(destination, a.x, a.y, b.x, b.y, c.x, c.y, colour);
    });
}

void adapt_flat_z(std::uint32_t* destination, poly& polygon) {
    const std::uint32_t colour = poly_packed_colour(polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_flat_z(destination, a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, colour);
    });
}

void adapt_flat_a(std::uint32_t* destination, poly& polygon) {
    const std::uint32_t colour = poly_packed_colour(polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=, &polygon](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_flat_a(destination, a.x, a.y, b.x, b.y, c.x, c.y, colour, polygon.opacity);
    });
}

void adapt_flat_az(std::uint32_t* destination, poly& polygon) {
    const std::uint32_t colour = poly_packed_colour(polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=, &polygon](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_flat_az(destination, a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, colour, polygon.opacity);
    });
}

void adapt_gouraud(std::uint32_t* destination, poly& polygon) {
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_gouraud(destination, a.x, a.y, v0.r, v0.g, v0.b, b.x, b.y, v1.r, v1.g, v1.b, c.x, c.y, v2.r,
                     v2.g, v2.b);
    });
}

void adapt_gouraud_z(std::uint32_t* destination, poly& polygon) {
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_gouraud_z(destination, a.x, a.y, a.z, v0.r, v0.g, v0.b, b.x, b.y, b.z, v1.r, v1.g, v1.b, c.x,
                       c.y, c.z, v2.r, v2.g, v2.b);
    });
}

void adapt_gouraud_a(std::uint32_t* destination, poly& polygon) {
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=, &polygon](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_gouraud_a(destination, a.x, a.y, v0.r, v0.g, v0.b, b.x, b.y, v1.r, v1.g, v1.b, c.x, c.y, v2.r,
                       v2.g, v2.b, polygon.opacity);
    });
}

void adapt_gouraud_az(std::uint32_t* destination, poly& polygon) {
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [=, &polygon](const auto& v0, const auto& v1, const auto& v2) {
        const whole_vertex a(v0), b(v1), c(v2);
        fill_gouraud_az(destination, a.x, a.y, a.z, v0.r, v0.g, v0.b, b.x, b.y, b.z, v1.r, v1.g, v1.b, c.x,
                        c.y, c.z, v2.r, v2.g, v2.b, polygon.opacity);
    });
}
