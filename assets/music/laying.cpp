#include "assets/music/laying.h"

#include <algorithm>
#include <cstddef>

namespace assets::sound {

const chord& form::chord_of(char letter) const {
    for (const chord& found : chords)
        if (found.letter == letter) return found;
    return chords.front();
}

const chord& form::chord_at(int in, int bar) const {
    return chord_of(harmony[static_cast<std::size_t>(in)][static_cast<std::size_t>(bar)]);
}

std::vector<chord_span> form::spans(int in, int first_bar, int bars) const {
    const std::string_view letters = harmony[static_cast<std::size_t>(in)];
    std::vector<chord_span> found;
    for (int bar = first_bar; bar < first_bar + bars; ++bar) {
        const char letter = letters[static_cast<std::size_t>(bar)];
        if (letter == '.') continue;
        const double length = tempo.step_length(in) * steps_a_bar;
        const bool goes_on =
            bar > first_bar && !found.empty() && letters[static_cast<std::size_t>(bar - 1)] == letter;
        if (goes_on)
            found.back().length += length;
        else
            found.push_back({&chord_of(letter), time(in, bar, 0), length});
    }
    return found;
}

std::vector<note> form::placed(int in, int bar, std::string_view line, int transpose) const {
    const double step = tempo.step_length(in);
    std::vector<note> notes;
    for (const step_note& found : read_line(line))
        notes.push_back({.start = time(in, bar, found.step),
                         .length = found.length * step,
                         .pitch = static_cast<float>(found.pitch + transpose),
                         .velocity = found.velocity,
                         .pan = 0,
                         .slide = found.slide});
    return notes;
}

std::vector<placed_bar> bars_of(const voice_part& part) {
    std::vector<placed_bar> found;
    for (const bar_row& row : part.rows)
        for (int bar = 0; bar < bars_a_section; ++bar)
            for (const bar_text& entry : part.book)
                if (entry.letter == row.bars[static_cast<std::size_t>(bar)])
                    found.push_back({row.in, bar, entry.steps});
    return found;
}

std::vector<note> notes_over_roots(const form& track, const voice_part& part) {
    std::vector<note> notes;
    for (const placed_bar& one : bars_of(part))
        append(notes, track.placed(one.in, one.bar, one.steps, track.chord_at(one.in, one.bar).root));
    return notes;
}

std::vector<note> notes_of(const form& track, std::span<const line_at> lines) {
    std::vector<note> notes;
    for (const line_at& line : lines) {
        std::vector<note> found = track.placed(line.in, line.bar, line.line, line.transpose);
        for (note& played : found)
            played.velocity *= line.level;
        append(notes, found);
    }
    return notes;
}

void append(std::vector<note>& to, const std::vector<note>& more) {
    to.insert(to.end(), more.begin(), more.end());
}

std::vector<stroke> strokes_of(const form& track, const voice_part& part) {
    std::vector<stroke> found;
    for (const placed_bar& one : bars_of(part))
        for (const step_hit& hit : read_hits(one.steps))
            found.push_back({track.time(one.in, one.bar, hit.step), hit.velocity, hit.step});
    std::sort(found.begin(), found.end(), [](const stroke& a, const stroke& b) { return a.time < b.time; });
    return found;
}

std::vector<curve_point> echo_times(const tempo_map& tempo, float steps) {
    std::vector<curve_point> points;
    for (int in = 0; in < tempo.sections(); ++in) {
        const auto seconds = static_cast<float>(tempo.step_length(in)) * steps;
        points.push_back({tempo.time(in, 0), seconds});
        points.push_back({tempo.time(in + 1, 0) - 0.001, seconds});
    }
    return points;
}

} // namespace assets::sound
