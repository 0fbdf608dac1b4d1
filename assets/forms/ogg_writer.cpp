#include "assets/forms/ogg_writer.h"

#include <vorbis/vorbisenc.h>

#include <cstddef>
#include <string>

namespace assets::sound {
namespace {

constexpr int chunk_frames = 4096;
constexpr float vbr_quality = 0.6F; // -0.1 to 1

// The encoder's records, which are made in this order and cleared in the other.
struct encoder {
    vorbis_info info{};
    vorbis_comment comment{};
    vorbis_dsp_state state{};
    vorbis_block block{};
    ogg_stream_state stream{};
    bool ready = false;

    encoder(const std::string& title, std::int32_t serial) {
        vorbis_info_init(&info);
        vorbis_comment_init(&comment);
        vorbis_comment_add_tag(&comment, "TITLE", title.c_str());
        ready = vorbis_encode_init_vbr(&info, 2, sample_rate, vbr_quality) == 0 &&
                vorbis_analysis_init(&state, &info) == 0 && vorbis_block_init(&state, &block) == 0 &&
                ogg_stream_init(&stream, serial) == 0;
    }
    ~encoder() {
        ogg_stream_clear(&stream);
        vorbis_block_clear(&block);
        vorbis_dsp_clear(&state);
        vorbis_comment_clear(&comment);
        vorbis_info_clear(&info);
    }
    encoder(const encoder&) = delete;
    encoder& operator=(const encoder&) = delete;
};

void append_page(file_bytes& file, const ogg_page& page) {
    file.insert(file.end(), page.header, page.header + page.header_len);
    file.insert(file.end(), page.body, page.body + page.body_len);
}

// The three packets at the head, on pages of their own.
bool append_head(file_bytes& file, encoder& to) {
    ogg_packet first{};
    ogg_packet comment{};
    ogg_packet code{};
    if (vorbis_analysis_headerout(&to.state, &to.comment, &first, &comment, &code) != 0) return false;
    for (ogg_packet* packet : {&first, &comment, &code})
        if (ogg_stream_packetin(&to.stream, packet) != 0) return false;
    ogg_page page{};
    while (ogg_stream_flush(&to.stream, &page) != 0)
        append_page(file, page);
    return true;
}

// All blocks that the encoder has whole.
bool append_blocks(file_bytes& file, encoder& to) {
    while (vorbis_analysis_blockout(&to.state, &to.block) == 1) {
        if (vorbis_analysis(&to.block, nullptr) != 0 || vorbis_bitrate_addblock(&to.block) != 0) return false;
        ogg_packet packet{};
        while (vorbis_bitrate_flushpacket(&to.state, &packet) == 1) {
            if (ogg_stream_packetin(&to.stream, &packet) != 0) return false;
            ogg_page page{};
            while (ogg_stream_pageout(&to.stream, &page) != 0)
                append_page(file, page);
        }
    }
    return true;
}

} // namespace

file_bytes ogg_file(const stereo& sound, std::string_view title, std::int32_t serial) {
    encoder to(std::string(title), serial);
    file_bytes file;
    if (!to.ready || !append_head(file, to)) return {};
    for (int at = 0; at < sound.frames(); at += chunk_frames) {
        const int count = std::min(chunk_frames, sound.frames() - at);
        float** sides = vorbis_analysis_buffer(&to.state, count);
        std::copy_n(sound.left.data() + at, count, sides[0]);
        std::copy_n(sound.right.data() + at, count, sides[1]);
        if (vorbis_analysis_wrote(&to.state, count) != 0 || !append_blocks(file, to)) return {};
    }
    // No frames tell the encoder that the last ones have come.
    if (vorbis_analysis_wrote(&to.state, 0) != 0 || !append_blocks(file, to)) return {};
    return file;
}

} // namespace assets::sound
