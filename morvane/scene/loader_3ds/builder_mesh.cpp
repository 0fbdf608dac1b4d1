// Meshes: arrays, material groups and the place where the mesh was modelled.
#include <algorithm>

#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

namespace {

void set_flag(sceneloader_3ds& in, mesh_flags flag) {
    if (in.scene->last_mesh != nullptr) in.scene->last_mesh->flags |= flag;
}

} // namespace

void build_mesh(sceneloader_3ds& in) {
    in.scene->add_mesh(in.object_name.data());
}

void build_hidden(sceneloader_3ds& in) {
    set_flag(in, mesh_hidden);
}

void build_frozen(sceneloader_3ds& in) {
    set_flag(in, mesh_frozen);
}

void build_vertices(sceneloader_3ds& in) {
    mesh& to = *in.scene->last_mesh;
    const std::int32_t count = in.read_u16();
    in.log_text(log_debug, "  Number of vertices: %i", count);
    mesh_alloc_vertices(to, in.records_left(count, 12));
    in.read_records(count, 12, [&to](const std::uint8_t* bytes) {
        const vector3d place = swap_yz(little_vector(bytes));
        mesh_add_vertex(to, place.x, place.y, place.z);
    });
}

void build_faces(sceneloader_3ds& in) {
    mesh& to = *in.scene->last_mesh;
    const std::int32_t count = in.read_u16();
    mesh_alloc_faces(to, in.records_left(count, 8));
    in.log_text(log_debug, "  Number of faces: %i", count);
    in.read_records(count, 8, [&to](const std::uint8_t* bytes) {
        // An index that 15 bits can't hold becomes negative, and lies outside every mesh.
        mesh_add_face(to, static_cast<std::int16_t>(little_u16(bytes)),
                      static_cast<std::int16_t>(little_u16(bytes + 2)),
                      static_cast<std::int16_t>(little_u16(bytes + 4)), little_u16(bytes + 6));
    });
}

void build_material_group(sceneloader_3ds& in) {
    mesh& to = *in.scene->last_mesh;
    in.read_string();
    material* named = in.materials.find(in.scene->first_material, in.name.data());
    const std::int32_t count = in.read_u16();
    in.log_text(log_debug, "  Number of faces having this texture: (%s) %i", in.name.data(), count);
    std::int32_t strays = 0;
    in.read_records(count, 2, [&to, &strays, named](const std::uint8_t* bytes) {
        const std::int32_t i = little_u16(bytes);
        if (i < to.face_count)
            mesh_set_face_material(to, named, i);
        else
            ++strays;
    });
    if (strays > 0)
        in.log_text(log_warning, "Material %s is given to %i faces that mesh %s doesn't have", in.name.data(),
                    strays, to.name);
}

void build_mapping(sceneloader_3ds& in) {
    mesh& to = *in.scene->last_mesh;
    const std::int32_t count = in.read_u16();
    std::int32_t i = 0;
    in.read_records(count, 8, [&to, &i](const std::uint8_t* bytes) {
        mesh_set_uv(to, i, little_float(bytes), little_float(bytes + 4));
        ++i;
    });
    if (i > to.vertex_count)
        in.log_text(log_warning, "Mesh %s has mapping for %i vertices, and %i of them", to.name, i,
                    to.vertex_count);
}

void build_matrix(sceneloader_3ds& in) {
    vector3d axes[3];
    for (vector3d& axis : axes)
        axis = in.read_vector();
    const vector3d place = in.read_vector();
    in.log_text(log_debug,
                "  Mesh Matrix:\n  [%f\t%f\t%f\t0]\n  [%f\t%f\t%f\t0]\n  [%f\t%f\t%f\t0]\n  [%f\t%f\t%f\t1]",
                axes[0].x, axes[0].y, axes[0].z, axes[1].x, axes[1].y, axes[1].z, axes[2].x, axes[2].y,
                axes[2].z, place.x, place.y, place.z);
    if (in.cut_short()) return;
    mesh& to = *in.scene->last_mesh;
    for (vector3d& vertex : to.vertices) // the position track of its node puts the mesh back in place
        vertex = vertex - swap_yz(place);
}

void finish_mesh(sceneloader_3ds& in) {
    if (!log_wanted(log_warning)) return;
    const mesh& done = *in.scene->last_mesh;
    const auto strays =
        std::ranges::count_if(done.faces, [&done](const face& each) { return !face_in_mesh(done, each); });
    if (strays > 0)
        in.log_text(log_warning, "%i faces of mesh %s reach beyond its vertices", static_cast<int>(strays),
                    done.name);
}
