// Renderers: random meshes against a renderer of one face after the other on the plain fillers, then the
// borders of the front-face tests, the order of drawing, and records that hold nonsense.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numeric>

#include "morvane/object/lines.h"
#include "morvane/object/render.h"
#include "tests/support/plain_fillers.h"
#include "tests/support/surfaces.h"

namespace {

using pixels = std::vector<std::uint32_t>;

float random_float(std::mt19937& random, float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
}

// Scattered faces on and around the frame, some hidden, some edges not flagged, in no order.
std::unique_ptr<object> random_mesh(std::uint32_t seed) {
    auto mesh = std::make_unique<object>();
    std::mt19937 random(seed);
    mesh->vertex_count = 40;
    mesh->face_count = 30;
    for (std::size_t i = 0; i < 40; ++i) {
        mesh->screen_vertices[i].x = random_float(random, -80, 590);
        mesh->screen_vertices[i].y = random_float(random, -80, 370);
        mesh->world_vertices[i].tu = static_cast<std::int32_t>(random() % 600) - 300;
        mesh->world_vertices[i].tv = static_cast<std::int32_t>(random() % 600) - 300;
    }
    const auto vertex = [&random] { return static_cast<std::uint16_t>(random() % 40); };
    const auto flag = [&random](std::uint32_t values) {
        return static_cast<std::uint8_t>(random() % values);
    };
    for (std::size_t i = 0; i < 40; ++i) {
        mesh->faces[i] = {
            .a = vertex(), .b = vertex(), .c = vertex(), .ab = flag(3), .bc = flag(3), .ca = flag(3)};
        mesh->faces[i].visible = flag(4) != 0;
        mesh->world_normals[i] = {.x = random_float(random, -256, 256),
                                  .y = random_float(random, -256, 256),
                                  .z = random_float(random, -256, 256)};
    }
    mesh->light = {.x = 0.3F, .y = 0.6F, .z = -0.7F};
    mesh->point_red = mesh->wire_red = mesh->fill_red = 255;
    mesh->point_green = mesh->wire_green = mesh->fill_green = static_cast<std::int32_t>(random() % 256);
    mesh->point_blue = mesh->wire_blue = mesh->fill_blue = seed % 3 == 0 ? 0 : 77;
    mesh->point_lit = mesh->wire_lit = mesh->fill_lit = static_cast<std::int32_t>(seed % 2);
    std::iota(mesh->sort_order.begin(), mesh->sort_order.begin() + 40, 0);
    std::shuffle(mesh->sort_order.begin(), mesh->sort_order.begin() + 30, random); // faces
    return mesh;
}

std::int64_t whole(float value) {
    return static_cast<std::int64_t>(value); // toward zero
}

float intensity_of(const object& mesh, std::size_t face) {
    const object_vertex& n = mesh.world_normals[face];
    const float i = (n.y / 256) * mesh.light.y + (n.z / 256) * mesh.light.z + (n.x / 256) * mesh.light.x;
    return i > 1 || i < 0 ? 0 : i;
}

std::uint32_t colour_of(std::int32_t red, std::int32_t green, std::int32_t blue, bool lit, float intensity) {
    const auto channel = [=](std::int32_t c) {
        return lit ? static_cast<std::int32_t>(static_cast<float>(c) * intensity) : c;
    };
    return word_of(0, channel(red), channel(green), channel(blue));
}

enum style { wire, wire_smooth, flat, textured, points };

// All faces of the mesh, one by one.
void draw_naive(std::uint32_t* dst, const object& mesh, style how, const std::uint32_t* texture) {
    for (std::int32_t i = 0; i < mesh.face_count; ++i) {
        const auto f =
            static_cast<std::size_t>(mesh.sort_order[static_cast<std::size_t>(mesh.face_count - 1 - i)]);
        const object_face& face = mesh.faces[f];
        if (face.visible != 1) continue;
        const std::array<std::size_t, 3> at{face.a, face.b, face.c};
        std::array<float, 3> fx{}, fy{};
        std::array<plain::corner, 3> t;
        for (std::size_t k = 0; k < 3; ++k) {
            fx[k] = mesh.screen_vertices[at[k]].x;
            fy[k] = mesh.screen_vertices[at[k]].y;
            t[k] = {whole(how == flat ? fx[k] + 1.0F : fx[k]), whole(fy[k]), mesh.world_vertices[at[k]].tu,
                    mesh.world_vertices[at[k]].tv};
        }
        if (how == textured) {
            plain::fill_triangle_textured(dst, texture, t[0], t[1], t[2]);
            continue;
        }
        const std::int64_t facing =
            how == flat ? whole((fy[0] - fy[2]) * (fx[1] - fx[0]) - (fy[1] - fy[0]) * (fx[0] - fx[2]))
                        : (t[0].y - t[2].y) * (t[1].x - t[0].x) - (t[1].y - t[0].y) * (t[0].x - t[2].x);
        if (facing >= 0) continue;
        const float light = intensity_of(mesh, f);
        if (how == flat) {
            plain::fill_triangle(
                dst, t[0], t[1], t[2],
                colour_of(mesh.fill_red, mesh.fill_green, mesh.fill_blue, mesh.fill_lit == 1, light));
        } else if (how == points) {
            const auto channel = [&](std::int32_t c) {
                return mesh.point_lit != 1 || c == 0 ? c
                                                     : std::min(static_cast<std::int32_t>(light * 256), 255);
            };
            for (const plain::corner& p : t)
                plain::plot(
                    dst, p.x, p.y,
                    word_of(0, channel(mesh.point_red), channel(mesh.point_green), channel(mesh.point_blue)));
        } else {
            const std::uint32_t colour =
                colour_of(mesh.wire_red, mesh.wire_green, mesh.wire_blue, mesh.wire_lit == 1, light);
            const std::array<std::uint8_t, 3> flags{face.ab, face.bc, face.ca};
            for (std::size_t k = 0; k < 3; ++k) {
                const plain::corner from = t[k], to = t[(k + 1) % 3];
                if (flags[k] != 1) continue;
                if (how == wire)
                    plain::draw_line(dst, from.x, from.y, to.x, to.y, colour);
                else
                    draw_line_smooth(dst, static_cast<double>(from.x), static_cast<double>(from.y),
                                     static_cast<double>(to.x), static_cast<double>(to.y), colour);
            }
        }
    }
}

void draw(std::uint32_t* dst, const object& mesh, style how, const std::uint32_t* texture) {
    switch (how) {
    case wire:
        return object_draw_wire(dst, mesh);
    case wire_smooth:
        return object_draw_wire_smooth(dst, mesh);
    case flat:
        return object_draw_flat(dst, mesh);
    case textured:
        return object_draw_textured(dst, mesh, texture);
    case points:
        return object_draw_points(dst, mesh);
    }
}

// A mesh of one visible face with all edges, white, and the corners given.
std::unique_ptr<object> one_face(std::array<float, 6> xy) {
    auto mesh = std::make_unique<object>();
    mesh->vertex_count = 3;
    mesh->face_count = 1;
    mesh->faces[0] = {.a = 0, .b = 1, .c = 2, .ab = 1, .bc = 1, .ca = 1, .visible = 1};
    for (std::size_t k = 0; k < 3; ++k) {
        mesh->screen_vertices[k].x = xy[2 * k];
        mesh->screen_vertices[k].y = xy[2 * k + 1];
    }
    for (std::int32_t* channel : {&mesh->wire_red, &mesh->wire_green, &mesh->wire_blue, &mesh->fill_red,
                                  &mesh->fill_green, &mesh->fill_blue, &mesh->point_red})
        *channel = 255;
    return mesh;
}

std::ptrdiff_t pixels_drawn(const object& mesh, style how) {
    guarded_surface frame(512, 288), texture(256, 256);
    frame.fill(0);
    draw(static_cast<gtex>(frame).pixels, mesh, how, static_cast<gtex>(texture).pixels);
    const pixels seen = frame.copy();
    return frame.count() - std::count(seen.begin(), seen.end(), 0U);
}

} // namespace

