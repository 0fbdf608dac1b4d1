// Rotations as quaternions: four 32-bit floats, a plain value, w first.
//
// Every operation reads floats, computes in double and rounds once, when it stores a field. Nothing reports
// an error: a zero quaternion stays zero under `normalize` and becomes infinite or no number under `inverse`.
#pragma once

struct matrix;

// A quaternion holds whatever it held until something is assigned; `quaternion{}` is all zero.
struct quaternion {
    float w, x, y, z;

    // In place: (1, 0, 0, 0).
    void identity();

    // In place: the turn by `angle` radians about the axis, which is taken as given (a unit vector gives a
    // unit quaternion).
    void from_axis_angle(float axis_x, float axis_y, float axis_z, float angle);

    // The same, then `normalize`.
    void from_axis_angle_unit(float axis_x, float axis_y, float axis_z, float angle);

    // The angle, 0 to 2 pi, and the unit axis of the normalised quaternion; axis (0, 0, 0) where there is no
    // turn. Writes through all four pointers.
    void to_axis_angle(float* axis_x, float* axis_y, float* axis_z, float* angle) const;

    // In place: to length 1, unless the norm is 0.
    void normalize();

    // In place: the conjugate divided by the norm.
    void inverse();

    // In place: `normalize`, then the conjugate.
    void unit_inverse();

    // w w + x x + y y + z z, no root, in double.
    double norm() const;

    // (0, a x, a y, a z) with a = atan(|v| / w), or 1.5707964 where w is 0. The vector is multiplied by the
    // angle itself, so for a unit quaternion this is not the inverse of `exp`.
    quaternion ln() const;

    // (cos r, v sin(r) / r) with r = |v|; w is not read.
    quaternion exp() const;

    // In place: the rotation of the upper three by three, by the trace or, where that is not positive, by the
    // largest diagonal element (Shepperd, 1978). The signs are those of a matrix that `from_quaternion` of
    // math/matrix.h builds.
    void from_matrix(const matrix& m);

    // Prints "quaternion::debug()" and a line "wxyz(...)" to standard output, each value with "%f".
    void debug() const;
};

// In double, not rounded to a float.
double quaternion_dot(const quaternion& a, const quaternion& b);

// `quaternion_dot` divided by both norms (squared lengths).
double quaternion_dot_unit(const quaternion& a, const quaternion& b);

// Hamilton's product, `a` on the left, not normalised.
quaternion operator*(const quaternion& a, const quaternion& b);

// Component by component, then normalised.
quaternion operator+(const quaternion& a, const quaternion& b);
quaternion operator-(const quaternion& a, const quaternion& b);

// In place, and all three normalise.
quaternion& operator*=(quaternion& a, const quaternion& b);
quaternion& operator+=(quaternion& a, const quaternion& b);
quaternion& operator-=(quaternion& a, const quaternion& b);

// The logarithm of the rotation from `a` to `b`: (0, half the angle times the unit axis) for unit quaternions
// less than a half turn apart. `out` may be `a` or `b`.
void quaternion_ln_dif(const quaternion& a, const quaternion& b, quaternion& out);

// Spherical interpolation (Shoemake, 1985) from `a` at `t` 0 to `b` at `t` 1, with `spin` half turns more on
// the way. Linear where the two are closer than 0.000001. No sign flip: with a negative dot product the way
// round is the long one. Not normalised. `out` may be `a` or `b`.
void quaternion_slerp(const quaternion& a, const quaternion& b, float spin, float t, quaternion& out);

// Linear blend (1 - t) a + t b, with -b for `b` where the dot product is negative. Not normalised. `out` may
// be `a` or `b`.
void quaternion_blend(quaternion& out, const quaternion& a, const quaternion& b, float t);
