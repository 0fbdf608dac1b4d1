// A film: pictures and their sound as a file.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "morvane/gtex/gtex.h"
#include "tools/kit/ffmpeg_kit.h"
#include "tools/kit/output_file.h"
#include "tools/record/audio_encoder.h"
#include "tools/record/film_format.h"
#include "tools/record/sound_track.h"
#include "tools/record/video_encoder.h"

struct film_settings {
    std::string path;                     // ends with one of the extensions of `film_formats`
    std::int32_t width = 0, height = 0;   // of the pictures, even
    std::int32_t scale = 1;               // whole factor by which they are enlarged
    std::int32_t fps = 60;                // frames a second
    double from = 0;                      // second of the show at which the film begins
    std::span<const placed_track> tracks; // its sound; none: a film without sound. Read by `open` alone
};

// All functions return an empty text or the reason of the failure, which ends the film: nothing is left of it
// under any name once the writer has gone. A device or a pipe takes the film as it comes, and refuses those
// kinds that are not written from front to back.
class film_writer {
  public:
    std::string open(const film_settings& settings);
    std::string add(gtex picture); // the next frame, with the sound up to its end

    // Ends the film, which may be at any frame but before the first, and gives it its name.
    std::string finish();

    ~film_writer();

  private:
    std::string open_streams(const film_settings& settings);
    std::string open_file();
    std::string write(AVPacket& packet, const AVStream& stream, AVRational time_base);
    std::string close_file();
    std::int64_t audio_end() const;
    packet_sink video_sink();
    packet_sink audio_sink();

    struct container_deleter {
        void operator()(AVFormatContext* container) const;
    };

    const film_format* format_ = nullptr;
    std::int32_t fps_ = 0;
    std::int64_t frames_ = 0; // added so far
    int audio_delay_ = 0;     // samples by which the sound's times are moved
    std::optional<output_file> file_;
    std::unique_ptr<AVFormatContext, container_deleter> container_;
    std::optional<video_encoder> video_;
    std::optional<audio_encoder> audio_;
    std::optional<sound_track> sound_;
    AVStream* video_stream_ = nullptr;
    AVStream* audio_stream_ = nullptr;
};
