// The mark list and the text of "sync.txt".
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "show/frame_clock.h"
#include "show/sync_log.h"
#include "tests/support/captured_output.h"
#include "tests/support/temp_file.h"

namespace {

std::string text_of(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

struct a_run {
    a_run(std::int32_t frames, std::int32_t start, std::int32_t end) {
        mark_count = 0;
        frame_count = frames;
        clock_start_ms = start;
        clock_end_ms = end;
    }
    ~a_run() {
        mark_count = 0;
        frame_count = 0;
        show_time = 0;
    }
};

void mark_at(float seconds) {
    show_time = seconds;
    mark_add();
}

} // namespace

TEST(sync_log, holds_marks_an_empty_line_and_the_rate) {
    const temp_folder folder;
    const std::string path = (folder.path() / "sync.txt").string();
    std::ofstream(path) << "a longer text from an earlier run, which is replaced as a whole\n\n\n\n";

    const a_run run(625, 1500, 21500);
    mark_at(3.1F);
    mark_at(9.42F);
    sync_log_write(path.c_str());
    EXPECT_EQ(text_of(path), "TIME: 3.10, 9.42, \n\nFPS: 31.25 frames per second\n");

    mark_count = 0;
    frame_count = 2000000000; // times 1000 it passes 32 bits
    sync_log_write(path.c_str());
    EXPECT_EQ(text_of(path), "TIME: \n\nFPS: 100000000.00 frames per second\n");

    clock_end_ms = clock_start_ms; // stopped at once
    frame_count = 0;
    sync_log_write(path.c_str());
    EXPECT_EQ(text_of(path), "TIME: \n\nFPS: 0.00 frames per second\n");
}

TEST(sync_log, marks_beyond_the_250th_are_ignored) {
    const a_run run(1, 0, 1);
    for (int i = 0; i < 300; ++i)
        mark_at(static_cast<float>(i));
    EXPECT_EQ(mark_count, 250);
    EXPECT_EQ(mark_times[249], 249.0F);
}

TEST(sync_log, a_file_that_cannot_be_written_ends_the_process_with_1) {
    const temp_folder folder;
    const std::string path = (folder.path() / "no such folder" / "sync.txt").string();
    EXPECT_EXIT(sync_log_write(path.c_str()), testing::ExitedWithCode(1),
                "morvane: .*sync.txt: No such file");
    if (std::filesystem::exists("/dev/full")) { // where every write fails
        EXPECT_EXIT(sync_log_write("/dev/full"), testing::ExitedWithCode(1), "morvane: /dev/full: No space");
    }
}
