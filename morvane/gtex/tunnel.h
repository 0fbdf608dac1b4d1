// The tunnel: a texture looked up by the angle and distance of each pixel of the frame.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "morvane/gtex/gtex.h"

// Column by column: the entry of pixel (x, y) of the frame stands at x * 288 + y. With dx = x - 256 and
// dy = y - 144, truncated toward zero, low 8 bits:
using tunnel_table = std::array<std::uint8_t, std::size_t{frame_pixels}>;
extern tunnel_table
    tun_angle;                // atan2(dy, dx) * 81.646484375: about two turns through a texture's 256 columns
extern tunnel_table tun_dist; // sqrt(dx * dx + dy * dy)
extern tunnel_table tun_warp; // sin(d * 0.0200625) * 256 + d with d = tun_dist as a signed byte

// Calls `wobble_tables_init`, then fills the tunnel tables, here and in the copies from which the operators
// read.
void tunnel_tables_init();

// dst(x, y) = src((tun_angle + b) & 255, (tun_dist + a) & 255): move `a` to fly along the tunnel and `b` to
// turn around it. `src` is a texture of at least 256 by 256 (a smaller one draws nothing). `dst` is 512 wide:
// row y starts at pixel y * 512, and at most the tables' 512x288 pixels are written.
void gtex_tunnel(gtex dst, gtex src, std::int32_t a, std::int32_t b);

// `gtex_tunnel` with `tun_warp` in place of `tun_dist`.
void gtex_tunnel_warp(gtex dst, gtex src, std::int32_t a, std::int32_t b);

// Interlaced halves of a frame. For r from 0 to dst.height / 2 - 1, frame row 2r (even, by `tun_warp`) or 2r
// + 1 (odd, by `tun_dist`) is drawn from table row 2r. `src` is 256 wide, at least 65536 pixels.
void gtex_tunnel_even(gtex dst, gtex src, std::int32_t a, std::int32_t b);
void gtex_tunnel_odd(gtex dst, gtex src, std::int32_t a, std::int32_t b);
