// Every filler is a kernel as a whole, as the flat ones are.
#include "morvane/poly/fill_perspective.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <tuple>
#include <utility>

#include "morvane/base/kernel.h"
#include "morvane/base/numbers.h"
#include "morvane/poly/inner/texel_row.h"
#include "morvane/poly/raster.h"

namespace {

constexpr std::int32_t block_bits = 8; // pixels between two divisions
constexpr std::int32_t block = 1 << block_bits;
static_assert(block <= std::tuple_size_v<texel_run>);

// What runs linearly over the screen: 1/z, u/z, v/z. Kept as floats, computed in double.
struct persp_values {
    float w = 0, uw = 0, vw = 0;

    persp_values plus(const persp_values& step, double times) const {
        return {static_cast<float>(w + step.w * times), static_cast<float>(uw + step.uw * times),
                static_cast<float>(vw + step.vw * times)};
    }
};

// A vertex as the caller gives it.
struct persp_vertex {
    float x, y, z, u, v;
};

// The same, ready to be walked.
struct persp_corner {
    float x, y;
    persp_values q;

    explicit persp_corner(const persp_vertex& from)
        : x(static_cast<float>(from.x + 0.5)), y(static_cast<float>(from.y + 0.5)) {
        q.w = static_cast<float>(1.0 / from.z);
        q.uw = from.u * q.w;
        q.vw = from.v * q.w;
    }
    // The way down to the next row boundary.
    double prestep() const { return 1.0 - (static_cast<double>(y) - trunc_to_int(y)); }
};

// Texture coordinates in 16.16. Only the 8 bits above the fraction count.
struct persp_texel {
    std::int32_t u, v;

    persp_texel plus(std::int32_t du, std::int32_t dv, std::int32_t pixels) const {
        return {static_cast<std::int32_t>(u + std::int64_t{du} * pixels),
                static_cast<std::int32_t>(v + std::int64_t{dv} * pixels)};
    }
};

struct texture_view {
    const std::uint32_t* texels;
    std::int32_t width, height; // height 0: the caller vouches for 256 rows

    bool usable() const { return texels && width > 0 && height >= 0; }

    // How far the row of a texel, which lies in bits 16 to 23, is shifted down: 16 minus the logarithm of the
    // width, of which the fraction is dropped, so that any width draws as the next smaller power of two.
    std::int32_t persp_shift() const {
        return std::max(17 - static_cast<std::int32_t>(std::bit_width(static_cast<std::uint32_t>(width))), 0);
    }
    // The texels that may be read, if that is less than the lookup can name; otherwise 0.
    std::uint32_t limit() const {
        const std::int64_t named = (std::int64_t{0xff0000} >> persp_shift()) + block;
        const std::int64_t held = std::int64_t{width} * height;
        return held > 0 && held < named ? static_cast<std::uint32_t>(held) : 0;
    }
};

// All that a triangle needs from row to row.
struct persp_state {
    persp_values persp_dx;                           // change for one pixel to the right
    persp_values persp_dx256;                        // for 256 pixels
    persp_values persp_dy;                           // for one row down, at constant x
    persp_values persp_left;                         // at the left edge of the current row
    persp_values persp_line;                         // change of persp_left from row to row
    float persp_x_left = 0, persp_x_right = 0;       // the two edges on the current row
    float persp_step_left = 0, persp_step_right = 0; // their change from row to row
    texel_target persp_target;                       // with texture, colour and opacity
    std::int32_t persp_shift = 0;
    std::uint32_t texels = 0; // in the texture; 0: as many as the lookup can name

