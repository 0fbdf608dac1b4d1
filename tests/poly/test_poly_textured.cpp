// The affine textured fillers and the adapters against plain interpreters of their rules.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "morvane/base/numbers.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/inner/adapters.h"
#include "tests/support/captured_output.h"
#include "tests/support/textured_frames.h"

namespace {

using namespace textured;

// Triangles within, across and far outside the frame, coordinates within and outside textures of all shapes.
TEST(affine_fillers, draw_what_the_rule_says) {
    const plain::texture textures[] = {noise_texture(64, 64), noise_texture(37, 19), noise_texture(300, 5),
                                       noise_texture(1, 1)};
    dice random(7);
    for (int kind = 0; kind < 8; ++kind) {
        both_frames frames(400, 90);
        for (int i = 0; i < 1200; ++i) {
            const plain::texture& from = textures[random.whole(0, 3)];
            const std::int32_t beside = i % 3 == 0 ? 0 : i % 3 == 1 ? 40 : 900;
            const bool inside = i % 2 == 0; // the texture
            corners t;
            for (plain::corner& c : t)
                c = {random.whole(-beside, 399 + beside), random.whole(-beside, 89 + beside),
                     random.whole(-600, -1),
                     inside ? random.whole(0, from.width - 1) : random.whole(-900, 900),
                     inside ? random.whole(0, from.height - 1) : random.whole(-900, 900)};
            if (i % 10 == 0) t[1].y = t[0].y;
            if (i % 15 == 0) t[2].x = t[1].x = t[0].x;
            const plain::kind k = random.kind(kind);
            draw_affine(frames.pixels(), t, from, k);
            plain::affine(frames.expected, t[0], t[1], t[2], from, k);
            if (i % 100 == 99) {
                ASSERT_NO_FATAL_FAILURE(frames.expect_equal(name_of(k) + std::to_string(i)));
            }
        }
    }
}

// Corners at the ends of the numbers: what is drawn can't be told by walking, only that nothing goes astray.
TEST(affine_fillers, hold_any_corner) {
    constexpr std::int32_t marks[] = {INT32_MIN, -70000, -1, 0, 3, 399, 400, 70000, INT32_MAX};
    dice random(8);
    const plain::texture from = noise_texture(37, 19);
    both_frames frames(400, 90);
    for (int i = 0; i < 4000; ++i) {
        corners t;
        for (plain::corner& c : t)
            for (std::int64_t* field : {&c.x, &c.y, &c.z, &c.u, &c.v})
                *field = marks[random.whole(0, 8)];
        draw_affine(frames.pixels(), t, from, random.kind(i % 8));
    }
    frames.expect_margin("corners at the ends of the numbers");
}

TEST(affine_fillers, leave_the_depths_of_the_flat_filler) {
    dice random(9);
    const plain::texture from = noise_texture(32, 32);
    both_frames frames(200, 90);
    std::vector<std::int32_t> depths(200 * 90, DEPTH_EMPTY), flat(depths);
    for (int i = 0; i < 200; ++i) {
        std::int32_t x[3], y[3], z[3];
        for (int k = 0; k < 3; ++k)
            x[k] = random.whole(0, 199), y[k] = random.whole(0, 89), z[k] = random.whole(-9000000, 0);
        const auto swapped = [&](std::vector<std::int32_t>& kept, auto draw) {
            std::copy(kept.begin(), kept.end(), depth_buffer);
            draw();
            std::copy_n(depth_buffer, kept.size(), kept.begin());
        };
        swapped(flat, [&] {
            fill_flat_z(frames.pixels(), x[0], y[0], z[0], x[1], y[1], z[1], x[2], y[2], z[2], 0);
        });
        swapped(depths, [&] {
            fill_tex_lit_az(frames.pixels(), x[0], y[0], z[0], 0, 0, x[1], y[1], z[1], 31, 0, x[2], y[2],
                            z[2], 0, 31, 9, 9, 9, from.texels.data(), 32, 99);
        });
        ASSERT_EQ(depths, flat);
    }
}

TEST(affine_fillers, keep_or_clear_the_top_byte) {
    const std::vector<std::uint32_t> white(16, 0xabffffff);
    both_frames frames(64, 64);
    const auto drawn = [&](auto filler, auto... rest) {
        filler(frames.pixels(), 0, 0, 0, 0, 60, 0, 3, 0, 0, 60, 0, 3, rest...);
        return frames.at(5, 5);
    };
    EXPECT_EQ(drawn(fill_tex, white.data(), 4, 4), 0xabffffffU);
    EXPECT_EQ(drawn(fill_tex_a, white.data(), 4, 256, 4), 0x00ffffffU);
    EXPECT_EQ(drawn(fill_tex_lit, 255, 255, 255, white.data(), 4, 4), 0x00fefefeU);
    EXPECT_EQ(drawn(fill_tex_lit, 0, 0, 0, white.data(), 4, 4), 0U);
    EXPECT_EQ(drawn(fill_tex_lit, 128, 64, 32, white.data(), 4, 4), 0x007f3f1fU);
}

// --- adapters ---------------------------------------------------------------------------------------------

using adapter = void (*)(std::uint32_t*, poly&);
constexpr adapter textured_adapters[] = {adapt_tex,     adapt_tex_z,     adapt_tex_a,     adapt_tex_az,
                                         adapt_tex_lit, adapt_tex_lit_z, adapt_tex_lit_a, adapt_tex_lit_az,
                                         adapt_tex_p,   adapt_tex_lit_p, adapt_tex_pa,    adapt_tex_lit_pa};
constexpr adapter flat_adapters[] = {adapt_flat, adapt_flat_z, adapt_flat_a, adapt_flat_az,
                                     adapt_flat, adapt_flat_z, adapt_flat_a, adapt_flat_az,
                                     adapt_flat, adapt_flat,   adapt_flat_a, adapt_flat_a};

poly some_polygon(const plain::texture& from) {
    poly p;
    p.count = 4;
    const float x[] = {-50, 150, 130, -20}, y[] = {-30, 10, 120, 90};
    for (std::size_t i = 0; i < 4; ++i)
        p.v[i] = {.pos = {x[i], y[i], -100 - x[i]}, .u = x[i] / 2 + 30, .v = y[i] / 2 + 20};
    p.r = 200, p.g = 100, p.b = 50, p.opacity = 90;
    p.texture = from.texels.data();
    p.texture_width = from.width;
    p.texture_height = from.height;
    return p;
}

// The fan of what the clipper leaves, with the arguments at their places: each adapter against the
// interpreter.
TEST(textured_adapter, clips_and_fans) {
    const plain::texture from = noise_texture(64, 64);
    for (std::size_t i = 0; i < std::size(textured_adapters); ++i) {
        both_frames frames(100, 80);
        poly_clip_set_frame(100, 80);
        poly p = some_polygon(from);
        captured_descriptor output(1);
        poly drawn = p;
        textured_adapters[i](frames.pixels(), drawn);
        const std::string printed = output.text();
        poly_clip_screen(p);
        ASSERT_GE(p.count, 4);
        plain::kind k{.r = p.r, .g = p.g, .b = p.b, .opacity = p.opacity};
        k.lit = i >= 8 ? i % 2 == 1 : i >= 4;
        k.z = i < 8 && i % 2 == 1;
        k.blended = i >= 8 ? i >= 10 : i % 4 >= 2;
        std::string lines;
        for (std::size_t at = 1; at + 1 < static_cast<std::size_t>(p.count); ++at) {
            const poly_vertex* fan[3] = {&p.v[0], &p.v[at], &p.v[at + 1]};
            corners whole;
            vertices real;
            for (std::size_t j = 0; j < 3; ++j) {
                const poly_vertex& v = *fan[j];
                whole[j] = {trunc_to_int(v.pos.x), trunc_to_int(v.pos.y), trunc_to_int(v.pos.z),
                            trunc_to_int(v.u), trunc_to_int(v.v)};
                real[j] = {v.pos.x, v.pos.y, v.pos.z, v.u, v.v};
            }
            if (i < 8)
                plain::affine(frames.expected, whole[0], whole[1], whole[2], from, k);
            else
                plain::perspective(frames.expected, real[0], real[1], real[2], plain::persp_lookup(from, 6),
                                   k);
            char line[100];
            std::snprintf(line, sizeof line, "%d, %d {%d, %d}\n", i32(whole[0].x), i32(whole[0].y),
                          i32(whole[0].u), i32(whole[0].v));
            lines += line;
        }
        frames.expect_equal("adapter " + std::to_string(i));
        EXPECT_EQ(printed, i == 0 ? lines : "") << i;
    }
}

TEST(textured_adapter, draws_flat_without_a_texture) {
    const plain::texture from = noise_texture(64, 64);
    poly without[] = {some_polygon(from), some_polygon(from), some_polygon(from)};
    without[0].texture = nullptr;
    without[1].texture_width = 0;
    without[2].texture_height = -1;
    for (std::size_t i = 0; i < std::size(textured_adapters); ++i)
        for (const poly& p : without) {
            both_frames frames(100, 80);
            poly_clip_set_frame(100, 80);
            poly flat = p, textured = p;
            flat_adapters[i](frames.pixels(), flat);
            std::copy_n(frames.pixels(), frames.expected.pixels.size(), frames.expected.pixels.begin());
            std::vector<std::int32_t> depth(depth_buffer, depth_buffer + frames.expected.depth.size());
            both_frames again(100, 80);
            textured_adapters[i](again.pixels(), textured);
            again.expected.pixels = frames.expected.pixels;
            again.expected.depth = depth;
            again.expect_equal("adapter " + std::to_string(i));
        }
}

TEST(textured_adapter, survives_any_vertex) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    const float marks[] = {std::numeric_limits<float>::quiet_NaN(),
                           inf,
                           -inf,
                           0,
                           -0.0F,
                           1e-30F,
                           3e38F,
                           -3e38F,
                           50,
                           99.99F,
                           100,
                           -1e6F,
                           79.5F,
                           -1};
    const plain::texture textures[] = {noise_texture(64, 64), noise_texture(100, 2), noise_texture(1, 1)};
    dice random(11);
    both_frames frames(100, 80);
    poly_clip_set_frame(100, 80);
    captured_descriptor output(1);
    for (int i = 0; i < 30000; ++i) {
        const auto any = [&] { return random.whole(0, 3) ? marks[random.whole(0, 13)] : random.real(0, 99); };
        poly p = some_polygon(textures[i % 3]);
        p.count = random.whole(0, 8);
        for (poly_vertex& v : p.v)
            v = {.pos = {any(), any(), any()}, .u = any(), .v = any()};
        p.r = random.whole(INT32_MIN, INT32_MAX);
        p.opacity = random.whole(INT32_MIN, INT32_MAX);
        textured_adapters[i % 12](frames.pixels(), p);
    }
    output.stop();
    frames.expect_margin("wild vertices");
}

} // namespace
