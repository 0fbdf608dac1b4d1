// The window of the console. Nothing here is used off screen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "morvane/platform/console/inner/ptc_keys.h"
#include "morvane/platform/console/inner/ptc_picture.h"

struct SDL_Window;
struct SDL_Renderer;
struct SDL_Texture;

namespace ptc {

// Keeps the window library up for as long as it lives.
class video_library {
  public:
    video_library(); // raises where there is no display
    ~video_library();
    video_library(const video_library&) = delete;
    video_library& operator=(const video_library&) = delete;
};

struct release {
    void operator()(SDL_Window* window) const;
    void operator()(SDL_Renderer* renderer) const;
    void operator()(SDL_Texture* texture) const;
};

class window {
  public:
    // Opens a window that shows a black picture of size `picture`. Raises if it can't.
    window(const char* title, size picture, bool starts_full_screen);

    // Shows the words at `pixels`, as many as the picture has, when their time has come.
    void show(const std::uint32_t* pixels);

    // Takes what has come from the window system; key presses go to `keys`.
    void poll(key_queue& keys);

    // Polls, and tells whether `keys` holds one. Once the answer was no, and from the start on, it stays no
    // until the next picture has been shown: a caller who has read all keys behind a picture finds none
    // before the next one, whenever they come.
    bool key_waits(key_queue& keys);

    // Waits until something has come, or a moment.
    void wait();

    const char* driver_name() const;

  private:
    void create_renderer();
    void create_texture();
    void take_events(key_queue& keys);
    void toggle_full_screen();
    bool full_screen() const;
    void draw();

    video_library library_;
    size picture_;
    std::unique_ptr<SDL_Window, release> window_;
    std::unique_ptr<SDL_Renderer, release> renderer_;
    std::unique_ptr<SDL_Texture, release> texture_;
    frame_pacer pacer_;
    std::int64_t drawn_at_ = 0; // nanoseconds
    bool scales_on_processor_ = false;
    bool shown_ = false;        // a picture of the caller's
    bool asked_in_vain_ = true; // no key was waiting, and no picture has come since
    bool damaged_ = false;      // the window lost its picture
};

// Sizes that the display offers, largest first, at most `sizes.size()`; gives how many there are.
std::size_t list_display_sizes(std::span<size> sizes);

// Which of the window library's drivers to try, in order: those of the display servers that the environment
// names, then the machine's own screen. Never one that draws where nobody looks.
std::string display_drivers(bool x11, bool wayland);

} // namespace ptc
