#include "assets/forms/avi_writer.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace assets {
namespace {

struct decoder_closer {
    void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
    void operator()(AVFrame* f) const { av_frame_free(&f); }
    void operator()(AVPacket* p) const { av_packet_free(&p); }
};
template<class held>
using owner = std::unique_ptr<held, decoder_closer>;

// R, G, B to luma and chroma of ITU-R BT.601 in full range, as JFIF has them, rounded, by 16 bits of
// fraction.
void convert_row(std::span<const std::uint8_t> from, std::uint8_t* luma, std::uint8_t* blue,
                 std::uint8_t* red) {
    constexpr std::int32_t half = 1 << 15;
    constexpr std::int32_t middle = (128 << 16) + half - 1;
    for (std::size_t x = 0; x < from.size() / 3; ++x) {
        const std::int32_t r = from[x * 3];
        const std::int32_t g = from[x * 3 + 1];
        const std::int32_t b = from[x * 3 + 2];
        luma[x] = static_cast<std::uint8_t>((19595 * r + 38470 * g + 7471 * b + half) >> 16);
        blue[x] = static_cast<std::uint8_t>((-11059 * r - 21709 * g + 32768 * b + middle) >> 16);
        red[x] = static_cast<std::uint8_t>((32768 * r - 27439 * g - 5329 * b + middle) >> 16);
    }
}

// Chunks of a RIFF file: a name, the length of what follows, the content, a byte more if that is odd. `begin`
// gives the place of the length for `end`.
class riff_writer {
  public:
    void name(std::string_view four_letters) {
        bytes_.insert(bytes_.end(), four_letters.begin(), four_letters.end());
    }
    void numbers(std::initializer_list<std::uint32_t> values) {
        for (const std::uint32_t value : values)
            for (int shift = 0; shift < 32; shift += 8)
                bytes_.push_back(static_cast<std::uint8_t>(value >> shift & 0xffU));
    }
    void append(std::span<const std::uint8_t> content) {
        bytes_.insert(bytes_.end(), content.begin(), content.end());
    }
    std::size_t begin(std::string_view chunk) {
        name(chunk);
        numbers({0});
        return bytes_.size() - 4;
    }
    std::size_t begin_list(std::string_view kind, std::string_view of) {
        const std::size_t place = begin(kind);
        name(of);
        return place;
    }
    void end(std::size_t place) {
        const std::size_t length = bytes_.size() - place - 4;
        for (std::size_t i = 0; i < 4; ++i)
            bytes_[place + i] = static_cast<std::uint8_t>(length >> (8 * i) & 0xffU);
        if (length % 2 != 0) bytes_.push_back(0);
    }
    file_bytes bytes() { return std::move(bytes_); }

  private:
    file_bytes bytes_;
};

} // namespace

struct jpeg_encoder::parts {
    owner<AVCodecContext> encoder;
    owner<AVFrame> frame;
    owner<AVPacket> packet;
};

jpeg_encoder::jpeg_encoder(std::int32_t width, std::int32_t height, int quality) : parts_(new parts) {
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    if (codec == nullptr) return;
    owner<AVCodecContext> encoder(avcodec_alloc_context3(codec));
    parts_->frame.reset(av_frame_alloc());
    parts_->packet.reset(av_packet_alloc());
    if (!encoder || !parts_->frame || !parts_->packet) return;
    encoder->width = width;
    encoder->height = height;
    encoder->time_base = {1, 25};
    encoder->pix_fmt = AV_PIX_FMT_YUVJ444P;
    encoder->color_range = AVCOL_RANGE_JPEG;
    // The same bytes on every machine.
    encoder->flags |= AV_CODEC_FLAG_QSCALE | AV_CODEC_FLAG_BITEXACT;
    encoder->dct_algo = FF_DCT_INT;
    encoder->global_quality = FF_QP2LAMBDA * quality;
    encoder->qmin = 1;
    encoder->thread_count = 1;
    AVFrame& frame = *parts_->frame;
    frame.width = width;
    frame.height = height;
    frame.format = encoder->pix_fmt;
    frame.quality = encoder->global_quality;
    if (av_frame_get_buffer(&frame, 0) < 0 || avcodec_open2(encoder.get(), codec, nullptr) < 0) return;
    parts_->encoder = std::move(encoder);
}

