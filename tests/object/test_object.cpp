#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/object/lighting.h"
#include "morvane/object/matrices.h"
#include "morvane/object/sort.h"
#include "morvane/object/transform.h"

namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float no_number = std::numeric_limits<float>::quiet_NaN();

using wide_matrix = std::array<std::array<double, 4>, 4>;

wide_matrix times(const wide_matrix& a, const wide_matrix& b) {
    wide_matrix out{};
    for (std::size_t i = 0; i < 4; ++i)
        for (std::size_t j = 0; j < 4; ++j)
            for (std::size_t k = 0; k < 4; ++k)
                out[i][j] += a[i][k] * b[k][j];
    return out;
}

wide_matrix turn_x(double a) {
    return {
        {{1, 0, 0, 0}, {0, std::cos(a), std::sin(a), 0}, {0, -std::sin(a), std::cos(a), 0}, {0, 0, 0, 1}}};
}
wide_matrix turn_y(double a) {
    return {
        {{std::cos(a), 0, -std::sin(a), 0}, {0, 1, 0, 0}, {std::sin(a), 0, std::cos(a), 0}, {0, 0, 0, 1}}};
}
wide_matrix turn_z(double a) {
    return {
        {{std::cos(a), std::sin(a), 0, 0}, {-std::sin(a), std::cos(a), 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}
wide_matrix move(double x, double y, double z) {
    return {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {x, y, z, 1}}};
}
wide_matrix stretch(double x, double y, double z) {
    return {{{x, 0, 0, 0}, {0, y, 0, 0}, {0, 0, z, 0}, {0, 0, 0, 1}}};
}

void expect_matrix(const object_matrix& m, const wide_matrix& expected, double tolerance = 1e-6) {
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(m[i], expected[i / 4][i % 4], tolerance) << "element " << i;
}

void expect_vector(const object_vertex& v, double x, double y, double z, double tolerance = 1e-6) {
    EXPECT_NEAR(v.x, x, tolerance);
    EXPECT_NEAR(v.y, y, tolerance);
    EXPECT_NEAR(v.z, z, tolerance);
}

object_matrix fresh() {
    object_matrix m;
    mat_identity(m);
    return m;
}

// Scattered vertices and normals, and faces between any three of them.
std::unique_ptr<object> scattered(std::int32_t vertices, std::int32_t faces, unsigned seed) {
    auto mesh = std::make_unique<object>();
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> place(-100, 100);
    mesh->vertex_count = vertices;
    mesh->face_count = faces;
    for (std::size_t i = 0; i < object_capacity; ++i) {
        mesh->model_vertices[i] = {.x = place(random), .y = place(random), .z = place(random)};
        mesh->world_vertices[i] = {.z = -50, .tu = 3, .tv = 4};
        mesh->model_normals[i] = {.x = place(random), .y = place(random), .z = place(random)};
        for (std::uint16_t* corner : {&mesh->faces[i].a, &mesh->faces[i].b, &mesh->faces[i].c})
            *corner = static_cast<std::uint16_t>(
                random() % static_cast<unsigned>(std::clamp(vertices, 1, object_capacity)));
    }
    mat_identity(mesh->vertex_matrix);
    mat_identity(mesh->normal_matrix);
    return mesh;
}

// One face on vertices 0, 1 and 2 with the given depths.
std::unique_ptr<object> one_face(float a, float b, float c) {
    auto mesh = scattered(3, 1, 1);
    mesh->faces[0] = {.a = 0, .b = 1, .c = 2};
    mesh->world_vertices[0].z = a;
    mesh->world_vertices[1].z = b;
    mesh->world_vertices[2].z = c;
    return mesh;
}

struct slot {
    std::int32_t key, order;
    bool operator==(const slot&) const = default;
};

// The scheme of the sort word by word: the order of equal keys hangs on it.
void hoare_sort(std::vector<slot>& slots, int lo, int hi) {
    const auto at = [&](int i) -> slot& { return slots.at(static_cast<std::size_t>(i)); };
    while (lo < hi) {
        const std::int32_t pivot = at(lo).key;
        int i = lo - 1;
        int j = hi + 1;
        for (;;) {
            --j;
            while (at(j).key < pivot)
                --j;
            ++i;
            while (at(i).key > pivot)
                ++i;
            if (i >= j) break;
            std::swap(at(i), at(j));
        }
        hoare_sort(slots, lo, j);
        lo = j + 1;
    }
}

} // namespace

TEST(object_matrices, chains_against_doubles) {
    object_matrix m = fresh();
    wide_matrix expected = stretch(1, 1, 1);
    mat_rotate_xyz(m, 0.3F, 0, 0);
    expect_matrix(m, turn_x(0.3F));
    EXPECT_EQ(m[6], static_cast<float>(std::sin(double{0.3F}))); // row y holds (0, c, s)

    mat_rotate_xyz(m, -1.1F, 2.5F, 40.0F);
    expected = times(times(times(turn_x(0.3F), turn_x(-1.1F)), turn_y(2.5F)), turn_z(40.0F));
    expect_matrix(m, expected);
    mat_translate(m, 5, -6, 7);
    mat_scale(m, 2, 3, -4);
    expected = times(times(expected, move(5, -6, 7)), stretch(2, 3, -4));
    expect_matrix(m, expected, 1e-5);
    mat_rotate_x(m, 0.7F);
    mat_rotate_y(m, 0.8F);
    mat_rotate_z(m, 0.9F);
    expected = times(times(times(expected, turn_x(0.7F)), turn_y(0.8F)), turn_z(0.9F));
    expect_matrix(m, expected, 1e-5);

    object_matrix copy{};
    mat_copy(m, copy);
    EXPECT_EQ(copy, m);
    mat_multiply(copy, m, copy); // in place, too
    expect_matrix(copy, times(expected, expected), 1e-3);

    object_vertex point{.x = 1, .y = 2, .z = 3, .u = 4, .tv = 5};
    mat_apply(m, point, point);
    std::array<double, 3> moved{};
    for (std::size_t k = 0; k < 3; ++k)
        moved[k] = expected[0][k] + 2 * expected[1][k] + 3 * expected[2][k] + expected[3][k];
    expect_vector(point, moved[0], moved[1], moved[2], 1e-4);
    EXPECT_TRUE(point.u == 4 && point.tv == 5);
}

TEST(object_matrices, vectors) {
    object_vertex v{.x = 3, .y = 0, .z = -4, .u = 9};
    vec_normalize(v);
    expect_vector(v, 0.6, 0, -0.8);
    EXPECT_EQ(v.u, 9);
    object_vertex zero;
    vec_normalize(zero);
    expect_vector(zero, 0, 0, 0, 0);
    object_vertex huge{.x = 3e38F, .y = -3e38F};
    vec_normalize(huge);
    expect_vector(huge, std::sqrt(0.5), -std::sqrt(0.5), 0);

    object_vertex a{.x = 2}, b{.x = 5, .y = 5};
    float cosine = 0;
    vec_cos_angle(a, b, cosine);
    EXPECT_NEAR(cosine, std::sqrt(0.5), 1e-6);
    expect_vector(b, std::sqrt(0.5), std::sqrt(0.5), 0);
    object_vertex c{.x = 1, .y = 2, .z = 3};
    vec_cross(c, {.x = -4, .y = 5, .z = 7}, c);
    expect_vector(c, 2 * 7 - 3 * 5, 3 * -4 - 1 * 7, 1 * 5 - 2 * -4, 0);
}

TEST(object_matrices, camera) {
    auto mesh = std::make_unique<object>();
    mesh->camera_position = {.x = 1, .y = 2, .z = 3};
    mesh->camera_target = {.x = 4, .y = -5, .z = 9};
    object_matrix m;
    camera_matrix(*mesh, m);
    const double length = std::sqrt(9.0 + 49 + 36);
    const std::array<double, 3> forward = {3 / length, -7 / length, 6 / length};
    std::array<double, 3> up = {7 / length * forward[0] * -1, -1 - 7 / length * forward[1],
                                7 / length * forward[2] * -1};
    const double up_length = std::hypot(up[0], up[1], up[2]);
    for (double& each : up)
        each /= up_length;
    const std::array<double, 3> right = {up[1] * forward[2] - up[2] * forward[1],
                                         up[2] * forward[0] - up[0] * forward[2],
                                         up[0] * forward[1] - up[1] * forward[0]};
    const auto row = [](const std::array<double, 3>& r) {
        return std::array<double, 4>{r[0], r[1], r[2], -(r[0] * 1 + r[1] * 2 + r[2] * 3)};
    };
    expect_matrix(m, {row(right), row(up), row(forward), {0, 0, 0, 1}});

    // Along the y axis, and nowhere: no number that is none.
    for (const object_vertex& target : {object_vertex{.x = 1, .y = -9, .z = 3}, mesh->camera_position}) {
        camera_matrix(mesh->camera_position, target, m);
        for (const float each : m)
            EXPECT_TRUE(std::isfinite(each));
    }
}

TEST(object_transform, rotations_chain_and_move_vertices_and_normals) {
    const auto mesh = scattered(1000, 700, 2);
    const auto before = std::make_unique<object>(*mesh);
    object_rotate(*mesh, 0, 1.25F, 0);
    object_rotate(*mesh, 0.8F, 0, -0.5F);
    mat_translate(mesh->vertex_matrix, 1, 2, -180);
    object_apply_matrices(*mesh);

    const wide_matrix turned = times(times(turn_y(1.25F), turn_x(0.8F)), turn_z(-0.5F));
    expect_matrix(mesh->normal_matrix, turned);
    expect_matrix(mesh->vertex_matrix, times(turned, move(1, 2, -180)), 1e-5);
    const auto expect_moved = [](const object_vertex& in, const wide_matrix& m, const object_vertex& out) {
        std::array<double, 3> p{};
        for (std::size_t k = 0; k < 3; ++k)
            p[k] = in.x * m[0][k] + in.y * m[1][k] + in.z * m[2][k] + m[3][k];
        expect_vector(out, p[0], p[1], p[2], 1e-4);
    };
    for (std::size_t i = 0; i < 1000; ++i) {
        expect_moved(before->model_vertices[i], times(turned, move(1, 2, -180)), mesh->world_vertices[i]);
        EXPECT_EQ(mesh->model_vertices[i].x, before->model_vertices[i].x);
        EXPECT_EQ(mesh->world_vertices[i].tu + mesh->world_vertices[i].tv, 7);
    }
    for (std::size_t i = 0; i < 700; ++i)
        expect_moved(before->model_normals[i], turned, mesh->world_normals[i]);
    EXPECT_EQ(mesh->world_vertices[1000].z, -50); // beyond the count
    EXPECT_EQ(mesh->world_normals[700].z, 0);
}

TEST(object_transform, counts_beyond_the_capacity) {
    for (const std::int32_t count : {-1, 0, 4096, 4097, INT32_MAX, INT32_MIN}) {
        const auto mesh = scattered(count, count, 3);
        object_rotate(*mesh, 1, 2, 3);
        object_ripple(*mesh, 1, 2);
        object_sort_faces(*mesh);
        object_sort_vertices(*mesh);
        object_project(*mesh, 256, 144);
        object_project_scaled(*mesh, 256, 144, 2);
        const bool all = count >= object_capacity;
        EXPECT_EQ(mesh->screen_vertices[4095].x != 0, all) << count;
        EXPECT_EQ(mesh->sort_order[0] != 0 || mesh->sort_order[1] != 0, all) << count;
    }
}

TEST(object_transform, ripple_and_projection) {
    const auto mesh = scattered(300, 0, 4);
    for (const auto& [phase, amplitude] :
         {std::pair{57.37F, 30}, {0.1F, -20}, {280.7F, 200}, {-1e9F, INT32_MIN}}) {
        object_apply_matrices(*mesh);
        const auto before = std::make_unique<object>(*mesh);
        object_ripple(*mesh, phase, amplitude);
        for (std::size_t i = 0; i < 300; ++i) {
            const auto angle = static_cast<float>(static_cast<double>(i) + phase); // the one early rounding
            const double wave = std::sin(static_cast<double>(angle)) * amplitude;
            EXPECT_EQ(mesh->world_vertices[i].z, static_cast<float>(before->world_vertices[i].z + wave));
            EXPECT_EQ(mesh->world_vertices[i].x, before->world_vertices[i].x);
        }
    }

    mesh->world_vertices[0] = {.x = 10, .y = 20, .z = -60};
    mesh->world_vertices[1] = {.x = 1.5F, .y = -1, .z = 0};
    mesh->world_vertices[2] = {.x = 1, .y = 1, .z = -0.0F};
    mesh->world_vertices[3] = {.x = 0, .y = infinite, .z = 1e-45F};
    object_project(*mesh, 256, 144);
    expect_vector(mesh->screen_vertices[0], 236, 104, 0); // left of the centre and above it
    expect_vector(mesh->screen_vertices[1], 436, 24, 0);
    expect_vector(mesh->screen_vertices[2], 376, 264, 0);
    EXPECT_EQ(mesh->world_vertices[1].z, 1);
    EXPECT_EQ(mesh->world_vertices[2].z, 1);
    EXPECT_EQ(mesh->screen_vertices[3].x, 256);

    object_project_scaled(*mesh, 100, -7, 0.5F);
    expect_vector(mesh->screen_vertices[0], 5 * 120 / 150.0 + 100, 10 * 120 / 150.0 - 7, 0, 1e-5);
}

TEST(object_transform, light_direction) {
    const auto mesh = std::make_unique<object>();
    object_set_light(*mesh, 0, -1, -1, 0, 0, 0);
    expect_vector(mesh->light, 0, std::sqrt(0.5), std::sqrt(0.5));
    object_set_light(*mesh, 3, 8, 0, 3, 4, 3);
    expect_vector(mesh->light, 0, -0.8, 0.6);
    object_set_light(*mesh, INT32_MIN, INT32_MAX, 0, INT32_MAX, INT32_MIN, 0);
    expect_vector(mesh->light, std::sqrt(0.5), -std::sqrt(0.5), 0);
    object_set_light(*mesh, 7, 7, 7, 7, 7, 7);
    expect_vector(mesh->light, 0, 0, 0, 0);
}

TEST(object_transform, intensity_of_a_face) {
    const auto mesh = std::make_unique<object>();
    object_set_light(*mesh, 0, -1, -1, 0, 0, 0);
    const auto lit = [&](float x, float y, float z) {
        mesh->world_normals[5] = {.x = x, .y = y, .z = z};
        return object_face_intensity(*mesh, 5);
    };
    EXPECT_NEAR(lit(0, 181, 181), 0.99990, 1e-4);
    EXPECT_LT(lit(0, 181, 181), 1);
    EXPECT_EQ(lit(0, -181, -181), 0);
    EXPECT_EQ(lit(0, 182, 182), 0); // above 1
    EXPECT_NEAR(lit(-256, 128, 0), 0.5 * std::sqrt(0.5), 1e-6);
    EXPECT_EQ(lit(0, 0, 0), 0);
    EXPECT_EQ(lit(0, no_number, 0), 0);
    mesh->light = {.x = 1};
    EXPECT_EQ(lit(256, 0, 0), 1);
    EXPECT_EQ(object_face_intensity(*mesh, -1) + object_face_intensity(*mesh, object_capacity), 0);
}

TEST(object_sort, windows) {
    const auto fixed = [](float z) {
        const auto mesh = one_face(-500, z, -500);
        object_sort_faces(*mesh);
        return mesh->faces[0].visible;
    };
    const auto between = [](float z, std::int32_t far, std::int32_t near) {
        const auto mesh = one_face(z, z, z);
        object_sort_faces_between(*mesh, far, near);
        return mesh->faces[0].visible;
    };
    const auto point = [](float z) {
        const auto mesh = one_face(0, 0, z);
        object_sort_vertices(*mesh);
        return mesh->faces[2].visible;
    };
    EXPECT_EQ(fixed(-92), 1);
    EXPECT_EQ(fixed(-91.9F), 0);
    EXPECT_EQ(fixed(-1024), 0);
    EXPECT_EQ(fixed(std::nextafter(-1024.0F, 0.0F)), 1);
    EXPECT_EQ(between(0, -2048, 0), 1);
    EXPECT_EQ(between(1e-30F, -2048, 0), 0);
    EXPECT_EQ(between(-2048, -2048, 0), 0);
    EXPECT_EQ(between(-20.001F, -2048, -20), 1);
    EXPECT_EQ(point(0), 1);
    EXPECT_EQ(point(-1024), 0);
    EXPECT_EQ(point(-1023.9F), 1);
    EXPECT_EQ(point(0.1F), 0);
    // Bounds that a float can't hold, and depths that are no numbers.
    EXPECT_EQ(between(16777220, 16777219, INT32_MAX), 1);
    EXPECT_EQ(between(16777220, 0, 16777219), 0);
    for (const float z : {infinite, -infinite, no_number})
        EXPECT_EQ(between(z, INT32_MIN, INT32_MAX), 0);
    // Any corner hides the face.
    const auto mesh = one_face(-500, -500, -91);
    object_sort_faces(*mesh);
    EXPECT_EQ(mesh->faces[0].visible, 0);
}

TEST(object_sort, keys_are_truncated_after_summing_and_limited) {
    const auto key = [](float a, float b, float c) {
        const auto mesh = one_face(a, b, c);
        object_sort_faces(*mesh);
        return mesh->sort_key[0];
    };
    EXPECT_EQ(key(-10.4F, -10.4F, -10.4F), -31);
    EXPECT_EQ(key(0.4F, 0.4F, 0.4F), 1);
    EXPECT_EQ(key(-1e20F, 0, 0), INT32_MIN);
    EXPECT_EQ(key(infinite, 0, 0), INT32_MAX);
    EXPECT_EQ(key(infinite, -infinite, 0), 0);
}

TEST(object_sort, the_order_of_the_scheme) {
    std::mt19937 random(5);
    int ties = 0;
    for (int round = 0; round < 400; ++round) {
        const auto count = round < 40 ? round : static_cast<std::int32_t>(random() % 500);
        const auto mesh = scattered(count, count, static_cast<unsigned>(round));
        // From many equal depths to hardly any, in any order and nearly in order.
        const unsigned spread = 1U << (random() % 12);
        for (std::int32_t i = 0; i < count; ++i) {
            float& z = mesh->world_vertices[static_cast<std::size_t>(i)].z;
            z = -static_cast<float>(random() % spread);
            if (round % 4 == 1) z = static_cast<float>(i) - z / 64;
            if (round % 4 == 2) z = static_cast<float>(-i) + z / 64;
        }
        const auto expect_sorted = [&](std::vector<slot> expected) {
            hoare_sort(expected, 0, count - 1);
            for (std::int32_t i = 0; i < count; ++i) {
                const auto at = static_cast<std::size_t>(i);
                ASSERT_EQ(mesh->sort_key[at], expected[at].key) << "round " << round << " slot " << i;
                ASSERT_EQ(mesh->sort_order[at], expected[at].order) << "round " << round << " slot " << i;
                if (i == 0) continue;
                ASSERT_GE(mesh->sort_key[at - 1], mesh->sort_key[at]);
                ties += mesh->sort_key[at - 1] == mesh->sort_key[at];
            }
        };
        std::vector<slot> faces, vertices;
        for (std::int32_t i = 0; i < count; ++i) {
            const object_face& face = mesh->faces[static_cast<std::size_t>(i)];
            const float sum = mesh->world_vertices[face.a].z + mesh->world_vertices[face.b].z +
                              mesh->world_vertices[face.c].z;
            faces.push_back({static_cast<std::int32_t>(sum), i});
            vertices.push_back(
                {static_cast<std::int32_t>(mesh->world_vertices[static_cast<std::size_t>(i)].z), i});
        }
        object_sort_faces_between(*mesh, -2048, 0);
        expect_sorted(faces);
        object_sort_vertices(*mesh);
        expect_sorted(vertices);
    }
    EXPECT_GT(ties, 1000);
}

TEST(object_sort, hard_patterns_of_a_full_object) {
    const auto mesh = scattered(object_capacity, 0, 6);
    for (const int pattern : {0, 1, 2, 3}) {
        std::vector<slot> expected;
        for (std::int32_t i = 0; i < object_capacity; ++i) {
            const std::array<std::int32_t, 4> keys = {i, -i, std::min(i, object_capacity - i), i % 64 * -i};
            const std::int32_t key = keys[static_cast<std::size_t>(pattern)];
            mesh->world_vertices[static_cast<std::size_t>(i)].z = static_cast<float>(key);
            expected.push_back({key, i});
        }
        object_sort_vertices(*mesh);
        hoare_sort(expected, 0, object_capacity - 1);
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_EQ((slot{mesh->sort_key[i], mesh->sort_order[i]}), expected[i]) << pattern << ' ' << i;
    }
}
