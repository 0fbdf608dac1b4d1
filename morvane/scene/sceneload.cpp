#include "morvane/scene/sceneload.h"

#include <array>

#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

namespace {

struct loader_row {
    std::string_view extension;
    std::unique_ptr<sceneloader> (*make)();
};

constexpr std::array<loader_row, 1> loaders{{
    {.extension = "3ds", .make = [] { return std::unique_ptr<sceneloader>(new sceneloader_3ds); }},
}};

// What lies before the last '/': "." for a name alone.
std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

std::unique_ptr<sceneloader> sceneload_find(std::string_view extension) {
    for (const loader_row& row : loaders)
        if (row.extension == extension) return row.make();
    return nullptr;
}

bool sceneload_file(moscene& scene, const std::string& path) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos) return false;
    const std::string extension = path.substr(dot + 1);
    if (log_wanted(log_debug)) {
        const std::string line = "file extension in sceneload_file found to be of ." + extension + " type";
        log_message(line.c_str(), log_debug, 0);
    }
    const std::unique_ptr<sceneloader> loader = sceneload_find(extension);
    if (loader == nullptr) return true;
    scene.folder = folder_of(path);
    return loader->load_file(scene, path);
}
