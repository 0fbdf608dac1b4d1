// Values, surfaces and consoles in memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "morvane/platform/console/ptc.h"
#include "tests/support/consoles.h"

namespace {

using ptc::DynamicError;
using ptc::Key;

// Hands in keys of its own and keeps the last picture.
class scripted_console : public ptc::Console {
  public:
    void open(const char* title, int width, int height, const ptc::Format& format, int) override {
        open_off_screen(title, width, height, format);
    }
    void update() override { shown = pixels_of(*this); }
    int key() override { return script.empty() ? 0 : 1; }
    Key read() override {
        const Key first = script.front();
        script.erase(script.begin());
        return first;
    }
    void close() override {
        Console::close();
        ++closed;
    }

    std::vector<Key> script;
    std::vector<std::uint32_t> shown;
    int closed = 0;
};

} // namespace

TEST(ptc_values, start_with_their_defaults_and_copy_their_objects) {
    EXPECT_EQ(ptc::Area(), ptc::Area(0, 0, 0, 0));
    EXPECT_EQ(ptc::Format().bits(), 0);
    EXPECT_FALSE(ptc::Format().direct() || ptc::Format().indexed());
    EXPECT_FALSE(ptc::Mode().valid());
    EXPECT_EQ(Key().code(), 0);
    EXPECT_TRUE(std::ranges::all_of(ptc::Palette().data(), [](std::uint32_t c) { return c == 0; }));

    const std::array<std::uint32_t, 2> colours{1, 2};
    const ptc::Palette original(colours);
    ptc::Palette copy = original;
    copy.lock()[1] = 7;
    copy.unlock();
    EXPECT_EQ(original.data()[1], 2U);
    EXPECT_FALSE(copy == original);

    const ptc::Area wide(INT32_MIN, 3, INT32_MAX, -3);
    EXPECT_EQ(wide.width(), INT32_MAX);
    EXPECT_EQ(wide.height(), 0);
}

