// What the film's parts share of FFmpeg's libraries: handles that free themselves, errors as texts, the way
// of frames through an encoder.
#pragma once

#include <functional>
#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

struct ffmpeg_deleter {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
};
template<class handle>
using ffmpeg_handle = std::unique_ptr<handle, ffmpeg_deleter>;

// From here on the libraries print nothing: what matters comes back as an error number.
void quieten_ffmpeg();

// What an error number of the libraries means; empty for 0 and above.
std::string ffmpeg_error(int code);

// Takes a packet that an encoder made. Returns an empty text, or the reason why it could not be kept.
using packet_sink = std::function<std::string(AVPacket& packet)>;

// Sends `frame` (null: no more come) to an open encoder and hands over the packets that are ready. Returns an
// empty text or the reason of the failure.
std::string encode_frame(AVCodecContext& encoder, const AVFrame* frame, AVPacket& packet,
                         const packet_sink& keep);
