// The steps between loading and the first frame: normals, bounds, tangents, pictures.
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/base/log.h"
#include "morvane/scene/moscene.h"
#include "tests/support/captured_output.h"
#include "tests/support/temp_file.h"

namespace {

mesh mesh_of(const std::vector<vector3d>& points, const std::vector<std::array<int, 3>>& corners) {
    mesh m;
    mesh_alloc_vertices(m, static_cast<std::int32_t>(points.size()));
    for (const vector3d& p : points)
        mesh_add_vertex(m, p.x, p.y, p.z);
    mesh_alloc_faces(m, static_cast<std::int32_t>(corners.size()));
    for (const auto& [a, b, c] : corners)
        mesh_add_face(m, static_cast<std::int16_t>(a), static_cast<std::int16_t>(b),
                      static_cast<std::int16_t>(c), 0);
    return m;
}

// The normal of vertex i by a scan of all faces.
vector3d scanned_normal(const mesh& m, std::size_t i) {
    vector3d sum;
    int found = 0;
    for (const face& f : m.faces) {
        if (!face_in_mesh(m, f)) continue;
        const auto is = [i](std::int16_t corner) { return static_cast<std::size_t>(corner) == i; };
        if (!is(f.a) && !is(f.b) && !is(f.c)) continue;
        sum = sum + f.normal;
        ++found;
    }
    return found > 0 ? sum / static_cast<float>(found) : sum;
}

bool same_bits(const vector3d& a, const vector3d& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void expect_vector(const vector3d& v, double x, double y, double z) {
    EXPECT_NEAR(v.x, x, 1e-6);
    EXPECT_NEAR(v.y, y, 1e-6);
    EXPECT_NEAR(v.z, z, 1e-6);
}

// A TGA of 32 bits a pixel, whose words are `first`, `first` + 1 and so on.
std::string tga(int width, int height, std::uint32_t first) {
    std::string file(18, '\0');
    file[2] = 2;
    file[12] = static_cast<char>(width & 255);
    file[13] = static_cast<char>(width >> 8);
    file[14] = static_cast<char>(height & 255);
    file[15] = static_cast<char>(height >> 8);
    file[16] = 32;
    for (int i = 0; i < width * height; ++i, ++first)
        for (int byte = 0; byte < 4; ++byte)
            file.push_back(static_cast<char>(first >> (8 * byte)));
    return file;
}

} // namespace

TEST(normals, of_single_faces_and_edges) {
    mesh one = mesh_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 5}}, {{0, 1, 2}});
    one.normals[3] = {7, 7, 7};
    mesh_calc_normals(one);
    expect_vector(one.faces[0].normal, 0, 0, 1);
    for (std::size_t i = 0; i < 3; ++i)
        expect_vector(one.normals[i], 0, 0, 1);
    expect_vector(one.normals[3], 0, 0, 0);

    mesh corner = mesh_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {{0, 1, 2}, {0, 3, 1}});
    mesh_calc_normals(corner);
    EXPECT_NEAR(corner.normals[0].length(), std::sqrt(0.5), 1e-6);
    expect_vector(corner.normals[1], 0, 0.5, 0.5);
    expect_vector(corner.normals[2], 0, 0, 1);

    // A face without an area counts, once, for each vertex that it holds.
    mesh flat = mesh_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}, {0, 0, 1}, {2, 2, 2}});
    mesh_calc_normals(flat);
    expect_vector(flat.faces[1].normal, 0, 0, 0);
    for (std::size_t i = 0; i < 3; ++i)
        expect_vector(flat.normals[i], 0, 0, 0.5);
}