TEST(ptc_values, formats_are_checked) {
    EXPECT_TRUE(rgb.direct());
    EXPECT_EQ(rgb.bytes(), 4);
    EXPECT_EQ(rgb.r(), 0xff0000U);
    EXPECT_EQ(rgb.g(), 0xff00U);
    EXPECT_EQ(rgb.b(), 0xffU);
    EXPECT_EQ(rgb.a(), 0U);
    EXPECT_EQ(rgb, ptc::Format(32, 0xff0000, 0xff00, 0xff));
    EXPECT_FALSE(rgb == ptc::Format(24, 0xff0000, 0xff00, 0xff));
    EXPECT_TRUE(ptc::Format(8).indexed());
    const auto request = DynamicError::Kind::request;
    EXPECT_EQ(kind_raised([] { ptc::Format(16); }), request);
    EXPECT_EQ(kind_raised([] { ptc::Format(12, 0xf00, 0xf0, 0xf); }), request);
    EXPECT_EQ(kind_raised([] { ptc::Format(16, 0xff0000, 0xff00, 0xff); }), request);  // too wide
    EXPECT_EQ(kind_raised([] { ptc::Format(32, 0xff0000, 0x1ff00, 0xff); }), request); // overlap
    EXPECT_EQ(kind_raised([] { ptc::Surface(8, 8, ptc::Format(16, 0xf800, 0x7e0, 0x1f)); }), request);
    EXPECT_EQ(kind_raised([] { ptc::Surface(8, 8, ptc::Format(8)); }), request);
    EXPECT_EQ(kind_raised([] { ptc::Surface(8, 8, ptc::Format(32, 0xff, 0xff00, 0xff0000)); }), request);
    for (const int bad : {0, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(kind_raised([bad] { ptc::Surface(bad, 70000, rgb); }), request) << bad;
        EXPECT_EQ(kind_raised([bad] { ptc::Surface(70000, bad, rgb); }), request) << bad;
    }
}

TEST(ptc_surface, copies_as_a_loop_over_pixels_would) {
    ptc::Surface from(13, 9, rgb);
    number_pixels(from);
    const std::vector<std::uint32_t> read = pixels_of(from);
    const std::array<ptc::Area, 4> sources{from.area(), {2, 1, 9, 8}, {12, 8, 13, 9}, {5, 5, 5, 7}};
    const std::array<ptc::Area, 8> places{
        ptc::Area(0, 0, 13, 9), {-4, -3, 9, 6},
        {6, 2, 13, 9},          {-20, -9, 30, 40},
        {3, 3, 4, 4},           {30, 30, 40, 40},
        {9, 9, 2, 2},           {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}};
    const std::array<ptc::Area, 3> clips{ptc::Area(0, 0, 11, 10), {3, 4, 8, 6}, {7, 7, 7, 7}};
    for (const ptc::Area& s : sources) {
        for (const ptc::Area& d : places) {
            for (const ptc::Area& clip : clips) {
                ptc::Surface to(11, 10, rgb);
                to.clip(clip);
                from.copy(to, s, d);
                std::vector<std::uint32_t> expected(11 * 10);
                for (int y = clip.top(); y < clip.bottom(); ++y) {
                    for (int x = clip.left(); x < clip.right(); ++x) {
                        const bool hit = d.left() <= x && x < d.right() && d.top() <= y && y < d.bottom();
                        if (!hit || s.width() == 0) continue;
                        const std::int64_t wide = std::int64_t{d.right()} - d.left();
                        const std::int64_t high = std::int64_t{d.bottom()} - d.top();
                        const auto u = s.left() + (std::int64_t{x} - d.left()) * s.width() / wide;
                        const auto v = s.top() + (std::int64_t{y} - d.top()) * s.height() / high;
                        expected[static_cast<std::size_t>(y * 11 + x)] =
                            read[static_cast<std::size_t>(v * 13 + u)];
                    }
                }
                EXPECT_EQ(pixels_of(to), expected);
            }
        }
    }
}

TEST(ptc_surface, copies_within_itself_from_the_old_pixels) {
    for (const int dx : {-2, 0, 2}) {
        for (const int dy : {-1, 0, 3}) {
            ptc::Surface surface(10, 10, rgb);
            number_pixels(surface);
            const std::vector<std::uint32_t> before = pixels_of(surface);
            surface.copy(surface, {3, 3, 7, 7}, {3 + dx, 3 + dy, 7 + dx, 7 + dy});
            std::vector<std::uint32_t> expected = before;
            for (int y = 3; y < 7; ++y) {
                for (int x = 3; x < 7; ++x) {
                    const auto to = static_cast<std::size_t>((y + dy) * 10 + x + dx);
                    expected[to] = before[static_cast<std::size_t>(y * 10 + x)];
                }
            }
            EXPECT_EQ(pixels_of(surface), expected) << dx << " " << dy;
        }
    }
}

TEST(ptc_surface, refuses_what_would_leave_its_pixels) {
    ptc::Surface surface(10, 10, rgb);
    ptc::Surface other(10, 10, rgb);
    const auto request = DynamicError::Kind::request;
    EXPECT_EQ(kind_raised([&] { surface.copy(other, {0, 0, 11, 10}, {0, 0, 11, 10}); }), request);
    EXPECT_EQ(kind_raised([&] { surface.copy(other, {-1, 0, 10, 10}, {0, 0, 11, 10}); }), request);
    EXPECT_EQ(kind_raised([&] { surface.copy(surface, {0, 0, 5, 5}, {0, 0, 6, 6}); }), request);
    EXPECT_EQ(kind_raised([&] { surface.unlock(); }), request);
    surface.lock();
    EXPECT_EQ(kind_raised([&] { surface.lock(); }), request);
    EXPECT_EQ(kind_raised([&] { surface.copy(other); }), request);
    EXPECT_EQ(kind_raised([&] { other.copy(surface); }), request);
    surface.unlock();
    surface.clip({-5, 8, 3, 100});
    EXPECT_EQ(surface.clip(), ptc::Area(0, 8, 3, 10));
    surface.clear(9);
    const std::vector<std::uint32_t> pixels = pixels_of(surface);
    EXPECT_EQ(std::ranges::count(pixels, 9U), 6);
    EXPECT_EQ(pixels[8 * 10 + 2], 9U);
}

TEST(ptc_console, a_derived_one_gets_the_pictures_and_hands_in_keys) {
    scripted_console console;
    console.open(".", 512, 384, rgb, 0);
    ptc::Surface surface(512, 384, rgb);
    EXPECT_EQ(surface.pitch(), 2048);
    EXPECT_EQ(pixels_of(surface), std::vector<std::uint32_t>(512 * 384));
    number_pixels(surface);
    surface.copy(console);
    console.update();
    EXPECT_EQ(console.shown, pixels_of(surface));

    console.script = {Key(Key::space), Key(Key::escape, true)};
    ptc::Console& seen = console;
    ASSERT_EQ(seen.key(), 1);
    EXPECT_EQ(seen.read(), Key(Key::space));
    EXPECT_EQ(seen.read(), Key(Key::escape, true));
    EXPECT_EQ(seen.key(), 0);
    seen.close();
    EXPECT_EQ(console.closed, 1);
    EXPECT_EQ(kind_raised([&] { surface.copy(seen); }), DynamicError::Kind::closed);
}

TEST(ptc_console, every_operation_raises_before_open_and_after_close) {
    ptc::Console console;
    ptc::Surface surface(4, 4, rgb);
    const std::vector<std::function<void()>> operations{
        [&] { console.key(); },         [&] { console.read(); },       [&] { console.update(); },
        [&] { console.update({}); },    [&] { console.flush(); },      [&] { console.finish(); },
        [&] { console.press(Key()); },  [&] { console.modes(); },      [&] { console.title(); },
        [&] { console.name(); },        [&] { console.pages(); },      [&] { console.area(); },
        [&] { console.clip(); },        [&] { console.clip({}); },     [&] { console.format(); },
        [&] { console.palette(); },     [&] { console.palette({}); },  [&] { console.handle(); },
        [&] { console.lock(); },        [&] { console.unlock(); },     [&] { console.clear(); },
        [&] { console.width(); },       [&] { console.height(); },     [&] { console.pitch(); },
        [&] { surface.copy(console); }, [&] { console.copy(surface); }};
    for (const auto& operation : operations) {
        EXPECT_EQ(kind_raised(operation), DynamicError::Kind::request);
    }
    for (int round = 0; round < 2; ++round) {
        console.open_off_screen(".", 4, 4, rgb);
        console.press(Key(Key::space));
        console.update();
        console.close();
        console.close();
        for (const auto& operation : operations) {
            EXPECT_EQ(kind_raised(operation), DynamicError::Kind::closed);
        }
    }
    console.open_off_screen(".", 4, 4, rgb);
    EXPECT_EQ(console.key(), 0) << "presses end with the console that they were made at";
    EXPECT_EQ(kind_raised([&] { console.read(); }), DynamicError::Kind::request);
    ASSERT_EQ(console.modes().size(), 1U);
    EXPECT_EQ(console.modes()[0], ptc::Mode(4, 4, rgb));
}

TEST(ptc_error, tells_of_real_failures_only) {
    const DynamicError failure(DynamicError::Kind::display, "cannot open a window: no screen");
    EXPECT_EQ(on_standard_error([&] { failure.report(); }), "morvane: cannot open a window: no screen\n");

    scripted_console console;
    console.open(".", 4, 4, rgb, 0);
    console.close();
    EXPECT_EQ(on_standard_error([&] {
                  try {
                      console.handle();
                  } catch (const DynamicError& error) {
                      error.report();
                  }
              }),
              "");
}
