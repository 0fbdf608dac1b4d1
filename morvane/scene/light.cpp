#include "morvane/scene/light.h"

void light_set_color(light& l, float r, float g, float b) {
    l.color_r = l.start_color_r = r;
    l.color_g = l.start_color_g = g;
    l.color_b = l.start_color_b = b;
}

void light_set_spot(light& l, float x, float y, float z) {
    l.start_target = {x, y, z};
    l.is_spot = true;
}

void light_set_hotspot(light& l, float angle) {
    l.start_hotspot = angle;
}

void light_set_falloff(light& l, float angle) {
    l.start_falloff = angle;
}

void light_set_shadows(light& l, bool value) {
    l.cast_shadows = value;
}
