#include "assets/forms/mesh_kit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <numbers>
#include <numeric>
#include <string>
#include <utility>

namespace assets {
namespace {

void put(std::string& text, std::string_view before, double value, int decimals) {
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, decimals);
    text.append(before).append(digits.data(), end.ptr);
}

void put(std::string& text, std::string_view before, std::size_t value) {
    text.append(before).append(std::to_string(value));
}

// The indices 0 to keys.size() - 1, the one with the smallest key first.
std::vector<std::size_t> ranked(const std::vector<double>& keys) {
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    return order;
}

} // namespace

double smooth_noise(vec3 p, double frequency, int octaves) {
    double sum = 0;
    double height = 1;
    double whole = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        const vec3 q = p * (frequency * 2 * std::numbers::pi);
        const double first = std::sin(0.81 * q.x + 0.43 * q.y - 0.39 * q.z + 1.7 * octave);
        const double second = std::sin(-0.35 * q.x + 0.88 * q.y + 0.32 * q.z + 1.3 * first + 0.6);
        const double third = std::sin(0.47 * q.x - 0.21 * q.y + 0.86 * q.z + 1.3 * second + 2.9);
        sum += height * (first + second + third) / 3;
        whole += height;
        height /= 2;
        frequency *= 1.93;
    }
    return sum / whole;
}

std::size_t add_vertex(mesh& m, vec3 position, double u, double v) {
    m.vertices.push_back({position, u, v});
    return m.vertices.size() - 1;
}

std::size_t add_seamless_vertex(mesh& m, vec3 position, double repeats) {
    const vec3 p = position * (1 / (std::abs(position.x) + std::abs(position.y) + std::abs(position.z)));
    const double u = 0.5 * p.x + 0.16 * p.y;
    const double v = 0.5 * p.z + 0.13 * p.y;
    return add_vertex(m, position, 0.5 + repeats * u, 0.5 + repeats * v);
}

void add_quad(mesh& m, std::size_t a, std::size_t b, std::size_t c, std::size_t d, bool outlined) {
    m.faces.push_back({.a = a, .b = b, .c = c, .ab = outlined, .bc = outlined});
    m.faces.push_back({.a = a, .b = c, .c = d, .bc = outlined, .ca = outlined});
}

void order_for_ripple(mesh& m, const std::function<double(vec3)>& wave) {
    std::vector<double> wished;
    std::vector<double> given;
    for (const mesh_vertex& v : m.vertices) {
        const double phase = wave(v.position);
        wished.push_back(phase - std::floor(phase));
        given.push_back(std::fmod(static_cast<double>(given.size()), 2 * std::numbers::pi));
    }
    const auto by_wish = ranked(wished);
    const auto by_index = ranked(given);
    std::vector<std::size_t> place(m.vertices.size()); // where a vertex goes
    std::vector<mesh_vertex> vertices(m.vertices.size());
    for (std::size_t rank = 0; rank < place.size(); ++rank) {
        place[by_wish[rank]] = by_index[rank];
        vertices[by_index[rank]] = m.vertices[by_wish[rank]];
    }
    m.vertices = std::move(vertices);
    for (mesh_face& f : m.faces) {
        f.a = place[f.a];
        f.b = place[f.b];
        f.c = place[f.c];
    }
}

file_bytes asc_file(std::string_view name, const mesh& m) {
    std::string text = "Named object: \"" + std::string(name) + "\"\n";
    put(text, "Tri-mesh, Vertices: ", m.vertices.size());
    put(text, "     Faces: ", m.faces.size());
    text += "\nVertex list:\n";
    for (std::size_t i = 0; i < m.vertices.size(); ++i) {
        const mesh_vertex& v = m.vertices[i];
        put(text, "Vertex ", i);
        put(text, ":  X:", v.position.x, 3);
        put(text, "     Y:", v.position.y, 3);
        put(text, "     Z:", v.position.z, 3);
        put(text, "     U:", v.u, 4);
        put(text, "     V:", v.v, 4);
        text += '\n';
    }
    text += "Face list:\n";
    for (std::size_t i = 0; i < m.faces.size(); ++i) {
        const mesh_face& f = m.faces[i];
        put(text, "Face ", i);
        put(text, ":    A:", f.a);
        put(text, " B:", f.b);
        put(text, " C:", f.c);
        put(text, " AB:", std::size_t{f.ab});
        put(text, " BC:", std::size_t{f.bc});
        put(text, " CA:", std::size_t{f.ca});
        text += '\n';
    }
    return {text.begin(), text.end()};
}

} // namespace assets
