// How far a long piece of work is.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

// "filming  42%, 118 frames a second, 1:05 left": `done` of `total` frames in `seconds`, for a terminal.
std::string progress_text(const char* work, std::int64_t done, std::int64_t total, double seconds);

// On a terminal one line that is written over and over, elsewhere a plain line every ten percent.
class progress {
  public:
    // Writes to `out`. `work` is what is done, in one word; `total` frames of it, above 0.
    progress(std::FILE* out, bool terminal, const char* work, std::int64_t total);

    // `frames` are done by now. Cheap enough for every frame.
    void done(std::int64_t frames);

    // Takes the line away again.
    void clear();

  private:
    using clock = std::chrono::steady_clock;

    std::FILE* out_;
    bool terminal_;
    const char* work_;
    std::int64_t total_;
    clock::time_point start_ = clock::now();
    clock::time_point shown_{}; // last line on a terminal
    std::int64_t tenths_ = 0;   // last line elsewhere
    bool on_screen_ = false;
};
