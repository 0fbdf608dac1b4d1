#include "morvane/scene/loader_3ds/child_chunks.h"

#include <algorithm>

#include "morvane/base/numbers.h"
#include "morvane/scene/loader_3ds/chunk_names.h"
#include "morvane/scene/loader_3ds/reader.h"

namespace {

// The header of a child. False without one, or if it begins another chunk, which is then still to come: one
// with a place of its own, or a stranger whose body can't hold what is expected.
bool read_child(sceneloader_3ds& in, bool (*fits)(std::uint16_t id), std::uint32_t least_body) {
    constexpr std::uint32_t header = 6;
    if (!in.read_header()) return false;
    const bool other = chunk_name_find(in.chunk_id) != nullptr || in.chunk_length < header + least_body;
    if (!fits(in.chunk_id) && other) {
        in.put_header_back();
        return false;
    }
    in.log_known();
    return true;
}

// Skips what the child holds behind the `read` bytes of its body.
void skip_rest(sceneloader_3ds& in, std::int64_t read) {
    constexpr std::int64_t header = 6;
    in.skip(in.chunk_length - header - read);
}

} // namespace

std::optional<child_colour> read_child_colour(sceneloader_3ds& in, colour_form expected) {
    if (!read_child(in, chunk_is_colour, expected == colour_form::floats ? 12 : 3)) return {};
    const bool known = chunk_is_colour(in.chunk_id);
    const bool in_floats = known ? in.chunk_id == chunk_color_f || in.chunk_id == chunk_lin_color_f
                                 : expected == colour_form::floats;
    child_colour colour;
    for (double* value : {&colour.r, &colour.g, &colour.b})
        *value = in_floats ? double{in.read_float()} : in.read_u8() / 255.0;
    if (in.cut_short()) return {};
    skip_rest(in, in_floats ? 12 : 3);
    return colour;
}

std::optional<std::int32_t> read_child_percentage(sceneloader_3ds& in) {
    if (!read_child(in, chunk_is_percentage, 2)) return {};
    std::int32_t percent = 0;
    if (in.chunk_id == chunk_float_percentage) {
        percent = std::clamp(trunc_to_int(double{in.read_float()} * 100 + 0.5), 0, 100);
        skip_rest(in, 4);
    } else {
        percent = in.read_u16();
        skip_rest(in, 2);
    }
    if (in.cut_short()) return {};
    return percent;
}
