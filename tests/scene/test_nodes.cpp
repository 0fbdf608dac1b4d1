// The tree of nodes and the step of the animation.
#include <cmath>
#include <deque>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/scene/moscene.h"

namespace {

mokey_node& add_node(moscene& scene, std::uint16_t type, std::uint16_t parent, std::uint16_t id) {
    scene.add_node(type, parent);
    scene.current_node->set_id(id);
    scene.current_node->set_parent(parent);
    return *scene.current_node;
}

void hold_at(mokey_node& node, float x, float y, float z) {
    node.alloc_keys(1, track_position);
    node.add_key_pos(0, x, y, z, 0, 0, 0, 0, 0);
}

// A track that runs from 0 at frame 0 to `x` at frame 1000 on the x axis, at an even pace.
void run_to(mokey_node& node, float x) {
    node.alloc_keys(2, track_position);
    node.add_key_pos(0, 0, 0, 0, 0, 0, 0, 0, 0);
    node.add_key_pos(1000, x, 0, 0, 0, 0, 0, 0, 0);
    node.calc_tangents();
}

void expect_vector(const vector3d& v, double x, double y, double z, double tolerance = 1e-5) {
    EXPECT_NEAR(v.x, x, tolerance);
    EXPECT_NEAR(v.y, y, tolerance);
    EXPECT_NEAR(v.z, z, tolerance);
}

// A row of the camera's view.
void expect_row(const camera& c, std::size_t row, double x, double y, double z) {
    expect_vector({c.view.m[row], c.view.m[row + 4], c.view.m[row + 8]}, x, y, z);
}

camera placed_camera(const vector3d& position, const vector3d& target) {
    camera c;
    c.position = position;
    c.target = target;
    c.width = 512;
    c.height = 288;
    c.current_fov = 90;
    return c;
}

} // namespace

TEST(node_tree, grows_under_the_first_node_of_an_id) {
    moscene scene;
    EXPECT_EQ(scene.add_node(node_object, 0), 1); // no tree yet: counted, nothing made
    EXPECT_EQ(scene.current_node, nullptr);
    EXPECT_EQ(scene.first_node, nullptr);

    mokey_node& a = add_node(scene, node_object, no_parent, 0);
    mokey_node& b = add_node(scene, node_light, no_parent, 1);
    EXPECT_EQ(scene.first_node, &a);
    EXPECT_EQ(scene.last_node, &b);
    mokey_node& a1 = add_node(scene, node_object, 0, 2);
    mokey_node& b1 = add_node(scene, node_object, 1, 3);
    mokey_node& a2 = add_node(scene, node_object, 0, 4);
    mokey_node& deep = add_node(scene, node_object, 3, 5);
    EXPECT_EQ(a.first_child, &a1);
    EXPECT_EQ(a.last_child, &a2);
    EXPECT_EQ(a1.next, &a2);
    EXPECT_EQ(b1.first_child, &deep);
    EXPECT_EQ(scene.last_node, &b); // the root level's
    EXPECT_EQ(deep.type, node_object);

    EXPECT_EQ(scene.add_node(node_object, 50), 8);
    EXPECT_EQ(scene.current_node, &deep);
    EXPECT_EQ(scene.node_count, 8);

    EXPECT_EQ(moscene::find_node(5, &b), &deep);
    EXPECT_EQ(moscene::find_node(1, &b), &b);
    EXPECT_EQ(moscene::find_node(4, &a1), nullptr); // a sibling isn't visited
    EXPECT_EQ(moscene::find_node(1, &a), nullptr);
    EXPECT_EQ(moscene::find_node(1, nullptr), nullptr);
    deep.set_id(2); // twice now: depth first from the first root
    EXPECT_EQ(&add_node(scene, node_object, 2, 6), a1.first_child);
}

TEST(scene_update, adds_positions_up_the_tree_less_their_pivots) {
    moscene scene;
    scene.add_mesh("root");
    mesh& root_mesh = *scene.last_mesh;
    scene.add_mesh("child");
    mesh& child_mesh = *scene.last_mesh;
    mokey_node& root = add_node(scene, node_object, no_parent, 0);
    hold_at(root, 1, 2, 3);
    root.set_pivot(1, 0, 0);
    root.object = &root_mesh;
    mokey_node& gap = add_node(scene, node_object, 0, 1); // its record was not found
    hold_at(gap, 100, 0, 0);
    mokey_node& child = add_node(scene, node_object, 1, 2);
    hold_at(child, 0, 0, 5);
    child.object = &child_mesh;
    mokey_node& keyless = add_node(scene, node_object, 2, 3);
    keyless.set_pivot(0, 0, 1);
    mokey_node& sibling = add_node(scene, node_object, no_parent, 4);
    hold_at(sibling, 7, 7, 7);
    scene.scene_update();
    expect_vector(root_mesh.position, 0, 2, 3);
    expect_vector(gap.current_pos, 100, 2, 3);
    expect_vector(child_mesh.position, 100, 2, 8);
    expect_vector(keyless.current_pos, 100, 2, 7);
    expect_vector(sibling.current_pos, 7, 7, 7);
}

