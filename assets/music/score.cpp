#include "assets/music/score.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <optional>

namespace assets::sound {
namespace {

constexpr float soft = 0.6F;
constexpr float plain = 0.8F;
constexpr float accented = 1.0F;

std::optional<int> read_number(std::string_view word) {
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    return value;
}

std::optional<int> read_pitch(std::string_view word) {
    constexpr std::array<int, 7> from_a = {9, 11, 0, 2, 4, 5, 7}; // A to G, in semitones above C
    if (word.size() < 2 || word[0] < 'A' || word[0] > 'G') return std::nullopt;
    int pitch = from_a[static_cast<std::size_t>(word[0] - 'A')];
    std::size_t octave_at = 1;
    if (word[1] == 'b') --pitch, ++octave_at;
    if (word[1] == '#') ++pitch, ++octave_at;
    const auto octave = read_number(word.substr(octave_at));
    if (!octave || *octave < -1 || *octave > 9) return std::nullopt;
    return pitch + (*octave + 1) * 12;
}

// Takes the next word off `text`; empty at its end.
std::string_view next_word(std::string_view& text) {
    constexpr std::string_view blanks = " \n\t|";
    const auto from = text.find_first_not_of(blanks);
    if (from == std::string_view::npos) {
        text = {};
        return {};
    }
    const auto to = std::min(text.find_first_of(blanks, from), text.size());
    const std::string_view word = text.substr(from, to - from);
    text.remove_prefix(to);
    return word;
}

} // namespace

std::vector<step_note> read_line(std::string_view text) {
    std::vector<step_note> notes;
    bool sounding = false;
    int step = 0;
    for (auto word = next_word(text); !word.empty(); word = next_word(text), ++step) {
        if (word == "-") {
            if (sounding) ++notes.back().length;
            continue;
        }
        step_note found{.step = step, .length = 1, .pitch = 0, .velocity = plain, .slide = false};
        if (word.front() == '~') {
            found.slide = true;
            word.remove_prefix(1);
        }
        if (!word.empty() && (word.back() == '!' || word.back() == ',')) {
            found.velocity = word.back() == '!' ? accented : soft;
            word.remove_suffix(1);
        }
        const auto pitch = read_pitch(word);
        const auto value = pitch ? pitch : read_number(word);
        sounding = value.has_value();
        if (!sounding) continue;
        found.pitch = *value;
        notes.push_back(found);
    }
    return notes;
}

std::vector<int> read_chord(std::string_view text) {
    std::vector<int> pitches;
    for (auto word = next_word(text); !word.empty(); word = next_word(text))
        if (const auto pitch = read_pitch(word)) pitches.push_back(*pitch);
    return pitches;
}

std::vector<step_hit> read_hits(std::string_view text) {
    std::vector<step_hit> hits;
    int step = 0;
    for (const char c : text) {
        if (c == '|' || std::isspace(static_cast<unsigned char>(c))) continue;
        if (c >= '1' && c <= '9') hits.push_back({step, static_cast<float>(c - '0') / 9.0F});
        ++step;
    }
    return hits;
}

} // namespace assets::sound
