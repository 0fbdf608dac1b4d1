#include "morvane/scene/material.h"

#include "morvane/base/numbers.h"

namespace {

void set_slot(map_slot& slot, bool& present, std::string_view file_name, std::int32_t percent) {
    set_name_field(slot.file_name, file_name);
    slot.percent = percent;
    present = true;
}

} // namespace

void material_set_ambient(material& m, std::int32_t r, std::int32_t g, std::int32_t b) {
    m.ambient_r = r;
    m.ambient_g = g;
    m.ambient_b = b;
}

void material_set_diffuse(material& m, std::int32_t r, std::int32_t g, std::int32_t b) {
    m.diffuse_r = r;
    m.diffuse_g = g;
    m.diffuse_b = b;
}

void material_set_specular(material& m, std::int32_t r, std::int32_t g, std::int32_t b) {
    m.specular_r = r;
    m.specular_g = g;
    m.specular_b = b;
}

void material_set_shininess(material& m, std::int32_t percent) {
    m.shininess = percent;
}

void material_set_transparency(material& m, std::int32_t percent) {
    m.opacity = trunc_to_int(255 - percent * 2.5);
}

void material_set_texture(material& m, std::string_view file_name, std::int32_t percent) {
    set_slot(m.texture_map, m.has_texture, file_name, percent);
}

void material_set_spec(material& m, std::string_view file_name, std::int32_t percent) {
    set_slot(m.spec_map, m.has_spec, file_name, percent);
}

void material_set_opac(material& m, std::string_view file_name, std::int32_t percent) {
    set_slot(m.opac_map, m.has_opac, file_name, percent);
}

void material_set_refl(material& m, std::string_view file_name, std::int32_t percent) {
    set_slot(m.refl_map, m.has_refl, file_name, percent);
}

void material_set_bump(material& m, std::string_view file_name, std::int32_t percent) {
    set_slot(m.bump_map, m.has_bump, file_name, percent);
}
