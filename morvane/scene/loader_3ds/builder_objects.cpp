// Lights and cameras.
#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/child_chunks.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

void build_light(sceneloader_3ds& in) {
    const vector3d place = in.read_vector();
    in.log_text(log_debug, "Direct light position at => %f, %f, %f", place.x, place.y, place.z);
    in.scene->add_light(in.object_name.data(), place.x, place.y, place.z);

    const auto colour = read_child_colour(in, colour_form::floats);
    if (!colour) return;
    in.log_text(log_debug, "Light color => %f, %f, %f", colour->r, colour->g, colour->b);
    light_set_color(*in.scene->last_light, static_cast<float>(colour->r), static_cast<float>(colour->g),
                    static_cast<float>(colour->b));
}

void build_spotlight(sceneloader_3ds& in) {
    const vector3d target = in.read_vector();
    const float hotspot = in.read_float();
    const float falloff = in.read_float();
    in.log_text(log_debug, "Spotlight => (%f, %f, %f) Hotspot %f  Falloff %f", target.x, target.y, target.z,
                hotspot, falloff);
    if (in.cut_short() || in.scene->last_light == nullptr) return;
    light_set_spot(*in.scene->last_light, target.x, target.y, target.z);
    light_set_hotspot(*in.scene->last_light, hotspot);
    light_set_falloff(*in.scene->last_light, falloff);
}

void build_shadows(sceneloader_3ds& in) {
    in.log_text(log_debug, "Light casts shadows");
    if (in.scene->last_light != nullptr) light_set_shadows(*in.scene->last_light, true);
}

void build_camera(sceneloader_3ds& in) {
    const vector3d place = in.read_vector();
    const vector3d target = in.read_vector();
    const float bank = in.read_float();
    const float focus = in.read_float();
    in.log_text(log_debug,
                "Camera Position => (%f, %f, %f)\n    Target => (%f, %f, %f)\n    Bank Angle => %f  Focus %f",
                place.x, place.y, place.z, target.x, target.y, target.z, bank, focus);
    if (in.cut_short()) return;
    const vector3d from = swap_yz(place);
    const vector3d at = swap_yz(target);
    in.scene->add_camera(in.object_name.data(), from.x, from.y, from.z, at.x, at.y, at.z, bank, focus);
}
