#include "tools/picture_file.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "assets/file_forms.h"
#include "tools/unfinished_file.h"

namespace {

std::vector<std::uint8_t> colours_of(gtex picture) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(picture.count) * 3);
    for (std::int32_t i = 0; i < picture.count; ++i)
        for (const int shift : {16, 8, 0})
            bytes.push_back(static_cast<std::uint8_t>((picture.pixels[i] >> shift) & 255));
    return bytes;
}

// Returns 0 or the error number.
int write_file(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return errno;
    int error = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) error = errno;
    if (std::fclose(file) != 0 && error == 0) error = errno;
    return error;
}

} // namespace

std::string write_picture(const std::string& path, gtex picture) {
    const std::vector<std::uint8_t> bytes =
        assets::png_file(picture.width, picture.height, colours_of(picture));
    if (bytes.empty()) return "the picture can't be packed";
    unfinished_file file(path);
    const int error = write_file(file.name(), bytes);
    return error == 0 ? file.finish() : std::strerror(error);
}
