// What the handles of the console layer stand for.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "morvane/platform/console/inner/ptc_keys.h"
#include "morvane/platform/console/inner/ptc_window.h"
#include "morvane/platform/console/ptc.h"

namespace ptc::library {

struct format {
    int bits = 0;
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    std::uint32_t alpha = 0;
    bool operator==(const format&) const = default;
};

struct area {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const area&) const = default;
};

struct palette {
    std::array<std::uint32_t, 256> colours{};
};

struct mode {
    int width = 0;
    int height = 0;
    bool operator==(const mode&) const = default;
};

struct error {
    DynamicError::Kind kind;
    std::string message;
};

struct surface {
    std::vector<std::uint32_t> pixels;
    int width = 0;
    int height = 0;
    bool locked = false;
};

struct console {
    enum class state { never_opened, open, closed };
    state now = state::never_opened;
    bool full_screen = false; // of the next window
    surface buffer;
    std::string title;
    key_queue keys;
    std::unique_ptr<window> shown; // none off screen
};

// Raises on a size or format that a surface can't have.
surface black_surface(int width, int height, const Format& format);

} // namespace ptc::library

namespace ptc {

// What lies in both; (0, 0, 0, 0) where nothing does.
Area intersection(const Area& a, const Area& b);

} // namespace ptc
