#include "tools/off_screen_show.h"

#include "driver/chain.h"
#include "driver/frame_clock.h"
#include "math/numbers.h"
#include "platform/winbase.h"

off_screen_show::off_screen_show(std::int32_t fps)
    : fps_(fps), clock_(fps), pixels_(std::size_t{frame_columns} * console_rows),
      console_(gtex_wrap(pixels_.data(), frame_columns, console_rows)) {
    winbase::srand(1); // the sequence of a run
    frame_tables_init();
    create_spine(show_);
    start_up(show_);
    clock_start();
}

std::int64_t off_screen_show::frame_at(double seconds) const {
    constexpr double slack = 1e-6; // a time that was meant to fall on a frame does
    return trunc_to_int64(seconds * fps_ + slack);
}

void off_screen_show::draw_up_to(std::int64_t frame) {
    while (next_frame_ <= frame)
        draw_next();
}

void off_screen_show::draw_next() {
    clock_.set(next_frame_);
    if (next_frame_ > 0) clock_tick(); // the first frame is drawn at 0
    if (const movement* now = movement_at(show_time); now != nullptr) {
        show_.screen.pixels = console_.pixels;
        now->draw(show_, show_time);
        gtex_present(show_.screen, show_.canvas);
    }
    ++next_frame_;
}

double off_screen_show::length() {
    return movement_chain().back().end_time;
}
