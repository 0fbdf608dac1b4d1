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
#include "tests/support/program_run.h"
#include "tests/support/temp_file.h"

namespace {

struct ended_run {
    int code = -1; // -1: ended by a signal
    std::string out, err;
};

// Starts the show in an empty folder; with `stop`, sends it that signal as soon as it loads, which is after
// its window has opened.
ended_run run_show(const temp_folder& folder, const char* video_driver, int stop = 0) {
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
        signal(SIGHUP, SIG_DFL);
        dup2(child_side, STDOUT_FILENO);
        close(terminal);
        close(child_side);
        if (std::freopen(errors.c_str(), "w", stderr) == nullptr || chdir(folder.path().c_str()) != 0)
            _exit(99);
        execl(program.c_str(), program.c_str(), "--data", MORVANE_TEST_TREE "/data",
              static_cast<char*>(nullptr));
        _exit(98);
    }
    close(child_side);
    ended_run run;
    char letter = 0;
    while (read(terminal, &letter, 1) == 1) {
        run.out.push_back(letter);
        if (stop != 0 && run.out.size() == 1) kill(child, stop);
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

TEST(run, a_stop_leaves_the_log_in_the_working_directory_and_exit_code_0) {
    go_to_data_tree();
    for (const int signal : {SIGTERM, SIGHUP}) {
        const temp_folder folder;
        const ended_run run = run_show(folder, "dummy", signal);
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.err, "");
        const auto log = folder.read("sync.txt");
        EXPECT_EQ(std::string(log.begin(), log.end()).rfind("TIME: \n\nFPS: ", 0), 0U);
    }
}

TEST(run, what_can_not_be_begun_is_told_in_one_line) {
    go_to_data_tree();
    const temp_folder folder;
    const ended_run blind = run_show(folder, "no such driver");
    EXPECT_EQ(blind.code, 0);
    EXPECT_EQ(blind.out, "");
    EXPECT_EQ(blind.err.rfind("morvane: cannot open a window", 0), 0U) << blind.err;
    EXPECT_EQ(blind.err.find('\n'), blind.err.size() - 1) << blind.err;

    for (const char* words :
         {"--quick", "film.mp4", "--data", "--data ''", "--data /no/such/folder", "--mute -h"}) {
        const program_run wrong = run_program(MORVANE_TEST_TOOLS "/morvane", words, folder.path().string());
        EXPECT_EQ(wrong.code, 2) << words;
        EXPECT_EQ(wrong.err.rfind("morvane: ", 0), 0U) << wrong.err;
        EXPECT_EQ(wrong.err.find('\n'), wrong.err.size() - 1) << wrong.err;
    }
    EXPECT_EQ(run_program(MORVANE_TEST_TOOLS "/morvane", "--version", folder.path().string()).code, 0);
    EXPECT_FALSE(std::filesystem::exists(folder.path("sync.txt")));
}
