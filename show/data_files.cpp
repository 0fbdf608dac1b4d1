#include "show/data_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "morvane/base/program.h"
#include "morvane/platform/time/winbase.h"

namespace fs = std::filesystem;

namespace {

// Start-up ends without any of these,
constexpr const char* needed[] = {
    scene_file,
    "part1/morvane.png",
    "part1/presents.png",
    "part1/lorrim.png",
    "part1/greets.png",
    "part1/greets-1-256.tga",
    "part1/cred.png",
    "part1/hum.png",
    "gfx/sprites/light.tga",
    "gfx/sprites/light2.tga",
    "gfx/sprites/light_3.tga",
    "part1/parental-1.png",
    "part1/cubev.png",
    "part1/violence.png",
    "part1/velkadame2x.png",
    "part1/accident1.png",
    "part1/accident1-256.tga",
    "part1/tex/texture.tga",
    "part1/tex/intro1c.tga",
    "part1/tex/tunnel3.tga",
    "part1/tex/cubetex2.tga",
};

// and goes on without these; what can't be read stays empty.
constexpr const char* wanted[] = {
    "asc/meteor/inside.asc",
    "asc/meteor/meteor2.asc",
    "asc/cube.asc",
};

constexpr const char* remedy = "not there; morvane-data, beside this program, makes it";

fs::path tree = "data";

bool is_there(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

bool holds_tree(const fs::path& folder) {
    return is_there(folder / scene_file);
}

// Why `path` can't be read, null if it can.
const char* trouble_with(const std::string& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) return std::strerror(EISDIR);
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return std::strerror(errno);
    std::fclose(file);
    return nullptr;
}

void report_missing(std::span<const char* const> files) {
    for (const char* file : files) {
        const std::string path = data_path(file);
        const char* trouble = trouble_with(path);
        if (trouble != nullptr) program::complain(path, is_there(path) ? trouble : remedy);
    }
}

} // namespace

std::span<const char* const> needed_files() {
    return needed;
}

std::span<const char* const> wanted_files() {
    return wanted;
}

std::optional<fs::path> search_data(const fs::path& program_folder) {
    constexpr int levels = 4; // the program's folder and three above it
    if (holds_tree("data")) return "data";
    if (program_folder.empty()) return std::nullopt;
    fs::path folder = program_folder;
    for (int level = 0; level < levels; ++level, folder = folder.parent_path())
        if (holds_tree(folder / "data")) return folder / "data";
    const fs::path installed = program_folder.parent_path() / "share" / "morvane" / "data";
    if (holds_tree(installed)) return installed;
    return std::nullopt;
}

bool find_data(const std::string& named) {
    if (!named.empty()) {
        if (!holds_tree(named)) {
            program::complain(named, std::string("no data tree; it would hold ") + scene_file);
            return false;
        }
        tree = named;
        return true;
    }
    const std::optional<fs::path> found = search_data(winbase::program_folder());
    if (found)
        tree = *found;
    else
        program::complain(data_path(scene_file),
                          "there is no data tree here; morvane-data, beside this program, makes one, and "
                          "--data names one that lies elsewhere");
    return found.has_value();
}

std::string data_path(const char* file) {
    return (tree / file).string();
}

bool can_be_read(const std::string& path) {
    return trouble_with(path) == nullptr;
}

bool needed_files_there() {
    return std::ranges::all_of(needed, [](const char* file) { return can_be_read(data_path(file)); });
}

void report_missing_files() {
    report_missing(needed);
    report_missing(wanted);
    if (const std::string clip = data_path(clip_file); !is_there(clip)) program::complain(clip, remedy);
}
