// The window: keys, scaling, pacing and the real one under the window library's driver for tests.
#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "morvane/platform/console/inner/ptc_keys.h"
#include "morvane/platform/console/inner/ptc_picture.h"
#include "morvane/platform/console/inner/ptc_window.h"
#include "morvane/platform/console/ptc.h"
#include "morvane/platform/time/winbase.h"
#include "tests/support/consoles.h"

namespace {

using ptc::DynamicError;
using ptc::Key;

} // namespace

TEST(ptc_keys, wait_in_order_and_escape_is_never_lost) {
    ptc::key_queue keys;
    int next_in = 1000;
    int next_out = 1000;
    for (std::size_t round = 0; round < 3 * ptc::key_queue::capacity; ++round) { // round and round the ring
        keys.push({.code = next_in++});
        keys.push({.code = next_in++});
        EXPECT_EQ(keys.pop()->code, next_out++);
        EXPECT_EQ(keys.pop()->code, next_out++);
    }
    for (int i = 0; i < 100; ++i) {
        keys.push({.code = i + 100});
    }
    keys.push({.code = Key::escape});
    for (int i = 0; i < static_cast<int>(ptc::key_queue::capacity) - 1; ++i) {
        EXPECT_EQ(keys.pop()->code, i + 100);
    }
    EXPECT_EQ(keys.pop()->code, Key::escape);
    EXPECT_FALSE(keys.pop().has_value());
}

TEST(ptc_keys, full_screen_keys_modifiers_and_repeats_are_no_presses) {
    using ptc::key_meaning;
    EXPECT_EQ(ptc::meaning_of({.code = ' '}, false, true), key_meaning::press);
    EXPECT_EQ(ptc::meaning_of({.code = ' '}, true, true), key_meaning::nothing);
    EXPECT_EQ(ptc::meaning_of({.code = Key::escape, .alt = true, .shift = true}, false, true),
              key_meaning::press);
    EXPECT_EQ(ptc::meaning_of({.code = Key::enter}, false, true), key_meaning::press);
    EXPECT_EQ(ptc::meaning_of({.code = Key::enter, .alt = true}, false, true),
              key_meaning::toggle_full_screen);
    EXPECT_EQ(ptc::meaning_of({.code = ptc::key_code::keypad_enter, .alt = true}, false, true),
              key_meaning::toggle_full_screen);
    EXPECT_EQ(ptc::meaning_of({.code = ptc::key_code::f11}, false, true), key_meaning::toggle_full_screen);
    EXPECT_EQ(ptc::meaning_of({.code = ptc::key_code::f11}, true, true), key_meaning::nothing);
    for (int code = ptc::key_code::first_modifier; code <= ptc::key_code::last_modifier; ++code) {
        EXPECT_EQ(ptc::meaning_of({.code = code}, false, true), key_meaning::nothing);
    }
    EXPECT_EQ(ptc::meaning_of({.code = Key::enter}, false, false), key_meaning::nothing);
    EXPECT_EQ(ptc::meaning_of({.code = Key::escape}, false, false), key_meaning::press);
    EXPECT_EQ(ptc::meaning_of({.code = ptc::key_code::f11}, false, false), key_meaning::toggle_full_screen);
}

TEST(ptc_picture, is_placed_in_the_middle_by_the_largest_whole_factor) {
    const ptc::size picture{512, 384};
    for (int width = 512; width < 4000; width += 61) {
        for (int height = 384; height < 2400; height += 37) {
            int factor = 1;
            while (512 * (factor + 1) <= width && 384 * (factor + 1) <= height)
                ++factor;
            const ptc::placement got = ptc::fit_picture(picture, {width, height}, false);
            const ptc::placement expected{(width - 512 * factor) / 2, (height - 384 * factor) / 2,
                                          512 * factor, 384 * factor, false};
            ASSERT_EQ(got, expected) << width << "x" << height;
        }
    }
}

