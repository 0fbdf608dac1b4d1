#include "tools/record/off_screen_show.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "morvane/base/numbers.h"
#include "morvane/media/video.h"
#include "morvane/platform/time/winbase.h"
#include "show/frame_clock.h"
#include "show/score/score.h"
#include "tools/kit/quiet_output.h"

namespace {

// So that every frame and every hundredth of a second falls on a tick, at any rate.
constexpr std::int64_t ticks_a_frame = 100;

} // namespace

off_screen_show::off_screen_show(std::int32_t fps)
    : fps_(fps), clock_(fps * ticks_a_frame), pixels_(std::size_t{frame_columns} * console_rows),
      console_(gtex_wrap(pixels_.data(), frame_columns, console_rows)) {
    winbase::srand(1); // the sequence of a run
    frame_tables_init();
    create_spine(show_);
    bool ready = false;
    {
        const quiet_output hidden;
        ready = start_up(show_);
    }
    if (!ready) std::exit(1);
    video_clock_start();
    clock_start();
}

std::int64_t off_screen_show::frame_at(double seconds) const {
    constexpr double slack = 1e-6; // a time that was meant to fall on a frame does
    return trunc_to_int64(seconds * fps_ + slack);
}

void off_screen_show::draw_up_to(std::int64_t frame) {
    for (; next_frame_ <= frame; ++next_frame_)
        draw(nullptr, next_frame_ * ticks_a_frame);
}

void off_screen_show::enter_closing(int number) {
    while (static_cast<double>(next_frame_) < length() * fps_)
        draw_up_to(next_frame_);
    constexpr int first = 3;
    const std::int64_t end = trunc_to_int64(length() * 100 + 0.5) * fps_;
    for (int earlier = first; earlier < number; ++earlier)
        for (std::int64_t before = fps_; before > 0; --before)
            draw(closing_movement(earlier), end - before * ticks_a_frame);
    closing_ = closing_movement(number);
    next_closing_frame_ = 0;
}

void off_screen_show::draw_closing_up_to(std::int64_t frame) {
    const std::int64_t end = trunc_to_int64(length() * 100 + 0.5) * fps_;
    for (; next_closing_frame_ <= frame; ++next_closing_frame_)
        draw(closing_, end + next_closing_frame_ * ticks_a_frame);
}

// The movement of `show_time`; null when the show is over.
const movement* off_screen_show::movement_now() const {
    const movement* timed = movement_at(show_time);
    if (timed != nullptr || closing_seconds_ <= 0) return timed;
    const auto all = closing_movements();
    const double past = std::floor((static_cast<double>(show_time) - length()) / closing_seconds_);
    return &all[std::min(static_cast<std::size_t>(trunc_to_int64(past)), all.size() - 1)];
}

// Null stands for the movement of that time.
void off_screen_show::draw(const movement* what, std::int64_t tick) {
    clock_.set(tick);
    if (tick > 0) clock_tick(); // the first frame is drawn at 0
    if (what == nullptr) what = movement_now();
    if (what == nullptr) return;
    show_.screen.pixels = console_.pixels;
    what->draw(show_, show_time);
    gtex_present(show_.screen, show_.canvas);
}

double off_screen_show::length() {
    return timed_movements().back().end_time;
}
