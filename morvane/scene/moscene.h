// A 3D scene: meshes, cameras, lights and materials in lists, and a tree of nodes that animates them.
//
// A loader fills it (sceneload.h), the driver prepares it once and then, for each frame, calls `scene_update`
// and `scene_render`:
//
//     moscene scene;
//     scene.set_width(512); scene.set_height(288); scene.set_render_mode(36);
//     if (sceneload_file(scene, path)) {
//         scene.prepare_materials(); scene.calc_normals(); scene.prepare_keys(nullptr);
//         scene.set_camera(2); scene.calc_bounds();
//     }
//
// The scene owns the records that its `add_*` make and releases them when it is destroyed; pointers to them
// stay good until then. A mesh handed to `add_mesh(mesh&)` stays its owner's, who keeps it as long as the
// scene lives and hands it to one scene only. One thread; the two cursors make `scene_render` non-re-entrant.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "morvane/scene/camera.h"
#include "morvane/scene/light.h"
#include "morvane/scene/material.h"
#include "morvane/scene/mesh.h"
#include "morvane/scene/node.h"

class moscene {
  public:
    bool use_lights = true;    // lights are added in `scene_render`
    bool use_materials = true; // material colours are used there
    mesh *last_mesh = nullptr, *first_mesh = nullptr, *current_mesh = nullptr; // the third: cursor of drawing
    ::camera *last_camera = nullptr, *first_camera = nullptr;
    ::camera* camera = nullptr; // the active one
    light *last_light = nullptr, *first_light = nullptr, *current_light = nullptr;
    material *last_material = nullptr, *first_material = nullptr;
    mokey_node* current_node = nullptr;                     // the one that the loader is filling
    mokey_node *first_node = nullptr, *last_node = nullptr; // root level of the tree
    std::int32_t mesh_count = 0, camera_count = 0;          // `add_*` calls so far
    std::int32_t light_count = 0, material_count = 0;
    std::int32_t node_count = 0;    // also counts nodes that were not made for want of their parent
    std::int32_t camera_number = 0; // as given to `set_camera`
    float ambient_r = 0, ambient_g = 0, ambient_b = 0; // 0 to 1
    std::int32_t start_frame = 0, end_frame = 0;       // range of the animation
    float frame = 0;                                   // the current one; starts at 0, not at `start_frame`
    std::int32_t width = 0, height = 0;                // frame size in pixels, handed to new cameras
    std::int32_t half_width = 0, half_height = 0;
    std::int32_t default_render_mode = 1; // of new meshes
    std::string folder;                   // where the scene's file lies, for its pictures; empty: nowhere

    moscene() = default;
    moscene(const moscene&) = delete;
    moscene& operator=(const moscene&) = delete;

    void set_width(std::int32_t w);
    void set_height(std::int32_t h);
    void set_render_mode(std::int32_t mode);
    void set_ambient(float r, float g, float b);

    // Selects the n-th camera, counted from 0, and updates it. Of an `n` that is none of the scene's, the
    // nearest is taken; without a camera there is none.
    void set_camera(std::int32_t n);

    // Each logs its signature, puts a new record at the tail of its list and returns the low 16 bits of the
    // new count. Names are cut to their field.
    std::uint16_t add_mesh(std::string_view name);
    std::uint16_t add_camera(std::string_view name, float x, float y, float z, float target_x, float target_y,
                             float target_z, float bank, float focus);
    std::uint16_t add_light(std::string_view name, float x, float y, float z);
    std::uint16_t add_material(std::string_view name);

    // Links a mesh of the caller's, which keeps its render mode. One that stands in the list already is left
    // there and not counted again.
    std::uint16_t add_mesh(mesh& linked);

    // A node at the end of the root level (`parent` 0xffff) or of its parent's children, which becomes
    // `current_node`. Without a node of that id nothing is made, but counted.
    std::uint16_t add_node(std::uint16_t type, std::uint16_t parent);

    // The same where the caller has looked the parent's node up already: null if there is none. Not read for
    // a root.
    std::uint16_t add_node(std::uint16_t type, std::uint16_t parent, mokey_node* above);

    // The first record of the list whose name is `name` exactly; null without one.
    mesh* find_mesh(std::string_view name) const;
    ::camera* find_camera(std::string_view name) const;
    light* find_light(std::string_view name) const;
    material* find_material(std::string_view name) const;

    // The node with that id at or below `start`, parents before children; null without one, or with `start`
    // null.
    static mokey_node* find_node(std::uint16_t id, mokey_node* start);

    // Once after loading, each over the whole scene. `calc_normals` prints a line a mesh on standard output.
    // `prepare_keys` begins at `start` and its following siblings, or with null at the first root.
    void prepare_materials();
    void calc_normals();
    void calc_bounds();
    void prepare_keys(mokey_node* start);

    // One step of the animation: writes the values of the current frame into the records, moves `frame` on by
    // 2 (behind `end_frame` back to `start_frame`) and updates the active camera. A scene without an active
    // camera is animated all the same.
    void scene_update();

    // Evaluates `node` with the values of `parent` (may be null), then all below it, parents before children.
    // `depth` is carried along and not read. `eval_node` does the one node.
    void update_node(mokey_node& node, const mokey_node* parent, std::int32_t depth);
    void eval_node(mokey_node& node, const mokey_node* parent);

    // One track at the current frame, added to the parent's value, into `out` and the node's `current_`
    // field. A track without keys gives the parent's value (0 without a parent); `eval_rot` leaves everything
    // as it is.
    void eval_pos(mokey_node& node, vector3d& out, const mokey_node* parent) const;   // less the pivot
    void eval_rot(mokey_node& node, quaternion& out, const mokey_node* parent) const; // runs for no node type
    void eval_roll(mokey_node& node, float& out, const mokey_node* parent) const;
    void eval_fov(mokey_node& node, float& out, const mokey_node* parent) const;
    void eval_color(mokey_node& node, float& r, float& g, float& b, const mokey_node* parent) const;
    void eval_hotspot(mokey_node& node, float& out, const mokey_node* parent) const;
    void eval_falloff(mokey_node& node, float& out, const mokey_node* parent) const;

    // Draws the scene as the active camera sees it into a frame of `raster_width` by `raster_height` words.
    // The caller clears the depth buffer. Defined in scene/renderer/scene_renderer.cpp.
    void scene_render(std::uint32_t* destination);

    // Prints all of the scene but its geometry on standard output.
    void debug() const;

  private:
    std::deque<mesh> meshes; // the records themselves: a deque moves none of them
    std::deque<::camera> cameras;
    std::deque<light> lights;
    std::deque<material> materials;
    std::deque<mokey_node> nodes;
};
