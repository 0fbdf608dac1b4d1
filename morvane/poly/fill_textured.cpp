// Every filler is a kernel as a whole, as the flat ones are.
#include "morvane/poly/fill_textured.h"

#include <algorithm>

#include "morvane/base/kernel.h"
#include "morvane/poly/inner/texel_row.h"
#include "morvane/poly/inner/triangle_setup.h"

namespace {

struct texture_view {
    const std::uint32_t* texels;
    std::int32_t width, height; // height 0: the caller vouches for the coordinates

    bool usable() const { return texels && width > 0 && height >= 0; }
    bool holds(std::int32_t u, std::int32_t v) const { // whole texels
        return u >= 0 && u < width && v >= 0 && v < rows();
    }
    std::int32_t rows() const { return height > 0 ? height : fixed_value(INT32_MAX) / 65536 + 1; }
};

// Texture coordinates along a row, 16.16, at its first pixel and their step.
struct texel_walk {
    std::int32_t u, v, du, dv;

    static std::int32_t ahead(std::int32_t value, std::int32_t step, std::int32_t pixels) {
        return static_cast<std::int32_t>(value + std::int64_t{step} * pixels);
    }
    texel_walk after(std::int32_t pixels) const {
        return {ahead(u, du, pixels), ahead(v, dv, pixels), du, dv};
    }
};

// A walk runs straight, so its ends tell whether it stays inside the texture.
bool stays_inside(const texture_view& texture, const texel_walk& walk, std::int32_t count) {
    constexpr std::int32_t widest = 65536; // whose indices stay below 2^31
    if (texture.width > widest) return false;
    if (texture.height == 0) return true;
    const texel_walk last = walk.after(count - 1);
    return texture.holds(walk.u >> 16, walk.v >> 16) && texture.holds(last.u >> 16, last.v >> 16);
}

// A coordinate that starts again at the far side of the texture, 48.16.
struct wrapped_walk {
    std::int64_t now, step, size;

    wrapped_walk(std::int32_t from, std::int32_t by, std::int32_t texels)
        : now(from), step(by), size(std::int64_t{texels} * 65536) {
        now %= size;
        step %= size;
        if (now < 0) now += size;
        if (step < 0) step += size;
    }
    std::int64_t texel() const { return now >> 16; }
    void next() {
        now += step;
        now -= now >= size ? size : 0;
    }
};

// The texels of a walk that leaves the texture.
[[gnu::noinline]] void fetch_wrapped(std::uint32_t* out, std::int32_t count, const texture_view& texture,
                                     const texel_walk& walk) {
    wrapped_walk u(walk.u, walk.du, texture.width), v(walk.v, walk.dv, texture.rows());
    for (std::int32_t i = 0; i < count; ++i, u.next(), v.next())
        out[i] = texture.texels[v.texel() * texture.width + u.texel()];
}

// A row that leaves the texture, piece by piece.
template<texel_kind Kind>
void draw_wrapped(const texel_target& target, const texture_view& texture, std::size_t first,
                  std::int32_t count, texel_walk walk, texel_step depth) {
    texel_run texels;
    while (count > 0) {
        const std::int32_t piece = std::min(count, static_cast<std::int32_t>(texels.size()));
        fetch_wrapped(texels.data(), piece, texture, walk);
        draw_texel_run<Kind>(target, first, piece, depth, texels);
        first += static_cast<std::size_t>(piece);
        count -= piece;
        walk = walk.after(piece);
        depth.now = depth.at(piece);
    }
}

// The values of a corner: u and v, and z for a tested kind.
template<texel_kind Kind>
constexpr std::size_t corner_values = Kind.tested ? 3 : 2;

template<texel_kind Kind>
[[gnu::always_inline]] inline void draw_row(const texel_target& target, const texture_view& texture,
                                            const triangle_span<corner_values<Kind>>& span) {
    const texel_walk walk{span.value[0], span.value[1], span.step[0], span.step[1]};
    const auto count = static_cast<std::int32_t>(span.count);
    texel_step depth(0, 0);
    if constexpr (Kind.tested) depth = {span.value[2], span.step[2]};
    if (!stays_inside(texture, walk, count))
        return draw_wrapped<Kind>(target, texture, span.first, count, walk, depth);
    const texel_step u(walk.u, walk.du), v(walk.v, walk.dv);
    const auto width = static_cast<std::uint32_t>(texture.width);
    draw_texels<Kind>(
        target, span.first, count, depth, [=](std::int32_t i) __attribute__((always_inline)) {
            return (v.at(i) >> 16) * width + (u.at(i) >> 16);
        });
}

// What a kind may want beside the texture.
struct colour_and_opacity {
    std::int32_t r = 0, g = 0, b = 0, opacity = 256;
};

template<texel_kind Kind>
[[gnu::always_inline]] inline void
fill(std::uint32_t* destination, const triangle_corner<corner_values<Kind>>& a,
     const triangle_corner<corner_values<Kind>>& b, const triangle_corner<corner_values<Kind>>& c,
     const texture_view& texture, const colour_and_opacity& with) {
    if (!texture.usable()) return;
    const texel_target target{.pixels = destination,
                              .depths = depth_buffer,
                              .texels = texture.texels,
                              .r = static_cast<std::uint32_t>(with.r),
                              .g = static_cast<std::uint32_t>(with.g),
                              .b = static_cast<std::uint32_t>(with.b),
                              .weight = blend_weight(with.opacity)};
    fill_triangle(
        a, b, c, [&](const triangle_span<corner_values<Kind>>& span) __attribute__((always_inline)) {
            draw_row<Kind>(target, texture, span);
        });
}

constexpr triangle_corner<2> at(std::int32_t x, std::int32_t y, std::int32_t u, std::int32_t v) {
    return {x, y, {fixed_value(u), fixed_value(v)}};
}
constexpr triangle_corner<3> at(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t u,
                                std::int32_t v) {
    return {x, y, {fixed_value(u), fixed_value(v), depth_value(z)}};
}

} // namespace

