#include "tools/record/hashed_part.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>

#include "tools/record/metaballs_source.h"
#include "tools/record/off_screen_show.h"
#include "tools/record/record_options.h"
#include "tools/record/show_source.h"

namespace {

struct part_row {
    part_kind kind;
    const char* name;
    std::int32_t lowest, highest; // its number
};
constexpr std::array part_rows{
    part_row{part_kind::show, "show", 0, 0},
    part_row{part_kind::run, "run", 0, 0},
    part_row{part_kind::movement, "movement", 3, 6},
    part_row{part_kind::metaballs, "metaballs", 1, most_metaballs},
};

// In the fewest digits that give the same number again.
std::string shortest(double value) {
    std::array<char, 32> text{};
    const auto [end, problem] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

} // namespace

std::string part_text(const hashed_part& part) {
    const auto* row = std::ranges::find(part_rows, part.kind, &part_row::kind);
    return std::string(row->name) + " " + std::to_string(part.number) + " " + std::to_string(part.fps) + " " +
           shortest(part.seconds);
}

std::optional<hashed_part> read_part(std::string_view text) {
    std::istringstream words{std::string(text)};
    std::string name;
    hashed_part part;
    if (!(words >> name >> part.number >> part.fps >> part.seconds)) return {};
    const auto* row = std::ranges::find(part_rows, name, &part_row::name);
    if (row == part_rows.end()) return {};
    part.kind = row->kind;
    const double longest = part.kind == part_kind::show ? off_screen_show::length() : most_seconds;
    const bool good = part.number >= row->lowest && part.number <= row->highest && part.fps >= 1 &&
                      part.fps <= most_fps && part.seconds > 0 && part.seconds <= longest;
    if (!good || part_text(part) != text) return {};
    return part;
}

frame_source source_of(const hashed_part& part) {
    switch (part.kind) {
    case part_kind::run:
        return whole_run(part.seconds, part.fps);
    case part_kind::movement:
        return closing_show(part.number, part.seconds, part.fps);
    case part_kind::metaballs:
        return metaballs(part.number, part.seconds, part.fps);
    case part_kind::show:
        break;
    }
    frame_source source = timed_show(part.fps);
    source.end = part.seconds;
    return source;
}
