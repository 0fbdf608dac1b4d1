#include "tools/record/hash_lines.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <vector>

#include "morvane/base/numbers.h"
#include "tools/kit/interrupts.h"
#include "tools/kit/progress.h"
#include "tools/record/word_hash.h"

namespace {

constexpr std::int32_t sound_rate = 44100;

std::string digits(std::uint64_t hash) {
    std::array<char, 20> text{};
    std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(hash));
    return text.data();
}

hash_line line_of(const frame_source& source, std::int64_t frame, gtex picture,
                  std::vector<std::uint32_t>& colours) {
    const gtex canvas = source.canvas;
    colours.assign(picture.pixels, picture.pixels + picture.count);
    for (std::uint32_t& pixel : colours)
        pixel &= 0xffffffU;
    hash_line line{.number = frame, .seconds = time_of(source, frame), .place = {}, .hashes = {}};
    std::array<char, 64> place{};
    std::snprintf(place.data(), place.size(), "frame %lld %.6f", static_cast<long long>(frame), line.seconds);
    line.place = place.data();
    line.hashes = digits(word_hash({canvas.pixels, static_cast<std::size_t>(canvas.count)})) + " " +
                  digits(word_hash(colours));
    return line;
}

bool frame_lines(const frame_source& source, const char* work, const hash_sink& sink) {
    const std::int64_t end = frame_from(source, source.end);
    const bool terminal = isatty(STDERR_FILENO) == 1; // the lines may go to standard output
    progress shown(stderr, terminal, work, std::max(end, std::int64_t{1}));
    std::vector<std::uint32_t> colours;
    for (std::int64_t frame = 0; frame < end; ++frame) {
        const gtex picture = source.draw(frame);
        bool more = interrupted() == 0;
        if (more && frame >= source.lead) more = sink(line_of(source, frame, picture, colours));
        if (terminal) shown.done(frame + 1);
        if (!more) {
            shown.clear();
            return false;
        }
    }
    shown.clear();
    return true;
}

void sound_lines(const frame_source& source, const hash_sink& sink) {
    if (source.tracks.empty()) return;
    sound_track sound(source.tracks, sound_rate, source.start);
    std::int64_t left_over = std::llround((source.end - source.start) * sound_rate);
    std::vector<float> left(sound_rate), right(sound_rate);
    for (std::int64_t second = 0; left_over > 0 && interrupted() == 0; ++second, left_over -= sound_rate) {
        const auto count = static_cast<std::size_t>(std::min(left_over, std::int64_t{sound_rate}));
        sound.read(std::span(left).first(count), std::span(right).first(count));
        std::vector<std::uint32_t> words;
        for (std::size_t i = 0; i < count; ++i)
            words.insert(words.end(),
                         {std::bit_cast<std::uint32_t>(left[i]), std::bit_cast<std::uint32_t>(right[i])});
        if (!sink({.frame = false,
                   .number = second,
                   .seconds = source.start + static_cast<double>(second),
                   .place = "sound " + std::to_string(second),
                   .hashes = digits(word_hash(words))}))
            return;
    }
}

} // namespace

void draw_hash_lines(const frame_source& source, const char* work, const hash_sink& sink) {
    if (frame_lines(source, work, sink)) sound_lines(source, sink);
}
