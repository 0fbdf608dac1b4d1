// What a player finds in a film: its streams, every picture, every sample at its time.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

struct film_content {
    int width = 0, height = 0;
    double fps = 0;
    std::string video_codec, audio_codec;
    std::vector<std::vector<float>> pictures; // R, G, B of every pixel, 0 to 255, by ITU-R BT.709
    std::vector<double> times;                // of the pictures, in seconds from the first on
    int rate = 0;                             // samples a second
    std::vector<float> sound; // the left channel; sample 0 plays with the first picture, if there is one

    // Root mean square of the sound between two times in seconds.
    double level(double from, double to) const {
        const auto first = static_cast<std::size_t>(from * rate);
        const auto last = std::min(static_cast<std::size_t>(to * rate), sound.size());
        double sum = 0;
        for (std::size_t i = first; i < last; ++i)
            sum += static_cast<double>(sound[i]) * static_cast<double>(sound[i]);
        return last > first ? std::sqrt(sum / static_cast<double>(last - first)) : 0;
    }
};

class film_reader {
  public:
    explicit film_reader(const std::string& path) {
        if (avformat_open_input(&input, ("file:" + path).c_str(), nullptr, nullptr) < 0)
            throw std::runtime_error("not a film: " + path);
        avformat_find_stream_info(input, nullptr);
        for (unsigned i = 0; i < input->nb_streams; ++i)
            open(*input->streams[i]);
    }
    ~film_reader() {
        for (AVCodecContext*& decoder : decoders)
            avcodec_free_context(&decoder);
        avformat_close_input(&input);
        av_frame_free(&frame);
        av_packet_free(&packet);
    }
    film_reader(const film_reader&) = delete;
    film_reader& operator=(const film_reader&) = delete;

    film_content read() {
        while (av_read_frame(input, packet) >= 0) {
            decode(packet->stream_index, packet);
            av_packet_unref(packet);
        }
        for (int i = 0; i < static_cast<int>(decoders.size()); ++i)
            decode(i, nullptr);
        start_at(content.times.empty() ? first_sound : content.times.front());
        return content;
    }

  private:
    void open(const AVStream& stream) {
        const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
        AVCodecContext* decoder = avcodec_alloc_context3(codec);
        avcodec_parameters_to_context(decoder, stream.codecpar);
        decoder->pkt_timebase = stream.time_base;
        if (avcodec_open2(decoder, codec, nullptr) < 0) throw std::runtime_error("a stream without decoder");
        decoders.push_back(decoder);
        const std::string name = avcodec_get_name(stream.codecpar->codec_id);
        if (decoder->codec_type == AVMEDIA_TYPE_VIDEO) {
            content.width = decoder->width;
            content.height = decoder->height;
            content.fps = av_q2d(stream.avg_frame_rate);
            content.video_codec = name;
        } else {
            content.rate = decoder->sample_rate;
            content.audio_codec = name;
        }
    }

    void decode(int index, const AVPacket* from) {
        AVCodecContext* decoder = decoders[static_cast<std::size_t>(index)];
        avcodec_send_packet(decoder, from);
        while (avcodec_receive_frame(decoder, frame) >= 0) {
            const double time =
                static_cast<double>(frame->best_effort_timestamp) * av_q2d(input->streams[index]->time_base);
            if (decoder->codec_type == AVMEDIA_TYPE_VIDEO)
                keep_picture(time);
            else
                keep_sound(time);
            av_frame_unref(frame);
        }
    }

    // Makes `origin` the time 0.
    void start_at(double origin) {
        for (double& time : content.times)
            time -= origin;
        const auto early =
            std::min(content.sound.size(), static_cast<std::size_t>(std::lround(origin * content.rate)));
        content.sound.erase(content.sound.begin(),
                            content.sound.begin() + static_cast<std::ptrdiff_t>(early));
    }

    void keep_picture(double time) {
        if (frame->format != AV_PIX_FMT_YUV420P) throw std::runtime_error("not 4:2:0");
        content.times.push_back(time);
        std::vector<float>& picture = content.pictures.emplace_back();
        for (int y = 0; y < frame->height; ++y)
            for (int x = 0; x < frame->width; ++x) {
                const auto sample = [&](int plane, int column, int row) {
                    return static_cast<float>(frame->data[plane][row * frame->linesize[plane] + column]);
                };
                const float luma = (sample(0, x, y) - 16) * 255 / 219;
                const float blue = (sample(1, x / 2, y / 2) - 128) * 255 / 224;
                const float red = (sample(2, x / 2, y / 2) - 128) * 255 / 224;
                picture.push_back(luma + 1.5748F * red);
                picture.push_back(luma - 0.1873F * blue - 0.4681F * red);
                picture.push_back(luma + 1.8556F * blue);
            }
    }

    void keep_sound(double time) {
        if (content.sound.empty()) first_sound = std::max(time, 0.0);
        const auto start = static_cast<std::size_t>(std::max(0L, std::lround(time * content.rate)));
        const auto count = static_cast<std::size_t>(frame->nb_samples);
        content.sound.resize(std::max(content.sound.size(), start + count));
        for (std::size_t i = 0; i < count; ++i)
            content.sound[start + i] = sample_of(i);
    }

    float sample_of(std::size_t i) const {
        const auto left = frame->extended_data[0];
        const auto stride = static_cast<std::size_t>(frame->ch_layout.nb_channels);
        switch (frame->format) {
        case AV_SAMPLE_FMT_FLTP:
            return reinterpret_cast<const float*>(left)[i];
        case AV_SAMPLE_FMT_FLT:
            return reinterpret_cast<const float*>(left)[i * stride];
        case AV_SAMPLE_FMT_S16:
            return reinterpret_cast<const std::int16_t*>(left)[i * stride] / 32768.0F;
        case AV_SAMPLE_FMT_S16P:
            return reinterpret_cast<const std::int16_t*>(left)[i] / 32768.0F;
        default:
            throw std::runtime_error("samples of an unknown form");
        }
    }

    AVFormatContext* input = nullptr;
    AVFrame* frame = av_frame_alloc();
    AVPacket* packet = av_packet_alloc();
    std::vector<AVCodecContext*> decoders;
    film_content content;
    double first_sound = 0;
};

inline film_content read_film(const std::string& path) {
    return film_reader(path).read();
}
