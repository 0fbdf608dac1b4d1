// A file of music as a run of samples.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/kit/ffmpeg_kit.h"

struct input_closer {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};

// Decodes one file from its start, to stereo at any rate. A damaged stretch is left out.
class track_decoder {
  public:
    // Opens the file at `path`, whose samples will come at `rate` a second. Returns an empty text or the
    // reason of the failure, after which `read` gives nothing.
    std::string open(const std::string& path, std::int32_t rate);

    // Writes the next samples to both spans, which have one length, and returns how many there were: fewer
    // than asked only at the end of the file.
    std::size_t read(std::span<float> left, std::span<float> right);

  private:
    std::string open_decoder();
    bool refill();
    bool decode_some();
    bool resampler_fits(AVFrame& frame);
    void resample(const AVFrame* frame);

    std::unique_ptr<AVFormatContext, input_closer> input_;
    ffmpeg_handle<AVCodecContext> context_;
    ffmpeg_handle<SwrContext> resampler_;
    ffmpeg_handle<AVFrame> frame_;
    ffmpeg_handle<AVPacket> packet_;
    int stream_ = -1;
    std::int32_t rate_ = 0;
    bool all_read_ = false;       // nothing more comes from the file
    bool drained_ = false;        // nor from the resampler
    int taken_rate_ = 0;          // what the resampler takes
    int taken_channels_ = 0;      //
    int taken_format_ = 0;        //
    std::vector<float> ready_[2]; // samples not asked for yet, from `next_` on
    std::size_t next_ = 0;
};
