// The value classes against formulas in double precision.
#include <array>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "morvane/math/matrix.h"
#include "morvane/math/quaternion.h"
#include "morvane/math/vector3d.h"
#include "tests/support/captured_output.h"
#include "tests/support/quaternions.h"

namespace {

constexpr double pi = 3.14159265358979323846;

void expect_vector(const vector3d& v, double x, double y, double z, double tolerance = 1e-6) {
    EXPECT_NEAR(v.x, x, tolerance);
    EXPECT_NEAR(v.y, y, tolerance);
    EXPECT_NEAR(v.z, z, tolerance);
}

void expect_same(const quaternion& a, const quaternion& b, double tolerance = 1e-6) {
    expect_quaternion(a, b.w, b.x, b.y, b.z, tolerance);
}

class random_values {
  public:
    float operator()() { return spread(generator); }
    vector3d vector() { return {(*this)(), (*this)(), (*this)()}; }
    quaternion any() { return {(*this)(), (*this)(), (*this)(), (*this)()}; }
    quaternion unit() {
        quaternion q = any();
        q.normalize();
        return q;
    }

  private:
    std::mt19937 generator{3};
    std::uniform_real_distribution<float> spread{-2, 2};
};

// q as the real 4 by 4 matrix of the map p -> q p.
std::array<std::array<double, 4>, 4> left_product(const quaternion& q) {
    return {{{q.w, -q.x, -q.y, -q.z}, {q.x, q.w, -q.z, q.y}, {q.y, q.z, q.w, -q.x}, {q.z, -q.y, q.x, q.w}}};
}

quaternion turn(double degrees, float x, float y, float z) {
    quaternion q{};
    q.from_axis_angle(x, y, z, static_cast<float>(degrees * pi / 180));
    return q;
}

} // namespace

TEST(vector3d, arithmetic_and_products) {
    random_values random;
    for (int i = 0; i < 100; ++i) {
        const vector3d a = random.vector(), b = random.vector();
        const float s = random();
        expect_vector(a + b, double{a.x} + b.x, double{a.y} + b.y, double{a.z} + b.z);
        expect_vector(a - b, double{a.x} - b.x, double{a.y} - b.y, double{a.z} - b.z);
        expect_vector(a / s, a.x / double{s}, a.y / double{s}, a.z / double{s}, 1e-5 / std::fabs(s));
        const vector3d c = a.cross(b);
        EXPECT_NEAR(double{c.x} * a.x + double{c.y} * a.y + double{c.z} * a.z, 0, 1e-5);
        EXPECT_NEAR(double{c.x} * b.x + double{c.y} * b.y + double{c.z} * b.z, 0, 1e-5);
        const double dot = double{a.x} * b.x + double{a.y} * b.y + double{a.z} * b.z;
        EXPECT_NEAR(c.length() * c.length() + dot * dot, std::pow(a.length() * b.length(), 2), 1e-4);
    }
    expect_vector(vector3d{1, 0, 0}.cross({0, 1, 0}), 0, 0, 1);
    vector3d v;
    v.set(1, -2, 3);
    v.negate();
    expect_vector(v, -1, 2, -3);
}

TEST(vector3d, length_is_wider_than_a_float) {
    EXPECT_EQ((vector3d{1, 1, 1}.length()), std::sqrt(3.0));
    EXPECT_EQ((vector3d{3e38F, 4e37F, 0}.length()), std::hypot(double{3e38F}, double{4e37F}));
    EXPECT_GT((vector3d{1e-45F, 0, 0}.length()), 0);
    vector3d v{3, 0, 4};
    v.normalize();
    EXPECT_EQ(v.x, 0.6F);
    EXPECT_EQ(v.z, 0.8F);
    v = {};
    v.normalize();
    expect_vector(v, 0, 0, 0, 0);
}

TEST(vector3d, facing_counts_the_edge_and_what_is_no_number) {
    const vector3d a{0, 0, 7}, b{1, 0, -3}, c{0, 1, 5};
    EXPECT_FALSE(vector3d_facing(a, b, c));
    EXPECT_TRUE(vector3d_facing(a, c, b));
    EXPECT_TRUE(vector3d_facing(a, b, {2, 0, 0}));
    EXPECT_TRUE(vector3d_facing(a, b, {std::numeric_limits<float>::quiet_NaN(), 1, 0}));
    // 8192 * 8192 - 8193 * 8191 = 1; products that are floats leave 0.
    EXPECT_FALSE(vector3d_facing({0, 0, 0}, {-8193, -8192, 0}, {8192, 8191, 0}));
}

