// Materials: colours, percentages and the pictures that lie on them.
#include <string_view>

#include "morvane/base/log.h"
#include "morvane/base/numbers.h"
#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/child_chunks.h"
#include "morvane/scene/loader_3ds/chunk_names.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

namespace {

using colour_setter = void (*)(material& m, std::int32_t r, std::int32_t g, std::int32_t b);
using map_setter = void (*)(material& m, std::string_view file_name, std::int32_t percent);

// A colour that came as bytes gives those bytes again.
std::int32_t to_byte(double fraction) {
    return std::clamp(trunc_to_int(fraction * 255 + 0.5), 0, 255);
}

void build_colour(sceneloader_3ds& in, colour_setter set) {
    const auto colour = read_child_colour(in, colour_form::bytes);
    if (!colour) return;
    const std::int32_t r = to_byte(colour->r), g = to_byte(colour->g), b = to_byte(colour->b);
    in.log_text(log_debug, "  COLOR_24 => (%i, %i, %i)", r, g, b);
    if (in.scene->last_material != nullptr) set(*in.scene->last_material, r, g, b);
}

std::optional<std::int32_t> read_percentage(sceneloader_3ds& in) {
    const auto percent = read_child_percentage(in);
    if (percent) in.log_text(log_debug, "  Percentage => %i%%", *percent);
    return percent;
}

// A map without a percentage lies on in full; one without a name is none.
void build_map(sceneloader_3ds& in, map_setter set) {
    const std::int32_t percent = read_percentage(in).value_or(100);
    if (!in.read_header()) return;
    if (in.chunk_id != chunk_mat_mapname) {
        in.put_header_back();
        return;
    }
    in.log_known();
    in.read_string();
    if (in.scene->last_material != nullptr) set(*in.scene->last_material, in.name.data(), percent);
}

} // namespace

void build_material(sceneloader_3ds& in) {
    in.read_string();
    in.scene->add_material(in.name.data());
}

void build_material_ambient(sceneloader_3ds& in) {
    build_colour(in, material_set_ambient);
}

void build_material_diffuse(sceneloader_3ds& in) {
    build_colour(in, material_set_diffuse);
}

void build_material_specular(sceneloader_3ds& in) {
    build_colour(in, material_set_specular);
}

void build_shininess(sceneloader_3ds& in) {
    const auto percent = read_percentage(in);
    if (percent && in.scene->last_material != nullptr)
        material_set_shininess(*in.scene->last_material, *percent);
}

void build_shininess_strength(sceneloader_3ds& in) {
    read_percentage(in);
}

void build_transparency(sceneloader_3ds& in) {
    const auto percent = read_percentage(in);
    if (percent && in.scene->last_material != nullptr)
        material_set_transparency(*in.scene->last_material, *percent);
}

void build_texture_map(sceneloader_3ds& in) {
    build_map(in, material_set_texture);
}

void build_specular_map(sceneloader_3ds& in) {
    build_map(in, material_set_spec);
}

void build_opacity_map(sceneloader_3ds& in) {
    build_map(in, material_set_opac);
}

void build_reflection_map(sceneloader_3ds& in) {
    build_map(in, material_set_refl);
}

void build_bump_map(sceneloader_3ds& in) {
    build_map(in, material_set_bump);
}

void build_u_scale(sceneloader_3ds& in) {
    in.log_text(log_debug, "uscale => %f", in.read_float());
}

void build_v_scale(sceneloader_3ds& in) {
    in.log_text(log_debug, "vscale => %f", in.read_float());
}
