#include "show/score/score.h"
#include "morvane/media/video.h"

namespace {

constexpr movement timed[] = {
    {.draw = movement1_draw, .end_time = movement1_end},
    {.draw = movement2_draw, .end_time = movement2_end},
};

constexpr movement closing[] = {
    {.draw = movement3_draw},
    {.draw = movement4_draw},
    {.draw = movement5_draw},
    {.draw = movement6_draw, .before_stop = video_close},
};

constexpr int first_closing = 3;

} // namespace

std::span<const movement> timed_movements() {
    return timed;
}

std::span<const movement> closing_movements() {
    return closing;
}

const movement* closing_movement(int number) {
    const int at = number - first_closing;
    return at >= 0 && at < static_cast<int>(std::size(closing)) ? &closing[at] : nullptr;
}

const movement* movement_at(double t) {
    for (const movement& each : timed)
        if (t < each.end_time) return &each;
    return nullptr;
}