TEST(quaternion, product_is_hamiltons) {
    random_values random;
    for (int i = 0; i < 100; ++i) {
        const quaternion p = random.any(), q = random.any();
        const auto m = left_product(p);
        std::array<double, 4> r{};
        for (std::size_t row = 0; row < 4; ++row)
            r[row] = m[row][0] * q.w + m[row][1] * q.x + m[row][2] * q.y + m[row][3] * q.z;
        expect_quaternion(p * q, r[0], r[1], r[2], r[3], 2e-6);
        const double length = std::sqrt(p.norm() * q.norm());
        quaternion in_place = p;
        in_place *= q;
        expect_quaternion(in_place, r[0] / length, r[1] / length, r[2] / length, r[3] / length);

        const quaternion sum = p + q;
        const double scale = std::hypot(std::hypot(double{p.w} + q.w, double{p.x} + q.x),
                                        std::hypot(double{p.y} + q.y, double{p.z} + q.z));
        expect_quaternion(sum, (p.w + q.w) / scale, (p.x + q.x) / scale, (p.y + q.y) / scale,
                          (p.z + q.z) / scale);
        quaternion back = sum;
        back -= sum;
        expect_quaternion(back, 0, 0, 0, 0, 0);
        back += p;
        EXPECT_NEAR(back.norm(), 1, 1e-6);
    }
}

TEST(quaternion, inverses_and_lengths) {
    random_values random;
    for (int i = 0; i < 100; ++i) {
        const quaternion q = random.any();
        quaternion inverse = q;
        inverse.inverse();
        expect_quaternion(q * inverse, 1, 0, 0, 0, 1e-5);
        quaternion unit = q;
        unit.unit_inverse();
        EXPECT_NEAR(unit.norm(), 1, 1e-6);
        const double length = std::sqrt(q.norm());
        expect_quaternion(unit, q.w / length, -q.x / length, -q.y / length, -q.z / length);
        const quaternion other = random.any();
        EXPECT_NEAR(quaternion_dot_unit(q, other), quaternion_dot(q, other) / (q.norm() * other.norm()),
                    1e-12);
    }
    quaternion zero{};
    zero.normalize();
    expect_quaternion(zero, 0, 0, 0, 0, 0);
    EXPECT_EQ((quaternion{1, 2, 3, 4}.norm()), 30);
    quaternion one{5, 6, 7, 8};
    one.identity();
    expect_quaternion(one, 1, 0, 0, 0, 0);
}

TEST(quaternion, axis_and_angle_there_and_back) {
    for (double degrees = 1; degrees < 360; degrees += 7) {
        const quaternion q = turn(degrees, 0.48F, -0.6F, 0.64F);
        float x = 9, y = 9, z = 9, angle = 9;
        q.to_axis_angle(&x, &y, &z, &angle);
        EXPECT_NEAR(angle, degrees * pi / 180, 1e-4) << degrees;
        expect_vector({x, y, z}, 0.48, -0.6, 0.64, 1e-4);
    }
    float x = 9, y = 9, z = 9, angle = 9;
    quaternion{-7, 0, 0, 0}.to_axis_angle(&x, &y, &z, &angle);
    EXPECT_NEAR(angle, 2 * pi, 1e-6);
    expect_vector({x, y, z}, 0, 0, 0, 0);

    // The axis is taken as given.
    expect_quaternion(turn(180, 0, 5, 0), 0, 0, 5, 0);
    quaternion unit{};
    unit.from_axis_angle_unit(0, 3, 4, static_cast<float>(pi / 2));
    const double w = std::cos(pi / 4), s = 5 * std::sin(pi / 4), length = std::hypot(w, s);
    expect_quaternion(unit, w / length, 0, 0.6 * s / length, 0.8 * s / length);
}

