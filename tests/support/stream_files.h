// MP3 and OGG streams in memory, by their libraries' own encoders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include <lame/lame.h>
#include <vorbis/vorbisenc.h>

namespace stream_files {

// `samples`: one channel at 44100 Hz, from -1 to 1; it goes to both sides.
inline std::vector<std::uint8_t> mp3(const std::vector<float>& samples) {
    lame_t encoder = lame_init();
    lame_set_in_samplerate(encoder, 44100);
    lame_set_num_channels(encoder, 2);
    lame_set_brate(encoder, 128);
    lame_set_quality(encoder, 7);
    if (lame_init_params(encoder) < 0) throw std::runtime_error("no MP3 encoder");

    std::vector<std::uint8_t> bytes(samples.size() * 2 + 20000);
    const auto room = static_cast<int>(bytes.size());
    const int count = lame_encode_buffer_ieee_float(encoder, samples.data(), samples.data(),
                                                    static_cast<int>(samples.size()), bytes.data(), room);
    const int rest = lame_encode_flush(encoder, bytes.data() + count, room - count);
    bytes.resize(static_cast<std::size_t>(count + rest));
    lame_get_lametag_frame(encoder, bytes.data(), bytes.size()); // the exact length, into the first frame
    lame_close(encoder);
    return bytes;
}

inline std::vector<std::uint8_t> ogg(const std::vector<float>& samples) {
    vorbis_info info;
    vorbis_comment comment;
    vorbis_dsp_state encoder;
    vorbis_block block;
    ogg_stream_state stream;
    vorbis_info_init(&info);
    if (vorbis_encode_init_vbr(&info, 2, 44100, 0.4F) != 0) throw std::runtime_error("no OGG encoder");
    vorbis_comment_init(&comment);
    vorbis_analysis_init(&encoder, &info);
    vorbis_block_init(&encoder, &block);
    ogg_stream_init(&stream, 1);

    std::vector<std::uint8_t> bytes;
    const auto write_pages = [&](auto next_page) {
        for (ogg_page page; next_page(&stream, &page) != 0;) {
            bytes.insert(bytes.end(), page.header, page.header + page.header_len);
            bytes.insert(bytes.end(), page.body, page.body + page.body_len);
        }
    };
    ogg_packet packets[3];
    vorbis_analysis_headerout(&encoder, &comment, &packets[0], &packets[1], &packets[2]);
    for (ogg_packet& packet : packets)
        ogg_stream_packetin(&stream, &packet);
    write_pages(ogg_stream_flush);

    float** sides = vorbis_analysis_buffer(&encoder, static_cast<int>(samples.size()));
    for (std::size_t i = 0; i < samples.size(); i++)
        sides[0][i] = sides[1][i] = samples[i];
    vorbis_analysis_wrote(&encoder, static_cast<int>(samples.size()));
    vorbis_analysis_wrote(&encoder, 0);
    while (vorbis_analysis_blockout(&encoder, &block) == 1) {
        vorbis_analysis(&block, nullptr);
        vorbis_bitrate_addblock(&block);
        for (ogg_packet packet; vorbis_bitrate_flushpacket(&encoder, &packet) == 1;)
            ogg_stream_packetin(&stream, &packet);
        write_pages(ogg_stream_pageout);
    }

    ogg_stream_clear(&stream);
    vorbis_block_clear(&block);
    vorbis_dsp_clear(&encoder);
    vorbis_comment_clear(&comment);
    vorbis_info_clear(&info);
    return bytes;
}

} // namespace stream_files