TEST(scene_update, writes_the_fields_of_each_type) {
    moscene scene;
    scene.add_camera("eye", 0, 0, 0, 0, 0, 0, 0, 50);
    scene.add_light("lamp", 0, 0, 0);
    light_set_color(*scene.first_light, 1, 1, 1);
    camera& c = *scene.first_camera;
    light& l = *scene.first_light;
    std::uint16_t id = 0;
    const auto add = [&](std::uint16_t type, float place) {
        mokey_node& node = add_node(scene, type, no_parent, id++);
        hold_at(node, place, 0, 0);
        for (std::int32_t track = track_roll; track <= track_falloff; ++track)
            node.alloc_keys(1, track);
        node.add_key_roll(0, place + 1, 0, 0, 0, 0, 0);
        node.add_key_fov(0, place + 2, 0, 0, 0, 0, 0);
        node.add_key_color(0, 0.25F, 0.5F, 0.75F, 0, 0, 0, 0, 0);
        node.add_key_hotspot(0, place + 3, 0, 0, 0, 0, 0);
        node.add_key_falloff(0, place + 4, 0, 0, 0, 0, 0);
        node.camera = &c;
        node.light = &l;
    };
    add(node_camera, 10);
    add(node_camera_target, 20);
    add(node_spotlight, 30);
    add(node_ambient, 99);
    add(node_unknown, 99);
    add(3, 99); // no single type
    scene.scene_update();
    expect_vector(c.position, 10, 0, 0);
    expect_vector(c.target, 20, 0, 0);
    EXPECT_EQ(c.current_roll, 11);
    EXPECT_EQ(c.current_fov, 12);
    expect_vector(l.position, 30, 0, 0);
    EXPECT_EQ(l.hotspot, 33);
    EXPECT_EQ(l.falloff, 34);
    EXPECT_EQ(l.color_r + l.color_g + l.color_b, 3); // a spotlight keeps its start colour
    add(node_light, 40);
    add(node_light_target, 50);
    scene.scene_update();
    expect_vector(l.position, 40, 0, 0);
    expect_vector(l.target, 50, 0, 0);
    EXPECT_EQ(l.color_g, 0.5F);
    EXPECT_EQ(l.hotspot, 33);

    for (mokey_node* node = scene.first_node; node != nullptr; node = node->next)
        node->camera = nullptr, node->light = nullptr;
    scene.scene_update(); // nothing to write to
    EXPECT_EQ(scene.first_node->current_fov, 12);
    expect_vector(scene.last_node->current_pos, 50, 0, 0);
}

TEST(scene_update, moves_on_by_two_frames_and_wraps) {
    moscene scene;
    scene.start_frame = 10;
    scene.end_frame = 20;
    scene.add_mesh("box");
    mokey_node& node = add_node(scene, node_object, no_parent, 0);
    run_to(node, 1000);
    node.object = scene.first_mesh;
    std::vector<float> seen;
    for (int i = 0; i < 18; ++i) {
        scene.scene_update();
        seen.push_back(std::round(scene.first_mesh->position.x * 10) / 10);
    }
    EXPECT_EQ(seen, (std::vector<float>{0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 10, 12, 14, 16, 18, 20, 10}));
    scene.frame = 17;
    scene.scene_update();
    EXPECT_EQ(scene.frame, 19);
    scene.scene_update();
    EXPECT_EQ(scene.frame, 10);
    scene.end_frame = -5; // a range that holds nothing
    scene.start_frame = -9;
    scene.scene_update();
    EXPECT_EQ(scene.frame, -9);
    scene.scene_update();
}

TEST(scene_update, works_on_trees_of_any_depth) {
    constexpr std::size_t depth = 300000;
    moscene scene;
    std::deque<mokey_node> chain;
    for (std::size_t i = 0; i < depth; ++i) {
        mokey_node& node = chain.emplace_back(node_object);
        node.set_pivot(-1, 0, 0);
        node.set_id(static_cast<std::uint16_t>(i == depth - 1 ? 7 : 1));
        if (i == 0) continue;
        node.parent_node = &chain[i - 1];
        chain[i - 1].first_child = chain[i - 1].last_child = &node;
    }
    run_to(chain.back(), 4);
    scene.first_node = scene.last_node = &chain.front();
    scene.prepare_keys(nullptr);
    EXPECT_EQ(moscene::find_node(7, scene.first_node), &chain.back());
    scene.scene_update();
    EXPECT_EQ(chain.back().current_pos.x, static_cast<float>(depth));
}