TEST(object_render, every_style_draws_what_its_faces_draw_one_by_one) {
    guarded_surface texture(256, 256, 2);
    const std::uint32_t* texels = static_cast<gtex>(texture).pixels;
    for (const style how : {wire, wire_smooth, flat, textured, points})
        for (std::uint32_t seed = 0; seed < 8; ++seed) {
            const auto mesh = random_mesh(seed);
            guarded_surface frame(512, 288, 3);
            pixels expected = frame.copy();
            draw_naive(expected.data(), *mesh, how, texels);
            EXPECT_NE(expected, frame.copy());
            draw(static_cast<gtex>(frame).pixels, *mesh, how, texels);
            ASSERT_NO_FATAL_FAILURE(expect_pixels(frame, expected)) << "style " << how << " seed " << seed;
        }
}

TEST(object_render, the_last_slot_is_drawn_first) {
    const auto mesh = one_face({100, 100, 200, 100, 100, 200});
    mesh->face_count = 2;
    mesh->faces[1] = mesh->faces[0];
    mesh->fill_lit = 1;
    mesh->light = {.z = 1};
    mesh->world_normals[0] = {.z = 256};
    mesh->world_normals[1] = {.z = 128};
    guarded_surface frame(512, 288);
    for (const std::int32_t near : {0, 1}) {
        mesh->sort_order[0] = near;
        mesh->sort_order[1] = 1 - near;
        object_draw_flat(static_cast<gtex>(frame).pixels, *mesh);
        EXPECT_EQ(frame.at(120, 120), near == 0 ? 0xffffffU : 0x7f7f7fU);
    }
}

