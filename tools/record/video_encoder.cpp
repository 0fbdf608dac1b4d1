#include "tools/record/video_encoder.h"

namespace {

void describe_colours(AVCodecContext& context) {
    context.color_range = AVCOL_RANGE_MPEG;
    context.colorspace = AVCOL_SPC_BT709;
    context.color_primaries = AVCOL_PRI_BT709;
    context.color_trc = AVCOL_TRC_BT709;
    context.chroma_sample_location = AVCHROMA_LOC_CENTER; // where `plane_maker` takes it
}

} // namespace

video_encoder::video_encoder(std::int32_t width, std::int32_t height, std::int32_t scale, std::int32_t fps)
    : width_(width * scale), height_(height * scale), fps_(fps), planes_(width, height, scale) {}

std::string video_encoder::open(const film_format& format, bool global_header) {
    const found_encoder found = find_encoder(format.video);
    if (found.codec == nullptr) return "the installed libavcodec has no video encoder for this kind of film";
    context_.reset(avcodec_alloc_context3(found.codec));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    if (!context_ || !frame_ || !packet_) return ffmpeg_error(AVERROR(ENOMEM));

    context_->width = width_;
    context_->height = height_;
    // Every player shows 4:2:0; most stop at a film with full chroma.
    context_->pix_fmt = AV_PIX_FMT_YUV420P;
    context_->time_base = {1, fps_};
    context_->framerate = {fps_, 1};
    context_->sample_aspect_ratio = {1, 1};
    context_->thread_count = 0; // one a processor or more, as the encoder sees fit
    describe_colours(*context_);
    if (global_header) context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (int code = open_encoder(*context_, found); code < 0) return ffmpeg_error(code);

    frame_->format = context_->pix_fmt;
    frame_->width = width_;
    frame_->height = height_;
    frame_->color_range = context_->color_range;
    frame_->pts = 0;
    frame_->quality = context_->global_quality; // some encoders ask each picture
    return ffmpeg_error(av_frame_get_buffer(frame_.get(), 0));
}

std::string video_encoder::add(gtex picture, const packet_sink& keep) {
    // The encoder may still look at the picture before.
    if (int code = av_frame_make_writable(frame_.get()); code < 0) return ffmpeg_error(code);
    picture_planes to;
    for (std::size_t i = 0; i < 3; ++i) {
        to.samples[i] = frame_->data[i];
        to.stride[i] = frame_->linesize[i];
    }
    planes_.convert(picture, to);
    std::string problem = encode_frame(*context_, frame_.get(), *packet_, keep);
    ++frame_->pts;
    return problem;
}

std::string video_encoder::finish(const packet_sink& keep) {
    return encode_frame(*context_, nullptr, *packet_, keep);
}
