// Writes small clips of several codecs into FOLDER, each behind the byte that picks the frames to read.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "assets/forms/avi_writer.h"
#include "tests/support/clip_files.h"
#include "tests/support/temp_file.h"

namespace {

using clip_files::form;
using clip_files::numbered;
using clip_files::picture;

constexpr int width = 40;
constexpr int height = 24;
constexpr int frames = 9;

void write_seed(const std::filesystem::path& folder, const std::string& name,
                const assets::file_bytes& clip) {
    std::ofstream stream(folder / name, std::ios::binary);
    stream.put('\5');
    stream.write(reinterpret_cast<const char*>(clip.data()), static_cast<std::streamsize>(clip.size()));
}

// As the maker of the data tree writes it.
assets::file_bytes own_clip() {
    std::vector<assets::file_bytes> all;
    assets::jpeg_encoder encoder(width, height, 3);
    for (int i = 0; i < frames; ++i)
        all.push_back(encoder.encode(numbered(width, height, i).rgb));
    return assets::avi_file(width, height, 25, all);
}

} // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "Usage: make_clip_seeds FOLDER\n";
        return 2;
    }
    av_log_set_level(AV_LOG_QUIET);
    const std::filesystem::path folder = words[1];
    std::filesystem::create_directories(folder);
    write_seed(folder, "own", own_clip());

    std::vector<picture> pictures;
    for (int i = 0; i < frames; ++i)
        pictures.push_back(numbered(width, height, i));
    const temp_folder scratch;
    for (const form& f :
         {form{.codec = AV_CODEC_ID_FFV1, .pixels = AV_PIX_FMT_BGR0, .key_every = 4},
          form{.codec = AV_CODEC_ID_RAWVIDEO, .pixels = AV_PIX_FMT_BGR24},
          form{.codec = AV_CODEC_ID_RAWVIDEO, .pixels = AV_PIX_FMT_RGB555LE},
          form{.codec = AV_CODEC_ID_HUFFYUV, .pixels = AV_PIX_FMT_RGB24},
          form{.codec = AV_CODEC_ID_ZMBV, .pixels = AV_PIX_FMT_BGR0, .key_every = 4},
          form{.codec = AV_CODEC_ID_PNG, .pixels = AV_PIX_FMT_RGB24},
          form{.codec = AV_CODEC_ID_CINEPAK, .pixels = AV_PIX_FMT_RGB24, .key_every = 4},
          form{.codec = AV_CODEC_ID_MPEG4, .pixels = AV_PIX_FMT_YUV420P, .key_every = 5, .between = 2},
          form{.codec = AV_CODEC_ID_MSMPEG4V3, .pixels = AV_PIX_FMT_YUV420P, .key_every = 5},
          form{.codec = AV_CODEC_ID_MPEG2VIDEO, .pixels = AV_PIX_FMT_YUV420P, .key_every = 5, .between = 2},
          form{.codec = AV_CODEC_ID_H264, .pixels = AV_PIX_FMT_YUV420P, .key_every = 5, .between = 2}}) {
        const std::string name = std::string(avcodec_get_name(f.codec)) + std::to_string(f.pixels);
        if (clip_files::write(scratch.path("clip.avi"), pictures, f))
            write_seed(folder, name, scratch.read("clip.avi"));
    }
    for (const int bits : {1, 4, 8}) {
        const std::vector<std::vector<std::uint8_t>> indices(frames,
                                                             std::vector<std::uint8_t>(width * height, 1));
        const std::array<clip_files::palette, 2> palettes = {
            {{{9, 9, 9}, {200, 90, 7}}, {{7, 7, 7}, {8, 99, 8}}}};
        clip_files::write_indexed(scratch.path("clip.avi"), width, bits, indices, palettes, 3);
        write_seed(folder, "indices" + std::to_string(bits), scratch.read("clip.avi"));
    }
    return 0;
}