jpeg_encoder::~jpeg_encoder() = default;

file_bytes jpeg_encoder::encode(std::span<const std::uint8_t> pixels) {
    if (!parts_->encoder) return {};
    AVFrame& frame = *parts_->frame;
    if (av_frame_make_writable(&frame) < 0) return {};
    const auto row = static_cast<std::size_t>(frame.width) * 3;
    for (std::int32_t y = 0; y < frame.height; ++y) {
        auto plane = [&](std::size_t i) { return frame.data[i] + std::ptrdiff_t{y} * frame.linesize[i]; };
        convert_row(pixels.subspan(static_cast<std::size_t>(y) * row, row), plane(0), plane(1), plane(2));
    }
    ++frame.pts;
    if (avcodec_send_frame(parts_->encoder.get(), &frame) < 0) return {};
    AVPacket& packet = *parts_->packet;
    if (avcodec_receive_packet(parts_->encoder.get(), &packet) < 0) return {};
    file_bytes bytes(packet.data, packet.data + packet.size);
    av_packet_unref(&packet);
    return bytes;
}

file_bytes avi_file(std::int32_t width, std::int32_t height, int rate, std::span<const file_bytes> frames) {
    const auto count = static_cast<std::uint32_t>(frames.size());
    std::size_t largest = 0;
    for (const file_bytes& frame : frames)
        largest = std::max(largest, frame.size());
    riff_writer file;
    const std::size_t whole = file.begin_list("RIFF", "AVI ");
    const std::size_t heads = file.begin_list("LIST", "hdrl");
    const std::size_t main_head = file.begin("avih");
    constexpr std::uint32_t has_index = 0x10;
    file.numbers({1000000U / static_cast<std::uint32_t>(rate), 0, 0, has_index, count, 0, 1,
                  static_cast<std::uint32_t>(largest), static_cast<std::uint32_t>(width),
                  static_cast<std::uint32_t>(height), 0, 0, 0, 0});
    file.end(main_head);
    const std::size_t stream = file.begin_list("LIST", "strl");
    const std::size_t stream_head = file.begin("strh");
    file.name("vids");
    file.name("MJPG");
    file.numbers({0, 0, 0, 1, static_cast<std::uint32_t>(rate), 0, count, static_cast<std::uint32_t>(largest),
                  UINT32_MAX, 0, 0,
                  static_cast<std::uint32_t>(height) << 16 | static_cast<std::uint32_t>(width)});
    file.end(stream_head);
    const std::size_t format = file.begin("strf");
    file.numbers({40, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), 24U << 16 | 1U});
    file.name("MJPG");
    file.numbers({static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(height) * 3, 0, 0, 0, 0});
    file.end(format);
    file.end(stream);
    file.end(heads);

    const std::size_t movie = file.begin_list("LIST", "movi");
    const std::size_t origin = movie + 4; // of the places in the index: the word "movi"
    std::vector<std::size_t> places;
    for (const file_bytes& frame : frames) {
        const std::size_t chunk = file.begin("00dc");
        places.push_back(chunk - 4 - origin);
        file.append(frame);
        file.end(chunk);
    }
    file.end(movie);
    const std::size_t index = file.begin("idx1");
    constexpr std::uint32_t key_frame = 0x10;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        file.name("00dc");
        file.numbers(
            {key_frame, static_cast<std::uint32_t>(places[i]), static_cast<std::uint32_t>(frames[i].size())});
    }
    file.end(index);
    file.end(whole);
    return file.bytes();
}

} // namespace assets