TEST(ptc_picture, keeps_its_shape_where_no_whole_factor_suits) {
    const ptc::size picture{512, 384};
    for (int width = 1; width < 3900; width += 43) {
        for (int height = 1; height < 2200; height += 29) {
            const ptc::placement got = ptc::fit_picture(picture, {width, height}, true);
            ASSERT_TRUE(0 <= got.left && 0 <= got.top) << width << "x" << height;
            ASSERT_TRUE(got.left + got.width <= width && got.top + got.height <= height);
            ASSERT_LE(std::abs(width - 2 * got.left - got.width), 1);
            ASSERT_LE(std::abs(height - 2 * got.top - got.height), 1);
            ASSERT_LE(std::abs(got.width * 3 - got.height * 4), 4) << "4:3 to a pixel";
            const double best = std::min(width / 512.0, height / 384.0);
            const bool whole = got.width % 512 == 0 && got.height % 384 == 0;
            ASSERT_EQ(got.smooth, !whole);
            if (!whole) {
                ASSERT_GT(got.width + 1.0, 512 * best) << "touches two sides of the screen";
            }
            ASSERT_GE(got.width + 1.0, 0.8 * 512 * best);
        }
    }
    EXPECT_EQ(ptc::fit_picture(picture, {1920, 1080}, true), (ptc::placement{240, 0, 1440, 1080, true}));
    EXPECT_EQ(ptc::fit_picture(picture, {1024, 768}, true), (ptc::placement{0, 0, 1024, 768, false}));
    EXPECT_EQ(ptc::starting_size(picture, {1920, 1053}), (ptc::size{1024, 768}));
    EXPECT_EQ(ptc::starting_size(picture, {3840, 2160}), (ptc::size{2048, 1536}));
    EXPECT_EQ(ptc::starting_size(picture, {600, 400}), picture);
    EXPECT_EQ(ptc::starting_size(picture, {320, 240}), (ptc::size{320, 240}));
}

namespace {

constexpr std::int64_t second = 1'000'000'000;

// When pictures show on a display that refreshes every `refresh` nanoseconds (0: it never waits), for a
// program that takes `drawing` and up to `jitter` more for each.
std::vector<std::int64_t> shown_times(std::int64_t refresh, std::int64_t drawing, std::int64_t jitter,
                                      std::int64_t duration) {
    ptc::frame_pacer pacer;
    std::vector<std::int64_t> times;
    std::uint32_t random = 1;
    std::int64_t now = 5 * second;
    const std::int64_t end = now + duration;
    while (now < end) {
        random = random * 1664525U + 1013904223U;
        now += drawing + static_cast<std::int64_t>(random >> 8) * jitter / (1 << 24);
        const std::int64_t at = pacer.show_at(now);
        EXPECT_GE(at, now);
        now = refresh == 0 ? at : (at / refresh + 1) * refresh;
        times.push_back(now);
    }
    return times;
}

} // namespace

