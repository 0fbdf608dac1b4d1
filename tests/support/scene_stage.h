// A scene with a camera, ready to be rendered, and the frame it is drawn into.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "morvane/poly/clipper.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"
#include "morvane/scene/moscene.h"
#include "tests/support/captured_output.h"

namespace scene_stage {

inline constexpr std::int32_t width = 200, height = 120;
inline constexpr float factor = 100; // of the projection
inline constexpr std::uint32_t backdrop = 0x00102030;

// A scene with a camera at the origin that looks down negative z, and the frame it is drawn into.
class scene_renderer : public testing::Test {
  protected:
    scene_renderer() {
        raster_init(width, height);
        poly_clip_set_frame(width, height);
        render_mode_init();
        scene.set_width(width);
        scene.set_height(height);
        scene.add_camera("camera", 0, 0, 0, 0, 0, -1, 0, 50);
        scene.camera = scene.first_camera;
        scene.camera->factor_x = scene.camera->factor_y = factor;
        scene.set_ambient(0.5F, 0.25F, 0.125F);
        clear();
    }

    void clear() {
        block.assign(width * height + 2 * margin, guard);
        std::fill_n(pixels(), width * height, backdrop);
        raster_clear_depth();
    }
    std::uint32_t* pixels() { return block.data() + margin; }
    std::vector<std::uint32_t> frame() { return {pixels(), pixels() + width * height}; }
    std::vector<std::uint32_t> empty_frame() { return std::vector<std::uint32_t>(width * height, backdrop); }
    std::uint32_t centre() { return pixels()[height / 2 * width + width / 2]; }
    void expect_margin() {
        const auto untouched = [](std::uint32_t word) { return word == guard; };
        ASSERT_TRUE(std::all_of(block.begin(), block.begin() + margin, untouched));
        ASSERT_TRUE(std::all_of(block.end() - margin, block.end(), untouched));
    }
    std::vector<std::uint32_t> render() {
        clear();
        captured_descriptor output(1); // mode 16 prints
        scene.scene_render(pixels());
        output.stop();
        expect_margin();
        return frame();
    }

    // A mesh of one face around the centre of the frame that turns towards the camera.
    mesh& add_triangle(std::int32_t mode, float z = -50) {
        scene.set_render_mode(mode);
        scene.add_mesh("mesh");
        mesh& m = *scene.last_mesh;
        mesh_alloc_vertices(m, 3);
        mesh_alloc_faces(m, 1);
        mesh_add_vertex(m, 30, 20, z);
        mesh_add_vertex(m, -25, 22, z);
        mesh_add_vertex(m, 1, -26, z);
        mesh_add_face(m, 0, 2, 1, 0);
        m.faces[0].normal = {0, 0, 1};
        for (std::size_t i = 0; i < 3; ++i) {
            m.normals[i] = {0, 0, 1};
            mesh_set_uv(m, static_cast<std::int32_t>(i), 0.2F + 0.3F * static_cast<float>(i % 2),
                        0.1F + 0.4F * static_cast<float>(i / 2));
        }
        return m;
    }
    material& add_material(std::int32_t r, std::int32_t g, std::int32_t b) {
        scene.add_material("material");
        material& made = *scene.last_material;
        material_set_ambient(made, r, g, b);
        material_set_diffuse(made, b, r, g);
        made.opacity = 255;
        return made;
    }
    light& add_light(float x, float y, float z, float r, float g, float b) {
        scene.add_light("light", x, y, z);
        light& made = *scene.last_light;
        made.position = {x, y, z};
        made.color_r = r;
        made.color_g = g;
        made.color_b = b;
        return made;
    }
    void give_texture(material& m, const std::vector<std::uint32_t>& texels, std::int32_t w, std::int32_t h) {
        m.has_texture = true;
        m.texture_map.pixels = texels.data();
        m.texture_map.pixels_width = w;
        m.texture_map.pixels_height = h;
    }

    moscene scene;

  private:
    static constexpr std::size_t margin = 4096;
    static constexpr std::uint32_t guard = 0xdeadbeef;
    std::vector<std::uint32_t> block;
};

inline std::vector<std::uint32_t> noise(std::size_t count) {
    std::mt19937 random(5);
    std::vector<std::uint32_t> words(count);
    for (std::uint32_t& word : words)
        word = static_cast<std::uint32_t>(random());
    return words;
}

inline std::uint32_t packed(double r, double g, double b) {
    const auto channel = [](double value) { return static_cast<std::uint32_t>(std::min(value, 255.0)); };
    return channel(r) << 16 | channel(g) << 8 | channel(b);
}

inline void expect_colour(std::uint32_t seen, double r, double g, double b) {
    EXPECT_NEAR(seen >> 16 & 255, std::min(r, 255.0), 1.0);
    EXPECT_NEAR(seen >> 8 & 255, std::min(g, 255.0), 1.0);
    EXPECT_NEAR(seen & 255, std::min(b, 255.0), 1.0);
}

// Where a vertex lands on the screen, by hand.
struct landed {
    std::int32_t x, y, z;
    float real_x, real_y;
};
inline landed land(const vector3d& v) {
    const auto x = static_cast<float>(double{v.x} * factor / v.z + width / 2);
    const auto y = static_cast<float>(double{v.y} * factor / v.z + height / 2);
    return {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), static_cast<std::int32_t>(v.z), x, y};
}

} // namespace scene_stage
