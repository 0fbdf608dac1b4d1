#include "tools/record/audio_encoder.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::int64_t free_frame_size = 1024; // for encoders that take frames of any size

// Of the forms that the encoder takes the one nearest to ours.
AVSampleFormat nearest_format(const AVCodec& codec) {
    const AVSampleFormat* first = codec.sample_fmts;
    if (first == nullptr) return AV_SAMPLE_FMT_FLTP;
    for (const AVSampleFormat wanted : {AV_SAMPLE_FMT_FLTP, AV_SAMPLE_FMT_FLT})
        for (const AVSampleFormat* each = first; *each != AV_SAMPLE_FMT_NONE; ++each)
            if (*each == wanted) return wanted;
    return *first;
}

} // namespace

std::string audio_encoder::open(const film_format& format, bool global_header) {
    const found_encoder found = find_encoder(format.audio);
    if (found.codec == nullptr) return "the installed libavcodec has no sound encoder for this kind of film";
    context_.reset(avcodec_alloc_context3(found.codec));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    if (!context_ || !frame_ || !packet_) return ffmpeg_error(AVERROR(ENOMEM));

    context_->sample_rate = format.audio_rate;
    context_->time_base = {1, format.audio_rate};
    context_->sample_fmt = nearest_format(*found.codec);
    av_channel_layout_default(&context_->ch_layout, 2);
    if (global_header) context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (int code = open_encoder(*context_, found); code < 0) return ffmpeg_error(code);

    const bool any_size = (found.codec->capabilities & AV_CODEC_CAP_VARIABLE_FRAME_SIZE) != 0;
    samples_a_frame_ = any_size || context_->frame_size <= 0 ? free_frame_size : context_->frame_size;
    left_.resize(static_cast<std::size_t>(samples_a_frame_));
    right_.resize(left_.size());

    SwrContext* converter = nullptr;
    int code = swr_alloc_set_opts2(&converter, &context_->ch_layout, context_->sample_fmt, format.audio_rate,
                                   &context_->ch_layout, AV_SAMPLE_FMT_FLTP, format.audio_rate, 0, nullptr);
    converter_.reset(converter);
    if (code >= 0) code = swr_init(converter);
    return ffmpeg_error(code);
}

std::string audio_encoder::add_up_to(std::int64_t end, sound_track& from, const packet_sink& keep) {
    std::string problem;
    while (problem.empty() && done_ + samples_a_frame_ <= end)
        problem = add(samples_a_frame_, from, keep);
    return problem;
}

std::string audio_encoder::finish(std::int64_t end, sound_track& from, const packet_sink& keep) {
    std::string problem;
    while (problem.empty() && done_ < end)
        problem = add(std::min(samples_a_frame_, end - done_), from, keep);
    return problem.empty() ? encode_frame(*context_, nullptr, *packet_, keep) : problem;
}

std::string audio_encoder::add(std::int64_t count, sound_track& from, const packet_sink& keep) {
    const std::size_t wanted = static_cast<std::size_t>(count);
    from.read(std::span(left_).first(wanted), std::span(right_).first(wanted));

    av_frame_unref(frame_.get());
    frame_->format = context_->sample_fmt;
    frame_->nb_samples = static_cast<int>(count);
    frame_->sample_rate = context_->sample_rate;
    frame_->pts = done_;
    int code = av_channel_layout_copy(&frame_->ch_layout, &context_->ch_layout);
    if (code >= 0) code = av_frame_get_buffer(frame_.get(), 0);
    if (code < 0) return ffmpeg_error(code);

    const std::array samples{reinterpret_cast<const std::uint8_t*>(left_.data()),
                             reinterpret_cast<const std::uint8_t*>(right_.data())};
    code = swr_convert(converter_.get(), frame_->extended_data, frame_->nb_samples,
                       const_cast<const std::uint8_t**>(samples.data()), frame_->nb_samples);
    if (code < 0) return ffmpeg_error(code);
    done_ += count;
    return encode_frame(*context_, frame_.get(), *packet_, keep);
}
