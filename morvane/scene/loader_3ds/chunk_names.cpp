#include "morvane/scene/loader_3ds/chunk_names.h"

#include <algorithm>

const std::array<chunk_name_row, 70> chunk_name_table{{
    {chunk_null, "CHUNK3DS_NULL"},
    {chunk_color_f, "CHUNK3DS_COLOR_F"},
    {chunk_color_24, "CHUNK3DS_COLOR_24"},
    {chunk_lin_color_24, "CHUNK3DS_LIN_COLOR_24"},
    {chunk_lin_color_f, "CHUNK3DS_LIN_COLOR_F"},
    {chunk_int_percentage, "CHUNK3DS_INT_PERCENTAGE"},
    {chunk_float_percentage, "CHUNK3DS_FLOAT_PERCENTAGE"},
    {chunk_solid_bgnd, "CHUNK3DS_SOLID_BGND"},
    {chunk_ambient_light, "CHUNK3DS_AMBIENT_LIGHT"},
    {chunk_main, "CHUNK3DS_MAIN"},
    {chunk_master_scale, "CHUNK3DS_MASTER_SCALE"},
    {chunk_m3d_version, "CHUNK3DS_M3D_VERSION"},
    {chunk_object, "CHUNK3DS_OBJECT"},
    {chunk_mesh_version, "CHUNK3DS_MESH_VERSION"},
    {chunk_objectblock, "CHUNK3DS_OBJECTBLOCK"},
    {chunk_obj_hidden, "CHUNK3DS_OBJ_HIDDEN"},
    {chunk_obj_frozen, "CHUNK3DS_OBJ_FROZEN"},
    {chunk_n_tri_object, "CHUNK3DS_N_TRI_OBJECT"},
    {chunk_point_array, "CHUNK3DS_POINT_ARRAY"},
    {chunk_point_flag_array, "CHUNK3DS_POINT_FLAG_ARRAY"},
    {chunk_face_array, "CHUNK3DS_FACE_ARRAY"},
    {chunk_msh_mat_group, "CHUNK3DS_MSH_MAT_GROUP"},
    {chunk_tex_verts, "CHUNK3DS_TEX_VERTS"},
    {chunk_mesh_matrix, "CHUNK3DS_MESH_MATRIX"},
    {chunk_mesh_color, "CHUNK3DS_MESH_COLOR"},
    {chunk_mesh_texture_info, "CHUNK3DS_MESH_TEXTURE_INFO"},
    {chunk_n_direct_light, "CHUNK3DS_N_DIRECT_LIGHT"},
    {chunk_dl_spotlight, "CHUNK3DS_DL_SPOTLIGHT"},
    {chunk_dl_shadowed, "CHUNK3DS_DL_SHADOWED"},
    {chunk_n_camera, "CHUNK3DS_N_CAMERA"},
    {chunk_material, "CHUNK3DS_MATERIAL"},
    {chunk_mat_name, "CHUNK3DS_MAT_NAME"},
    {chunk_mat_ambient, "CHUNK3DS_MAT_AMBIENT"},
    {chunk_mat_diffuse, "CHUNK3DS_MAT_DIFFUSE"},
    {chunk_mat_specular, "CHUNK3DS_MAT_SPECULAR"},
    {chunk_mat_shininess, "CHUNK3DS_MAT_SHININESS"},
    {chunk_mat_shin2pct, "CHUNK3DS_MAT_SHIN2PCT"},
    {chunk_mat_transparency, "CHUNK3DS_MAT_TRANSPARENCY"},
    {chunk_mat_texmap, "CHUNK3DS_MAT_TEXMAP"},
    {chunk_mat_specmap, "CHUNK3DS_MAT_SPECMAP"},
    {chunk_mat_opacmap, "CHUNK3DS_MAT_OPACMAP"},
    {chunk_mat_reflmap, "CHUNK3DS_MAT_REFLMAP"},
    {chunk_mat_bumpmap, "CHUNK3DS_MAT_BUMPMAP"},
    {chunk_mat_mapname, "CHUNK3DS_MAT_MAPNAME"},
    {chunk_mat_uscale, "CHUNK3DS_MAT_USCALE"},
    {chunk_mat_vscale, "CHUNK3DS_MAT_VSCALE"},
    {chunk_keyframer, "CHUNK3DS_KEYFRAMER"},
    {chunk_kfhdr, "CHUNK3DS_KFHDR"},
    {chunk_kfseg, "CHUNK3DS_KFSEG"},
    {chunk_node_hdr, "CHUNK3DS_NODE_HDR"},
    {chunk_node_dummy, "CHUNK3DS_NODE_DUMMY"},
    {chunk_pivot, "CHUNK3DS_PIVOT"},
    {chunk_node_id, "CHUNK3DS_NODE_ID"},
    {chunk_pos_track_tag, "CHUNK3DS_POS_TRACK_TAG"},
    {chunk_rot_track_tag, "CHUNK3DS_ROT_TRACK_TAG"},
    {chunk_scl_track_tag, "CHUNK3DS_SCL_TRACK_TAG"},
    {chunk_fov_track_tag, "CHUNK3DS_FOV_TRACK_TAG"},
    {chunk_roll_track_tag, "CHUNK3DS_ROLL_TRACK_TAG"},
    {chunk_col_track_tag, "CHUNK3DS_COL_TRACK_TAG"},
    {chunk_morph_track_tag, "CHUNK3DS_MORPH_TRACK_TAG"},
    {chunk_hot_track_tag, "CHUNK3DS_HOT_TRACK_TAG"},
    {chunk_fall_track_tag, "CHUNK3DS_FALL_TRACK_TAG"},
    {chunk_ambient_node_tag, "CHUNK3DS_AMBIENT_NODE_TAG"},
    {chunk_object_node_tag, "CHUNK3DS_OBJECT_NODE_TAG"},
    {chunk_camera_node_tag, "CHUNK3DS_CAMERA_NODE_TAG"},
    {chunk_target_node_tag, "CHUNK3DS_TARGET_NODE_TAG"},
    {chunk_light_node_tag, "CHUNK3DS_LIGHT_NODE_TAG"},
    {chunk_l_target_node_tag, "CHUNK3DS_L_TARGET_NODE_TAG"},
    {chunk_spotlight_node_tag, "CHUNK3DS_SPOTLIGHT_NODE_TAG"},
    {chunk_kfcurtime, "CHUNK3DS_KFCURTIME"},
}};

const char* chunk_name_find(std::uint16_t id) {
    const auto row = std::ranges::find(chunk_name_table, id, &chunk_name_row::id);
    return row == chunk_name_table.end() ? nullptr : row->name;
}

bool chunk_is_colour(std::uint16_t id) {
    return chunk_color_f <= id && id <= chunk_lin_color_f;
}

bool chunk_is_percentage(std::uint16_t id) {
    return id == chunk_int_percentage || id == chunk_float_percentage;
}
