// What the tests of the textured fillers share: a frame beside that of the interpreter, textures, dice, and a
// call for each kind of filler.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "morvane/poly/fill_perspective.h"
#include "morvane/poly/fill_textured.h"
#include "morvane/poly/raster.h"
#include "tests/support/plain_textured.h"

namespace textured {

namespace plain = plain_textured;

inline constexpr std::size_t margin = 4096; // words around the frame that must stay as they are
inline constexpr std::uint32_t guard = 0xdeadbeef;

// The frame that is drawn into, beside the one of the interpreter, both full of the same noise.
class both_frames {
  public:
    both_frames(std::int32_t width, std::int32_t height, std::uint32_t seed = 1) {
        raster_init(width, height);
        const auto count = static_cast<std::size_t>(width * height);
        expected = {width, height, std::vector<std::uint32_t>(count), std::vector<std::int32_t>(count)};
        std::mt19937 random(seed);
        for (std::size_t i = 0; i < count; ++i) {
            expected.pixels[i] = static_cast<std::uint32_t>(random());
            expected.depth[i] =
                random() % 2 ? DEPTH_EMPTY : -static_cast<std::int32_t>(random() % (600 * 256));
        }
        block.assign(count + 2 * margin, guard);
        std::copy(expected.pixels.begin(), expected.pixels.end(), block.begin() + margin);
        std::copy(expected.depth.begin(), expected.depth.end(), depth_buffer);
    }
    std::uint32_t* pixels() { return block.data() + margin; }
    std::uint32_t at(std::int32_t x, std::int32_t y) { return pixels()[y * expected.width + x]; }
    void clear(std::uint32_t word) {
        std::fill_n(pixels(), expected.pixels.size(), word);
        std::fill(expected.pixels.begin(), expected.pixels.end(), word);
    }
    void expect_equal(const std::string& what) {
        const std::size_t count = expected.pixels.size();
        for (std::size_t i = 0; i < count; ++i) {
            const auto width = static_cast<std::size_t>(expected.width);
            ASSERT_EQ(pixels()[i], expected.pixels[i]) << what << " at " << i % width << ", " << i / width;
            ASSERT_EQ(depth_buffer[i], expected.depth[i])
                << what << ", depth " << i % width << ", " << i / width;
        }
        expect_margin(what);
    }
    void expect_margin(const std::string& what) {
        const auto untouched = [](std::uint32_t word) { return word == guard; };
        ASSERT_TRUE(std::all_of(block.begin(), block.begin() + margin, untouched)) << what;
        ASSERT_TRUE(std::all_of(block.end() - margin, block.end(), untouched)) << what;
    }
    plain::frame expected;

  private:
    std::vector<std::uint32_t> block;
};

inline plain::texture noise_texture(std::int32_t width, std::int32_t height) {
    plain::texture made{width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width * height))};
    std::mt19937 random(static_cast<std::uint32_t>(width * 1000 + height));
    for (std::uint32_t& texel : made.texels)
        texel = static_cast<std::uint32_t>(random());
    return made;
}

// 256 by 256, each texel its own coordinates: u in the low byte, v above it.
inline plain::texture ruler_texture() {
    plain::texture made{256, 256, std::vector<std::uint32_t>(256 * 256)};
    for (std::size_t i = 0; i < made.texels.size(); ++i)
        made.texels[i] = static_cast<std::uint32_t>(i);
    return made;
}

inline std::int32_t i32(std::int64_t value) {
    return static_cast<std::int32_t>(value);
}

using corners = std::array<plain::corner, 3>;

// Calls a filler with the vertices one after the other, and the rest behind them.
template<typename Filler, typename Vertices, typename... Rest>
void call(Filler filler, std::uint32_t* dst, const Vertices& vertices, Rest... rest) {
    std::apply(filler, std::tuple_cat(std::tuple{dst}, vertices, std::tuple{rest...}));
}

inline void draw_affine(std::uint32_t* dst, const corners& t, const plain::texture& from,
                        const plain::kind& k) {
    const auto flat_vertex = [](const plain::corner& c) {
        return std::tuple{i32(c.x), i32(c.y), i32(c.u), i32(c.v)};
    };
    const auto deep_vertex = [](const plain::corner& c) {
        return std::tuple{i32(c.x), i32(c.y), i32(c.z), i32(c.u), i32(c.v)};
    };
    const auto flat = std::tuple_cat(flat_vertex(t[0]), flat_vertex(t[1]), flat_vertex(t[2]));
    const auto deep = std::tuple_cat(deep_vertex(t[0]), deep_vertex(t[1]), deep_vertex(t[2]));
    const std::uint32_t* const texels = from.texels.data();
    const std::int32_t w = from.width, h = from.height, a = k.opacity;
    if (k.z && k.lit && k.blended) return call(fill_tex_lit_az, dst, deep, k.r, k.g, k.b, texels, w, a, h);
    if (k.z && k.lit) return call(fill_tex_lit_z, dst, deep, k.r, k.g, k.b, texels, w, h);
    if (k.z && k.blended) return call(fill_tex_az, dst, deep, texels, w, a, h);
    if (k.z) return call(fill_tex_z, dst, deep, texels, w, h);
    if (k.lit && k.blended) return call(fill_tex_lit_a, dst, flat, k.r, k.g, k.b, texels, w, a, h);
    if (k.lit) return call(fill_tex_lit, dst, flat, k.r, k.g, k.b, texels, w, h);
    if (k.blended) return call(fill_tex_a, dst, flat, texels, w, a, h);
    call(fill_tex, dst, flat, texels, w, h);
}

using vertices = std::array<plain::vertex, 3>;

inline void draw_perspective(std::uint32_t* dst, const vertices& t, const plain::texture& from,
                             const plain::kind& k, std::int32_t height) {
    const auto one = [](const plain::vertex& v) { return std::tuple{v.x, v.y, v.z, v.u, v.v}; };
    const auto all = std::tuple_cat(one(t[0]), one(t[1]), one(t[2]));
    const std::uint32_t* const texels = from.texels.data();
    const std::int32_t w = from.width, a = k.opacity;
    if (k.lit && k.blended) return call(fill_tex_lit_pa, dst, all, texels, w, k.r, k.g, k.b, a, height);
    if (k.lit) return call(fill_tex_lit_p, dst, all, texels, w, k.r, k.g, k.b, height);
    if (k.blended) return call(fill_tex_pa, dst, all, texels, w, a, height);
    call(fill_tex_p, dst, all, texels, w, height);
}

class dice {
  public:
    explicit dice(std::uint32_t seed) : random(seed) {}
    std::int32_t whole(std::int32_t low, std::int32_t high) {
        return std::uniform_int_distribution(low, high)(random);
    }
    float real(double low, double high) {
        return static_cast<float>(std::uniform_real_distribution(low, high)(random));
    }
    plain::kind kind(int index) { // all eight for 0 to 7
        return {.z = (index & 1) != 0,
                .blended = (index & 2) != 0,
                .lit = (index & 4) != 0,
                .r = whole(0, 255),
                .g = whole(0, 255),
                .b = whole(0, 255),
                .opacity = whole(0, 256)};
    }

  private:
    std::mt19937 random;
};

inline std::string name_of(const plain::kind& k) {
    return std::string(k.lit ? "lit " : "") + (k.z ? "z " : "") + (k.blended ? "a " : "");
}

} // namespace textured
