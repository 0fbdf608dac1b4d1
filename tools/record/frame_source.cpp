#include "tools/record/frame_source.h"

#include <cmath>

#include "morvane/base/numbers.h"

namespace {

constexpr double slack = 1e-6; // a time that was meant to fall on a frame does

} // namespace

std::int64_t frame_at(const frame_source& source, double seconds) {
    return source.lead + trunc_to_int64(std::floor((seconds - source.start) * source.fps + slack));
}

std::int64_t frame_from(const frame_source& source, double seconds) {
    return source.lead + trunc_to_int64(std::ceil((seconds - source.start) * source.fps - slack));
}

double time_of(const frame_source& source, std::int64_t frame) {
    return source.start + static_cast<double>(frame - source.lead) / source.fps;
}
