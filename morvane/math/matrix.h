// Transforms of points: sixteen 32-bit floats, a plain value.
//
// Stored column by column: row r, column c is m[c * 4 + r]. Points are columns and a transform computes M p,
// so m[0..2], m[4..6], m[8..10] are the images of the three axes and m[12..14] is the translation. Every
// operation reads floats, computes in double and rounds once, when it stores an element. Nothing fails.
#pragma once

#include <array>

#include "morvane/math/vector3d.h"

struct matrix {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    void set_identity();
    void clear(); // all sixteen 0

    // M p, the translation included.
    vector3d transform(const vector3d& p) const;

    // In place: the translation becomes the upper three by three applied to `p`. With `p` the negated
    // position of a camera, the matrix first moves that position to the origin.
    void set_translation(const vector3d& p);

    // In place: (Rz Rx) Ry of the three angles in radians. Rx and Rz turn a point the opposite way from Ry:
    // a positive `az` takes the x axis towards negative y, a positive `ay` the z axis towards positive x.
    void set_rotation(float ax, float ay, float az);

    // In place: a unit quaternion as a matrix, in the sense in which m[1] = 2 (x y - w z); no translation.
    void from_quaternion(float w, float x, float y, float z);

    // Prints "matrix::debug()" and four lines "[a\tb\tc\td]" in the mathematical orientation, the translation
    // as the last column, each value with "%5.3f".
    void debug() const;
};

// Element by element, over all sixteen.
matrix operator+(const matrix& a, const matrix& b);
matrix operator-(const matrix& a, const matrix& b);
matrix& operator+=(matrix& a, const matrix& b);
matrix& operator-=(matrix& a, const matrix& b);

// The product of the upper three by three alone: neither translation is read and the result has none.
matrix operator*(const matrix& a, const matrix& b);
