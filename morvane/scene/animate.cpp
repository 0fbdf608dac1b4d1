// The step of the animation: from the tree of nodes to the records that it moves.
#include "morvane/scene/moscene.h"

namespace {

constexpr float frames_a_step = 2;

} // namespace

void moscene::scene_update() {
    for (mokey_node* root = first_node; root != nullptr; root = root->next)
        update_node(*root, nullptr, 0);
    frame += frames_a_step;
    if (double{frame} > end_frame) frame = static_cast<float>(start_frame); // the overshoot isn't carried
    if (camera != nullptr) camera_update(*camera);
}

void moscene::update_node(mokey_node& top, const mokey_node* parent, std::int32_t /*depth*/) {
    eval_node(top, parent);
    for (mokey_node* node = next_below(&top, &top); node != nullptr; node = next_below(node, &top))
        eval_node(*node, node->parent_node);
}

// A node without a record is evaluated all the same, for its children inherit from it.
void moscene::eval_node(mokey_node& node, const mokey_node* parent) {
    vector3d no_place;
    float no_value = 0;
    ::camera* const c = node.camera;
    light* const l = node.light;
    switch (node.type) {
    case node_object:
        eval_pos(node, node.object != nullptr ? node.object->position : no_place, parent);
        break;
    case node_camera:
        eval_pos(node, c != nullptr ? c->position : no_place, parent);
        eval_fov(node, c != nullptr ? c->current_fov : no_value, parent);
        eval_roll(node, c != nullptr ? c->current_roll : no_value, parent);
        break;
    case node_camera_target:
        eval_pos(node, c != nullptr ? c->target : no_place, parent);
        break;
    case node_light:
        eval_pos(node, l != nullptr ? l->position : no_place, parent);
        eval_color(node, l != nullptr ? l->color_r : no_value, l != nullptr ? l->color_g : no_value,
                   l != nullptr ? l->color_b : no_value, parent);
        break;
    case node_light_target:
        eval_pos(node, l != nullptr ? l->target : no_place, parent);
        break;
    case node_spotlight:
        eval_pos(node, l != nullptr ? l->position : no_place, parent);
        eval_hotspot(node, l != nullptr ? l->hotspot : no_value, parent);
        eval_falloff(node, l != nullptr ? l->falloff : no_value, parent);
        break;
    default: // ambient and unknown nodes animate nothing
        break;
    }
}

void moscene::set_camera(std::int32_t n) {
    camera_number = n;
    camera = first_camera;
    for (std::int32_t i = 0; i < n && camera != nullptr && camera->next != nullptr; ++i)
        camera = camera->next;
    if (camera == nullptr) return;
    camera->fov = 45;
    camera_update(*camera);
}