TEST(scene_update, an_empty_scene_and_one_without_a_camera_are_safe) {
    moscene empty;
    empty.scene_update();
    EXPECT_EQ(empty.frame, 0); // beyond an end of 0
    empty.set_camera(2);
    EXPECT_EQ(empty.camera, nullptr);
    EXPECT_EQ(empty.camera_number, 2);
    empty.prepare_keys(nullptr);
    empty.prepare_materials();
    empty.calc_normals();
    empty.calc_bounds();
}

TEST(set_camera, takes_the_nth_or_the_nearest) {
    moscene scene;
    for (const char* name : {"a", "b", "c"})
        scene.add_camera(name, 0, 0, 0, 0, 0, 0, 0, 50);
    scene.set_camera(1);
    EXPECT_STREQ(scene.camera->name, "b");
    EXPECT_EQ(scene.camera->fov, 0); // the track's, which is not there yet
    scene.camera->current_fov = 60;
    scene.set_camera(1);
    EXPECT_EQ(scene.camera->fov, 60);
    scene.set_camera(0);
    EXPECT_STREQ(scene.camera->name, "a");
    for (const int n : {2, 3, 1000, INT32_MAX}) {
        scene.set_camera(n);
        EXPECT_STREQ(scene.camera->name, "c");
        EXPECT_EQ(scene.camera_number, n);
    }
    scene.set_camera(INT32_MIN);
    EXPECT_STREQ(scene.camera->name, "a");
}

TEST(camera_update, looks_down_negative_z) {
    camera c = placed_camera({0, 0, 10}, {0, 0, 0});
    camera_update(c);
    expect_row(c, 0, 1, 0, 0);
    expect_row(c, 1, 0, 1, 0);
    expect_row(c, 2, 0, 0, 1);
    expect_vector(c.view.transform({0, 0, 0}), 0, 0, -10);
    EXPECT_EQ(c.fov, 90);
    EXPECT_EQ(c.aspect, 0.5625F);
    EXPECT_EQ(c.factor_x, 256);
    EXPECT_EQ(c.factor_y, 256);
    c.current_fov = 60;
    camera_update(c);
    EXPECT_NEAR(c.factor_x, 256 * std::sqrt(3.0), 1e-3);
    EXPECT_NEAR(c.factor_y, c.factor_x, 1e-3);
}

TEST(camera_update, any_view_is_a_rigid_motion) {
    camera c = placed_camera({3, -5, 8}, {-2, 4, 1});
    c.current_roll = 33;
    camera_update(c);
    expect_vector(c.view.transform(c.position), 0, 0, 0);
    expect_vector(c.view.transform(c.target), 0, 0, -(c.position - c.target).length());
    const vector3d p{9, 1, -4}, q{-1, 2, 5};
    EXPECT_NEAR((c.view.transform(p) - c.view.transform(q)).length(), (p - q).length(), 1e-4);
    // Without roll, up is up and the target's right is the screen's right.
    c.current_roll = 0;
    camera_update(c);
    EXPECT_GT(c.view.transform({-2, 5, 1}).y, 0);
    EXPECT_NEAR(c.view.transform({-2, 5, 1}).x, 0, 1e-5);
}

TEST(camera_update, rolls_right_into_up) {
    camera c = placed_camera({0, 0, 10}, {0, 0, 0});
    c.current_roll = 90;
    camera_update(c);
    expect_row(c, 0, 0, 1, 0);
    expect_row(c, 1, -1, 0, 0);
    expect_row(c, 2, 0, 0, 1);
}

TEST(camera_update, collapses_quietly_where_it_has_no_view) {
    camera c = placed_camera({0, 10, 0}, {0, 0, 0}); // along the y axis
    camera_update(c);
    expect_row(c, 0, 0, 0, 0);
    expect_row(c, 1, 0, 0, 0);
    expect_row(c, 2, 0, 1, 0);
    camera nowhere = placed_camera({1, 1, 1}, {1, 1, 1});
    camera_update(nowhere);
    expect_row(nowhere, 2, 0, 0, 0);
    camera plain;
    camera_update(plain); // no size, no field of view
    EXPECT_TRUE(std::isnan(plain.factor_x));
}
