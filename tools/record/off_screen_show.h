// The show without a display: the score drawn frame by frame on a clock that is moved by hand.
#pragma once

#include <cstdint>
#include <vector>

#include "morvane/platform/time/manual_clock.h"
#include "show/frame_loop.h"
#include "show/show.h"

// One at a time: the clock, the tables and the random numbers are the process's own.
class off_screen_show {
  public:
    // Builds the show from the data tree in place and stands before frame 0. `fps` frames a
    // second, positive. A picture that is missing or damaged ends the process as in a run; without the scene
    // it ends with exit code 1.
    explicit off_screen_show(std::int32_t fps);

    // The number of the frame that a display shows at `seconds`: the last one whose time has come.
    std::int64_t frame_at(double seconds) const;

    // Draws the frames up to and with the given one; each frame builds on those before. A frame that has been
    // drawn already isn't drawn again.
    void draw_up_to(std::int64_t frame);

    // From here on the closing movements follow the timed show as they do in a run, each for `seconds`, the
    // last one for ever. For `draw_up_to` alone.
    void let_closing_movements_follow(double seconds) { closing_seconds_ = seconds; }

    // Draws what is left of the timed show and goes over to the closing movement with the given number, 3 to
    // 6; each one before it gets the last second before the end of the timed show, for it leaves its traces.
    void enter_closing(int number);

    // As `draw_up_to`, with the frames of the closing movement: frame 0 stands at the end of the timed show.
    void draw_closing_up_to(std::int64_t frame);

    // The console's picture, 512 by 384 words, letterbox included.
    gtex picture() const { return console_; }

    // The frame as it was composed, 512 by 288 words with their top bytes. The record stays the same.
    gtex canvas() const { return show_.canvas; }

    // Seconds at which the last timed movement ends.
    static double length();

  private:
    const movement* movement_now() const;
    void draw(const movement* what, std::int64_t tick);

    std::int32_t fps_;
    winbase::manual_clock clock_;
    show show_;
    std::vector<std::uint32_t> pixels_;
    gtex console_;
    std::int64_t next_frame_ = 0;
    double closing_seconds_ = 0; // of each closing movement that follows; 0: none does
    const movement* closing_ = nullptr;
    std::int64_t next_closing_frame_ = 0;
};
