#include "morvane/media/image_png.h"

#include <cerrno>
#include <csetjmp>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <png.h>

#include "morvane/base/program.h"
#include "morvane/media/image_block.h"

namespace {

// The picture as libpng gives it: 8-bit samples, rows one after the other. No destructor, for an error inside
// libpng jumps out of the function that fills it.
struct png_picture {
    png_uint_32 width = 0; // set as soon as the header is read
    png_uint_32 height = 0;
    int channels = 0;
    png_bytep bytes = nullptr;
    png_bytepp rows = nullptr;
    char trouble[128] = "not a PNG picture"; // as long as it isn't whole
};

constexpr std::size_t signature_bytes = 4;

void free_picture(png_picture& picture) {
    std::free(picture.rows);
    std::free(picture.bytes);
    picture.rows = nullptr;
    picture.bytes = nullptr;
}

void tell(png_picture& picture, const char* trouble) {
    std::snprintf(picture.trouble, sizeof picture.trouble, "%s", trouble);
}

// The library prints nothing: an error is kept for who reads the picture, a warning is none of the viewer's.
void keep_error(png_structp png, png_const_charp message) {
    tell(*static_cast<png_picture*>(png_get_error_ptr(png)), message);
    png_longjmp(png, 1);
}
void drop_warning(png_structp, png_const_charp) {}

// Every file becomes 8-bit RGB or RGBA.
void set_transformations(png_structp png, png_infop info, int depth, int colour_type) {
    if (colour_type == PNG_COLOR_TYPE_PALETTE) png_set_expand(png);
    if (colour_type == PNG_COLOR_TYPE_GRAY && depth < 8) png_set_expand(png);
    if (png_get_valid(png, info, PNG_INFO_tRNS) != 0) png_set_expand(png);
    if (depth == 16) png_set_strip_16(png);
    if (colour_type == PNG_COLOR_TYPE_GRAY || colour_type == PNG_COLOR_TYPE_GRAY_ALPHA)
        png_set_gray_to_rgb(png);
    png_set_interlace_handling(png);
}

// Takes the memory for all rows and points `rows` into it; the rows that never come are 0.
bool allocate_rows(png_picture& picture, std::size_t row_bytes) {
    picture.bytes = static_cast<png_bytep>(std::calloc(picture.height, row_bytes));
    picture.rows = static_cast<png_bytepp>(std::calloc(picture.height, sizeof(png_bytep)));
    if (picture.bytes == nullptr || picture.rows == nullptr) return false;
    for (std::size_t y = 0; y < picture.height; ++y)
        picture.rows[y] = picture.bytes + y * row_bytes;
    return true;
}

// An error inside libpng comes back to the setjmp. Nothing here has a destructor and no local changes after
// it.
bool read_picture(png_structp png, png_infop info, std::FILE* file, png_picture& picture) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;

    png_init_io(png, file);
    png_set_sig_bytes(png, static_cast<int>(signature_bytes));
    png_read_info(png, info);
    int depth = 0;
    int colour_type = 0;
    png_get_IHDR(png, info, &picture.width, &picture.height, &depth, &colour_type, nullptr, nullptr, nullptr);
    tell(picture, "too large, or there is no memory for it");
    if (!image_size_fits(picture.width, picture.height)) return false;

    set_transformations(png, info, depth, colour_type);
    png_read_update_info(png, info);
    picture.channels = png_get_channels(png, info);
    if (picture.channels < 3 || !allocate_rows(picture, png_get_rowbytes(png, info))) return false;
    png_read_image(png, picture.rows);
    return true;
}

// Reads the PNG that `file` holds; true if `picture` is whole. Its memory is to be freed either way.
bool decode(std::FILE* file, png_picture& picture) {
    png_byte signature[signature_bytes];
    if (std::fread(signature, 1, signature_bytes, file) != signature_bytes) {
        if (std::ferror(file) != 0) tell(picture, std::strerror(errno)); // it is a folder, say
        return false;
    }
    if (!png_check_sig(signature, signature_bytes)) return false;

    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &picture, keep_error, drop_warning);
    if (png == nullptr) return false;
    png_infop info = png_create_info_struct(png);
    const bool whole = info != nullptr && read_picture(png, info, file, picture);
    png_destroy_read_struct(&png, &info, nullptr);
    return whole;
}

// Packs samples in the order R, G, B and perhaps A into one word for each pixel.
void pack_words(const png_picture& picture, std::uint32_t* words) {
    const std::size_t count = std::size_t{picture.width} * picture.height;
    const png_byte* from = picture.bytes;
    if (picture.channels == 3) {
        for (std::size_t i = 0; i < count; ++i, from += 3)
            words[i] = std::uint32_t{from[0]} << 16 | std::uint32_t{from[1]} << 8 | from[2];
    } else {
        for (std::size_t i = 0; i < count; ++i, from += 4)
            words[i] = std::uint32_t{from[3]} << 24 | std::uint32_t{from[0]} << 16 |
                       std::uint32_t{from[1]} << 8 | from[2];
    }
}

} // namespace

gtex gtex_load_png(const std::string& path) {
    std::printf("gtex_load_png()\n");
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        program::complain(path, std::strerror(errno));
        std::exit(1);
    }
    png_picture picture;
    const bool whole = decode(file, picture);
    std::fclose(file);

    gtex surface;
    if (whole)
        surface = gtex_create(static_cast<std::int32_t>(picture.width),
                              static_cast<std::int32_t>(picture.height), 0);
    if (surface.pixels != nullptr) pack_words(picture, surface.pixels);
    free_picture(picture);
    if (surface.pixels == nullptr) {
        program::complain(path, picture.trouble);
        std::exit(1);
    }

    std::printf("file loaded\n");
    return surface;
}

std::uint32_t* gtex_load_png_stream(std::FILE* file) {
    png_picture picture;
    const bool whole = decode(file, picture);
    std::fclose(file);
    if (picture.width > 0) {
        gtex_load_width = static_cast<std::int32_t>(picture.width);
        gtex_load_height = static_cast<std::int32_t>(picture.height);
    }

    std::uint32_t* block = whole ? image_block(picture.width, picture.height) : nullptr;
    if (block != nullptr) pack_words(picture, block);
    free_picture(picture);
    if (block != nullptr) std::printf("file loaded\n");
    return block;
}
