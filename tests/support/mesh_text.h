// Meshes read from their text, independent of the show's own reader.
#pragma once

#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

struct point {
    double x, y, z;
};
inline point operator-(point a, point b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline double dot(point a, point b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline point cross(point a, point b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(point a) {
    return std::sqrt(dot(a, a));
}

struct model {
    std::string name;
    std::vector<point> places;
    std::vector<std::array<double, 2>> mapping;
    std::vector<std::array<int, 3>> corners;
    std::vector<std::array<int, 3>> drawn; // a-b, b-c, c-a
    std::size_t faces() const { return corners.size(); }
    point at(std::size_t face, std::size_t corner) const {
        return places.at(static_cast<std::size_t>(corners[face][corner]));
    }
};

// Reads as the show does: tokens by their beginning, letters wherever they stand, one character dropped.
struct scanner {
    std::string text;
    std::size_t at = 0;

    std::string token() {
        while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0)
            ++at;
        const std::size_t from = at;
        while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) == 0)
            ++at;
        if (from == at) throw std::runtime_error("the text ends early");
        return text.substr(from, at - from);
    }
    void keyword(const std::string& word) {
        while (token().rfind(word, 0) != 0) {
        }
    }
    void letter(char wanted) {
        at = text.find(wanted, at);
        if (at == std::string::npos) throw std::runtime_error(std::string("no letter ") + wanted);
        ++at;
    }
    double number() {
        char* end = nullptr;
        const double value = std::strtod(text.c_str() + at, &end);
        if (end == text.c_str() + at) throw std::runtime_error("no number");
        at = static_cast<std::size_t>(end - text.c_str());
        return value;
    }
    double value(char name) {
        letter(name);
        ++at;
        return number();
    }
    int whole(char name) { return static_cast<int>(std::lround(value(name))); }
    int pair(char first, char second) {
        letter(first);
        return whole(second);
    }
    void entry(const std::string& word, std::size_t index) {
        keyword(word);
        EXPECT_EQ(number(), static_cast<double>(index));
        EXPECT_EQ(token(), ":");
    }
};

// All of `text`; throws where something is missing, and fails the test where something is left over.
inline model read_mesh(const std::string& text) {
    scanner s{text};
    model m;
    s.keyword("object");
    m.name = s.token();
    s.keyword("Vertices");
    const auto vertices = static_cast<std::size_t>(s.number());
    s.keyword("Faces");
    const auto faces = static_cast<std::size_t>(s.number());
    s.keyword("list:");
    for (std::size_t i = 0; i < vertices; ++i) {
        s.entry("Vertex", i);
        const double x = s.value('X'), y = s.value('Y'), z = s.value('Z');
        m.places.push_back({x, y, z});
        const double u = s.value('U'), v = s.value('V');
        m.mapping.push_back({u, v});
    }
    s.keyword("Face");
    s.keyword("list:");
    for (std::size_t i = 0; i < faces; ++i) {
        s.entry("Face", i);
        const int a = s.whole('A'), b = s.whole('B'), c = s.whole('C');
        m.corners.push_back({a, b, c});
        const int ab = s.pair('A', 'B'), bc = s.pair('B', 'C'), ca = s.pair('C', 'A');
        m.drawn.push_back({ab, bc, ca});
    }
    EXPECT_EQ(s.text.find_first_not_of(" \n", s.at), std::string::npos)
        << m.name << " holds more than it counts";
    return m;
}

// A row times the rotation about x, y or z.
inline point turned(point p, char axis, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    if (axis == 'x') return {p.x, p.y * c - p.z * s, p.y * s + p.z * c};
    if (axis == 'y') return {p.x * c + p.z * s, p.y, p.z * c - p.x * s};
    return {p.x * c - p.y * s, p.x * s + p.y * c, p.z};
}
