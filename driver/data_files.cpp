#include "driver/data_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace {

// Start-up ends without any of these,
constexpr const char* needed[] = {
    "data/3d/xtelmar4.3ds",        "data/part1/morvane.png",       "data/part1/presents.png",
    "data/part1/lorrim.png",       "data/part1/greets.png",        "data/part1/greets-1-256.tga",
    "data/part1/cred.png",         "data/part1/hum.png",           "data/gfx/sprites/light.tga",
    "data/gfx/sprites/light2.tga", "data/gfx/sprites/light_3.tga", "data/part1/parental-1.png",
    "data/part1/cubev.png",        "data/part1/violence.png",      "data/part1/velkadame2x.png",
    "data/part1/accident1.png",    "data/part1/accident1-256.tga", "data/part1/tex/texture.tga",
    "data/part1/tex/intro1c.tga",  "data/part1/tex/tunnel3.tga",   "data/part1/tex/cubetex2.tga",
};

// and goes on without these; what can't be read stays empty.
constexpr const char* wanted[] = {
    "data/asc/meteor/inside.asc",
    "data/asc/meteor/meteor2.asc",
    "data/asc/cube.asc",
};

// Why `path` can't be read, null if it can.
const char* trouble_with(const char* path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) return std::strerror(EISDIR);
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return std::strerror(errno);
    std::fclose(file);
    return nullptr;
}

int report_missing(std::span<const char* const> files) {
    int missing = 0;
    for (const char* path : files) {
        const char* trouble = trouble_with(path);
        if (trouble == nullptr) continue;
        ++missing;
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored))
            std::fprintf(stderr, "morvane: %s can't be read: %s\n", path, trouble);
        else
            std::fprintf(stderr, "morvane: %s is missing; morvane-data, beside this program, makes it\n",
                         path);
    }
    return missing;
}

} // namespace

std::span<const char* const> needed_files() {
    return needed;
}

std::span<const char* const> wanted_files() {
    return wanted;
}

bool can_be_read(const char* path) {
    return trouble_with(path) == nullptr;
}

int report_missing_files() {
    const int missing = report_missing(needed);
    report_missing(wanted);
    return missing;
}
