#include "morvane/media/image_load.h"

#include <algorithm>
#include <cctype>

#include "morvane/media/image_jpg.h"
#include "morvane/media/image_png.h"
#include "morvane/media/image_tga.h"

const std::array<gtex_loader, 3> gtex_loaders{{
    {.extension = "JPG", .reader = gtex_load_jpg, .closes_file = false},
    {.extension = "TGA", .reader = gtex_load_tga, .closes_file = false},
    {.extension = "PNG", .reader = gtex_load_png_stream, .closes_file = true},
}};

namespace {

bool same_letters(char a, char b) {
    return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
}

const gtex_loader* find_loader(std::string_view extension) {
    const auto row = std::ranges::find_if(gtex_loaders, [extension](const gtex_loader& loader) {
        return std::ranges::equal(loader.extension, extension, same_letters);
    });
    return row == gtex_loaders.end() ? nullptr : &*row;
}

// What follows the last '.'; empty, which matches nothing, if there is none. A '.' in the name of a folder
// alone gives an extension with a slash in it, which matches nothing either.
std::string_view extension_of(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : path.substr(dot + 1);
}

} // namespace

std::uint32_t* gtex_load(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        std::perror("Error loading file");
        return nullptr;
    }
    const std::string_view extension = extension_of(path);
    std::uint32_t* block = gtex_load_stream(file, extension);
    const gtex_loader* loader = find_loader(extension);
    if (loader == nullptr || !loader->closes_file) std::fclose(file);
    return block;
}

std::uint32_t* gtex_load_stream(std::FILE* file, std::string_view extension) {
    const gtex_loader* loader = find_loader(extension);
    if (loader == nullptr) return nullptr;
    std::printf("found the extention to be in list of loaders (%.*s)\n", static_cast<int>(extension.size()),
                extension.data());
    return loader->reader(file);
}
