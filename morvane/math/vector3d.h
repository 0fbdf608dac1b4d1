// A point or direction in space: three 32-bit floats, a plain value.
//
// Every operation reads floats, computes in double and rounds once, when it stores a field.
#pragma once

struct vector3d {
    float x = 0, y = 0, z = 0;

    void set(float new_x, float new_y, float new_z);

    // The length in double, not rounded to a float.
    double length() const;

    // In place: divides by the length. A vector of length 0 becomes (0, 0, 0).
    void normalize();

    // In place: changes the sign of each component.
    void negate();

    // a x b = (a.y b.z - a.z b.y, a.z b.x - a.x b.z, a.x b.y - a.y b.x), a the object itself.
    vector3d cross(const vector3d& b) const;

    // Prints "vector3d::debug(x, y, z)" and a line end to standard output, each with "%5.3f".
    void debug() const;
};

vector3d operator+(const vector3d& a, const vector3d& b);
vector3d operator-(const vector3d& a, const vector3d& b);
vector3d operator/(const vector3d& a, float s);

// Whether the triangle a, b, c, of which x and y count, turns towards the viewer: with
// s = (a.y - b.y)(c.x - a.x) - (a.x - b.x)(c.y - a.y), true unless s > 0. A triangle without area faces, and
// so does one with a coordinate that is not a number.
bool vector3d_facing(const vector3d& a, const vector3d& b, const vector3d& c);
