// Sprites: small surfaces put down at a position in a 512-wide destination. x and y are the signed position
// of the sprite's top left pixel and may be off the frame on any side; what fails the
// operator's clip test, or lies beyond the last row of `dst`, is dropped. The sprite and `dst` don't overlap.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

// Adds the sprite with saturation, on all four bytes, inside the frame (1 <= x < 512, 1 <= y < 288).
void gtex_add_sprite(gtex dst, gtex sprite, std::int32_t x, std::int32_t y);

// Stores the sprite's whole words, no key, where 1 <= x < 512 and y >= 1.
void gtex_blit(gtex dst, gtex sprite, std::int32_t x, std::int32_t y);

// Adds as `gtex_add_sprite` does where `gtex_blit` stores.
void gtex_add_blit(gtex dst, gtex sprite, std::int32_t x, std::int32_t y);

// Copies `src` by key into the frame, each row moved sideways by rand() % m - range / 2 columns with m =
// `range` but at least 1. One random number is drawn for each row of `src`.
void gtex_copy_jitter(gtex dst, gtex src, std::int32_t range);
