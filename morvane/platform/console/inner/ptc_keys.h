// From the window's key events to key presses in a queue.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace ptc {

namespace library {
struct key {
    int code = 0;
    bool alt = false;
    bool shift = false;
    bool control = false;
    bool operator==(const key&) const = default;
};
} // namespace library

// Key codes of the window library that need a look here; ptc_window.cpp checks them against its header.
namespace key_code {
inline constexpr int enter = 13;
inline constexpr int escape = 27;
inline constexpr int f11 = 0x40000044;
inline constexpr int keypad_enter = 0x40000058;
inline constexpr int caps_lock = 0x40000039;
inline constexpr int num_lock = 0x40000053;
inline constexpr int first_modifier = 0x400000e0; // control, shift, alt and logo, left and right
inline constexpr int last_modifier = 0x400000e7;
inline constexpr int mode_switch = 0x40000101;
} // namespace key_code

enum class key_meaning { nothing, press, toggle_full_screen };

constexpr bool is_modifier(int code) {
    return (key_code::first_modifier <= code && code <= key_code::last_modifier) ||
           code == key_code::caps_lock || code == key_code::num_lock || code == key_code::mode_switch;
}

// What a key that goes down means. `repeated`: it is held, and the event comes from the keyboard's repeat.
// `shown`: a picture has been shown. What goes down before, such as the Enter by which the program was
// started and which the window sees still held, was meant for something else; only Escape counts.
constexpr key_meaning meaning_of(const library::key& key, bool repeated, bool shown) {
    if (repeated || is_modifier(key.code)) return key_meaning::nothing;
    const bool enter = key.code == key_code::enter || key.code == key_code::keypad_enter;
    if (key.code == key_code::f11 || (enter && key.alt)) return key_meaning::toggle_full_screen;
    return shown || key.code == key_code::escape ? key_meaning::press : key_meaning::nothing;
}

// Presses in order. A full queue drops what comes, but Escape takes the place of the last one: the wish to
// stop is never lost.
class key_queue {
  public:
    static constexpr std::size_t capacity = 64;

    bool empty() const { return count_ == 0; }

    void push(const library::key& key) {
        if (count_ < capacity) {
            keys_[(first_ + count_) % capacity] = key;
            ++count_;
        } else if (key.code == key_code::escape) {
            keys_[(first_ + capacity - 1) % capacity] = key;
        }
    }

    std::optional<library::key> pop() {
        if (empty()) return std::nullopt;
        const library::key key = keys_[first_];
        first_ = (first_ + 1) % capacity;
        --count_;
        return key;
    }

    void clear() { count_ = 0; }

  private:
    std::array<library::key, capacity> keys_{};
    std::size_t first_ = 0;
    std::size_t count_ = 0;
};

} // namespace ptc
