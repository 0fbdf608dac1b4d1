// The chunk ids of the 3D Studio format and their names.
#pragma once

#include <array>
#include <cstdint>

enum chunk_ids : std::uint16_t {
    chunk_null = 0x0000,
    chunk_color_f = 0x0010,
    chunk_color_24 = 0x0011,
    chunk_lin_color_24 = 0x0012,
    chunk_lin_color_f = 0x0013,
    chunk_int_percentage = 0x0030,
    chunk_float_percentage = 0x0031,
    chunk_solid_bgnd = 0x1200,
    chunk_ambient_light = 0x2100,
    chunk_main = 0x4d4d,
    chunk_master_scale = 0x0100,
    chunk_m3d_version = 0x0002,
    chunk_object = 0x3d3d,
    chunk_mesh_version = 0x3d3e,
    chunk_objectblock = 0x4000,
    chunk_obj_hidden = 0x4010,
    chunk_obj_frozen = 0x4016,
    chunk_n_tri_object = 0x4100,
    chunk_point_array = 0x4110,
    chunk_point_flag_array = 0x4111,
    chunk_face_array = 0x4120,
    chunk_msh_mat_group = 0x4130,
    chunk_tex_verts = 0x4140,
    chunk_mesh_matrix = 0x4160,
    chunk_mesh_color = 0x4165,
    chunk_mesh_texture_info = 0x4170,
    chunk_n_direct_light = 0x4600,
    chunk_dl_spotlight = 0x4610,
    chunk_dl_shadowed = 0x4630,
    chunk_n_camera = 0x4700,
    chunk_material = 0xafff,
    chunk_mat_name = 0xa000,
    chunk_mat_ambient = 0xa010,
    chunk_mat_diffuse = 0xa020,
    chunk_mat_specular = 0xa030,
    chunk_mat_shininess = 0xa040,
    chunk_mat_shin2pct = 0xa041,
    chunk_mat_transparency = 0xa050,
    chunk_mat_texmap = 0xa200,
    chunk_mat_specmap = 0xa204,
    chunk_mat_opacmap = 0xa210,
    chunk_mat_reflmap = 0xa220,
    chunk_mat_bumpmap = 0xa230,
    chunk_mat_mapname = 0xa300,
    chunk_mat_uscale = 0xa354,
    chunk_mat_vscale = 0xa356,
    chunk_keyframer = 0xb000,
    chunk_kfhdr = 0xb00a,
    chunk_kfseg = 0xb008,
    chunk_node_hdr = 0xb010,
    chunk_node_dummy = 0xb011,
    chunk_pivot = 0xb013,
    chunk_node_id = 0xb030,
    chunk_pos_track_tag = 0xb020,
    chunk_rot_track_tag = 0xb021,
    chunk_scl_track_tag = 0xb022,
    chunk_fov_track_tag = 0xb023,
    chunk_roll_track_tag = 0xb024,
    chunk_col_track_tag = 0xb025,
    chunk_morph_track_tag = 0xb026,
    chunk_hot_track_tag = 0xb027,
    chunk_fall_track_tag = 0xb028,
    chunk_ambient_node_tag = 0xb001,
    chunk_object_node_tag = 0xb002,
    chunk_camera_node_tag = 0xb003,
    chunk_target_node_tag = 0xb004,
    chunk_light_node_tag = 0xb005,
    chunk_l_target_node_tag = 0xb006,
    chunk_spotlight_node_tag = 0xb007,
    chunk_kfcurtime = 0xb009,
};

struct chunk_name_row {
    std::uint16_t id;
    const char* name;
};

// For the log; what happens to a chunk is the walkers' business.
extern const std::array<chunk_name_row, 70> chunk_name_table;

// The name of `id`, or null if the table doesn't have it. A linear search.
const char* chunk_name_find(std::uint16_t id);

// What stands inside a colour or a percentage chunk.
bool chunk_is_colour(std::uint16_t id);
bool chunk_is_percentage(std::uint16_t id);
