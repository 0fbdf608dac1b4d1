// The sound of a film: pieces of music, each at its place in the time of the show.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tools/record/track_decoder.h"

// A file of music that plays, round and round, from one second of the show to another. It goes out within
// some milliseconds behind its end, as it does in a run.
struct placed_track {
    std::string path;
    double start = 0, end = 0;
};

class sound_track {
  public:
    // The sound from the second `from` of the show on, `rate` samples a second. The tracks follow each other.
    sound_track(std::span<const placed_track> tracks, std::int32_t rate, double from);

    // Fills both spans, which have one length, with what follows; silence where no track plays or one can't
    // be read.
    void read(std::span<float> left, std::span<float> right);

    // A line about each track that can't be read although it plays between `from` and `to`.
    static std::vector<std::string> trouble(std::span<const placed_track> tracks, double from, double to);

  private:
    struct stretch {
        std::string path;
        std::int64_t start, end; // samples from the show's start
        bool silent = false;     // nothing of it can be read
    };
    void read_stretch(stretch& part, std::span<float> left, std::span<float> right);
    void play(stretch& part, std::int64_t offset, std::span<float> left, std::span<float> right);
    void fade(const stretch& part, std::int64_t at, std::span<float> samples) const;

    std::int32_t rate_;
    std::int64_t fade_;     // samples of a fade
    std::int64_t position_; // sample of the show that comes next
    std::vector<stretch> stretches_;
    const stretch* playing_ = nullptr; // what `decoder_` decodes
    std::int64_t decoded_ = 0;         // samples of it that have come
    track_decoder decoder_;
};
