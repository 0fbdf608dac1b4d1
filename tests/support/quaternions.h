// Comparing quaternions in tests.
#pragma once

#include <gtest/gtest.h>

#include "morvane/math/quaternion.h"

inline void expect_quaternion(const quaternion& q, double w, double x, double y, double z,
                              double tolerance = 2e-6) {
    EXPECT_NEAR(q.w, w, tolerance);
    EXPECT_NEAR(q.x, x, tolerance);
    EXPECT_NEAR(q.y, y, tolerance);
    EXPECT_NEAR(q.z, z, tolerance);
}