TEST(normals, are_those_of_the_scan_to_the_last_bit) {
    std::mt19937 random(17);
    std::uniform_real_distribution<float> place(-100, 100);
    for (int round = 0; round < 20; ++round) {
        std::vector<vector3d> points(1 + random() % 60);
        for (vector3d& p : points)
            p = {place(random), place(random), place(random)};
        std::vector<std::array<int, 3>> corners(random() % 400);
        for (auto& c : corners) // some reach beyond the vertices, many hold a vertex twice
            c = {static_cast<int>(random() % (points.size() + 2)) - 1,
                 static_cast<int>(random() % points.size()), static_cast<int>(random() % points.size())};
        mesh m = mesh_of(points, corners);
        mesh_calc_normals(m);
        for (std::size_t i = 0; i < points.size(); ++i)
            EXPECT_TRUE(same_bits(m.normals[i], scanned_normal(m, i))) << "vertex " << i;
        for (const face& f : m.faces) {
            if (!face_in_mesh(m, f)) {
                EXPECT_EQ(f.normal.length(), 0);
                continue;
            }
            const auto at = [&m](std::int16_t i) { return m.vertices[static_cast<std::size_t>(i)]; };
            vector3d normal = (at(f.b) - at(f.a)).cross(at(f.c) - at(f.a));
            normal.normalize();
            EXPECT_TRUE(same_bits(f.normal, normal));
        }
    }
}

TEST(normals, stay_inside_a_mesh_whose_counts_lie) {
    mesh m = mesh_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    m.vertex_count = 1000;
    m.face_count = INT32_MAX;
    mesh_calc_normals(m);
    mesh_calc_bounds(m);
    expect_vector(m.normals[2], 0, 0, 1);
    m.vertex_count = m.face_count = -1;
    mesh_calc_normals(m);
    m.vertex_count = 2; // the third vertex isn't in use
    m.face_count = 1;
    m.normals[2] = {9, 9, 9};
    mesh_calc_normals(m);
    expect_vector(m.normals[1], 0, 0, 1);
    expect_vector(m.normals[2], 9, 9, 9);
    mesh empty;
    mesh_alloc_faces(empty, 1); // faces before vertices
    mesh_add_face(empty, 0, 0, 0, 0);
    mesh_calc_normals(empty);
}

TEST(bounds, hold_all_vertices) {
    mesh m = mesh_of({{1, 2, 3}, {-1, 5, 0}}, {});
    mesh_calc_bounds(m);
    expect_vector(m.box_max, 1, 5, 3);
    expect_vector(m.box_min, -1, 2, 0);
    mesh negative = mesh_of({{-4, -5, -6}}, {});
    mesh_calc_bounds(negative);
    expect_vector(negative.box_max, -4, -5, -6);
    mesh untouched;
    untouched.box_max = {1, 2, 3};
    mesh_calc_bounds(untouched);
    expect_vector(untouched.box_max, 1, 2, 3);
}

TEST(moscene, prepares_each_mesh_and_each_node_once) {
    moscene scene;
    mesh first = mesh_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    set_name_field(first.name, "first");
    scene.add_mesh(first);
    scene.add_mesh("dummy");
    captured_output printed;
    scene.calc_normals();
    EXPECT_EQ(printed.out(), "Calculating normals for first [1 faces 3 vertices]...\n"
                             "Calculating normals for dummy [0 faces 0 vertices]...\n");
    scene.calc_bounds();
    expect_vector(first.box_max, 1, 1, 0);

    std::vector<mokey_node*> nodes;
    const auto add = [&](std::uint16_t parent) {
        scene.add_node(node_object, parent);
        mokey_node& node = *scene.current_node;
        node.set_id(static_cast<std::uint16_t>(nodes.size()));
        node.alloc_keys(2, track_position);
        node.add_key_pos(0, 0, 0, 0, 0, 0, 0, 0, 0);
        node.add_key_pos(10, 1, 2, 3, 0, 0, 0, 0, 0);
        nodes.push_back(&node);
    };
    for (const std::uint16_t parent :
         {no_parent, no_parent, no_parent, std::uint16_t{0}, std::uint16_t{3}, std::uint16_t{1}})
        add(parent);
    scene.prepare_keys(nodes[1]); // that root, its child and the next root
    for (std::size_t i = 0; i < nodes.size(); ++i)
        EXPECT_EQ(nodes[i]->pos_keys[0].tangent.z, i == 1 || i == 2 || i == 5 ? 3 : 0) << i;
    scene.prepare_keys(nullptr);
    for (const mokey_node* node : nodes)
        EXPECT_EQ(node->pos_keys[1].tangent.y, 2);
}