TEST(ptc_pacing, keeps_fast_and_unwaiting_displays_at_sixty) {
    for (const int rate : {0, 75, 90, 100, 120, 144, 165, 240}) {
        for (const std::int64_t drawing : {second / 100'000, second / 1000, second / 200}) {
            const std::int64_t refresh = rate == 0 ? 0 : second / rate;
            const auto shown = shown_times(refresh, drawing, second / 2000, 20 * second);
            EXPECT_NEAR(static_cast<double>(shown.size()), 20 * 60, 3) << rate << " Hz, drawing " << drawing;
        }
    }
}

TEST(ptc_pacing, drops_no_refresh_of_a_display_near_sixty) {
    for (const double rate : {50.0, 59.94, 60.0, 60.02, 60.3}) {
        const auto refresh = static_cast<std::int64_t>(1e9 / rate);
        const auto shown = shown_times(refresh, second / 500, second / 500, 100 * second);
        for (std::size_t i = 1; i < shown.size(); ++i) {
            ASSERT_EQ(shown[i] - shown[i - 1], refresh) << rate << " Hz, picture " << i;
        }
    }
}

TEST(ptc_pacing, makes_up_for_no_stall) {
    ptc::frame_pacer pacer;
    std::int64_t now = 0;
    for (int i = 0; i < 100; ++i) {
        now = pacer.show_at(now);
    }
    now += 3 * second; // loading, a suspended machine
    EXPECT_EQ(pacer.show_at(now), now);
    EXPECT_EQ(pacer.show_at(now), now) << "the picture at which the slots start anew";
    const std::int64_t next = pacer.show_at(now);
    EXPECT_EQ(next, now + ptc::frame_pacer::slot - ptc::frame_pacer::leeway);
    for (int i = 1; i < 200; ++i) {
        now = pacer.show_at(now);
        EXPECT_EQ(now, next + i * ptc::frame_pacer::slot);
    }
    for (int i = 0; i < 20; ++i) { // a program too slow for sixty is never held up
        now += second / 40;
        EXPECT_EQ(pacer.show_at(now), now);
    }
}

namespace {

// The window library's driver for tests: windows without a screen.
class ptc_window : public testing::Test {
  protected:
    void SetUp() override {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        std::signal(SIGINT, SIG_DFL); // a test run in the background has it ignored
        std::signal(SIGTERM, SIG_DFL);
    }
    void TearDown() override { unsetenv("SDL_VIDEODRIVER"); }
};

} // namespace

TEST_F(ptc_window, opens_shows_and_closes_more_than_once) {
    ptc::Console console;
    ptc::Surface surface(512, 384, rgb);
    for (int round = 0; round < 2; ++round) {
        console.open(".", 512, 384, rgb, 0);
        EXPECT_STREQ(console.title(), ".");
        EXPECT_STREQ(console.name(), "dummy");
        EXPECT_FALSE(console.modes().empty());
        EXPECT_EQ(pixels_of(console), std::vector<std::uint32_t>(512 * 384));
        surface.copy(console);
        console.update();
        EXPECT_EQ(console.key(), 0);
        console.close();
        EXPECT_EQ(kind_raised([&] { console.update(); }), DynamicError::Kind::closed);
    }
    EXPECT_EQ(kind_raised([&] { console.open(".", 512, 384, ptc::Format(8), 0); }),
              DynamicError::Kind::request);
}

TEST_F(ptc_window, interrupt_termination_and_hang_up_count_as_escape) {
    ptc::Console console;
    console.open(".", 512, 384, rgb, 0);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        console.press(Key(Key::space));
        ASSERT_EQ(console.read(), Key(Key::space));
        ASSERT_EQ(std::raise(signal), 0);
        for (int pictures = 0; pictures < 100 && console.key() == 0; ++pictures) {
            console.update();
        }
        ASSERT_EQ(console.key(), 1);
        EXPECT_EQ(console.read(), Key(Key::escape));
    }
}

TEST_F(ptc_window, without_a_display_it_says_so) {
    setenv("SDL_VIDEODRIVER", "no such driver", 1);
    ptc::Console console;
    EXPECT_EQ(kind_raised([&] { console.open(".", 512, 384, rgb, 0); }), DynamicError::Kind::display);
    EXPECT_EQ(kind_raised([&] { console.key(); }), DynamicError::Kind::request) << "it never was open";
    EXPECT_EQ(ptc::display_drivers(false, false), "KMSDRM");
    EXPECT_EQ(ptc::display_drivers(true, true), "x11,wayland,KMSDRM");
}

TEST_F(ptc_window, message_boxes_go_to_standard_error_where_nobody_looks) {
    EXPECT_FALSE(ptc::display_present());
    int answer = 0;
    EXPECT_EQ(on_standard_error([&] { answer = winbase::MessageBoxA(nullptr, "No sound", "Error", 0x30); }),
              "Error: No sound\n");
    EXPECT_EQ(answer, 1);
}

namespace {

void push_key(SDL_Keycode code, bool repeated = false) {
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = code;
    event.key.repeat = repeated ? 1 : 0;
    SDL_PushEvent(&event);
}

// All keys that come within the next pictures.
std::string keys_from(ptc::Console& console) {
    std::string codes;
    for (int pictures = 0; pictures < 3; ++pictures) {
        console.update();
        while (console.key() == 1)
            codes.push_back(static_cast<char>(console.read().code()));
    }
    return codes;
}

} // namespace

TEST_F(ptc_window, keys_of_the_keyboard_arrive_in_order_and_once) {
    ptc::Console console;
    console.open(".", 512, 384, rgb, 0);
    push_key('x'); // was meant for something else
    push_key(SDLK_ESCAPE);
    EXPECT_EQ(console.key(), 0); // is kept until a picture has been shown
    EXPECT_EQ(keys_from(console), "\x1b");
    push_key(' ');
    push_key(' ', true);
    push_key('a');
    push_key(SDLK_LSHIFT);
    push_key(SDLK_ESCAPE);
    for (int looks = 0; looks < 3; ++looks) { // a look in vain is followed by none until the next picture
        SDL_Delay(2);
        EXPECT_EQ(console.key(), 0);
    }
    EXPECT_EQ(keys_from(console), " a\x1b");
}
