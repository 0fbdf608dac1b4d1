// Time by the replaceable source, and the first call of a program.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include "morvane/base/program.h"
#include "morvane/platform/time/manual_clock.h"
#include "morvane/platform/time/winbase.h"

TEST(winbase_time, everything_follows_a_clock_that_is_moved_by_hand) {
    winbase::manual_clock clock(1000000);
    std::int64_t frequency = 0, counter = -1;
    EXPECT_TRUE(winbase::QueryPerformanceFrequency(&frequency));
    EXPECT_TRUE(winbase::QueryPerformanceCounter(&counter));
    EXPECT_EQ(frequency, 1000000);
    EXPECT_EQ(counter, 0);
    EXPECT_EQ(winbase::clock(), 0);

    clock.advance(1234567);
    EXPECT_EQ(winbase::GetTickCount(), 1234U);
    EXPECT_EQ(winbase::clock(), 1234);
    winbase::Sleep(200); // a sleep takes no time of the machine's
    EXPECT_EQ(winbase::clock(), 1434);
    winbase::QueryPerformanceCounter(&counter);
    EXPECT_EQ(counter, 1434567);
}

TEST(winbase_time, the_millisecond_counters_wrap_without_overflow) {
    winbase::manual_clock clock(1000000000);
    clock.set(INT64_MAX - 5);
    const std::int64_t milliseconds = (INT64_MAX - 5) / 1000000;
    EXPECT_EQ(winbase::GetTickCount(), static_cast<std::uint32_t>(milliseconds));
    EXPECT_EQ(winbase::clock(), 0); // counts from its first call
}

TEST(winbase_time, the_machines_clock_runs_forward) {
    std::int64_t frequency = 0, first = 0, second = 0;
    winbase::QueryPerformanceFrequency(&frequency);
    winbase::QueryPerformanceCounter(&first);
    const std::int32_t start = winbase::clock();
    winbase::Sleep(5);
    winbase::QueryPerformanceCounter(&second);
    EXPECT_GT(frequency, 1000);
    EXPECT_GE((second - first) * 1000 / frequency, 5);
    EXPECT_GE(winbase::clock() - start, 4); // wall-clock time passes while the thread sleeps
}

TEST(program, opens_the_null_device_on_what_is_closed) {
    const pid_t child = fork();
    if (child == 0) {
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            close(descriptor);
        program::start("test");
        const bool usable = write(STDOUT_FILENO, "", 1) == 1 && write(STDERR_FILENO, "", 1) == 1;
        char none = 0;
        const bool silent = read(STDIN_FILENO, &none, 1) == 0;
        _exit(usable && silent && dup(STDIN_FILENO) > STDERR_FILENO ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}
