// ASC reader. The first byte of the input sets the two switches, the rest is the file.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "morvane/object/asc_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static object mesh;
    mesh.read_mapping = data[0] & 1;
    mesh.read_camera = data[0] >> 1 & 1;
    const std::string problem = object_read_asc({reinterpret_cast<const char*>(data + 1), size - 1}, mesh);

    if (!problem.empty() && (mesh.vertex_count != 0 || mesh.face_count != 0)) std::abort();
    if (mesh.vertex_count != vertices_in_use(mesh) || mesh.face_count != faces_in_use(mesh)) std::abort();
    if (std::ranges::find(mesh.name, '\0') == std::end(mesh.name)) std::abort();
    for (std::int32_t i = 0; i < mesh.vertex_count; ++i) {
        const object_vertex& vertex = mesh.world_vertices[static_cast<std::size_t>(i)];
        if (!std::isfinite(vertex.x) || !std::isfinite(vertex.y) || !std::isfinite(vertex.z)) std::abort();
    }
    for (std::int32_t i = 0; i < mesh.face_count; ++i) {
        const object_face& face = mesh.faces[static_cast<std::size_t>(i)];
        if (std::max({face.a, face.b, face.c}) >= mesh.vertex_count) std::abort();
    }
    return 0;
}