MORVANE_KERNEL void fill_tex(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t u0,
                             std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t u1,
                             std::int32_t v1, std::int32_t x2, std::int32_t y2, std::int32_t u2,
                             std::int32_t v2, const std::uint32_t* texture, std::int32_t texture_width,
                             std::int32_t texture_height) {
    fill<texel_kind{}>(destination, at(x0, y0, u0, v0), at(x1, y1, u1, v1), at(x2, y2, u2, v2),
                       {texture, texture_width, texture_height}, {});
}

MORVANE_KERNEL void fill_tex_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                               std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1,
                               std::int32_t z1, std::int32_t u1, std::int32_t v1, std::int32_t x2,
                               std::int32_t y2, std::int32_t z2, std::int32_t u2, std::int32_t v2,
                               const std::uint32_t* texture, std::int32_t texture_width,
                               std::int32_t texture_height) {
    fill<texel_kind{.tested = true}>(destination, at(x0, y0, z0, u0, v0), at(x1, y1, z1, u1, v1),
                                     at(x2, y2, z2, u2, v2), {texture, texture_width, texture_height}, {});
}

MORVANE_KERNEL void fill_tex_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t u0,
                               std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t u1,
                               std::int32_t v1, std::int32_t x2, std::int32_t y2, std::int32_t u2,
                               std::int32_t v2, const std::uint32_t* texture, std::int32_t texture_width,
                               std::int32_t opacity, std::int32_t texture_height) {
    fill<texel_kind{.blended = true}>(destination, at(x0, y0, u0, v0), at(x1, y1, u1, v1), at(x2, y2, u2, v2),
                                      {texture, texture_width, texture_height}, {.opacity = opacity});
}

MORVANE_KERNEL void fill_tex_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                                std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1,
                                std::int32_t z1, std::int32_t u1, std::int32_t v1, std::int32_t x2,
                                std::int32_t y2, std::int32_t z2, std::int32_t u2, std::int32_t v2,
                                const std::uint32_t* texture, std::int32_t texture_width,
                                std::int32_t opacity, std::int32_t texture_height) {
    fill<texel_kind{.tested = true, .blended = true}>(
        destination, at(x0, y0, z0, u0, v0), at(x1, y1, z1, u1, v1), at(x2, y2, z2, u2, v2),
        {texture, texture_width, texture_height}, {.opacity = opacity});
}

MORVANE_KERNEL void fill_tex_lit(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                 std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1,
                                 std::int32_t u1, std::int32_t v1, std::int32_t x2, std::int32_t y2,
                                 std::int32_t u2, std::int32_t v2, std::int32_t r, std::int32_t g,
                                 std::int32_t b, const std::uint32_t* texture, std::int32_t texture_width,
                                 std::int32_t texture_height) {
    fill<texel_kind{.lit = true}>(destination, at(x0, y0, u0, v0), at(x1, y1, u1, v1), at(x2, y2, u2, v2),
                                  {texture, texture_width, texture_height}, {.r = r, .g = g, .b = b});
}

MORVANE_KERNEL void fill_tex_lit_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                   std::int32_t z0, std::int32_t u0, std::int32_t v0, std::int32_t x1,
                                   std::int32_t y1, std::int32_t z1, std::int32_t u1, std::int32_t v1,
                                   std::int32_t x2, std::int32_t y2, std::int32_t z2, std::int32_t u2,
                                   std::int32_t v2, std::int32_t r, std::int32_t g, std::int32_t b,
                                   const std::uint32_t* texture, std::int32_t texture_width,
                                   std::int32_t texture_height) {
    fill<texel_kind{.tested = true, .lit = true}>(
        destination, at(x0, y0, z0, u0, v0), at(x1, y1, z1, u1, v1), at(x2, y2, z2, u2, v2),
        {texture, texture_width, texture_height}, {.r = r, .g = g, .b = b});
}

MORVANE_KERNEL void fill_tex_lit_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                   std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1,
                                   std::int32_t u1, std::int32_t v1, std::int32_t x2, std::int32_t y2,
                                   std::int32_t u2, std::int32_t v2, std::int32_t r, std::int32_t g,
                                   std::int32_t b, const std::uint32_t* texture, std::int32_t texture_width,
                                   std::int32_t opacity, std::int32_t texture_height) {
    fill<texel_kind{.lit = true, .blended = true}>(
        destination, at(x0, y0, u0, v0), at(x1, y1, u1, v1), at(x2, y2, u2, v2),
        {texture, texture_width, texture_height}, {.r = r, .g = g, .b = b, .opacity = opacity});
}

MORVANE_KERNEL void fill_tex_lit_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                    std::int32_t z0, std::int32_t u0, std::int32_t v0, std::int32_t x1,
                                    std::int32_t y1, std::int32_t z1, std::int32_t u1, std::int32_t v1,
                                    std::int32_t x2, std::int32_t y2, std::int32_t z2, std::int32_t u2,
                                    std::int32_t v2, std::int32_t r, std::int32_t g, std::int32_t b,
                                    const std::uint32_t* texture, std::int32_t texture_width,
                                    std::int32_t opacity, std::int32_t texture_height) {
    fill<texel_kind{.tested = true, .lit = true, .blended = true}>(
        destination, at(x0, y0, z0, u0, v0), at(x1, y1, z1, u1, v1), at(x2, y2, z2, u2, v2),
        {texture, texture_width, texture_height}, {.r = r, .g = g, .b = b, .opacity = opacity});
}