TEST(quaternion, logarithm_multiplies_by_the_angle_itself) {
    expect_quaternion(quaternion{0, 1, 0, 0}.ln(), 0, 1.5707964, 0, 0);
    expect_quaternion(quaternion{0, 0, 3, 0}.ln(), 0, 0, 3 * 1.5707964, 0);
    random_values random;
    for (int i = 0; i < 100; ++i) {
        const quaternion q = random.any();
        const double a = std::atan(std::hypot(double{q.x}, double{q.y}, double{q.z}) / q.w);
        expect_quaternion(q.ln(), 0, a * q.x, a * q.y, a * q.z, 1e-6);
        const double r = std::hypot(double{q.x}, double{q.y}, double{q.z});
        expect_quaternion(q.exp(), std::cos(r), std::sin(r) / r * q.x, std::sin(r) / r * q.y,
                          std::sin(r) / r * q.z);
    }
    expect_quaternion(quaternion{5, 0, 0, 0}.exp(), 1, 0, 0, 0, 0);
}

TEST(quaternion, logarithm_of_a_difference_is_half_the_turn) {
    random_values random;
    for (int i = 0; i < 100; ++i) {
        const quaternion a = random.unit();
        const double degrees = 1 + i * 1.7;
        const quaternion b = a * turn(degrees, 0.48F, 0.6F, -0.64F);
        quaternion out{};
        quaternion_ln_dif(a, b, out);
        const double half = degrees * pi / 360;
        expect_quaternion(out, 0, 0.48 * half, 0.6 * half, -0.64 * half, 2e-5);
        // exp brings a to b
        expect_same(a * out.exp(), b, 1e-5);
    }
    quaternion same = turn(77, 0, 1, 0);
    quaternion_ln_dif(same, same, same);
    expect_quaternion(same, 0, 0, 0, 0, 1e-6);
    quaternion half_turn{};
    quaternion_ln_dif({1, 0, 0, 0}, {0, 0, 1, 0}, half_turn);
    expect_quaternion(half_turn, 0, 0, 1.5707964, 0);
}

TEST(quaternion, slerp_turns_evenly_and_spins) {
    const quaternion a = turn(20, 0, 0, 1);
    for (double way :
         {10.0, 90.0, 170.0, 300.0}) // beyond 180 the dot product is negative: the long way round
        for (float t : {0.0F, 0.25F, 0.5F, 1.0F}) {
            quaternion out{};
            quaternion_slerp(a, turn(20 + way, 0, 0, 1), 0, t, out);
            expect_same(out, turn(20 + way * t, 0, 0, 1), 2e-6);
        }
    quaternion out{};
    for (float t : {0.0F, 0.3F, 1.0F}) {
        quaternion_slerp(a, a, 3, t, out);
        expect_same(out, a);
    }
    const quaternion one{1, 0, 0, 0};
    const quaternion b = turn(90, 1, 0, 0);
    quaternion_slerp(one, b, 1, 1, out);
    expect_quaternion(out, -b.w, -b.x, 0, 0);
    quaternion_slerp(one, b, 2, 0.5F, out); // half of 45 degrees and a full turn of the half angle
    expect_quaternion(out, -std::cos(pi / 8), -std::sin(pi / 8), 0, 0);
    quaternion in_place = one;
    quaternion_slerp(in_place, b, 0, 0.5F, in_place);
    expect_same(in_place, turn(45, 1, 0, 0));
}

TEST(quaternion, blend_takes_the_near_sign) {
    const quaternion a{1, 2, 3, 4}, b{2, -1, 0, 1};
    quaternion out{};
    quaternion_blend(out, a, b, 0.25F);
    expect_quaternion(out, 1.25, 1.25, 2.25, 3.25);
    quaternion_blend(out, a, {-2, 1, 0, -1}, 0.25F);
    expect_quaternion(out, 1.25, 1.25, 2.25, 3.25);
}

