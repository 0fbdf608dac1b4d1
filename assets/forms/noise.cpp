#include "assets/forms/noise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "morvane/base/numbers.h"

namespace assets {
namespace {

// The place of a lattice point after repeating; the remainder is never negative.
std::int32_t wrapped(std::int32_t v, std::int32_t period) {
    if (period <= 0) return v;
    const std::int32_t rest = v % period;
    return rest < 0 ? rest + period : rest;
}

// The part of a lattice point's gradient that points at `offset`.
float pull(std::int32_t x, std::int32_t y, vec2 offset, std::uint32_t seed, std::int32_t period) {
    const float angle = hash01(wrapped(x, period), wrapped(y, period), seed) * 2 * pi;
    return std::cos(angle) * offset.x + std::sin(angle) * offset.y;
}

float fade(float t) {
    return t * t * t * (t * (t * 6 - 15) + 10);
}

} // namespace

float hash01(std::int32_t x, std::int32_t y, std::uint32_t seed) {
    std::uint32_t a = static_cast<std::uint32_t>(x) * 1664525U + 1013904223U + seed * 2654435769U;
    std::uint32_t b = static_cast<std::uint32_t>(y) * 1664525U + 1013904223U + seed;
    a += b * 1664525U;
    b += a * 1664525U;
    a ^= a >> 16;
    b ^= b >> 16;
    a += b * 1664525U;
    b += a * 1664525U;
    a ^= a >> 16;
    b ^= b >> 16;
    return static_cast<float>((a ^ (b << 7)) >> 8) * (1.0F / 16777216.0F);
}

float gradient_noise(vec2 p, std::uint32_t seed, std::int32_t period) {
    const float fx = std::floor(p.x);
    const float fy = std::floor(p.y);
    const std::int32_t x = trunc_to_int(fx);
    const std::int32_t y = trunc_to_int(fy);
    const vec2 t{p.x - fx, p.y - fy};
    const float top =
        mix(pull(x, y, t, seed, period), pull(x + 1, y, t - vec2{1, 0}, seed, period), fade(t.x));
    const float bottom = mix(pull(x, y + 1, t - vec2{0, 1}, seed, period),
                             pull(x + 1, y + 1, t - vec2{1, 1}, seed, period), fade(t.x));
    return mix(top, bottom, fade(t.y));
}

float fbm(vec2 p, int octaves, std::uint32_t seed, std::int32_t period) {
    float sum = 0;
    float height = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += gradient_noise(p, seed + static_cast<std::uint32_t>(i), period) * height;
        p = p * 2;
        period *= 2;
        height *= 0.5F;
    }
    return sum;
}

float ridges(vec2 p, int octaves, std::uint32_t seed, std::int32_t period) {
    float sum = 0;
    float height = 0.5F;
    for (int i = 0; i < octaves; ++i) {
        const float crest =
            1 - std::fabs(gradient_noise(p, seed + static_cast<std::uint32_t>(i), period)) * 1.6F;
        sum += crest * crest * height;
        p = p * 2;
        period *= 2;
        height *= 0.5F;
    }
    return clamp01(sum);
}

cell cells(vec2 p, std::uint32_t seed, std::int32_t period) {
    const std::int32_t x0 = trunc_to_int(std::floor(p.x));
    const std::int32_t y0 = trunc_to_int(std::floor(p.y));
    constexpr std::int32_t reach = 2; // cells further off can't hold a neighbour
    std::array<vec2, static_cast<std::size_t>((2 * reach + 1) * (2 * reach + 1))> offsets;
    cell found{9, 9, 0};
    std::size_t count = 0;
    std::size_t own = 0;
    for (std::int32_t y = y0 - reach; y <= y0 + reach; ++y) {
        for (std::int32_t x = x0 - reach; x <= x0 + reach; ++x) {
            const std::int32_t wx = wrapped(x, period);
            const std::int32_t wy = wrapped(y, period);
            const vec2 point{static_cast<float>(x) + hash01(wx, wy, seed),
                             static_cast<float>(y) + hash01(wx, wy, seed + 101)};
            offsets[count] = point - p;
            if (const float d = length(offsets[count]); d < found.nearest) {
                found.nearest = d;
                found.value = hash01(wx, wy, seed + 202);
                own = count;
            }
            ++count;
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (i == own) continue;
        const vec2 half_way = (offsets[i] + offsets[own]) * 0.5F;
        found.edge = std::min(found.edge, dot(half_way, normalised(offsets[i] - offsets[own])));
    }
    return found;
}

} // namespace assets
