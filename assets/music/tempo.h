// Where the bars lie. A track is a row of sections whose starts are told in seconds; each has eight bars of
// sixteen steps, spread evenly, so that every section begins exactly at its time and has a tempo of its own.
#pragma once

#include <span>

namespace assets::sound {

inline constexpr int steps_a_bar = 16;
inline constexpr int bars_a_section = 8;
inline constexpr int steps_a_section = steps_a_bar * bars_a_section;

struct tempo_map {
    std::span<const double> starts; // of the sections, and the end of the last: at least two, rising

    int sections() const { return static_cast<int>(starts.size()) - 1; }
    // Seconds of a step; what lies outside a section goes on at its tempo. Sections beyond the last count as
    // the last.
    double time(int section, double step) const;
    // Seconds that a step of this section takes.
    double step_length(int section) const;
    double beats_a_minute(int section) const { return 15.0 / step_length(section); }
};

} // namespace assets::sound
