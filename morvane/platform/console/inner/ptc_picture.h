// Where in the window the picture goes, and when.
#pragma once

#include <algorithm>
#include <cstdint>

namespace ptc {

struct size {
    int width = 0;
    int height = 0;
    bool operator==(const size&) const = default;
};

struct placement {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool smooth = false; // scaled by no whole factor
    bool operator==(const placement&) const = default;
};

// The largest whole factor by which `picture` fits into `room`; 0 if it doesn't.
constexpr int whole_factor(size picture, size room) {
    return std::min(room.width / picture.width, room.height / picture.height);
}

// The largest size of the shape of `picture` that fits into `room`, at least 1 by 1.
constexpr size fit_shape(size picture, size room) {
    const std::int64_t by_width = std::int64_t{room.width} * picture.height;
    const std::int64_t by_height = std::int64_t{room.height} * picture.width;
    size fitted = room;
    if (by_width < by_height)
        fitted.height = static_cast<int>(by_width / picture.width);
    else
        fitted.width = static_cast<int>(by_height / picture.height);
    return {std::max(fitted.width, 1), std::max(fitted.height, 1)};
}

// Where in a window `picture` goes: in its middle, scaled by a whole factor. A window too small for it gets
// it as large as fits; so does one that it `fills` if the whole factor would give less than four fifths of
// that.
constexpr placement fit_picture(size picture, size window, bool fills) {
    const size fitted = fit_shape(picture, window);
    const int factor = whole_factor(picture, window);
    size shown{picture.width * factor, picture.height * factor};
    const bool wasteful = fills && std::int64_t{shown.width} * 5 < std::int64_t{fitted.width} * 4;
    if (factor == 0 || wasteful) shown = fitted;
    return {.left = (window.width - shown.width) / 2,
            .top = (window.height - shown.height) / 2,
            .width = shown.width,
            .height = shown.height,
            .smooth = shown.width % picture.width != 0 || shown.height % picture.height != 0};
}

// The size of a new window: `picture` by the largest whole factor within four fifths of the desktop, else as
// it is, else as large as the desktop lets it be.
constexpr size starting_size(size picture, size desktop) {
    const int factor = whole_factor(picture, {desktop.width / 5 * 4, desktop.height / 5 * 4});
    if (factor > 0) return {picture.width * factor, picture.height * factor};
    if (whole_factor(picture, desktop) > 0) return picture;
    return fit_shape(picture, desktop);
}

// Keeps the pictures at 60 a second. Times are nanoseconds of any clock that runs evenly.
//
// Pictures go by slots of a sixtieth. Who is late goes at once, and a delay of a slot or more is not made up
// for: the slots start anew. Who comes early waits, but may be ahead of the slot by the leeway, which takes
// up the jitter of a display that sets the pace itself. A display a hair faster than 60 uses the leeway up
// slowly, with no picture held: the slots start anew then too, or else the two would drift through each other
// and drop a picture every now and then.
class frame_pacer {
  public:
    static constexpr std::int64_t slot = 1'000'000'000 / 60;
    static constexpr std::int64_t leeway = slot / 4;

    // When the picture that is ready at `now` may show: at `now` or after it.
    constexpr std::int64_t show_at(std::int64_t now) {
        const std::int64_t too_early = next_ - leeway - now;
        const bool stalled = too_early <= -leeway - slot;
        const bool display_leads = free_run_ >= long_run && 0 < too_early && too_early <= slot / 8;
        if (stalled) fresh_ = 2;
        if (fresh_ > 0 || display_leads) {
            fresh_ = std::max(fresh_ - 1, 0);
            free_run_ = 0;
            next_ = now + slot;
            return now;
        }
        next_ += slot;
        free_run_ = too_early > 0 ? 0 : std::min(free_run_ + 1, long_run);
        return std::max(now, now + too_early);
    }

  private:
    static constexpr int long_run = 16;

    std::int64_t next_ = 0; // the slot of the next picture
    int free_run_ = 0;      // pictures in a row that were not held
    // Pictures that go at once: one that aligns the program with the display, and one at which the slots
    // start.
    int fresh_ = 2;
};

} // namespace ptc
