#include "tools/kit/ffmpeg_kit.h"

#include <array>
#include <cerrno>

void quieten_ffmpeg() {
    av_log_set_level(AV_LOG_QUIET);
}

std::string ffmpeg_error(int code) {
    if (code >= 0) return {};
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

std::string encode_frame(AVCodecContext& encoder, const AVFrame* frame, AVPacket& packet,
                         const packet_sink& keep) {
    int code = avcodec_send_frame(&encoder, frame);
    if (code < 0) return ffmpeg_error(code);
    while ((code = avcodec_receive_packet(&encoder, &packet)) >= 0) {
        std::string problem = keep(packet);
        av_packet_unref(&packet);
        if (!problem.empty()) return problem;
    }
    // "Send more" and "that was all" are the two good ends.
    return code == AVERROR(EAGAIN) || code == AVERROR_EOF ? std::string() : ffmpeg_error(code);
}
