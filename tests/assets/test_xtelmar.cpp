// The show's own scene: what it holds, and a flight through it that loops without a jump.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "assets/meshes/meshes.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"
#include "tests/support/captured_output.h"

namespace {

struct pose {
    vector3d place, target;
    float angle, roll;
};

class xtelmar : public testing::Test {
  protected:
    xtelmar() : file(assets::scene_xtelmar()) {
        const captured_output ignored; // of the keys
        scene.set_width(512);
        scene.set_height(288);
        loaded = sceneloader_3ds().load_stream(scene, file);
        scene.calc_normals();
        scene.prepare_keys(nullptr);
        scene.set_camera(2);
    }

    pose next_pose() {
        scene.scene_update();
        const camera& eye = *scene.camera;
        return {eye.position, eye.target, eye.current_fov, eye.current_roll};
    }

    // The poses of the frames of one round, after the run-up.
    std::vector<pose> round() {
        while (next_frame() != scene.start_frame)
            next_pose();
        std::vector<pose> poses{next_pose()};
        while (next_frame() != scene.start_frame)
            poses.push_back(next_pose());
        return poses;
    }
    int next_frame() const { return static_cast<int>(scene.frame); }

    assets::file_bytes file;
    moscene scene;
    bool loaded = false;
};

double distance(const vector3d& a, const vector3d& b) {
    return (a - b).length();
}

} // namespace

TEST_F(xtelmar, is_a_place_with_enough_in_it) {
    ASSERT_TRUE(loaded);
    int faces = 0, moving = 0, dummies = 0, children = 0;
    for (const mesh* m = scene.first_mesh; m != nullptr; m = m->next) {
        faces += m->face_count;
        dummies += m->flags & 1;
        for (const face& f : m->faces)
            ASSERT_NE(f.material, nullptr) << m->name;
    }
    EXPECT_TRUE(faces >= 2000 && faces <= 6000) << faces;
    EXPECT_GE(scene.mesh_count, 12);
    EXPECT_GE(scene.material_count, 4);
    EXPECT_TRUE(scene.light_count >= 2 && scene.light_count <= 4);
    EXPECT_GE(scene.camera_count, 3);
    for (const mokey_node* node = scene.first_node; node != nullptr; node = node->next) {
        EXPECT_TRUE(node->object || node->camera || node->light) << node->name;
        if (node->type == 2) moving += node->pos_count > 1;
        children += node->first_child != nullptr;
        if (node->type == 16) {
            EXPECT_GT(node->color_count, 1) << node->name;
        }
    }
    EXPECT_GE(moving, 3);
    EXPECT_GE(dummies, 1);
    EXPECT_GE(children, 2);
}

TEST_F(xtelmar, the_flight_uses_every_setting_of_its_keys) {
    bool tension = false, continuity = false, bias = false, ease = false;
    for (const mokey_node* node = scene.first_node; node != nullptr; node = node->next) {
        if (node->camera != scene.camera) continue;
        for (const position_key& key : node->pos_keys) {
            tension |= key.tension != 0;
            continuity |= key.continuity != 0;
            bias |= key.bias != 0;
            ease |= key.ease_to != 0 && key.ease_from != 0;
        }
    }
    EXPECT_TRUE(tension && continuity && bias && ease);
}

TEST_F(xtelmar, the_flight_loops_without_a_jump_for_twenty_seconds) {
    const std::vector<pose> first = round();
    EXPECT_EQ(first.size(), 1200U); // 20 s at 60 pictures a second
    const std::vector<pose> second = round();
    ASSERT_EQ(second.size(), first.size());
    double longest = 0, sharpest = 0, at_the_seam = 0;
    for (std::size_t i = 0; i < first.size(); ++i) {
        const pose& a = first[i];
        const pose& b = first[(i + 1) % first.size()];
        const pose& c = first[(i + 2) % first.size()];
        EXPECT_EQ(distance(a.place, second[i].place), 0);
        const double step = distance(a.place, b.place);
        const double bend = std::fabs(distance(b.place, c.place) - step) + distance(a.target, b.target) / 100;
        longest = std::max(longest, step);
        if (i + 2 >= first.size())
            at_the_seam = std::max(at_the_seam, bend);
        else
            sharpest = std::max(sharpest, bend);
        EXPECT_TRUE(a.angle > 40 && a.angle < 110) << i;
        EXPECT_LT(std::fabs(b.angle - a.angle) + std::fabs(b.roll - a.roll), 1) << i;
    }
    EXPECT_LT(longest, 60); // a gate is 340 deep
    EXPECT_LE(at_the_seam, sharpest);
}

TEST_F(xtelmar, the_flight_hits_neither_ground_nor_gates) {
    std::vector<vector3d> solid_places;
    for (const mesh* m = scene.first_mesh; m != nullptr; m = m->next) {
        const std::string_view name = m->name;
        if (name.starts_with("ground") || name.starts_with("gate") || name.starts_with("crystals"))
            for (const vector3d& vertex : m->vertices)
                solid_places.push_back(vertex); // these meshes are modelled where they stand
    }
    ASSERT_GT(solid_places.size(), 1000U);
    for (const pose& at : round()) {
        double nearest = 1e9;
        for (const vector3d& place : solid_places)
            nearest = std::min(nearest, distance(place, at.place));
        ASSERT_GT(nearest, 200) << at.place.x << ' ' << at.place.y << ' ' << at.place.z;
    }
}