TEST(object_render, flat_and_wire_differ_at_the_border_of_facing) {
    for (const float measure : {0.5F, 0.99F, 1.0F, 1.5F}) { // less than one unit isn't front-facing
        const auto mesh = one_face({100, 100, 101, 100, 100, 100 + measure});
        EXPECT_EQ(pixels_drawn(*mesh, flat) > 0, measure >= 1) << measure;
        EXPECT_EQ(pixels_drawn(*mesh, wire) > 0, measure >= 1) << measure;
    }
    // Truncated it has one unit, untruncated a hundredth.
    const auto cut = one_face({100.95F, 100.95F, 101.05F, 100.95F, 100.95F, 101.05F});
    EXPECT_GT(pixels_drawn(*cut, wire), 0);
    EXPECT_EQ(pixels_drawn(*cut, flat), 0);
    // Truncated it faces away (11), untruncated it faces the viewer (-6).
    const auto turned = one_face({139.11F, 137.64F, 102.77F, 133.14F, 127.44F, 136.03F});
    EXPECT_EQ(pixels_drawn(*turned, wire), 0);
    EXPECT_EQ(pixels_drawn(*turned, points), 0);
    EXPECT_GT(pixels_drawn(*turned, flat), 0);
    const auto back = one_face({100, 100, 100, 200, 200, 100});
    for (const style how : {wire, wire_smooth, flat, points})
        EXPECT_EQ(pixels_drawn(*back, how), 0);
    EXPECT_GT(pixels_drawn(*back, textured), 0); // whichever way it faces
    const auto point = one_face({100, 100, 100, 100, 100, 100});
    EXPECT_EQ(pixels_drawn(*point, flat), 0);
}

TEST(object_render, flat_faces_sit_one_pixel_to_the_right) {
    const auto mesh = one_face({100.5F, 100, 150.5F, 100, 100.5F, 150});
    guarded_surface frame(512, 288);
    frame.fill(0);
    object_draw_flat(static_cast<gtex>(frame).pixels, *mesh);
    EXPECT_EQ(frame.at(100, 100), 0U);
    EXPECT_EQ(frame.at(101, 100), 0xffffffU);
    EXPECT_EQ(frame.at(150, 100), 0xffffffU);
    EXPECT_EQ(frame.at(151, 100), 0U);
}

TEST(object_render, hidden_faces_and_flags_other_than_1_are_not_drawn) {
    const auto mesh = one_face({100, 100, 200, 100, 100, 200});
    EXPECT_EQ(pixels_drawn(*mesh, points), 3);
    mesh->faces[0].bc = mesh->faces[0].ca = 2;
    EXPECT_EQ(pixels_drawn(*mesh, wire), 100); // a-b alone
    mesh->faces[0].visible = 0;
    for (const style how : {wire, wire_smooth, flat, textured, points})
        EXPECT_EQ(pixels_drawn(*mesh, how), 0);
}

TEST(object_render, lit_points_take_the_intensity_and_not_the_colour) {
    const auto mesh = one_face({100, 100, 200, 100, 100, 200});
    guarded_surface frame(512, 288);
    mesh->point_red = 0;
    mesh->point_green = 1;
    mesh->point_blue = 200;
    mesh->light = {.z = 1};
    const auto colour = [&](float z) {
        mesh->world_normals[0].z = z;
        object_draw_points(static_cast<gtex>(frame).pixels, *mesh);
        return frame.at(100, 200);
    };
    EXPECT_EQ(colour(100), 0x0001c8U); // the switch is off
    mesh->point_lit = 1;
    EXPECT_EQ(colour(100), 0x006464U);
    EXPECT_EQ(colour(256), 0x00ffffU); // full light, limited
    EXPECT_EQ(colour(-100), 0U);
}

