// The textured fillers as their rules read, pixel by pixel and with nothing clever: the affine ones in 64-bit
// integers, the perspective ones in floats. What lies outside the frame is walked and dropped.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace plain_textured {

struct frame {
    std::int32_t width, height;
    std::vector<std::uint32_t> pixels;
    std::vector<std::int32_t> depth;
};

struct texture {
    std::int32_t width, height;
    std::vector<std::uint32_t> texels; // as many as may be read

    std::uint32_t wrapped(std::int64_t u, std::int64_t v) const {
        const auto modulo = [](std::int64_t a, std::int64_t b) { return (a % b + b) % b; };
        return texels[static_cast<std::size_t>(modulo(v, height) * width + modulo(u, width))];
    }
};

// What becomes of a texel.
struct kind {
    bool z = false, blended = false, lit = false;
    std::int32_t r = 0, g = 0, b = 0, opacity = 0;
};

inline std::int64_t channel(std::uint32_t word, int shift) {
    return word >> shift & 255;
}

inline void pixel(frame& to, std::int64_t x, std::int64_t y, std::uint32_t texel, const kind& k) {
    if (x < 0 || y < 0 || x >= to.width || y >= to.height) return;
    std::uint32_t& d = to.pixels[static_cast<std::size_t>(y * to.width + x)];
    std::int64_t s[3] = {channel(texel, 16), channel(texel, 8), channel(texel, 0)};
    const std::int64_t factors[3] = {k.r, k.g, k.b};
    std::uint32_t word = k.lit || k.blended ? 0 : texel;
    for (int i = 0; i < 3; ++i) {
        const int shift = 16 - 8 * i;
        if (k.lit) s[i] = s[i] * factors[i] >> 8 & 255;
        if (k.blended) s[i] = channel(d, shift) + ((s[i] - channel(d, shift)) * k.opacity >> 8);
        if (k.lit || k.blended) word |= static_cast<std::uint32_t>(s[i]) << shift;
    }
    d = word;
}

struct corner {
    std::int64_t x, y, z, u, v;
};

// Fixed-point values along an edge or a row.
struct affine_walk {
    std::int64_t x, u, v, z;

    void add(const affine_walk& step) {
        x += step.x;
        u += step.u;
        v += step.v;
        z += step.z;
    }
};

inline void affine_row(frame& to, std::int64_t y, affine_walk a, affine_walk b, const texture& from,
                       const kind& k) {
    a.x >>= 16;
    b.x >>= 16;
    if (b.x < a.x) std::swap(a, b);
    const std::int64_t n = b.x - a.x;
    if (n == 0) return;
    const affine_walk step{1, (b.u - a.u) / n, (b.v - a.v) / n, (b.z - a.z) / n};
    for (; a.x < b.x; a.add(step)) {
        if (a.x < 0 || a.x >= to.width) continue;
        if (k.z) {
            std::int32_t& held = to.depth[static_cast<std::size_t>(y * to.width + a.x)];
            if (held != INT32_MIN && a.z < held) continue;
            held = static_cast<std::int32_t>(a.z);
        }
        pixel(to, a.x, y, from.wrapped(a.u >> 16, a.v >> 16), k);
    }
}

inline void affine(frame& to, corner c0, corner c1, corner c2, const texture& from, const kind& k) {
    if (c0.y > c1.y) std::swap(c0, c1);
    if (c0.y > c2.y) std::swap(c0, c2);
    if (c1.y > c2.y) std::swap(c1, c2);
    const auto start = [](const corner& c) {
        return affine_walk{c.x * 65536, c.u * 65536, c.v * 65536, c.z * 256};
    };
    const auto slope = [](const corner& a, const corner& b) {
        const std::int64_t n = b.y - a.y;
        if (n == 0) return affine_walk{0, 0, 0, 0};
        return affine_walk{(b.x - a.x) * 65536 / n, (b.u - a.u) * 65536 / n, (b.v - a.v) * 65536 / n,
                           (b.z - a.z) * 256 / n};
    };
    affine_walk upper = start(c0), whole = start(c0), lower = start(c1);
    for (std::int64_t y = c0.y; y < c2.y; ++y) {
        affine_walk& edge = y < c1.y ? upper : lower;
        if (y >= 0 && y < to.height) affine_row(to, y, edge, whole, from, k);
        edge.add(y < c1.y ? slope(c0, c1) : slope(c1, c2));
        whole.add(slope(c0, c2));
    }
}

struct vertex {
    float x, y, z, u, v;
};

// 1/z, u/z, v/z.
using three = float[3];

struct persp_corner {
    float x, y;
    three q;
};

inline std::int64_t truncated(double value) {
    return static_cast<std::int64_t>(value);
}

// A texture coordinate, which may be anything on the far side of the horizon: 32 bits, limited.
inline std::int64_t fixed(double value) {
    return std::isnan(value) ? 0 : truncated(std::clamp(value, -2147483648.0, 2147483647.0));
}

