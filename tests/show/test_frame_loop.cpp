// The road of a frame, with a console of the test's own and a clock moved by hand.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <vector>

#include "morvane/platform/console/ptc.h"
#include "morvane/platform/time/manual_clock.h"
#include "show/frame_clock.h"
#include "show/frame_loop.h"
#include "show/show.h"
#include "show/sync_log.h"
#include "tests/support/temp_file.h"

namespace {

const ptc::Format true_colour(32, 0xff0000, 0xff00, 0xff, 0);

// Each picture takes a quarter of a second; `script` says what happens once it shows.
class test_console : public ptc::Console {
  public:
    explicit test_console(winbase::manual_clock& clock) : clock_(clock) {
        open_off_screen(".", 512, 384, true_colour);
    }
    void update() override {
        std::uint32_t* pixels = lock();
        pictures.emplace_back(pixels, pixels + 512 * 384);
        unlock();
        clock_.advance(clock_.frequency() / 4);
        if (script) script(static_cast<int>(pictures.size()));
    }
    int key() override {
        ++questions;
        if (question_script) question_script(questions);
        return Console::key();
    }
    void close() override {
        closed_marks = mark_count;
        closed = true;
        log_was_written = std::filesystem::exists("sync.txt");
        Console::close();
    }

    std::function<void(int picture)> script;
    std::function<void(int question)> question_script;
    std::vector<std::vector<std::uint32_t>> pictures;
    int questions = 0;
    bool closed = false;
    bool log_was_written = false; // before the console was closed
    int closed_marks = -1;

  private:
    winbase::manual_clock& clock_;
};

std::vector<float> drawn_times;

void draw_white(show& all, float t) {
    drawn_times.push_back(t);
    gtex_fill(all.canvas, 0xffffff);
}

class frame_loop : public testing::Test {
  protected:
    frame_loop()
        : console(clock), surface(512, 384, true_colour), old_folder(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.path());
        frame_tables_init();
        create_spine(all);
        mark_count = 0;
        drawn_times.clear();
        clock.advance(777); // the show's time counts from clock_start, not from the source's zero
        clock_start();
    }
    ~frame_loop() override {
        std::filesystem::current_path(old_folder);
        mark_count = 0;
    }
    movement_end run(double end_time) {
        return run_movement({.console = console, .surface = surface}, all, {draw_white, end_time});
    }
    std::string sync_text() const {
        std::ostringstream text;
        text << std::ifstream(folder.path() / "sync.txt").rdbuf();
        return text.str();
    }

    winbase::manual_clock clock{1000000};
    test_console console;
    ptc::Surface surface;
    show all;
    temp_folder folder;
    std::filesystem::path old_folder;
};

} // namespace

TEST_F(frame_loop, a_timed_movement_draws_until_its_end_time) {
    EXPECT_EQ(run(1.0), movement_end::left);
    EXPECT_EQ(drawn_times, (std::vector<float>{0, 0.25F, 0.5F, 0.75F})); // the first frame has time 0
    EXPECT_EQ(frame_count, 4);
    EXPECT_EQ(show_time, 1.0F);
    EXPECT_FALSE(console.closed);
    EXPECT_FALSE(std::filesystem::exists("sync.txt")); // only Escape leaves one

    const int questions = console.questions;
    EXPECT_EQ(run(1.0), movement_end::left); // over already: no frame, but the key is asked for first
    EXPECT_EQ(frame_count, 4);
    EXPECT_EQ(console.questions, questions + 1);
}

TEST_F(frame_loop, the_time_is_divided_at_full_width) {
    for (const std::int64_t ticks : {147490000123LL, 33333333333LL, 16777217LL, 99999999999999LL}) {
        winbase::manual_clock fine(1000000007);
        clock_start();
        fine.set(ticks);
        clock_tick();
        EXPECT_EQ(show_time, static_cast<float>(static_cast<double>(ticks) / 1000000007.0)) << ticks;
    }
    winbase::set_time_source(&clock);
}

TEST_F(frame_loop, the_picture_stands_in_a_black_letterbox) {
    run(0.1);
    ASSERT_EQ(console.pictures.size(), 1U);
    for (std::size_t y = 0; y < 384; ++y)
        for (std::size_t x = 0; x < 512; ++x)
            ASSERT_EQ(console.pictures[0][y * 512 + x] & 0xffffff, y > 48 && y < 335 ? 0xffffffU : 0U)
                << x << ", " << y;
}

TEST_F(frame_loop, escape_stops_the_run_and_writes_the_marks) {
    console.script = [&](int picture) {
        if (picture == 2) { // a mark holds the time of the tick after the press, with a letter beside it
            console.press(ptc::Key(32));
            console.press(ptc::Key('a'));
        }
        if (picture == 3) { // a mark in the same poll as Escape is in the file, one behind it is not
            console.press(ptc::Key(32));
            console.press(ptc::Key(27));
            console.press(ptc::Key(32));
        }
    };
    EXPECT_EQ(run(100), movement_end::stopped);
    EXPECT_TRUE(console.closed && console.log_was_written);
    EXPECT_EQ(console.closed_marks, 2);
    EXPECT_EQ(drawn_times.size(), 3U);
    EXPECT_EQ(sync_text(), "TIME: 0.50, 0.75, \n\nFPS: 4.00 frames per second\n");
    EXPECT_THROW(console.key(), ptc::DynamicError);
}

TEST_F(frame_loop, a_key_in_the_gap_before_a_frame_leaves_the_movement) {
    // Questions 1 and 2 surround the first frame; number 3 is the one at the top of the second frame.
    console.question_script = [&](int question) {
        if (question == 3) console.press(ptc::Key(27));
    };
    EXPECT_EQ(run(100), movement_end::left);
    EXPECT_EQ(drawn_times.size(), 1U);
    EXPECT_FALSE(console.closed); // the key is still in the queue, for the next movement's poll

    EXPECT_EQ(run(100), movement_end::left); // and at its top it waits still
    EXPECT_EQ(drawn_times.size(), 1U);
}

TEST_F(frame_loop, keys_pressed_while_a_frame_is_drawn_are_kept_in_order) {
    console.script = [&](int picture) {
        if (picture == 1)
            for (int i = 0; i < 40; ++i)
                console.press(ptc::Key(32));
        if (picture == 2) console.press(ptc::Key(27));
    };
    EXPECT_EQ(run(100), movement_end::stopped);
    EXPECT_EQ(mark_count, 40);
}

TEST_F(frame_loop, a_console_that_was_closed_raises) {
    console.close();
    try {
        run(100);
        FAIL() << "nothing was raised";
    } catch (const ptc::DynamicError& error) {
        EXPECT_EQ(error.kind(), ptc::DynamicError::Kind::closed);
    }
    EXPECT_TRUE(drawn_times.empty());
}
