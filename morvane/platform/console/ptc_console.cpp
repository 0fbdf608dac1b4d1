// The console: a buffer, the keys, and a window or none.
#include <utility>

#include "morvane/platform/console/inner/ptc_objects.h"

namespace ptc {

Console::Console() : console_(std::make_unique<library::console>()) {}

Console::~Console() = default;

void Console::require_open() const {
    using state = library::console::state;
    if (console_->now == state::closed) {
        throw DynamicError(DynamicError::Kind::closed, "the console is closed");
    }
    if (console_->now == state::never_opened) {
        throw DynamicError(DynamicError::Kind::request, "the console is not open yet");
    }
}

void Console::settle(library::surface buffer, const char* title, const Format& format) {
    area_ = Area(0, 0, buffer.width, buffer.height);
    clip_ = area_;
    format_ = format;
    palette_ = Palette();
    console_->buffer = std::move(buffer);
    console_->title = title == nullptr ? "" : title;
    console_->keys.clear();
    console_->now = library::console::state::open;
}

void Console::open(const char* title, int width, int height, const Format& format, int pages) {
    close_if_open();
    if (pages < 0) throw DynamicError(DynamicError::Kind::request, "a console can't have fewer than 0 pages");
    library::surface buffer = library::black_surface(width, height, format);
    console_->shown =
        std::make_unique<window>(title == nullptr ? "" : title, size{width, height}, console_->full_screen);
    settle(std::move(buffer), title, format);
}

void Console::full_screen(bool wanted) {
    console_->full_screen = wanted;
}

void Console::open_off_screen(const char* title, int width, int height, const Format& format) {
    close_if_open();
    settle(library::black_surface(width, height, format), title, format);
}

void Console::close_if_open() {
    if (console_->now == library::console::state::open) close();
}

void Console::close() {
    if (console_->now != library::console::state::open) return;
    console_->shown.reset();
    console_->buffer = {};
    console_->keys.clear();
    console_->now = library::console::state::closed;
}

void Console::update() {
    require_open();
    if (!console_->shown) return;
    console_->shown->poll(console_->keys);
    console_->shown->show(console_->buffer.pixels.data());
}

void Console::update(const Area&) {
    update();
}

void Console::flush() {
    require_open();
}

void Console::finish() {
    require_open();
}

int Console::key() {
    require_open();
    const bool waits = console_->shown ? console_->shown->key_waits(console_->keys) : !console_->keys.empty();
    return waits ? 1 : 0;
}

Key Console::read() {
    require_open();
    while (console_->keys.empty()) {
        if (!console_->shown) throw DynamicError(DynamicError::Kind::request, "no key press is waiting");
        console_->shown->wait();
        console_->shown->poll(console_->keys);
    }
    const library::key pressed = *console_->keys.pop();
    return Key(pressed.code, pressed.alt, pressed.shift, pressed.control);
}

void Console::press(const Key& key) {
    require_open();
    console_->keys.push({key.code(), key.alt(), key.shift(), key.control()});
}

std::span<const Mode> Console::modes() {
    require_open();
    if (!console_->shown) {
        modes_[0] = Mode(area_.width(), area_.height(), format_);
        return std::span(modes_).first(1);
    }
    std::array<size, 256> sizes;
    const std::size_t count = list_display_sizes(sizes);
    for (std::size_t i = 0; i < count; ++i) {
        modes_[i] = Mode(sizes[i].width, sizes[i].height, format_);
    }
    return std::span(modes_).first(count);
}

const char* Console::title() {
    require_open();
    return console_->title.c_str();
}

const char* Console::name() {
    require_open();
    return console_->shown ? console_->shown->driver_name() : "off screen";
}

int Console::pages() {
    require_open();
    return 1;
}

const Area& Console::area() {
    require_open();
    return area_;
}

const Area& Console::clip() {
    require_open();
    return clip_;
}

void Console::clip(const Area& part) {
    require_open();
    clip_ = intersection(part, area_);
}

const Format& Console::format() {
    require_open();
    return format_;
}

const Palette& Console::palette() {
    require_open();
    return palette_;
}

void Console::palette(const Palette& palette) {
    require_open();
    palette_ = palette;
}

library::surface& Console::handle() {
    require_open();
    return console_->buffer;
}

} // namespace ptc
