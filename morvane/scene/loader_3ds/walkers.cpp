#include "morvane/scene/loader_3ds/walkers.h"

#include <algorithm>
#include <limits>
#include <span>

#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/chunk_names.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/node.h"

namespace {

// What a level does with a chunk of this id, whose header has been read.
struct level_row {
    std::uint16_t id;
    void (*build)(sceneloader_3ds& in);
};

void skip_body(sceneloader_3ds& in) {
    in.skip_body();
}

void walk(sceneloader_3ds& in, std::span<const level_row> level, std::int64_t end) {
    do {
        const auto row = std::ranges::find(level, in.chunk_id, &level_row::id);
        if (row == level.end()) {
            in.log_unknown();
            in.skip_body();
        } else {
            in.log_known();
            row->build(in);
        }
    } while (in.next_header(end));
}

// Walks the level inside the chunk of which the header and `body_read` more bytes have been read. The 6 bytes
// that its length counts for its own header make `end` what `next_header` wants.
void descend(sceneloader_3ds& in, std::span<const level_row> level, std::int32_t body_read = 0) {
    const std::int64_t end = std::int64_t{in.offset} - body_read + in.chunk_length;
    if (in.read_header()) walk(in, level, end);
}

constexpr level_row mesh_level[] = {
    {chunk_point_array, build_vertices}, {chunk_point_flag_array, skip_body},
    {chunk_face_array, build_faces},     {chunk_msh_mat_group, build_material_group},
    {chunk_tex_verts, build_mapping},    {chunk_mesh_matrix, build_matrix},
    {chunk_mesh_color, skip_body},       {chunk_mesh_texture_info, skip_body},
};

void walk_mesh(sceneloader_3ds& in) {
    build_mesh(in);
    descend(in, mesh_level);
    finish_mesh(in);
}

constexpr level_row block_level[] = {
    {chunk_obj_hidden, build_hidden},      {chunk_obj_frozen, build_frozen},
    {chunk_n_tri_object, walk_mesh},       {chunk_n_direct_light, build_light},
    {chunk_dl_spotlight, build_spotlight}, {chunk_dl_shadowed, build_shadows},
    {chunk_n_camera, build_camera},
};

void walk_block(sceneloader_3ds& in) {
    in.read_string();
    in.object_name = in.name;
    descend(in, block_level, in.name_length);
}

constexpr level_row material_level[] = {
    {chunk_mat_name, build_material},
    {chunk_mat_ambient, build_material_ambient},
    {chunk_mat_diffuse, build_material_diffuse},
    {chunk_mat_specular, build_material_specular},
    {chunk_mat_shininess, build_shininess},
    {chunk_mat_shin2pct, build_shininess_strength},
    {chunk_mat_transparency, build_transparency},
    {chunk_mat_texmap, build_texture_map},
    {chunk_mat_specmap, build_specular_map},
    {chunk_mat_opacmap, build_opacity_map},
    {chunk_mat_reflmap, build_reflection_map},
    {chunk_mat_bumpmap, build_bump_map},
    {chunk_mat_mapname, skip_body},
    {chunk_mat_uscale, build_u_scale},
    {chunk_mat_vscale, build_v_scale},
};

void walk_material(sceneloader_3ds& in) {
    descend(in, material_level);
}

constexpr level_row object_level[] = {
    {chunk_solid_bgnd, build_background}, {chunk_ambient_light, build_ambient},
    {chunk_mesh_version, skip_body},      {chunk_objectblock, walk_block},
    {chunk_material, walk_material},
};

void walk_object(sceneloader_3ds& in) {
    descend(in, object_level);
}

constexpr level_row node_level[] = {
    {chunk_node_hdr, build_node},
    {chunk_node_dummy, build_dummy},
    {chunk_pivot, build_pivot},
    {chunk_pos_track_tag, build_position_track},
    {chunk_rot_track_tag, build_rotation_track},
    {chunk_scl_track_tag, build_scale_track},
    {chunk_fov_track_tag, build_fov_track},
    {chunk_roll_track_tag, build_roll_track},
    {chunk_col_track_tag, build_color_track},
    {chunk_morph_track_tag, build_morph_track},
    {chunk_hot_track_tag, build_hotspot_track},
    {chunk_fall_track_tag, build_falloff_track},
};

template<std::uint16_t type>
void walk_node(sceneloader_3ds& in) {
    in.node_type = type;
    descend(in, node_level);
}

constexpr level_row keyframer_level[] = {
    {chunk_kfhdr, skip_body},
    {chunk_kfseg, build_frame_range},
    {chunk_kfcurtime, skip_body},
    {chunk_ambient_node_tag, walk_node<node_ambient>},
    {chunk_object_node_tag, walk_node<node_object>},
    {chunk_camera_node_tag, walk_node<node_camera>},
    {chunk_target_node_tag, walk_node<node_camera_target>},
    {chunk_light_node_tag, walk_node<node_light>},
    {chunk_l_target_node_tag, walk_node<node_light_target>},
    {chunk_spotlight_node_tag, walk_node<node_spotlight>},
};

void walk_keyframer(sceneloader_3ds& in) {
    descend(in, keyframer_level);
}

constexpr level_row main_level[] = {
    {chunk_master_scale, skip_body},
    {chunk_m3d_version, skip_body},
    {chunk_object, walk_object},
    {chunk_keyframer, walk_keyframer},
};

} // namespace

void walk_main(sceneloader_3ds& in) {
    walk(in, main_level, std::numeric_limits<std::int64_t>::max());
}