    // An edge, from `corner` on, as it stands on the first row boundary below.
    void start_left(const persp_corner& corner, float slope) {
        persp_x_left = static_cast<float>(corner.prestep() * slope + corner.x);
        persp_step_left = slope;
        persp_line = persp_dy.plus(persp_dx, slope);
        persp_left = corner.q.plus(persp_line, corner.prestep());
    }
    void start_right(const persp_corner& corner, float slope) {
        persp_x_right = static_cast<float>(corner.prestep() * slope + corner.x);
        persp_step_right = slope;
    }
    void step(double rows) {
        persp_x_left = static_cast<float>(persp_x_left + persp_step_left * rows);
        persp_x_right = static_cast<float>(persp_x_right + persp_step_right * rows);
        persp_left = persp_left.plus(persp_line, rows);
    }
};

// The texel `pixels` pixels to the right of where `q` stands.
persp_texel texel_at(const persp_values& q, const persp_values& dx, double pixels) {
    const double f = 65536.0 / (q.w + pixels * dx.w);
    return {trunc_to_int(f * (q.uw + pixels * dx.uw)), trunc_to_int(f * (q.vw + pixels * dx.vw))};
}

// Where the texel at (u, v) lies: the row in the 8 bits above the fraction of v, the column in those of u.
constexpr std::uint32_t texel_index(std::uint32_t u, std::uint32_t v, std::int32_t shift) {
    return ((v & 0xff0000U) >> shift) + (u >> 16 & 0xffU);
}

// Brings an index, below 2^25, back into a texture of `texels` words, given 1 / texels. The half keeps the
// quotient clear of whole numbers, by more than it is rounded.
constexpr std::uint32_t repeated(std::uint32_t index, std::uint32_t texels, double turns) {
    return index - static_cast<std::uint32_t>(static_cast<std::int32_t>((index + 0.5) * turns)) * texels;
}

// `count` pixels from index `first` of the frame on, with the texture coordinates moving by (du, dv) a pixel.
template<texel_kind Kind>
[[gnu::always_inline]] inline void draw_block(const persp_state& state, std::size_t first, std::int32_t count,
                                              persp_texel from, std::int32_t du, std::int32_t dv) {
    const texel_step u(from.u, du), v(from.v, dv), no_depth(0, 0);
    const std::int32_t shift = state.persp_shift;
    if (state.texels == 0)
        return draw_texels<Kind>(
            state.persp_target, first, count, no_depth, [=](std::int32_t i) __attribute__((always_inline)) {
                return texel_index(u.at(i), v.at(i), shift);
            });
    texel_run texels;
    const std::uint32_t size = state.texels;
    const double turns = 1.0 / size;
    for (std::int32_t i = 0; i < count; ++i)
        texels[static_cast<std::size_t>(i)] = repeated(texel_index(u.at(i), v.at(i), shift), size, turns);
    for (std::int32_t i = 0; i < count; ++i)
        texels[static_cast<std::size_t>(i)] = state.persp_target.texels[texels[static_cast<std::size_t>(i)]];
    draw_texel_run<Kind>(state.persp_target, first, count, no_depth, texels);
}

// The pixels of one row, of which those outside the `columns` of the frame are left out.
template<texel_kind Kind>
[[gnu::always_inline]] inline void draw_span(const persp_state& state, std::int64_t row,
                                             std::int64_t columns) {
    const std::int64_t left = trunc_to_int(state.persp_x_left);
    const std::int64_t end = trunc_to_int(state.persp_x_right);
    if (left >= end || left >= columns || end <= 0) return;
    const double to_first = 1.0 - (state.persp_x_left - static_cast<double>(left));
    persp_values q = state.persp_left.plus(state.persp_dx, to_first);
    std::int64_t x = left;
    if (x <= -block) { // whole blocks beside the frame
        const std::int64_t blocks = -x / block;
        q = q.plus(state.persp_dx256, static_cast<double>(blocks));
        x += blocks * block;
    }
    for (persp_texel from = texel_at(q, {}, 0); x < std::min(end, columns);) {
        const std::int64_t length = std::min<std::int64_t>(end - x, block);
        persp_texel to;
        if (length == block) {
            q = q.plus(state.persp_dx256, 1);
            to = texel_at(q, {}, 0);
        } else {
            to = texel_at(q, state.persp_dx, static_cast<double>(length));
        }
        const std::int64_t wide_u = std::int64_t{to.u} - from.u, wide_v = std::int64_t{to.v} - from.v;
        const auto du = static_cast<std::int32_t>(length == block ? wide_u >> block_bits : wide_u / length);
        const auto dv = static_cast<std::int32_t>(length == block ? wide_v >> block_bits : wide_v / length);
        const std::int64_t first = std::max<std::int64_t>(x, 0), last = std::min(x + length, columns);
        if (first < last) {
            const auto skipped = static_cast<std::int32_t>(first - x);
            draw_block<Kind>(state, static_cast<std::size_t>(row * columns + first),
                             static_cast<std::int32_t>(last - first), from.plus(du, dv, skipped), du, dv);
        }
        x += length;
        from = to;
    }
}

// The rows from `from` up to but not including `to`, of which those outside the frame are stepped over.
template<texel_kind Kind>
[[gnu::always_inline]] inline void draw_rows(persp_state& state, std::int64_t from, std::int64_t to) {
    if (from < 0 && from < to) {
        const std::int64_t above = std::min<std::int64_t>(to, 0) - from;
        state.step(static_cast<double>(above));
        from += above;
    }
    const std::int64_t columns = raster_width, end = std::min<std::int64_t>(to, raster_height);
    for (std::int64_t y = from; y < end; ++y) {
        draw_span<Kind>(state, y, columns);
        state.step(1);
    }
}

float slope(const persp_corner& from, const persp_corner& to) {
    const double rows = static_cast<double>(to.y) - from.y;
    return rows > 0 ? static_cast<float>((static_cast<double>(to.x) - from.x) / rows) : 0.0F;
}

// Whether the middle one of three corners, from top to bottom, lies left of the edge between the others.
bool is_left(const persp_corner& a, const persp_corner& b, const persp_corner& c) {
    if (b.y == c.y) return c.x > b.x;
    if (a.y == b.y) return a.x > b.x;
    return slope(a, b) < slope(a, c);
}

// Sets the gradients of the plane through the three corners. False for one without a finite area.
bool set_gradients(persp_state& state, const persp_corner& a, const persp_corner& b, const persp_corner& c) {
    const double bx = static_cast<double>(b.x) - a.x, by = static_cast<double>(b.y) - a.y;
    const double cx = static_cast<double>(c.x) - a.x, cy = static_cast<double>(c.y) - a.y;
    const double area = cx * by - bx * cy;
    if (area == 0 || !std::isfinite(area)) return false;
    const double n = 1 / area;
    for (float persp_values::*q : {&persp_values::w, &persp_values::uw, &persp_values::vw}) {
        const double to_b = static_cast<double>(b.q.*q) - a.q.*q, to_c = static_cast<double>(c.q.*q) - a.q.*q;
        state.persp_dx.*q = static_cast<float>((to_c * by - to_b * cy) * n);
        state.persp_dy.*q = static_cast<float>((to_b * cx - to_c * bx) * n);
        state.persp_dx256.*q = state.persp_dx.*q * block;
    }
    return true;
}

// What a kind may want beside the texture.
struct colour_and_opacity {
    std::int32_t r = 0, g = 0, b = 0, opacity = 256;
};

template<texel_kind Kind>
[[gnu::always_inline]] inline void fill(std::uint32_t* destination,
                                        const std::array<persp_vertex, 3>& vertices,
                                        const texture_view& texture, const colour_and_opacity& with) {
    if (!texture.usable()) return;
    persp_corner a(vertices[0]), b(vertices[1]), c(vertices[2]);
    if (a.y > b.y) std::swap(a, b);
    if (a.y > c.y) std::swap(a, c);
    if (b.y > c.y) std::swap(b, c);
    persp_state state;
    if (!set_gradients(state, a, b, c)) return;
    state.persp_target = {.pixels = destination,
                          .depths = nullptr,
                          .texels = texture.texels,
                          .r = static_cast<std::uint32_t>(with.r),
                          .g = static_cast<std::uint32_t>(with.g),
                          .b = static_cast<std::uint32_t>(with.b),
                          .weight = blend_weight(with.opacity)};
    state.persp_shift = texture.persp_shift();
    state.texels = texture.limit();

    const float slope_ac = slope(a, c);
    const bool middle_is_left = is_left(a, b, c);
    const std::int32_t top = trunc_to_int(a.y), middle = trunc_to_int(b.y), bottom = trunc_to_int(c.y);
    middle_is_left ? state.start_right(a, slope_ac) : state.start_left(a, slope_ac);
    struct half {
        const persp_corner &from, &to;
        std::int32_t top, bottom;
    };
    for (const half& part : {half{a, b, top, middle}, half{b, c, middle, bottom}}) {
        const float edge = slope(part.from, part.to);
        middle_is_left ? state.start_left(part.from, edge) : state.start_right(part.from, edge);
        draw_rows<Kind>(state, part.top, part.bottom);
    }
}

} // namespace