// `at(u, v)`, in 16.16, gives the texel.
template<typename Texel>
void persp_row(frame& to, std::int64_t y, float left, float right, const three& from, const three& dx,
               Texel at, const kind& k) {
    const std::int64_t ix = truncated(left);
    std::int64_t n = truncated(right) - ix, x = ix;
    if (n < 1) return;
    three q;
    for (int i = 0; i < 3; ++i)
        q[i] = static_cast<float>(from[i] +
                                  (1.0 - (static_cast<double>(left) - static_cast<double>(ix))) * dx[i]);
    std::int64_t u = fixed(65536.0 / q[0] * q[1]), v = fixed(65536.0 / q[0] * q[2]);
    const auto draw = [&](std::int64_t count, std::int64_t du, std::int64_t dv) {
        for (std::int64_t i = 0; i < count; ++i, ++x, u += du, v += dv)
            pixel(to, x, y, at(u, v), k);
    };
    for (; n >= 256; n -= 256) {
        for (int i = 0; i < 3; ++i)
            q[i] = static_cast<float>(static_cast<double>(q[i]) + dx[i] * 256.0F);
        const std::int64_t nu = fixed(65536.0 / q[0] * q[1]), nv = fixed(65536.0 / q[0] * q[2]);
        draw(256, (nu - u) >> 8, (nv - v) >> 8);
        u = nu;
        v = nv;
    }
    if (n == 0) return;
    const auto r = static_cast<double>(n);
    const double f = 65536.0 / (q[0] + r * dx[0]);
    const std::int64_t nu = fixed(f * (q[1] + r * dx[1])), nv = fixed(f * (q[2] + r * dx[2]));
    draw(n, (nu - u) / n, (nv - v) / n);
}

// The edges walk on from row to row, also above the frame.
template<typename Texel>
void perspective(frame& to, const vertex& v0, const vertex& v1, const vertex& v2, Texel at, const kind& k) {
    const auto corner_of = [](const vertex& v) {
        const float w = 1.0F / v.z;
        return persp_corner{v.x + 0.5F, v.y + 0.5F, {w, v.u * w, v.v * w}};
    };
    persp_corner a = corner_of(v0), b = corner_of(v1), c = corner_of(v2);
    if (a.y > b.y) std::swap(a, b);
    if (a.y > c.y) std::swap(a, c);
    if (b.y > c.y) std::swap(b, c);
    const double bx = double{b.x} - a.x, by = double{b.y} - a.y, cx = double{c.x} - a.x,
                 cy = double{c.y} - a.y;
    const double area = cx * by - bx * cy;
    if (area == 0) return;
    three dx, dy;
    for (int i = 0; i < 3; ++i) {
        const double qb = double{b.q[i]} - a.q[i], qc = double{c.q[i]} - a.q[i];
        dx[i] = static_cast<float>((qc * by - qb * cy) * (1 / area));
        dy[i] = static_cast<float>((qb * cx - qc * bx) * (1 / area));
    }
    const auto slope = [](const persp_corner& p, const persp_corner& q) {
        return p.y < q.y ? static_cast<float>((double{q.x} - p.x) / (double{q.y} - p.y)) : 0.0F;
    };
    const float sab = slope(a, b), sac = slope(a, c), sbc = slope(b, c);
    bool left = sab < sac;
    if (a.y == b.y) left = a.x > b.x;
    if (b.y == c.y) left = c.x > b.x;

    struct edge {
        float x, step;
        three q, line;
    };
    const auto start = [&](const persp_corner& from, float s) {
        const double p = 1.0 - (from.y - std::trunc(double{from.y}));
        edge e{static_cast<float>(p * s + from.x), s, {}, {}};
        for (int i = 0; i < 3; ++i) {
            e.line[i] = static_cast<float>(double{s} * dx[i] + dy[i]);
            e.q[i] = static_cast<float>(p * e.line[i] + from.q[i]);
        }
        return e;
    };
    edge upper = start(a, sab), whole = start(a, sac), lower = start(b, sbc);
    const auto step = [](edge& e) {
        e.x += e.step;
        for (int i = 0; i < 3; ++i)
            e.q[i] += e.line[i];
    };
    for (std::int64_t y = truncated(a.y); y < truncated(c.y); ++y) {
        edge& part = y < truncated(b.y) ? upper : lower;
        const edge &l = left ? part : whole, &r = left ? whole : part;
        persp_row(to, y, l.x, r.x, l.q, dx, at, k);
        step(part);
        step(whole);
    }
}

// The texel lookup of the perspective fillers: rows of 2^`log_width` words, both coordinates modulo 256, and
// the words of the texture over and over.
inline auto persp_lookup(const texture& from, int log_width) {
    return [&from, log_width](std::int64_t u, std::int64_t v) {
        const auto row = static_cast<std::uint64_t>(v >> 16 & 255),
                   column = static_cast<std::uint64_t>(u >> 16 & 255);
        return from.texels[((row << log_width) + column) % from.texels.size()];
    };
}

} // namespace plain_textured
