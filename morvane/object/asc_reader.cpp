#include "morvane/object/asc_reader.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <span>

#include "morvane/base/numbers.h"
#include "morvane/base/program.h"
#include "morvane/object/inner/asc_scanner.h"

namespace {

constexpr std::size_t file_limit = std::size_t{64} << 20;

bool read_count(asc_scanner& in, std::string_view keyword, std::int32_t& count) {
    if (!in.find_keyword(keyword) || !in.read_int(count)) return false;
    if (count >= 0 && count <= object_capacity) return true;
    return in.fail(std::string(keyword) + " must be 0 to " + std::to_string(object_capacity) + ", and not " +
                   std::to_string(count));
}

// The keyword of an entry, its number, which is dropped, and the token behind it.
bool begin_entry(asc_scanner& in, std::string_view keyword) {
    std::int32_t number = 0;
    return in.find_keyword(keyword) && in.read_int(number) && in.read_token();
}

bool read_position(asc_scanner& in, object_vertex& vertex) {
    return in.read_value('X', vertex.x) && in.read_value('Y', vertex.y) && in.read_value('Z', vertex.z);
}

bool read_vertex(asc_scanner& in, bool mapped, object_vertex& vertex) {
    vertex = {};
    return begin_entry(in, "Vertex") && read_position(in, vertex) &&
           (!mapped || (in.read_value('U', vertex.u) && in.read_value('V', vertex.v)));
}

bool read_corner(asc_scanner& in, char letter, std::int32_t vertex_count, std::uint16_t& corner) {
    std::int32_t index = 0;
    if (!in.read_value(letter, index)) return false;
    if (index < 0 || index >= vertex_count)
        return in.fail("no vertex " + std::to_string(index) + " among " + std::to_string(vertex_count));
    corner = static_cast<std::uint16_t>(index);
    return true;
}

bool read_edge(asc_scanner& in, char from, char to, std::uint8_t& edge) {
    std::int32_t flag = 0;
    if (!in.find_letter(from) || !in.read_value(to, flag)) return false;
    edge = static_cast<std::uint8_t>(std::clamp(flag, 0, 255)); // 257 must not become 1
    return true;
}

bool read_face(asc_scanner& in, std::int32_t vertex_count, object_face& face) {
    face = {};
    return begin_entry(in, "Face") && read_corner(in, 'A', vertex_count, face.a) &&
           read_corner(in, 'B', vertex_count, face.b) && read_corner(in, 'C', vertex_count, face.c) &&
           read_edge(in, 'A', 'B', face.ab) && read_edge(in, 'B', 'C', face.bc) &&
           read_edge(in, 'C', 'A', face.ca);
}

bool read_camera(asc_scanner& in, object& mesh) {
    return in.find_keyword("Camera") && in.find_keyword("Position") &&
           read_position(in, mesh.camera_position) && in.find_keyword("Target") &&
           read_position(in, mesh.camera_target);
}

// The whole file, from top to bottom.
bool read_mesh(asc_scanner& in, object& mesh) {
    std::string_view name;
    if (!in.find_keyword("object") || !in.read_name(name)) return false;
    name.copy(mesh.name, sizeof mesh.name - 1); // the rest of the field is 0

    if (!read_count(in, "Vertices", mesh.vertex_count)) return false;
    if (!read_count(in, "Faces", mesh.face_count)) return false;

    if (!in.find_keyword("list:")) return false;
    for (object_vertex& vertex :
         std::span(mesh.model_vertices).first(static_cast<std::size_t>(mesh.vertex_count)))
        if (!read_vertex(in, mesh.read_mapping == 1, vertex)) return false;

    if (!in.find_keyword("Face") || !in.find_keyword("list:")) return false;
    for (object_face& face : std::span(mesh.faces).first(static_cast<std::size_t>(mesh.face_count)))
        if (!read_face(in, mesh.vertex_count, face)) return false;

    return mesh.read_camera != 1 || read_camera(in, mesh);
}

struct int_vector {
    std::int64_t x, y, z;
};

// An edge in whole units: shorter than one unit along an axis is zero along it.
int_vector edge(const object_vertex& from, const object_vertex& to) {
    return {trunc_to_int(to.x - from.x), trunc_to_int(to.y - from.y), trunc_to_int(to.z - from.z)};
}

// 256 times the unit normal, in whole numbers; zero where the edges span nothing. The components of an edge
// have 32 bits, so the products and their differences fit 64.
object_vertex face_normal(const object_vertex& a, const object_vertex& b, const object_vertex& c) {
    const int_vector e1 = edge(a, b);
    const int_vector e2 = edge(b, c);
    const auto x = static_cast<float>(e1.y * e2.z - e1.z * e2.y);
    const auto y = static_cast<float>(e1.z * e2.x - e1.x * e2.z);
    const auto z = static_cast<float>(e1.x * e2.y - e1.y * e2.x);
    const auto length = static_cast<float>(std::sqrt(double{x} * x + double{y} * y + double{z} * z));
    object_vertex normal;
    if (length == 0) return normal;
    normal.x = static_cast<float>(trunc_to_int(x / length * 256));
    normal.y = static_cast<float>(trunc_to_int(y / length * 256));
    normal.z = static_cast<float>(trunc_to_int(z / length * 256));
    return normal;
}

// What is computed once from the mesh as read.
void finish(object& mesh) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh.vertex_count); ++i) {
        const object_vertex& model = mesh.model_vertices[i];
        mesh.world_vertices[i] = {.x = model.x,
                                  .y = model.y,
                                  .z = model.z,
                                  .tu = trunc_to_int(model.u * 256),
                                  .tv = trunc_to_int(model.v * 256)};
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh.face_count); ++i) {
        const object_face& face = mesh.faces[i];
        const auto& corners = mesh.world_vertices;
        mesh.model_normals[i] = face_normal(corners[face.a], corners[face.b], corners[face.c]);
        mesh.sort_order[i] = static_cast<std::int32_t>(i);
    }
    mesh.wire_lit = 0;
    mesh.fill_lit = 0;
}

void make_empty(object& mesh) {
    std::ranges::fill(mesh.name, '\0');
    mesh.vertex_count = 0;
    mesh.face_count = 0;
}

// Stops soon after the limit. Returns what went wrong, or nothing.
std::string read_file(const std::string& path, std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return std::string("can't be opened: ") + std::strerror(errno);
    constexpr std::size_t step = 65536;
    std::size_t got = step;
    while (got == step && text.size() <= file_limit) {
        text.resize(text.size() + step);
        got = std::fread(text.data() + text.size() - step, 1, step, file);
        text.resize(text.size() - step + got);
    }
    std::string problem;
    if (std::ferror(file) != 0)
        problem = std::string("can't be read: ") + std::strerror(errno);
    else if (text.size() > file_limit)
        problem = "is longer than 64 MiB";
    std::fclose(file);
    return problem;
}

} // namespace

std::string object_read_asc(std::string_view text, object& mesh) {
    make_empty(mesh);
    asc_scanner in(text);
    if (read_mesh(in, mesh))
        finish(mesh);
    else
        make_empty(mesh);
    return in.problem();
}

bool object_load(const std::string& path, object& mesh) {
    std::string text;
    std::string problem = read_file(path, text);
    if (problem.empty())
        problem = object_read_asc(text, mesh);
    else
        make_empty(mesh);
    if (!problem.empty()) program::complain(path, problem);
    return problem.empty();
}
