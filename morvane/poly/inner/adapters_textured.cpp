// The adapters that fill with a texture. A polygon without one is drawn flat, in its colour, with the same
// depth test and blend.
#include <cstdio>

#include "morvane/base/numbers.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/fill_perspective.h"
#include "morvane/poly/fill_textured.h"
#include "morvane/poly/inner/adapters.h"

namespace {

bool has_texels(const poly& polygon) {
    return polygon.texture && polygon.texture_width > 0 && polygon.texture_height >= 0;
}

// A vertex as the affine fillers take it: whole numbers, truncated toward zero.
struct whole {
    std::int32_t x, y, z, u, v;

    explicit whole(const poly_vertex& from)
        : x(trunc_to_int(from.pos.x)), y(trunc_to_int(from.pos.y)), z(trunc_to_int(from.pos.z)),
          u(trunc_to_int(from.u)), v(trunc_to_int(from.v)) {}
};

template<typename Draw>
void each_whole_triangle(poly& polygon, Draw draw) {
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [&](const poly_vertex& a, const poly_vertex& b, const poly_vertex& c) {
        draw(whole(a), whole(b), whole(c));
    });
}

} // namespace

void adapt_tex(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        std::printf("%i, %i {%i, %i}\n", a.x, a.y, a.u, a.v);
        fill_tex(destination, a.x, a.y, a.u, a.v, b.x, b.y, b.u, b.v, c.x, c.y, c.u, c.v, polygon.texture,
                 polygon.texture_width, polygon.texture_height);
    });
}

void adapt_tex_z(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_z(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_z(destination, a.x, a.y, a.z, a.u, a.v, b.x, b.y, b.z, b.u, b.v, c.x, c.y, c.z, c.u, c.v,
                   polygon.texture, polygon.texture_width, polygon.texture_height);
    });
}

void adapt_tex_a(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_a(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_a(destination, a.x, a.y, a.u, a.v, b.x, b.y, b.u, b.v, c.x, c.y, c.u, c.v, polygon.texture,
                   polygon.texture_width, polygon.opacity, polygon.texture_height);
    });
}

void adapt_tex_az(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_az(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_az(destination, a.x, a.y, a.z, a.u, a.v, b.x, b.y, b.z, b.u, b.v, c.x, c.y, c.z, c.u, c.v,
                    polygon.texture, polygon.texture_width, polygon.opacity, polygon.texture_height);
    });
}

void adapt_tex_lit(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_lit(destination, a.x, a.y, a.u, a.v, b.x, b.y, b.u, b.v, c.x, c.y, c.u, c.v, polygon.r,
                     polygon.g, polygon.b, polygon.texture, polygon.texture_width, polygon.texture_height);
    });
}

void adapt_tex_lit_z(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_z(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_lit_z(destination, a.x, a.y, a.z, a.u, a.v, b.x, b.y, b.z, b.u, b.v, c.x, c.y, c.z, c.u, c.v,
                       polygon.r, polygon.g, polygon.b, polygon.texture, polygon.texture_width,
                       polygon.texture_height);
    });
}

void adapt_tex_lit_a(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_a(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_lit_a(destination, a.x, a.y, a.u, a.v, b.x, b.y, b.u, b.v, c.x, c.y, c.u, c.v, polygon.r,
                       polygon.g, polygon.b, polygon.texture, polygon.texture_width, polygon.opacity,
                       polygon.texture_height);
    });
}

void adapt_tex_lit_az(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_az(destination, polygon);
    each_whole_triangle(polygon, [&](const whole& a, const whole& b, const whole& c) {
        fill_tex_lit_az(destination, a.x, a.y, a.z, a.u, a.v, b.x, b.y, b.z, b.u, b.v, c.x, c.y, c.z, c.u,
                        c.v, polygon.r, polygon.g, polygon.b, polygon.texture, polygon.texture_width,
                        polygon.opacity, polygon.texture_height);
    });
}

void adapt_tex_p(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat(destination, polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [&](const poly_vertex& a, const poly_vertex& b, const poly_vertex& c) {
        fill_tex_p(destination, a.pos.x, a.pos.y, a.pos.z, a.u, a.v, b.pos.x, b.pos.y, b.pos.z, b.u, b.v,
                   c.pos.x, c.pos.y, c.pos.z, c.u, c.v, polygon.texture, polygon.texture_width,
                   polygon.texture_height);
    });
}

void adapt_tex_lit_p(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat(destination, polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [&](const poly_vertex& a, const poly_vertex& b, const poly_vertex& c) {
        fill_tex_lit_p(destination, a.pos.x, a.pos.y, a.pos.z, a.u, a.v, b.pos.x, b.pos.y, b.pos.z, b.u, b.v,
                       c.pos.x, c.pos.y, c.pos.z, c.u, c.v, polygon.texture, polygon.texture_width, polygon.r,
                       polygon.g, polygon.b, polygon.texture_height);
    });
}

void adapt_tex_pa(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_a(destination, polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [&](const poly_vertex& a, const poly_vertex& b, const poly_vertex& c) {
        fill_tex_pa(destination, a.pos.x, a.pos.y, a.pos.z, a.u, a.v, b.pos.x, b.pos.y, b.pos.z, b.u, b.v,
                    c.pos.x, c.pos.y, c.pos.z, c.u, c.v, polygon.texture, polygon.texture_width,
                    polygon.opacity, polygon.texture_height);
    });
}

void adapt_tex_lit_pa(std::uint32_t* destination, poly& polygon) {
    if (!has_texels(polygon)) return adapt_flat_a(destination, polygon);
    poly_clip_screen(polygon);
    poly_each_triangle(polygon, [&](const poly_vertex& a, const poly_vertex& b, const poly_vertex& c) {
        fill_tex_lit_pa(destination, a.pos.x, a.pos.y, a.pos.z, a.u, a.v, b.pos.x, b.pos.y, b.pos.z, b.u, b.v,
                        c.pos.x, c.pos.y, c.pos.z, c.u, c.v, polygon.texture, polygon.texture_width,
                        polygon.r, polygon.g, polygon.b, polygon.opacity, polygon.texture_height);
    });
}
