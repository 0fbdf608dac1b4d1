#include "driver/data_files.h"

#include <cstdio>

namespace {

constexpr const char* files[] = {
    "data/part1/morvane.png",       "data/part1/presents.png",     "data/part1/lorrim.png",
    "data/part1/greets.png",        "data/part1/greets-1-256.tga", "data/part1/cred.png",
    "data/part1/hum.png",           "data/gfx/sprites/light.tga",  "data/gfx/sprites/light2.tga",
    "data/gfx/sprites/light_3.tga", "data/part1/parental-1.png",   "data/part1/cubev.png",
    "data/part1/violence.png",      "data/part1/velkadame2x.png",  "data/part1/accident1.png",
    "data/part1/accident1-256.tga", "data/part1/tex/texture.tga",  "data/part1/tex/intro1c.tga",
    "data/part1/tex/tunnel3.tga",   "data/part1/tex/cubetex2.tga",
};

bool can_be_opened(const char* path) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return false;
    std::fclose(file);
    return true;
}

} // namespace

std::span<const char* const> show_files() {
    return files;
}

int report_missing_files() {
    int missing = 0;
    for (const char* path : files) {
        if (can_be_opened(path)) continue;
        std::fprintf(stderr, "morvane: %s is missing; build/release/bin/morvane-data makes it\n", path);
        ++missing;
    }
    return missing;
}