MORVANE_KERNEL void fill_tex_p(std::uint32_t* destination, float x0, float y0, float z0, float u0, float v0,
                               float x1, float y1, float z1, float u1, float v1, float x2, float y2, float z2,
                               float u2, float v2, const std::uint32_t* texture, std::int32_t texture_width,
                               std::int32_t texture_height) {
    fill<texel_kind{}>(destination, {{{x0, y0, z0, u0, v0}, {x1, y1, z1, u1, v1}, {x2, y2, z2, u2, v2}}},
                       {texture, texture_width, texture_height}, {});
}

MORVANE_KERNEL void fill_tex_pa(std::uint32_t* destination, float x0, float y0, float z0, float u0, float v0,
                                float x1, float y1, float z1, float u1, float v1, float x2, float y2,
                                float z2, float u2, float v2, const std::uint32_t* texture,
                                std::int32_t texture_width, std::int32_t opacity,
                                std::int32_t texture_height) {
    fill<texel_kind{.blended = true}>(destination,
                                      {{{x0, y0, z0, u0, v0}, {x1, y1, z1, u1, v1}, {x2, y2, z2, u2, v2}}},
                                      {texture, texture_width, texture_height}, {.opacity = opacity});
}

MORVANE_KERNEL void fill_tex_lit_p(std::uint32_t* destination, float x0, float y0, float z0, float u0,
                                   float v0, float x1, float y1, float z1, float u1, float v1, float x2,
                                   float y2, float z2, float u2, float v2, const std::uint32_t* texture,
                                   std::int32_t texture_width, std::int32_t r, std::int32_t g, std::int32_t b,
                                   std::int32_t texture_height) {
    fill<texel_kind{.lit = true}>(destination,
                                  {{{x0, y0, z0, u0, v0}, {x1, y1, z1, u1, v1}, {x2, y2, z2, u2, v2}}},
                                  {texture, texture_width, texture_height}, {.r = r, .g = g, .b = b});
}

MORVANE_KERNEL void fill_tex_lit_pa(std::uint32_t* destination, float x0, float y0, float z0, float u0,
                                    float v0, float x1, float y1, float z1, float u1, float v1, float x2,
                                    float y2, float z2, float u2, float v2, const std::uint32_t* texture,
                                    std::int32_t texture_width, std::int32_t r, std::int32_t g,
                                    std::int32_t b, std::int32_t opacity, std::int32_t texture_height) {
    fill<texel_kind{.lit = true, .blended = true}>(
        destination, {{{x0, y0, z0, u0, v0}, {x1, y1, z1, u1, v1}, {x2, y2, z2, u2, v2}}},
        {texture, texture_width, texture_height}, {.r = r, .g = g, .b = b, .opacity = opacity});
}
