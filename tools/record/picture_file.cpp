#include "tools/record/picture_file.h"

#include <cstdint>
#include <vector>

#include "assets/forms/file_forms.h"
#include "tools/kit/output_file.h"
#include "tools/record/film_format.h"

namespace {

std::vector<std::uint8_t> colours_of(gtex picture) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(picture.count) * 3);
    for (std::int32_t i = 0; i < picture.count; ++i)
        for (const int shift : {16, 8, 0})
            bytes.push_back(static_cast<std::uint8_t>((picture.pixels[i] >> shift) & 255));
    return bytes;
}

} // namespace

bool is_picture_path(std::string_view path) {
    return has_extension(path, ".png");
}

std::string write_picture(const std::string& path, gtex picture) {
    const std::vector<std::uint8_t> bytes =
        assets::png_file(picture.width, picture.height, colours_of(picture));
    if (bytes.empty()) return "the picture can't be packed";
    output_file file(path);
    std::string problem = file.open();
    if (problem.empty()) problem = file.write(bytes);
    return problem.empty() ? file.finish() : problem;
}
