// Samples as the packets of a film's sound.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tools/kit/ffmpeg_kit.h"
#include "tools/record/film_format.h"
#include "tools/record/sound_track.h"

class audio_encoder {
  public:
    // Before the first samples. `global_header`: the container keeps the stream's head itself. Returns an
    // empty text or the reason of the failure.
    std::string open(const film_format& format, bool global_header);

    // Encodes what `from` gives in whole frames, as far as they end by sample `end` of the film; the reason
    // of a failure, as `open`.
    std::string add_up_to(std::int64_t end, sound_track& from, const packet_sink& keep);

    // Encodes exactly up to sample `end` and hands over what is still inside. Nothing is added afterwards.
    std::string finish(std::int64_t end, sound_track& from, const packet_sink& keep);

    const AVCodecContext& context() const { return *context_; }

  private:
    std::string add(std::int64_t count, sound_track& from, const packet_sink& keep);

    ffmpeg_handle<AVCodecContext> context_;
    ffmpeg_handle<SwrContext> converter_; // from our samples to the encoder's form
    ffmpeg_handle<AVFrame> frame_;
    ffmpeg_handle<AVPacket> packet_;
    std::int64_t samples_a_frame_ = 0;
    std::int64_t done_ = 0;           // samples of the film
    std::vector<float> left_, right_; // one frame
};
