// What can be hashed: the show, what follows it, the metaballs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/record/frame_source.h"

enum class part_kind { show, run, movement, metaballs };

struct hashed_part {
    part_kind kind = part_kind::show;
    std::int32_t number = 0; // of the closing movement, or of the metaballs
    std::int32_t fps = 60;

    // `show`: where it ends; `run`: of each closing movement behind the timed show; the others: their length.
    double seconds = 0;

    bool operator==(const hashed_part&) const = default;
};

// "metaballs 12 60 20": kind, number, frames a second and seconds, as a line of a file tells them.
std::string part_text(const hashed_part& part);

// The part that such a text tells, all numbers within the bounds of the command line.
std::optional<hashed_part> read_part(std::string_view text);

// Its frames, drawn anew. For the show the data tree must be there.
frame_source source_of(const hashed_part& part);