TEST(object_render, a_sprite_is_centred_on_each_visible_vertex) {
    guarded_surface sprite(7, 5, 4), frame(512, 288, 5);
    const auto mesh = random_mesh(6);
    mesh->vertex_count = 30;
    mesh->face_count = 0;
    pixels expected = frame.copy();
    for (std::size_t slot = 0; slot < 30; ++slot) { // adding has no order, but for none that is left out
        const auto v = static_cast<std::size_t>(mesh->sort_order[slot]);
        if (mesh->faces[v].visible == 0) continue;
        const std::int64_t x = whole(mesh->screen_vertices[v].x - 3.5F),
                           y = whole(mesh->screen_vertices[v].y - 2.5F);
        for (std::int32_t j = 0; j < 5; ++j)
            for (std::int32_t i = 0; i < 7; ++i) {
                if (x + i < 1 || x + i > 511 || y + j < 1 || y + j > 287) continue;
                std::uint32_t& pixel = expected[static_cast<std::size_t>((y + j) * 512 + x + i)];
                const auto sum = [&](int k) {
                    return std::min(byte_of(pixel, k) + byte_of(sprite.at(i, j), k), 255);
                };
                pixel = word_of(sum(3), sum(2), sum(1), sum(0));
            }
    }
    object_draw_sprites(frame, sprite, *mesh);
    expect_pixels(frame, expected);
}

TEST(object_render, records_that_hold_nonsense_are_drawn_as_far_as_they_make_sense) {
    guarded_surface texture(256, 256, 2), sprite(8, 8, 3);
    constexpr float inf = std::numeric_limits<float>::infinity();
    constexpr float odd[] = {inf, -inf, std::numeric_limits<float>::quiet_NaN(), 3e38F, -1e10F, 2147483648.0F,
                             -1,  600};
    for (std::uint32_t seed = 0; seed < 6; ++seed) {
        const auto mesh = random_mesh(seed);
        mesh->faces[3].a = 4096;
        mesh->faces[4].b = 65535;
        mesh->faces[5].c = 5000;
        mesh->sort_order[6] = -1;
        mesh->sort_order[7] = 4096;
        mesh->sort_order[8] = INT32_MAX;
        mesh->sort_order[9] = INT32_MIN;
        std::mt19937 random(seed);
        for (std::size_t i = 0; i < 20; ++i) {
            mesh->screen_vertices[i].x = odd[random() % std::size(odd)];
            mesh->screen_vertices[i].y = odd[random() % std::size(odd)];
            mesh->world_normals[i].x = odd[random() % std::size(odd)];
            mesh->world_vertices[i].tu = INT32_MAX;
            mesh->world_vertices[i].tv = INT32_MIN;
        }
        mesh->fill_red = INT32_MAX;
        mesh->wire_green = INT32_MIN;
        mesh->point_blue = 256;
        for (const std::int32_t count : {30, 4096, 4097, INT32_MAX, -1, INT32_MIN}) {
            mesh->face_count = mesh->vertex_count = count;
            guarded_surface frame(512, 288, 5);
            const pixels before = frame.copy();
            for (const style how : {wire, wire_smooth, flat, textured, points})
                draw(static_cast<gtex>(frame).pixels, *mesh, how, static_cast<gtex>(texture).pixels);
            object_draw_sprites(frame, sprite, *mesh);
            EXPECT_TRUE(frame.intact());
            EXPECT_EQ(frame.copy() == before, count < 0);
        }
    }
    // A face with a corner that no mesh can have is skipped, and not drawn with what lies behind the array.
    const auto beyond = one_face({100, 100, 200, 100, 100, 200});
    for (const std::uint16_t corner : std::initializer_list<std::uint16_t>{4096, 4097, 65535}) {
        beyond->faces[0].a = corner;
        for (const style how : {wire, wire_smooth, flat, textured, points})
            EXPECT_EQ(pixels_drawn(*beyond, how), 0);
    }
    // A channel beyond a byte is limited and doesn't spill into the next one.
    const auto mesh = one_face({100, 100, 200, 100, 100, 200});
    mesh->fill_red = -5;
    mesh->fill_green = 1000;
    mesh->fill_blue = 256;
    guarded_surface frame(512, 288);
    object_draw_flat(static_cast<gtex>(frame).pixels, *mesh);
    EXPECT_EQ(frame.at(120, 120), 0x00ffffU);
}
