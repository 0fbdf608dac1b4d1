#include "tools/record/film_writer.h"

#include <algorithm>
#include <array>

namespace {

// The stream of `container` that an encoder's packets go to; null for want of memory.
AVStream* add_stream(AVFormatContext& container, const AVCodecContext& encoder) {
    AVStream* stream = avformat_new_stream(&container, nullptr);
    if (stream == nullptr || avcodec_parameters_from_context(stream->codecpar, &encoder) < 0) return nullptr;
    stream->time_base = encoder.time_base;
    stream->avg_frame_rate = encoder.framerate;
    stream->sample_aspect_ratio = encoder.sample_aspect_ratio;
    return stream;
}

// Takes from the sound what a player that isn't told of it will hear before its first sample.
void leave_out(sound_track& sound, int samples) {
    std::array<float, 256> unused;
    while (samples > 0) {
        const int count = std::min(samples, static_cast<int>(unused.size()));
        const std::span<float> some = std::span(unused).first(static_cast<std::size_t>(count));
        sound.read(some, some);
        samples -= count;
    }
}

} // namespace

void film_writer::container_deleter::operator()(AVFormatContext* container) const {
    avio_closep(&container->pb);
    avformat_free_context(container);
}

film_writer::~film_writer() = default;

std::string film_writer::open(const film_settings& settings) {
    quieten_ffmpeg();
    format_ = film_format_of(settings.path);
    if (format_ == nullptr) return "not a kind of film that can be written";
    fps_ = settings.fps;
    file_.emplace(settings.path);
    if (file_->direct() && format_->seeks)
        return "this kind of film can't be written to a device or pipe; .mkv and .webm can";
    if (std::string problem = file_->open(); !problem.empty()) return problem;

    AVFormatContext* container = nullptr;
    // A name with a protocol, so that no name of a file is taken for one.
    const std::string name =
        file_->direct() ? "pipe:" + std::to_string(file_->descriptor()) : "file:" + file_->name();
    const int code = avformat_alloc_output_context2(&container, nullptr, format_->container, name.c_str());
    if (code < 0) return ffmpeg_error(code);
    container_.reset(container);
    if (std::string problem = open_file(); !problem.empty()) return problem;
    return open_streams(settings);
}

std::string film_writer::open_file() {
    return ffmpeg_error(avio_open(&container_->pb, container_->url, AVIO_FLAG_WRITE));
}

std::string film_writer::open_streams(const film_settings& settings) {
    const bool global_header = (container_->oformat->flags & AVFMT_GLOBALHEADER) != 0;
    video_.emplace(settings.width, settings.height, settings.scale, settings.fps);
    if (std::string problem = video_->open(*format_, global_header); !problem.empty()) return problem;
    video_stream_ = add_stream(*container_, video_->context());
    if (video_stream_ == nullptr) return ffmpeg_error(AVERROR(ENOMEM));

    if (!settings.tracks.empty()) {
        audio_.emplace();
        if (std::string problem = audio_->open(*format_, global_header); !problem.empty()) return problem;
        audio_stream_ = add_stream(*container_, audio_->context());
        if (audio_stream_ == nullptr) return ffmpeg_error(AVERROR(ENOMEM));
        sound_.emplace(settings.tracks, format_->audio_rate, settings.from);
        const int early = audio_->context().initial_padding;
        if (format_->start != sound_start::by_times) audio_delay_ = early;
        if (format_->start == sound_start::unknown) leave_out(*sound_, early);
    }

    AVDictionary* options = nullptr;
    av_dict_set(&options, "movflags", "+faststart", 0); // players on the net begin before they have it all
    const int code = avformat_write_header(container_.get(), &options);
    av_dict_free(&options);
    return ffmpeg_error(code);
}

std::string film_writer::write(AVPacket& packet, const AVStream& stream, AVRational time_base) {
    av_packet_rescale_ts(&packet, time_base, stream.time_base);
    packet.stream_index = stream.index;
    return ffmpeg_error(av_interleaved_write_frame(container_.get(), &packet));
}

packet_sink film_writer::video_sink() {
    return [this](AVPacket& packet) {
        packet.duration = 1;
        return write(packet, *video_stream_, video_->context().time_base);
    };
}

packet_sink film_writer::audio_sink() {
    return [this](AVPacket& packet) {
        packet.pts += audio_delay_;
        packet.dts += audio_delay_;
        return write(packet, *audio_stream_, audio_->context().time_base);
    };
}

// The sample at which the last frame ends.
std::int64_t film_writer::audio_end() const {
    return frames_ * format_->audio_rate / fps_;
}

std::string film_writer::add(gtex picture) {
    std::string problem = video_->add(picture, video_sink());
    ++frames_;
    if (problem.empty() && audio_) problem = audio_->add_up_to(audio_end(), *sound_, audio_sink());
    return problem;
}

std::string film_writer::finish() {
    std::string problem = video_->finish(video_sink());
    if (problem.empty() && audio_) problem = audio_->finish(audio_end(), *sound_, audio_sink());
    if (problem.empty()) problem = ffmpeg_error(av_write_trailer(container_.get()));
    if (problem.empty()) problem = close_file();
    return problem.empty() ? file_->finish() : problem;
}

// The last of the file goes to the disk here, which may be full.
std::string film_writer::close_file() {
    avio_flush(container_->pb);
    const int written = container_->pb->error;
    const int closed = avio_closep(&container_->pb);
    return ffmpeg_error(written < 0 ? written : closed);
}
