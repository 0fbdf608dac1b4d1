#include "morvane/scene/scene_archive.h"

#include <filesystem>

#include "morvane/base/log.h"
#include "morvane/scene/sceneload.h"

bool sceneload_archive(mopak& archive, moscene& scene, const std::string& name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos) return false;
    const std::string extension = name.substr(dot + 1);
    if (log_wanted(log_debug)) {
        const std::string found =
            "file extension in sceneload_archive found to be of ." + extension + " type";
        log_message(found.c_str(), log_debug, 0);
    }

    std::size_t size = 0;
    const mopak_bytes data = archive.getdata(name, size);
    if (data == nullptr) {
        log_message("Unable to load file!", log_error, 1);
        return false;
    }
    const std::unique_ptr<sceneloader> loader = sceneload_find(extension);
    if (loader == nullptr) return true;
    const std::filesystem::path folder = std::filesystem::path(name).parent_path();
    scene.folder = folder.empty() ? "." : folder.string();
    return loader->load_stream(scene, {data.get(), size});
}
