#include "morvane/isosurface/isosurface.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "morvane/base/log.h"
#include "morvane/base/numbers.h"
#include "morvane/base/random.h"

namespace {

void trace(const char* signature) {
    log_message(signature, log_trace, 0);
}

// A random number scaled to -0.5 to +0.5.
float random_half() {
    return static_cast<float>((random_next() * 6.103702e-5 - 1.0) * 0.5);
}

float random_time() {
    return static_cast<float>(random_next() * 3.051851e-5);
}

// The axes are drawn in the order z, y, x.
vector3d random_target() {
    vector3d target;
    target.z = random_half();
    target.y = random_half();
    target.x = random_half();
    return target;
}

vector3d scaled(const vector3d& v, double k) {
    return {static_cast<float>(v.x * k), static_cast<float>(v.y * k), static_cast<float>(v.z * k)};
}

// p + v * k, rounded once.
vector3d moved(const vector3d& p, const vector3d& v, double k) {
    return {static_cast<float>(p.x + v.x * k), static_cast<float>(p.y + v.y * k),
            static_cast<float>(p.z + v.z * k)};
}

// Holds a coordinate between the walls; at a wall its speed is gone.
void stop_at_walls(float& place, float& speed, float low, float high) {
    if (place >= low && place <= high) return;
    place = place < low ? low : high;
    speed = 0;
}

} // namespace

isosurface::isosurface() {
    trace("isosurface::isosurface()");
}

isosurface::isosurface(std::int32_t balls, float threshold) {
    trace("isosurface::isosurface(balls)");
    init_balls(balls, threshold);
    mesh_alloc_vertices(mesh, mesh_capacity);
    mesh_alloc_faces(mesh, mesh_capacity);
}

isosurface::~isosurface() {
    trace("isosurface::~isosurface()");
}

int isosurface::init_balls(std::int32_t balls, float threshold) {
    trace("void isosurface::init_balls(balls)");
    sphere_count = std::max(balls, 0);
    spheres.assign(static_cast<std::size_t>(sphere_count), {});
    random_seed(static_cast<std::uint32_t>(std::time(nullptr)));
    for (sphere& each : spheres) {
        sphere_init(each);
        each.threshold = threshold;
        each.target.debug();
    }
    return 1;
}

void isosurface::sphere_init(sphere& ptr_sphere) {
    trace("void isosurface::sphere_init(ptr_sphere)");
    ptr_sphere.position = {};
    ptr_sphere.velocity = {};
    ptr_sphere.target = random_target();
    ptr_sphere.strength = 1;
    ptr_sphere.timer = random_time();
}

void isosurface::set_gridsize(std::int32_t size) {
    trace("void isosurface::set_gridsize(size)");
    if (size < 1 || size > largest_grid)
        log_message("The grid's size was held to its limits.", log_warning, 0);
    grid_size = std::clamp(size, 1, largest_grid);
    cell_size = static_cast<float>(2.0 / grid_size);
    plane_stride = (grid_size + 1) * (grid_size + 1);
    cell_plane = grid_size * grid_size;
    const auto points = static_cast<std::size_t>(plane_stride) * static_cast<std::size_t>(grid_size + 1);
    samples = std::vector<float>(points);
    sample_known = std::vector<std::uint8_t>(points);
    cell_state = std::vector<std::uint8_t>(points);
    stack = std::vector<std::uint32_t>(points);
    stack_count = 0;
}

std::int32_t isosurface::get_spheres() const {
    trace("int isosurface::get_spheres()");
    return sphere_count;
}

void isosurface::spheres_step(float dt) {
    for (sphere& each : spheres)
        sphere_step(each, dt);
}

void isosurface::sphere_step(sphere& s, float dt) {
    constexpr double pull = 0.1, top_speed = 0.2, top_square = 0.04;
    s.position = moved(s.position, s.velocity, dt);
    s.timer -= dt;
    if (s.timer < 0) {
        s.timer = random_time();
        s.target = random_target();
    }
    const vector3d way = s.target - s.position;
    const double distance = way.length();
    if (distance > 0) s.velocity = s.velocity + scaled(way, 1 / distance * static_cast<double>(dt) * pull);
    const vector3d& v = s.velocity;
    const double square = double{v.x} * v.x + double{v.y} * v.y + double{v.z} * v.z;
    if (square > top_square) s.velocity = scaled(v, 1 / std::sqrt(square) * top_speed);
    const float low = cell_size - 1, high = 1 - cell_size;
    stop_at_walls(s.position.x, s.velocity.x, low, high);
    stop_at_walls(s.position.y, s.velocity.y, low, high);
    stop_at_walls(s.position.z, s.velocity.z, low, high);
}

float isosurface::field(float x, float y, float z) const {
    constexpr double nearest = 0.0001;
    double sum = 0;
    for (const sphere& each : spheres) {
        const double dx = double{x} - each.position.x, dy = double{y} - each.position.y,
                     dz = double{z} - each.position.z;
        sum += each.strength / std::max(dx * dx + dy * dy + dz * dz, nearest);
    }
    return static_cast<float>(sum);
}

std::int32_t isosurface::grid_of(float p) const {
    return trunc_to_int((double{p} + 1.0) / cell_size + 0.5);
}

float isosurface::world_of(std::int32_t i) const {
    return static_cast<float>(i * double{cell_size} - 1.0);
}