TEST(quaternion, from_matrix_finds_every_rotation) {
    matrix m;
    quaternion q{};
    const auto there_and_back = [&](const quaternion& from) {
        m.from_quaternion(from.w, from.x, from.y, from.z);
        q.from_matrix(m);
        EXPECT_NEAR(std::fabs(quaternion_dot(q, from)), 1, 1e-5);
    };
    random_values random;
    for (int i = 0; i < 200; ++i) {
        quaternion from = random.unit();
        // Towards half turns the trace becomes a difference of near numbers and the method loses digits.
        if (std::fabs(from.w) < 0.1F) from.w = 0.1F;
        from.normalize();
        there_and_back(from);
    }
    for (const vector3d axis : {vector3d{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.6F, 0.8F, 0}, {0.28F, 0, 0.96F}})
        for (double degrees : {90.0, 165.0, 195.0, 359.0})
            there_and_back(turn(degrees, axis.x, axis.y, axis.z));
    q.from_matrix(matrix{});
    expect_quaternion(q, 1, 0, 0, 0, 0);
}

TEST(quaternion, from_matrix_takes_half_turns_by_the_largest_diagonal_element) {
    const double root = std::sqrt(0.5);
    const auto of = [](const std::array<float, 9>& rows) { // row by row
        matrix m;
        for (std::size_t i = 0; i < 9; ++i)
            m.m[i % 3 * 4 + i / 3] = rows[i];
        quaternion q{};
        q.from_matrix(m);
        return q;
    };
    expect_quaternion(of({-1, 0, 0, 0, -1, 0, 0, 0, 1}), 0, 0, 0, 1, 0);
    expect_quaternion(of({-1, 0, 0, 0, 1, 0, 0, 0, -1}), 0, 0, 1, 0, 0);
    expect_quaternion(of({1, 0, 0, 0, -1, 0, 0, 0, -1}), 0, 1, 0, 0, 0);
    // Two equal elements: the earlier one counts, which makes its component positive.
    expect_quaternion(of({0, -1, 0, -1, 0, 0, 0, 0, -1}), 0, root, -root, 0);
    expect_quaternion(of({0, 0, -1, 0, -1, 0, -1, 0, 0}), 0, root, 0, -root);
    expect_quaternion(of({-1, 0, 0, 0, 0, -1, 0, -1, 0}), 0, 0, root, -root);
    // w, a quarter of the difference of two mirrored elements where the root is 2.
    EXPECT_NEAR(of({1, 0, 0, 0, -1, 0.5F, 0, -0.1F, -1}).w, 0.15, 1e-7);
    EXPECT_NEAR(of({-1, 0, -0.1F, 0, 1, 0, 0.5F, 0, -1}).w, 0.15, 1e-7);
    EXPECT_NEAR(of({-1, 0.5F, 0, -0.1F, -1, 0, 0, 0, 1}).w, 0.15, 1e-7);
}

TEST(matrix, product_is_that_of_the_upper_three_by_three) {
    random_values random;
    matrix a, b;
    for (float& element : a.m)
        element = random();
    for (float& element : b.m)
        element = random();
    const matrix product = a * b;
    for (std::size_t r = 0; r < 4; ++r)
        for (std::size_t c = 0; c < 4; ++c) {
            double sum = 0;
            for (std::size_t k = 0; k < 3; ++k)
                sum += double{a.m[k * 4 + r]} * b.m[c * 4 + k];
            if (r == 3 || c == 3) sum = r == c ? 1 : 0;
            EXPECT_NEAR(product.m[c * 4 + r], sum, 2e-6);
        }
    const matrix sum = a + b, difference = a - b;
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(sum.m[i], a.m[i] + b.m[i]);
        EXPECT_EQ(difference.m[i], a.m[i] - b.m[i]);
    }
    a.clear();
    EXPECT_EQ(a.m, (std::array<float, 16>{}));
    a.set_identity();
    EXPECT_EQ(a.m, matrix{}.m);
}

TEST(matrix, transforms_columns_and_moves_a_place_to_the_origin) {
    matrix m;
    m.m = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 10, 0, 100, 200, 300, 1};
    expect_vector(m.transform({1, 0, 0}), 101, 202, 303, 0);
    expect_vector(m.transform({1, -1, 2}), 1 - 4 + 14 + 100, 2 - 5 + 16 + 200, 3 - 6 + 20 + 300, 0);
    m.set_translation({-3, 4, -5});
    expect_vector(m.transform({3, -4, 5}), 0, 0, 0, 0);
}

