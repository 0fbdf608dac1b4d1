// The program itself, in a window that nobody sees and with sound that nobody hears.
#include <gtest/gtest.h>

#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/data_tree.h"
#include "tests/support/temp_file.h"

namespace {

struct ended_run {
    int code = -1; // -1: ended by a signal
    std::string out, err;
};

// Starts the show in a copy of the data tree; with `stop`, sends it a termination signal as soon as it loads,
// which is after its window has opened.
ended_run run_show(const temp_folder& folder, const char* video_driver, bool stop) {
    int terminal = -1; // where the program's lines arrive as they are printed
    int child_side = -1;
    if (openpty(&terminal, &child_side, nullptr, nullptr, nullptr) != 0) return {};
    const std::string program = std::string(MORVANE_TEST_TOOLS) + "/morvane";
    const std::string errors = folder.path("err");
    const pid_t child = fork();
    if (child == 0) {
        setenv("SDL_VIDEODRIVER", video_driver, 1);
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        signal(SIGTERM, SIG_DFL);
        dup2(child_side, STDOUT_FILENO);
        close(terminal);
        close(child_side);
        if (std::freopen(errors.c_str(), "w", stderr) == nullptr || chdir(folder.path().c_str()) != 0)
            _exit(99);
        execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
        _exit(98);
    }
    close(child_side);
    ended_run run;
    char letter = 0;
    while (read(terminal, &letter, 1) == 1) {
        run.out.push_back(letter);
        if (stop && run.out.size() == 1) kill(child, SIGTERM);
    }
    close(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) run.code = WEXITSTATUS(status);
    const auto bytes = folder.read("err");
    run.err.assign(bytes.begin(), bytes.end());
    return run;
}

} // namespace

TEST(run, a_stop_leaves_the_log_and_exit_code_0) {
    go_to_data_tree();
    const temp_folder folder;
    std::filesystem::copy("data", folder.path("data"), std::filesystem::copy_options::recursive);
    const ended_run run = run_show(folder, "dummy", true);
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    const auto log = folder.read("sync.txt");
    EXPECT_EQ(std::string(log.begin(), log.end()).rfind("TIME: \n\nFPS: ", 0), 0U);
}

TEST(run, without_a_window_it_says_one_line_and_ends_with_0) {
    const temp_folder folder;
    const ended_run run = run_show(folder, "no such driver", false);
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.rfind("morvane: cannot open a window", 0), 0U) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
    EXPECT_FALSE(std::filesystem::exists(folder.path("sync.txt")));
}
