#include "morvane/media/image_jpg.h"

#include <csetjmp>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include <jpeglib.h>

#include "morvane/media/image_block.h"

namespace {

// All that outlives an error inside libjpeg, which jumps to `escape`. Static, so that no local of the
// function with the setjmp has to.
struct jpeg_decoder {
    jpeg_decompress_struct state;
    jpeg_error_mgr errors;
    jpeg_progress_mgr progress;
    std::jmp_buf escape;
    std::uint32_t* block;
};

jpeg_decoder decoder;

// Real encoders write some ten scans; a file with many of them over a huge picture would take hours.
constexpr int most_scans = 64;

// The smallest Huffman-coded file that fills a picture holds one bit for each block of 8x8 pixels, so a
// picture of more pixels for each byte of its file than this is a trap: libjpeg would work through, and in
// progressive files hold, all of it. Small pictures are free of the rule, so that their files may be cut
// anywhere. Arithmetic coding knows no such bound (a plain colour of any size takes some 200 bytes), so there
// pictures are free of it up to 8192 x 8192: 256 MiB of words, and as many coefficients for each component.
constexpr std::int64_t pixels_a_byte = 4096;
constexpr std::int64_t always_fits = 1 << 20;
constexpr std::int64_t always_fits_arithmetic = 1 << 26;

[[noreturn]] void jump_out(j_common_ptr) {
    std::longjmp(decoder.escape, 1);
}

void say_nothing(j_common_ptr) {}

void watch_scans(j_common_ptr) {
    if (decoder.state.input_scan_number > most_scans) std::longjmp(decoder.escape, 1);
}

// Bytes from here to the end of `file`, which stays where it is; -1 where a stream can't tell.
std::int64_t bytes_left(std::FILE* file) {
    const long here = std::ftell(file);
    if (here < 0 || std::fseek(file, 0, SEEK_END) != 0) return -1;
    const long end = std::ftell(file);
    if (std::fseek(file, here, SEEK_SET) != 0) return -1;
    return end - here;
}

bool size_is_credible(std::int64_t width, std::int64_t height, bool arithmetic, std::int64_t file_bytes) {
    if (!image_size_fits(width, height)) return false;
    const std::int64_t pixels = width * height;
    if (pixels <= (arithmetic ? always_fits_arithmetic : always_fits)) return true;
    return file_bytes < 0 || pixels / pixels_a_byte <= file_bytes;
}

void ask_for_colours(jpeg_decompress_struct& state) {
    const bool four_inks = state.jpeg_color_space == JCS_CMYK || state.jpeg_color_space == JCS_YCCK;
    state.out_color_space = four_inks ? JCS_CMYK : JCS_RGB;
    state.quantize_colors = FALSE;
}

void pack_rgb(const JSAMPLE* row, std::uint32_t* words, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x, row += 3)
        words[x] = std::uint32_t{row[0]} << 16 | std::uint32_t{row[1]} << 8 | row[2];
}

// What is left of white light after one ink and black; both as light, not as ink: 255 is none of it.
std::uint32_t through_inks(std::uint32_t colour, std::uint32_t black) {
    return (colour * black + 127) / 255;
}

// `flip` turns amounts of ink into light: 255, or 0 where the file is inverted already.
void pack_cmyk(const JSAMPLE* row, std::uint32_t* words, std::size_t width, std::uint32_t flip) {
    for (std::size_t x = 0; x < width; ++x, row += 4) {
        const std::uint32_t black = row[3] ^ flip;
        words[x] = through_inks(row[0] ^ flip, black) << 16 | through_inks(row[1] ^ flip, black) << 8 |
                   through_inks(row[2] ^ flip, black);
    }
}

void read_rows(jpeg_decompress_struct& state, std::uint32_t* block) {
    const std::size_t width = state.output_width;
    // Belongs to libjpeg's pool and goes with it.
    JSAMPARRAY row =
        state.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&state), JPOOL_IMAGE,
                                state.output_width * static_cast<JDIMENSION>(state.output_components), 1);
    while (state.output_scanline < state.output_height) {
        std::uint32_t* words = block + state.output_scanline * width;
        if (jpeg_read_scanlines(&state, row, 1) != 1) return;
        if (state.out_color_space == JCS_CMYK)
            pack_cmyk(row[0], words, width, state.saw_Adobe_marker ? 0 : 255);
        else
            pack_rgb(row[0], words, width);
    }
}

// An error inside libjpeg comes back to the setjmp. Nothing here has a destructor and no local changes after
// it.
bool read_picture(std::FILE* file) {
    jpeg_decompress_struct& state = decoder.state;
    if (setjmp(decoder.escape) != 0) return false;

    jpeg_create_decompress(&state);
    state.progress = &decoder.progress;
    state.mem->max_memory_to_use = image_block_limit; // what a progressive file holds at once
    const std::int64_t file_bytes = bytes_left(file);
    jpeg_stdio_src(&state, file);
    jpeg_read_header(&state, TRUE);
    ask_for_colours(state);
    jpeg_calc_output_dimensions(&state);
    const bool arithmetic = state.arith_code != FALSE;
    if (!size_is_credible(state.output_width, state.output_height, arithmetic, file_bytes)) return false;
    decoder.block = image_block(state.output_width, state.output_height);
    if (decoder.block == nullptr) return false;

    jpeg_start_decompress(&state);
    read_rows(state, decoder.block);
    jpeg_finish_decompress(&state);
    gtex_load_width = static_cast<std::int32_t>(state.output_width);
    gtex_load_height = static_cast<std::int32_t>(state.output_height);
    return true;
}

} // namespace

std::uint32_t* gtex_load_jpg(std::FILE* file) {
    std::printf("debug: gtex_load_jpg()\n");
    decoder = {};
    decoder.state.err = jpeg_std_error(&decoder.errors);
    decoder.errors.error_exit = jump_out;
    decoder.errors.output_message = say_nothing; // the result tells
    decoder.progress.progress_monitor = watch_scans;

    const bool whole = read_picture(file);
    jpeg_destroy_decompress(&decoder.state);
    std::uint32_t* block = std::exchange(decoder.block, nullptr);
    if (!whole) {
        std::free(block);
        return nullptr;
    }
    std::printf("image loaded\n");
    return block;
}