TEST(matrix, rotations_have_their_signs) {
    const auto rotated = [](float ax, float ay, float az, const vector3d& p) {
        matrix m;
        m.set_rotation(ax, ay, az);
        return m.transform(p);
    };
    const float quarter = static_cast<float>(pi / 2);
    expect_vector(rotated(quarter, 0, 0, {0, 1, 0}), 0, 0, -1);
    expect_vector(rotated(0, quarter, 0, {0, 0, 1}), 1, 0, 0);
    expect_vector(rotated(0, 0, quarter, {1, 0, 0}), 0, -1, 0);
    // first about y, then x, then z
    expect_vector(rotated(quarter, quarter, 0, {1, 0, 0}), 0, -1, 0);
    expect_vector(rotated(quarter, 0, quarter, {0, 0, 1}), 1, 0, 0);
    const vector3d p = rotated(0.3F, 0.5F, -0.7F, {1, 2, 3});
    EXPECT_NEAR(p.length(), std::sqrt(14.0), 1e-5);
}

TEST(matrix, from_quaternion_turns_against_the_product) {
    // The matrix takes p to q' p q, the turn by minus the angle.
    random_values random;
    for (int i = 0; i < 50; ++i) {
        const quaternion q = random.unit();
        const vector3d p = random.vector();
        matrix m;
        m.from_quaternion(q.w, q.x, q.y, q.z);
        quaternion inverse = q;
        inverse.unit_inverse();
        const quaternion turned = inverse * quaternion{0, p.x, p.y, p.z} * q;
        expect_vector(m.transform(p), turned.x, turned.y, turned.z, 1e-5);
    }
}

TEST(value_classes, print_themselves) {
    captured_output printed;
    vector3d{1, -2.5F, 1000}.debug();
    quaternion{1, 0.5F, -0.25F, 0}.debug();
    matrix m;
    m.m[12] = 7.1254F;
    m.m[1] = -3;
    m.debug();
    EXPECT_EQ(printed.out(), "vector3d::debug(1.000, -2.500, 1000.000)\n"
                             "quaternion::debug()\nwxyz(1.000000, 0.500000, -0.250000, 0.000000)\n"
                             "matrix::debug()\n"
                             "[1.000\t0.000\t0.000\t7.125]\n[-3.000\t1.000\t0.000\t0.000]\n"
                             "[0.000\t0.000\t1.000\t0.000]\n[0.000\t0.000\t0.000\t1.000]\n");
}

TEST(quaternion, logarithm_of_a_difference_of_any_lengths) {
    const float w = 3 * std::sqrt(0.75F), z = 1.5F; // 30 degrees, length 3
    quaternion out{};
    quaternion_ln_dif({2, 0, 0, 0}, {w, 0, 0, z}, out);
    expect_quaternion(out, 0, 0, 0, std::atan(1.5 * 0.5 / (6 * std::sqrt(0.75) / 36)));
}

TEST(quaternion, slerp_rounds_the_cosine_and_the_way) {
    const quaternion a{0.5F, 0.1F, -0.7F, std::sqrt(0.25F)};
    quaternion b{0.5F, 0.1F, -0.7F, 0.504F};
    quaternion p = a;
    p.normalize();
    b.normalize();
    const float c = static_cast<float>(quaternion_dot(p, b));
    ASSERT_GT(1 - std::fabs(double{c}), 0.000001);
    const double theta = std::acos(double{c});
    for (float t : {0.3F, 0.5F, 0.8F}) {
        const float phi = static_cast<float>((theta + 2 * 3.141592654) * t);
        const double sa = std::sin(theta - phi) / std::sin(theta),
                     sb = std::sin(double{phi}) / std::sin(theta);
        quaternion out{};
        quaternion_slerp(p, b, 2, t, out);
        EXPECT_EQ(out.w, static_cast<float>(sa * p.w + sb * b.w));
        EXPECT_EQ(out.y, static_cast<float>(sa * p.y + sb * b.y));
    }
}

TEST(quaternion, blend_of_right_angles_keeps_the_sign) {
    quaternion out{};
    quaternion_blend(out, {1, 0, 0, 0}, {0, 1, 0, 0}, 0.5F);
    expect_quaternion(out, 0.5, 0.5, 0, 0, 0);
}

TEST(matrix, from_quaternion_replaces_all_of_it) {
    matrix m;
    m.m.fill(9);
    m.from_quaternion(1, 0, 0, 0);
    EXPECT_EQ(m.m, matrix{}.m);
}
