// Pictures of the show as the packets of a film's video stream.
#pragma once

#include <cstdint>
#include <string>

#include "morvane/gtex/gtex.h"
#include "tools/kit/ffmpeg_kit.h"
#include "tools/record/film_format.h"
#include "tools/record/picture_planes.h"

// The encoder works on threads of its own while the next picture is drawn.
class video_encoder {
  public:
    // For pictures of `width` by `height`, even, enlarged by `scale`, `fps` of them a second.
    video_encoder(std::int32_t width, std::int32_t height, std::int32_t scale, std::int32_t fps);

    // Before the first picture. `global_header`: the container keeps the stream's head itself. Returns an
    // empty text or the reason of the failure.
    std::string open(const film_format& format, bool global_header);

    // The picture of frame 0, 1, 2 ...; the reason of a failure, as `open`.
    std::string add(gtex picture, const packet_sink& keep);

    // Hands over what is still inside. Nothing is added afterwards.
    std::string finish(const packet_sink& keep);

    const AVCodecContext& context() const { return *context_; }

  private:
    std::int32_t width_, height_, fps_;
    plane_maker planes_;
    ffmpeg_handle<AVCodecContext> context_;
    ffmpeg_handle<AVFrame> frame_;
    ffmpeg_handle<AVPacket> packet_;
};
