// What becomes of each chunk: records of the scene, in the order of the file.
//
// A builder is called with the chunk's header read, reads its body with the primitives of the reader and
// leaves the position behind what it read. It works on the record that was added last (the current node, for
// the keyframer's chunks); where there is none yet, the body is read and nothing stored. Axes: the file's
// (x, y, z) become (x, z, y) in vertices, mesh positions, cameras, position keys and pivots, and stay as they
// are in lights, rotation axes and scale keys.
#pragma once

class sceneloader_3ds;

// The world (builder_world.cpp)
void build_background(sceneloader_3ds& in); // a line in the log, no more
void build_ambient(sceneloader_3ds& in);
void build_frame_range(sceneloader_3ds& in);

// Objects but meshes (builder_objects.cpp)
void build_light(sceneloader_3ds& in);
void build_spotlight(sceneloader_3ds& in);
void build_shadows(sceneloader_3ds& in);
void build_camera(sceneloader_3ds& in);

// Meshes (builder_mesh.cpp)
void build_mesh(sceneloader_3ds& in);
void build_hidden(sceneloader_3ds& in);
void build_frozen(sceneloader_3ds& in);
void build_vertices(sceneloader_3ds& in);
void build_faces(sceneloader_3ds& in);
void build_material_group(sceneloader_3ds& in);
void build_mapping(sceneloader_3ds& in);
void build_matrix(sceneloader_3ds& in);
void finish_mesh(sceneloader_3ds& in); // not a chunk: after the mesh's last

// Materials (builder_material.cpp)
void build_material(sceneloader_3ds& in);
void build_material_ambient(sceneloader_3ds& in);
void build_material_diffuse(sceneloader_3ds& in);
void build_material_specular(sceneloader_3ds& in);
void build_shininess(sceneloader_3ds& in);
void build_shininess_strength(sceneloader_3ds& in); // a line in the log, no more
void build_transparency(sceneloader_3ds& in);
void build_texture_map(sceneloader_3ds& in);
void build_specular_map(sceneloader_3ds& in);
void build_opacity_map(sceneloader_3ds& in);
void build_reflection_map(sceneloader_3ds& in);
void build_bump_map(sceneloader_3ds& in);
void build_u_scale(sceneloader_3ds& in); // a line in the log, no more
void build_v_scale(sceneloader_3ds& in); // likewise

// Nodes (builder_node.cpp)
void build_node(sceneloader_3ds& in);
void build_dummy(sceneloader_3ds& in);
void build_pivot(sceneloader_3ds& in);

// Tracks (builder_tracks.cpp)
void build_position_track(sceneloader_3ds& in);
void build_rotation_track(sceneloader_3ds& in);
void build_scale_track(sceneloader_3ds& in);
void build_fov_track(sceneloader_3ds& in);
void build_roll_track(sceneloader_3ds& in);
void build_color_track(sceneloader_3ds& in);
void build_morph_track(sceneloader_3ds& in);
void build_hotspot_track(sceneloader_3ds& in);
void build_falloff_track(sceneloader_3ds& in);
