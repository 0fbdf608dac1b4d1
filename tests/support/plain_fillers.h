// The fillers and lines of the object engine as their definitions read: every step of the way is walked, and
// every pixel goes through the clip test. What the quick ones are compared with.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "morvane/gtex/gtex.h"

namespace plain {

inline void plot(std::uint32_t* dst, std::int64_t x, std::int64_t y, std::uint32_t colour) {
    if (x >= 1 && x < 512 && y >= 1 && y < 288) dst[y * 512 + x] = colour;
}

struct corner {
    std::int64_t x = 0, y = 0, u = 0, v = 0;
};

inline void sort_corners(corner& top, corner& mid, corner& bot) {
    if (top.y > mid.y) std::swap(top, mid);
    if (top.y > bot.y) std::swap(top, bot);
    if (mid.y > bot.y) std::swap(mid, bot);
}

inline std::int64_t slope(std::int64_t from, std::int64_t to, std::int64_t rows) {
    return rows == 0 ? 0 : ((to - from) * 65536) / rows;
}

inline void fill_triangle(std::uint32_t* dst, corner top, corner mid, corner bot, std::uint32_t colour) {
    sort_corners(top, mid, bot);
    if (top.x == mid.x && top.x == bot.x) return;
    if (top.y == mid.y && top.y == bot.y) return;
    const std::int64_t s_tm = slope(top.x, mid.x, mid.y - top.y);
    const std::int64_t s_tb = slope(top.x, bot.x, bot.y - top.y);
    const std::int64_t s_mb = slope(mid.x, bot.x, bot.y - mid.y);
    std::int64_t p = top.x * 65536, q = p;
    for (std::int64_t y = top.y; y < bot.y; ++y) {
        if (y == mid.y) p = mid.x * 65536;
        std::int64_t l = p >> 16, r = q >> 16;
        if (l > r) std::swap(l, r);
        for (std::int64_t x = l; x < r; ++x)
            plot(dst, x, y, colour);
        p += y < mid.y ? s_tm : s_mb;
        q += s_tb;
    }
}

// `pixel(x, y, texel)` for each pixel of the textured triangle.
template<typename Pixel>
void scan_triangle(const std::uint32_t* texture, corner top, corner mid, corner bot, Pixel pixel) {
    struct edge {
        std::int64_t x, u, v, dx, du, dv;
        edge(const corner& a, const corner& b)
            : x(a.x * 65536), u(a.u * 65536), v(a.v * 65536), dx(slope(a.x, b.x, b.y - a.y)),
              du(slope(a.u, b.u, b.y - a.y)), dv(slope(a.v, b.v, b.y - a.y)) {}
    };
    sort_corners(top, mid, bot);
    edge upper(top, mid), lower(mid, bot), whole(top, bot);
    for (std::int64_t y = top.y; y < bot.y; ++y) {
        edge& part = y < mid.y ? upper : lower;
        const edge& left = part.x < whole.x ? part : whole;
        const edge& right = part.x < whole.x ? whole : part;
        const std::int64_t xs = left.x >> 16, xe = right.x >> 16;
        const std::int64_t du = xe != xs ? (right.u - left.u) / (xe - xs) : 0;
        const std::int64_t dv = xe != xs ? (right.v - left.v) / (xe - xs) : 0;
        std::int64_t u = left.u, v = left.v;
        for (std::int64_t x = xs; x < xe; ++x) {
            if (x >= 1 && x < 512 && y >= 1 && y < 288)
                pixel(x, y, texture[((v >> 16) & 255) * 256 + ((u >> 16) & 255)]);
            u += du;
            v += dv;
        }
        for (edge* e : {&part, &whole}) {
            e->x += e->dx;
            e->u += e->du;
            e->v += e->dv;
        }
    }
}

inline void fill_triangle_textured(std::uint32_t* dst, const std::uint32_t* texture, corner a, corner b,
                                   corner c) {
    scan_triangle(texture, a, b, c,
                  [dst](std::int64_t x, std::int64_t y, std::uint32_t texel) { plot(dst, x, y, texel); });
}

inline void draw_line(std::uint32_t* dst, std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1,
                      std::uint32_t colour) {
    const std::int64_t dx = std::abs(x1 - x0), dy = std::abs(y1 - y0);
    const std::int64_t sx = x1 < x0 ? -1 : 1, sy = y1 < y0 ? -1 : 1;
    std::int64_t x = x0, y = y0, error = 0;
    if (dx == 0 && dy == 0) return plot(dst, x, y, colour);
    if (dx <= dy) {
        for (std::int64_t i = 0; i < dy; ++i) {
            error += dx;
            if (error >= dy) {
                error -= dy;
                x += sx;
            }
            plot(dst, x, y, colour);
            y += sy;
        }
        return;
    }
    for (std::int64_t i = 0; i < dx; ++i) {
        error += dy;
        if (error >= dx) {
            error -= dx;
            y += sy;
        }
        plot(dst, x, y, colour);
        x += sx;
    }
}

} // namespace plain
