// The small chunks inside colours and percentages, in every type that the format has.
#pragma once

#include <cstdint>
#include <optional>

class sceneloader_3ds;

enum class colour_form { bytes, floats };

struct child_colour {
    double r = 0, g = 0, b = 0; // 0 to 1
};

// Reads the header of the next chunk, logs it, reads the colour in it by its id and skips the rest of its
// length. A chunk that the format has another use for is left to be read again, and there is no colour; one
// of an id that nobody knows is taken to hold the `expected` form.
std::optional<child_colour> read_child_colour(sceneloader_3ds& in, colour_form expected);

// The same for a percentage: 0 to 100 of a fraction, and a whole number as it stands.
std::optional<std::int32_t> read_child_percentage(sceneloader_3ds& in);
