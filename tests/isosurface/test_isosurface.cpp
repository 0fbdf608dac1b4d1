// The metaballs: construction, the field, the grid and the motion of the spheres.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "morvane/base/log.h"
#include "morvane/base/random.h"
#include "morvane/isosurface/isosurface.h"
#include "tests/support/captured_output.h"

namespace {

// A surface whose random targets nobody wants to see.
struct quiet_surface {
    captured_output ignored;
    isosurface surface;
    quiet_surface(int balls, float threshold) : surface(balls, threshold) { ignored.stop(); }
};

std::string target_line(const sphere& s) {
    char text[100];
    std::snprintf(text, sizeof text, "vector3d::debug(%5.3f, %5.3f, %5.3f)\n",
                  static_cast<double>(s.target.x), static_cast<double>(s.target.y),
                  static_cast<double>(s.target.z));
    return text;
}

} // namespace

TEST(isosurface, construction_prints_the_targets_and_traces_in_order) {
    captured_output printed;
    log_channel = {.enabled = true, .level_mask = log_trace, .to_stdout = true};
    const isosurface surface(3, 60);
    log_channel = {};
    std::string expected = "[-] isosurface::isosurface(balls)\n[-] void isosurface::init_balls(balls)\n";
    for (const sphere& each : surface.spheres)
        expected += "[-] void isosurface::sphere_init(ptr_sphere)\n" + target_line(each);
    EXPECT_EQ(printed.out(), expected);
    EXPECT_EQ(surface.get_spheres(), 3);
    EXPECT_EQ(surface.mesh.vertices.size(), 10000U);
    EXPECT_EQ(surface.mesh.faces.size(), 10000U);
    EXPECT_EQ(surface.mesh.render_mode, 1);
}

TEST(isosurface, a_sphere_starts_at_rest_with_targets_drawn_z_first) {
    quiet_surface made(1, 60);
    random_seed(7);
    const double z = (random_next() * 6.103702e-5 - 1) * 0.5, y = (random_next() * 6.103702e-5 - 1) * 0.5,
                 x = (random_next() * 6.103702e-5 - 1) * 0.5, timer = random_next() * 3.051851e-5;
    random_seed(7);
    sphere s{.position = {1, 2, 3}, .velocity = {4, 5, 6}};
    made.surface.sphere_init(s);
    EXPECT_EQ(s.position.length() + s.velocity.length(), 0);
    EXPECT_FLOAT_EQ(s.target.x, static_cast<float>(x));
    EXPECT_FLOAT_EQ(s.target.y, static_cast<float>(y));
    EXPECT_FLOAT_EQ(s.target.z, static_cast<float>(z));
    EXPECT_FLOAT_EQ(s.timer, static_cast<float>(timer));
    EXPECT_EQ(s.strength, 1);
}

TEST(isosurface, the_field_sums_inverse_squares_up_to_a_limit) {
    quiet_surface made(2, 60);
    isosurface& surface = made.surface;
    EXPECT_EQ(isosurface().field(0, 0, 0), 0);
    surface.spheres[1].position = {0.5F, 0, 0};
    surface.spheres[1].strength = 3;
    EXPECT_FLOAT_EQ(surface.field(0, 0, 0), 10000 + 3 / 0.25F);
    EXPECT_FLOAT_EQ(surface.field(0, 0.5F, 0), 1 / 0.25F + 3 / 0.5F);
    EXPECT_FLOAT_EQ(surface.field(0, 0, 0.001F), 10000 + 3 / 0.250001F);
}

TEST(isosurface, grid_and_world_are_each_others_inverse) {
    isosurface surface;
    for (const int n : {1, 7, 20, 80}) {
        surface.set_gridsize(n);
        EXPECT_EQ(surface.grid_of(-1), 0);
        EXPECT_EQ(surface.grid_of(1), n);
        EXPECT_EQ(surface.world_of(0), -1);
        EXPECT_FLOAT_EQ(surface.world_of(n), 1);
        for (int i = 0; i <= n; ++i) {
            EXPECT_EQ(surface.grid_of(surface.world_of(i)), i);
            EXPECT_EQ(surface.grid_of(surface.world_of(i) + 0.49F * surface.cell_size), i);
        }
    }
    for (const int odd : {0, -5, 1 << 30}) { // held to what there is memory for
        surface.set_gridsize(odd);
        EXPECT_EQ(surface.grid_size, odd > 0 ? isosurface::largest_grid : 1);
    }
}

TEST(isosurface, spheres_steer_to_their_target_and_keep_the_speed_limit) {
    quiet_surface made(1, 60);
    isosurface& surface = made.surface;
    surface.set_gridsize(20);
    sphere& s = surface.spheres[0];
    s = {.position = {0.1F, 0, 0}, .velocity = {0.1F, 0.05F, 0}, .target = {0.1F, 0.4F, 0}, .timer = 9};
    surface.spheres_step(0.5F);
    EXPECT_FLOAT_EQ(s.position.x, 0.15F);
    EXPECT_FLOAT_EQ(s.position.y, 0.025F);
    const double way = std::hypot(-0.05, 0.375);
    EXPECT_NEAR(s.velocity.x, 0.1 - 0.05 / way * 0.5 * 0.1, 1e-6);
    EXPECT_NEAR(s.velocity.y, 0.05 + 0.375 / way * 0.5 * 0.1, 1e-6);
    EXPECT_FLOAT_EQ(s.timer, 8.5F);

    s = {.velocity = {3, 4, 0}, .target = {0, 0, 0}, .timer = 9}; // over the limit
    surface.spheres_step(0.01F);
    EXPECT_NEAR(s.velocity.length(), 0.2, 1e-6);
    EXPECT_NEAR(s.velocity.y / s.velocity.x, 4.0 / 3, 1e-3);

    s = {.velocity = {0, 0.1F, 0}, .target = {0, 0.1F, 0}, .timer = 9}; // exactly on it
    surface.spheres_step(1);
    EXPECT_EQ(s.velocity.y, 0.1F);
    EXPECT_EQ(s.velocity.x, 0);
}

TEST(isosurface, walls_stop_one_axis_only_one_cell_before_the_cube_ends) {
    quiet_surface made(1, 60);
    isosurface& surface = made.surface;
    surface.set_gridsize(20);
    sphere& s = surface.spheres[0];
    for (const float side : {1.0F, -1.0F}) {
        s = {.position = {0.89F * side, 0, 0},
             .velocity = {0.15F * side, 0.1F, 0},
             .target = {0, 0.3F, 0},
             .timer = 9};
        surface.spheres_step(1);
        EXPECT_FLOAT_EQ(s.position.x, 0.9F * side);
        EXPECT_EQ(s.velocity.x, 0);
        EXPECT_GT(s.velocity.y, 0.1F);
    }
}

TEST(isosurface, a_new_target_comes_when_the_timer_runs_out) {
    quiet_surface made(1, 60);
    isosurface& surface = made.surface;
    surface.set_gridsize(20);
    sphere& s = surface.spheres[0];
    s.timer = 0.5F;
    const vector3d target = s.target;
    surface.spheres_step(0.5F); // exactly 0 isn't below it
    EXPECT_EQ((s.target - target).length(), 0);
    random_seed(3);
    const double timer = random_next() * 3.051851e-5;
    const double z = (random_next() * 6.103702e-5 - 1) * 0.5;
    random_seed(3);
    surface.spheres_step(0.01F);
    EXPECT_FLOAT_EQ(s.timer, static_cast<float>(timer));
    EXPECT_FLOAT_EQ(s.target.z, static_cast<float>(z));
}
