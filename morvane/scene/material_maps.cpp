// The pictures of the materials: found beside the scene's file, and read.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>

#include "morvane/base/log.h"
#include "morvane/media/image_load.h"
#include "morvane/scene/material.h"

namespace {

namespace files = std::filesystem;

// The place of a picture relative to the scene's folder; empty for a name that would lead out of it.
files::path place_in_folder(std::string name) {
    std::ranges::replace(name, '\\', '/');
    const files::path place(name);
    const bool leads_out =
        place.has_root_path() || std::ranges::find(place, files::path("..")) != place.end();
    return leads_out ? files::path() : place;
}

bool same_name(const std::string& a, const std::string& b) {
    return std::ranges::equal(
        a, b, [](unsigned char x, unsigned char y) { return std::toupper(x) == std::toupper(y); });
}

// The regular file at `path`, or the one beside it whose name differs in case alone; empty without one.
// Scenes come from systems that don't tell cases apart.
files::path existing_file(const files::path& path) {
    std::error_code failed;
    if (files::is_regular_file(path, failed)) return path;
    const std::string name = path.filename().string();
    for (files::directory_iterator entry(path.parent_path(), failed), end; !failed && entry != end;
         entry.increment(failed))
        if (same_name(entry->path().filename().string(), name) && entry->is_regular_file(failed))
            return entry->path();
    return {};
}

bool load_map(map_slot& slot, const std::string& folder) {
    const files::path place = place_in_folder(slot.file_name);
    if (place.empty() || folder.empty()) return false;
    const files::path path = existing_file(files::path(folder) / place);
    if (path.empty()) return false;
    std::uint32_t* block = gtex_load(path.string());
    if (block == nullptr) return false;
    slot.picture.reset(block, std::free);
    slot.pixels = block;
    slot.pixels_width = gtex_load_width;
    slot.pixels_height = gtex_load_height;
    return true;
}

void load_wanted_map(map_slot& slot, bool wanted, const std::string& folder) {
    if (!wanted || slot.pixels != nullptr || load_map(slot, folder)) return;
    if (log_wanted(log_warning))
        log_message(("No picture for the map " + std::string(slot.file_name)).c_str(), log_warning, 0);
}

} // namespace

int material_load_maps(material& m, const std::string& folder) {
    load_wanted_map(m.texture_map, m.has_texture, folder);
    load_wanted_map(m.spec_map, m.has_spec, folder);
    load_wanted_map(m.opac_map, m.has_opac, folder);
    load_wanted_map(m.refl_map, m.has_refl, folder);
    load_wanted_map(m.bump_map, m.has_bump, folder);
    return 1;
}
