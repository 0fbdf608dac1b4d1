// AVI clips for tests, encoded by the library that knows the codecs.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace clip_files {

struct picture {
    int width, height;
    std::vector<std::uint8_t> rgb; // top row first

    const std::uint8_t* at(int x, int y) const { return &rgb[static_cast<std::size_t>(y * width + x) * 3]; }
};

// A picture that tells its number: light and dark columns are its bits, the lowest at the left, over the
// upper half; below lies colour that moves.
inline picture numbered(int width, int height, int number) {
    picture p{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool bit = (number >> (x * 8 / width) & 1) != 0;
            const std::array<int, 3> lower = {(x * 3 + number * 5) % 200, (y * 4 + number) % 180, 90};
            for (const int colour : lower)
                p.rgb.push_back(static_cast<std::uint8_t>(y < height / 2 ? (bit ? 140 : 70) : colour));
        }
    }
    return p;
}

// A picture with columns more at the right, like its last one: converters read beyond odd widths.
inline constexpr int extra_columns = 16;
inline std::vector<std::uint8_t> widened(const picture& p) {
    std::vector<std::uint8_t> wide;
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width + extra_columns; ++x)
            wide.insert(wide.end(), p.at(std::min(x, p.width - 1), y), p.at(std::min(x, p.width - 1), y) + 3);
    return wide;
}

struct form {
    AVCodecID codec = AV_CODEC_ID_FFV1;
    AVPixelFormat pixels = AV_PIX_FMT_BGR0;
    int key_every = 12;
    int between = 0; // frames coded from both sides between two others
    const char* options = "";
};

// Encodes `pictures` into the file at `path`, `rate` frames in `scale` seconds. `times` (optional) says when
// each is shown, in frames; the file leaves out those between. False if the library lacks the encoder.
inline bool write(const std::string& path, const std::vector<picture>& pictures, const form& how,
                  int rate = 25, int scale = 1, const std::vector<int>& times = {}) {
    const AVCodec* codec = avcodec_find_encoder(how.codec);
    if (codec == nullptr) return false;
    auto need = [](bool fine) {
        if (!fine) throw std::runtime_error("the test's clip can't be written");
    };
    const int width = pictures.front().width;
    const int height = pictures.front().height;
    AVFormatContext* file = nullptr;
    need(avformat_alloc_output_context2(&file, nullptr, "avi", path.c_str()) >= 0);
    AVStream* stream = avformat_new_stream(file, nullptr);
    AVCodecContext* encoder = avcodec_alloc_context3(codec);
    encoder->width = width;
    encoder->height = height;
    encoder->pix_fmt = how.pixels;
    encoder->time_base = {scale, rate};
    encoder->gop_size = how.key_every;
    encoder->max_b_frames = how.between;
    encoder->bit_rate = 4000000;
    encoder->thread_count = 1;
    AVDictionary* options = nullptr;
    av_dict_parse_string(&options, how.options, "=", ":", 0);
    need(avcodec_open2(encoder, codec, &options) >= 0);
    av_dict_free(&options);
    avcodec_parameters_from_context(stream->codecpar, encoder);
    stream->time_base = encoder->time_base;
    need(avio_open(&file->pb, path.c_str(), AVIO_FLAG_WRITE) >= 0);
    need(avformat_write_header(file, nullptr) >= 0);

    SwsContext* converter = sws_getContext(width, height, AV_PIX_FMT_RGB24, width, height, how.pixels,
                                           SWS_BILINEAR | SWS_ACCURATE_RND, nullptr, nullptr, nullptr);
    AVPacket* packet = av_packet_alloc();
    auto take_packets = [&] {
        while (avcodec_receive_packet(encoder, packet) >= 0) {
            av_packet_rescale_ts(packet, encoder->time_base, stream->time_base);
            need(av_interleaved_write_frame(file, packet) >= 0);
        }
    };
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        AVFrame* frame = av_frame_alloc();
        frame->width = width;
        frame->height = height;
        frame->format = how.pixels;
        frame->pts = times.empty() ? static_cast<int>(i) : times[i];
        need(av_frame_get_buffer(frame, 0) >= 0);
        const std::vector<std::uint8_t> wide = widened(pictures[i]);
        const std::uint8_t* rows[4] = {wide.data(), nullptr, nullptr, nullptr};
        const int strides[4] = {(width + extra_columns) * 3, 0, 0, 0};
        sws_scale(converter, rows, strides, 0, height, frame->data, frame->linesize);
        need(avcodec_send_frame(encoder, frame) >= 0);
        av_frame_free(&frame);
        take_packets();
    }
    avcodec_send_frame(encoder, nullptr);
    take_packets();
    need(av_write_trailer(file) >= 0);
    av_packet_free(&packet);
    sws_freeContext(converter);
    avcodec_free_context(&encoder);
    avio_closep(&file->pb);
    avformat_free_context(file);
    return true;
}

using palette = std::vector<std::array<std::uint8_t, 3>>; // red, green, blue

// An uncompressed clip of indices (a byte each, top row first) that takes `bits` for each pixel. From frame
// `change` on the second palette holds.
inline void write_indexed(const std::string& path, int width, int bits,
                          const std::vector<std::vector<std::uint8_t>>& frames,
                          const std::array<palette, 2>& palettes, std::size_t change) {
    const auto columns = static_cast<std::size_t>(width);
    const auto depth = static_cast<std::size_t>(bits);
    const std::size_t rows = frames[0].size() / columns;
    const std::size_t row_bytes = (columns * depth + 31) / 32 * 4;
    AVFormatContext* file = nullptr;
    avformat_alloc_output_context2(&file, nullptr, "avi", path.c_str());
    AVStream* stream = avformat_new_stream(file, nullptr);
    AVCodecParameters& form = *stream->codecpar;
    form.codec_type = AVMEDIA_TYPE_VIDEO;
    form.codec_id = AV_CODEC_ID_RAWVIDEO;
    form.format = AV_PIX_FMT_PAL8;
    form.bits_per_coded_sample = bits;
    form.width = width;
    form.height = static_cast<int>(rows);
    stream->time_base = {1, 25};
    avio_open(&file->pb, path.c_str(), AVIO_FLAG_WRITE);
    bool fine = avformat_write_header(file, nullptr) >= 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        AVPacket* packet = av_packet_alloc();
        av_new_packet(packet, static_cast<int>(rows * row_bytes));
        std::fill_n(packet->data, packet->size, std::uint8_t{0});
        for (std::size_t at = 0; at < frames[i].size(); ++at) {
            const std::size_t bit = at / columns * row_bytes * 8 + at % columns * depth;
            packet->data[bit / 8] |= static_cast<std::uint8_t>(frames[i][at] << (8 - depth - bit % 8));
        }
        packet->dts = packet->pts = static_cast<std::int64_t>(i);
        packet->flags = AV_PKT_FLAG_KEY;
        std::uint8_t* colours = av_packet_new_side_data(packet, AV_PKT_DATA_PALETTE, AVPALETTE_SIZE);
        std::fill_n(colours, AVPALETTE_SIZE, std::uint8_t{0});
        for (const auto& [red, green, blue] : palettes[i < change ? 0 : 1]) {
            const std::array<std::uint8_t, 4> word = {blue, green, red, 255};
            colours = std::copy(word.begin(), word.end(), colours);
        }
        fine = fine && av_write_frame(file, packet) >= 0;
        av_packet_free(&packet);
    }
    if (!fine || av_write_trailer(file) < 0) throw std::runtime_error("the test's clip can't be written");
    avio_closep(&file->pb);
    avformat_free_context(file);
}

} // namespace clip_files
