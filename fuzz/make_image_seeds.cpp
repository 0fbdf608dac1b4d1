// Writes small pictures of every form into FOLDER/png, FOLDER/jpg, FOLDER/tga and FOLDER/raw.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "tests/support/picture_files.h"

namespace {

void write(const std::filesystem::path& folder, const std::string& name, const file_bytes& file) {
    std::filesystem::create_directories(folder);
    std::ofstream stream(folder / name, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

png_form png_seed(int colour_type, int depth, bool interlaced) {
    png_form form{
        .width = 9, .height = 7, .colour_type = colour_type, .depth = depth, .interlaced = interlaced};
    for (const std::uint8_t byte : mixed_bytes(form.width * form.height * form.channels(), 1))
        form.samples.push_back(static_cast<std::uint16_t>(byte * 0x0101U & ((1U << depth) - 1U)));
    if (colour_type == PNG_COLOR_TYPE_GRAY) form.transparent_grey = {1};
    if (colour_type == PNG_COLOR_TYPE_RGB) form.transparent_rgb = {1, 2, 3};
    if (colour_type == PNG_COLOR_TYPE_PALETTE) {
        form.palette.assign(std::size_t{1} << depth, png_color{10, 20, 30});
        form.palette_opacity = {0, 128};
    }
    return form;
}

void write_png_seeds(const std::filesystem::path& folder) {
    for (const int colour_type : {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_PALETTE, PNG_COLOR_TYPE_GRAY_ALPHA,
                                  PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA}) {
        for (const int depth : {1, 2, 4, 8, 16}) {
            const bool palette = colour_type == PNG_COLOR_TYPE_PALETTE;
            if (depth < 8 && !palette && colour_type != PNG_COLOR_TYPE_GRAY) continue;
            if (depth == 16 && palette) continue;
            for (const bool interlaced : {false, true}) {
                const std::string name =
                    std::to_string(colour_type) + "_" + std::to_string(depth) + (interlaced ? "i" : "");
                write(folder, name, png_file(png_seed(colour_type, depth, interlaced)));
            }
        }
    }
}

void write_jpg_seeds(const std::filesystem::path& folder) {
    struct colours {
        int components;
        J_COLOR_SPACE in, stored;
    };
    const colours all[] = {{1, JCS_GRAYSCALE, JCS_GRAYSCALE},
                           {3, JCS_RGB, JCS_YCbCr},
                           {3, JCS_RGB, JCS_RGB},
                           {4, JCS_CMYK, JCS_CMYK},
                           {4, JCS_CMYK, JCS_YCCK}};
    for (const auto& [components, in, stored] : all) {
        for (const int way : {0, 1, 2, 3}) {
            const bool progressive = way % 2 == 1, arithmetic = way >= 2;
            const std::string name =
                std::to_string(stored) + (progressive ? "p" : "") + (arithmetic ? "a" : "");
            write(folder, name,
                  jpeg_file({.width = 17,
                             .height = 9,
                             .components = components,
                             .in = in,
                             .stored = stored,
                             .quality = 60,
                             .progressive = progressive,
                             .arithmetic = arithmetic,
                             .samples = mixed_bytes(17 * 9 * static_cast<std::size_t>(components), 2)}));
        }
    }
}

void write_tga_seeds(const std::filesystem::path& folder) {
    for (const unsigned type : {1U, 2U, 9U, 10U}) {
        for (const unsigned depth : {16U, 24U, 32U}) {
            write(folder, std::to_string(type) + "_" + std::to_string(depth),
                  tga_file({.image_type = static_cast<std::uint8_t>(type),
                            .width = 8,
                            .height = 5,
                            .depth = static_cast<std::uint8_t>(depth),
                            .id = {1, 2},
                            .body = mixed_bytes(160, 3)}));
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: make_image_seeds FOLDER\n";
        return 1;
    }
    const std::filesystem::path folder = arguments[1];
    write_png_seeds(folder / "png");
    write_jpg_seeds(folder / "jpg");
    write_tga_seeds(folder / "tga");
    write(folder / "raw", "whole", mixed_bytes(2 + 786 + 64 * 64, 4));
    write(folder / "raw", "short", mixed_bytes(2 + 18 + 5, 4));
    return 0;
}
