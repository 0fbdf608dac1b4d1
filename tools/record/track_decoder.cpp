#include "tools/record/track_decoder.h"

#include <algorithm>

std::string track_decoder::open(const std::string& path, std::int32_t rate) {
    quieten_ffmpeg();
    *this = track_decoder();
    rate_ = rate;
    AVFormatContext* opened = nullptr;
    int code = avformat_open_input(&opened, ("file:" + path).c_str(), nullptr, nullptr);
    if (code < 0) return ffmpeg_error(code);
    input_.reset(opened);
    if (code = avformat_find_stream_info(opened, nullptr); code < 0) return ffmpeg_error(code);
    std::string problem = open_decoder();
    if (!problem.empty()) context_.reset();
    return problem;
}

std::string track_decoder::open_decoder() {
    const AVCodec* codec = nullptr;
    stream_ = av_find_best_stream(input_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (stream_ < 0) return "there is no sound in it";
    context_.reset(avcodec_alloc_context3(codec));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    if (!context_ || !frame_ || !packet_) return ffmpeg_error(AVERROR(ENOMEM));

    const AVStream* stream = input_->streams[stream_];
    context_->pkt_timebase = stream->time_base; // for what the file says to leave out at its start
    if (int code = avcodec_parameters_to_context(context_.get(), stream->codecpar); code < 0)
        return ffmpeg_error(code);
    return ffmpeg_error(avcodec_open2(context_.get(), codec, nullptr));
}

std::size_t track_decoder::read(std::span<float> left, std::span<float> right) {
    std::size_t done = 0;
    while (done < left.size()) {
        if (next_ == ready_[0].size() && !refill()) break;
        const std::size_t count = std::min(left.size() - done, ready_[0].size() - next_);
        std::copy_n(ready_[0].data() + next_, count, left.data() + done);
        std::copy_n(ready_[1].data() + next_, count, right.data() + done);
        next_ += count;
        done += count;
    }
    return done;
}

// Gets some more samples ready. False at the end.
bool track_decoder::refill() {
    next_ = 0;
    ready_[0].clear();
    ready_[1].clear();
    while (context_ && !drained_ && ready_[0].empty()) {
        if (decode_some()) continue;
        if (!all_read_) continue;
        resample(nullptr);
        drained_ = true;
    }
    return !ready_[0].empty();
}

// Decodes a frame, or reads one packet towards it. False if no samples came of it.
bool track_decoder::decode_some() {
    const int code = avcodec_receive_frame(context_.get(), frame_.get());
    if (code >= 0) {
        if (resampler_fits(*frame_)) resample(frame_.get());
        av_frame_unref(frame_.get());
        return true;
    }
    if (code != AVERROR(EAGAIN)) {
        all_read_ = true; // that was the last, or the decoder can't go on
        return false;
    }
    if (av_read_frame(input_.get(), packet_.get()) < 0) {
        avcodec_send_packet(context_.get(), nullptr);
    } else {
        if (packet_->stream_index == stream_) avcodec_send_packet(context_.get(), packet_.get());
        av_packet_unref(packet_.get());
    }
    return false;
}

// Sees to it that the resampler takes what `frame` holds: a file may change its form on the way.
bool track_decoder::resampler_fits(AVFrame& frame) {
    if (resampler_ && frame.sample_rate == taken_rate_ && frame.ch_layout.nb_channels == taken_channels_ &&
        frame.format == taken_format_)
        return true;
    AVChannelLayout stereo{};
    av_channel_layout_default(&stereo, 2);
    SwrContext* made = nullptr;
    int code = swr_alloc_set_opts2(&made, &stereo, AV_SAMPLE_FMT_FLTP, rate_, &frame.ch_layout,
                                   static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    resampler_.reset(made);
    if (code >= 0) code = swr_init(made);
    if (code < 0) resampler_.reset();
    taken_rate_ = frame.sample_rate;
    taken_channels_ = frame.ch_layout.nb_channels;
    taken_format_ = frame.format;
    return code >= 0;
}

// With null: what the resampler still holds.
void track_decoder::resample(const AVFrame* frame) {
    if (!resampler_) return;
    const int incoming = frame != nullptr ? frame->nb_samples : 0;
    const int room = swr_get_out_samples(resampler_.get(), incoming);
    if (room <= 0) return;
    std::uint8_t* to[2];
    for (int i = 0; i < 2; ++i) {
        ready_[i].resize(static_cast<std::size_t>(room));
        to[i] = reinterpret_cast<std::uint8_t*>(ready_[i].data());
    }
    const int made = swr_convert(
        resampler_.get(), to, room,
        frame != nullptr ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr, incoming);
    for (auto& channel : ready_)
        channel.resize(static_cast<std::size_t>(std::max(made, 0)));
}