TEST(maps, are_read_from_the_folder_of_the_scene) {
    const temp_folder folder;
    folder.write("scene/wood.tga", tga(5, 3, 100));
    folder.write("scene/maps/Metal.TGA", tga(2, 2, 200));
    folder.write("scene/broken.png", "this is no picture");
    folder.write("scene/notes.txt", "nor is this");
    folder.write("outside.tga", tga(1, 1, 300));
    const captured_output ignored; // the readers tell what they found

    material m;
    material_set_texture(m, "WOOD.TGA", 80);
    material_set_bump(m, "maps\\metal.tga", 100);
    material_set_spec(m, "missing.png", 100);
    material_set_opac(m, "broken.png", 100);
    material_set_refl(m, "notes.txt", 100);
    EXPECT_EQ(material_load_maps(m, folder.path("scene")), 1);
    ASSERT_NE(m.texture_map.pixels, nullptr);
    EXPECT_EQ(m.texture_map.pixels_width, 5);
    EXPECT_EQ(m.texture_map.pixels_height, 3);
    for (std::uint32_t i = 0; i < 15; ++i)
        EXPECT_EQ(m.texture_map.pixels[i], 100 + i);
    ASSERT_NE(m.bump_map.pixels, nullptr);
    EXPECT_EQ(m.bump_map.pixels[3], 203U);
    for (const map_slot* slot : {&m.spec_map, &m.opac_map, &m.refl_map})
        EXPECT_EQ(slot->pixels, nullptr) << slot->file_name;
    EXPECT_TRUE(m.has_spec && m.has_opac);

    // A slot that has a picture keeps it, and a copy of the material holds it too.
    const std::uint32_t* const before = m.texture_map.pixels;
    material_load_maps(m, folder.path("scene"));
    EXPECT_EQ(m.texture_map.pixels, before);
    const material copy = m;
    m = {};
    EXPECT_EQ(copy.texture_map.pixels[14], 114U);
}

TEST(maps, never_leave_the_folder_of_the_scene) {
    const temp_folder folder;
    folder.write("scene/inside.tga", tga(1, 1, 1));
    const std::string outside = folder.write("outside.tga", tga(1, 1, 2));
    const captured_output ignored;
    for (const std::string& name :
         {std::string("../outside.tga"), std::string("..\\outside.tga"),
          std::string("maps/../../outside.tga"), outside, std::string("C:\\outside.tga"),
          std::string("\\outside.tga"), std::string("."), std::string("..")}) {
        material m;
        material_set_texture(m, name, 100);
        material_load_maps(m, folder.path("scene"));
        EXPECT_EQ(m.texture_map.pixels, nullptr) << name;
    }
    material nowhere; // a scene from memory has no folder
    material_set_texture(nowhere, "inside.tga", 100);
    material_load_maps(nowhere, "");
    EXPECT_EQ(nowhere.texture_map.pixels, nullptr);
    material unflagged;
    set_name_field(unflagged.texture_map.file_name, "inside.tga");
    material_load_maps(unflagged, folder.path("scene"));
    EXPECT_EQ(unflagged.texture_map.pixels, nullptr);
}

TEST(maps, a_missing_one_is_a_warning_and_the_scene_goes_on) {
    const temp_folder folder;
    folder.write("b.tga", tga(1, 1, 7));
    moscene scene;
    scene.folder = folder.path().string();
    scene.add_material("a");
    material_set_texture(*scene.last_material, "a.png", 1);
    scene.add_material("b");
    material_set_texture(*scene.last_material, "b.tga", 1);
    log_channel = {.enabled = true, .level_mask = log_warning, .to_stdout = true};
    captured_output printed;
    scene.prepare_materials();
    printed.stop();
    log_channel = {};
    const std::string lines = printed.out();
    EXPECT_EQ(lines.substr(0, lines.find('\n') + 1), "[W] No picture for the map a.png\n");
    ASSERT_NE(scene.last_material->texture_map.pixels, nullptr);
    EXPECT_EQ(scene.last_material->texture_map.pixels[0], 7U);
}
