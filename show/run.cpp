#include "show/run.h"

#include <memory>
#include <string>

#include "morvane/media/music.h"
#include "morvane/media/video.h"
#include "morvane/platform/console/ptc.h"
#include "morvane/platform/time/winbase.h"
#include "show/data_files.h"
#include "show/frame_clock.h"
#include "show/frame_loop.h"
#include "show/score/score.h"
#include "show/show.h"
#include "show/show_options.h"

namespace {

// The music of the run, or none.
struct soundtrack {
    bool mute = false;
    std::string path; // the player keeps a pointer into it
    music player;
};

void start_track(soundtrack& sound, const char* file) {
    if (sound.mute) return;
    sound.path = data_path(file);
    sound.player.init();
    sound.player.load(sound.path.c_str());
    sound.player.play();
}

// Between the timed movements; the clock runs on.
void hand_over(soundtrack& sound) {
    constexpr std::uint32_t pause_ms = 200;
    sound.player.free();
    winbase::Sleep(pause_ms);
    start_track(sound, second_track);
}

// The end of the show as the viewer sees it.
void end_show(music& player, ptc::Console& console) {
    player.free();
    video_close();
    console.close();
}

// The timed movements, then the closing ones: the console is closed by then, so that the first look at its
// keys raises an error and ends the run. A console that went on would show them until Escape.
void play(const stage& on, show& all, soundtrack& sound) {
    clock_start();
    const std::span<const movement> timed = timed_movements();
    for (std::size_t i = 0; i < timed.size(); ++i) {
        if (i > 0) hand_over(sound);
        if (run_movement(on, all, timed[i]) == movement_end::stopped) return;
    }
    end_show(sound.player, on.console);
    for (const movement& each : closing_movements())
        if (run_movement(on, all, each) == movement_end::stopped) return;
    end_show(sound.player, on.console);
}

} // namespace

int run_show(const show_options& options) {
    try {
        const ptc::Format format(32, 0xff0000, 0xff00, 0xff, 0);
        ptc::Console console;
        // The window is on the screen while everything else loads.
        console.full_screen(options.full_screen);
        console.open(".", frame_columns, console_rows, format, 0);
        ptc::Surface surface(frame_columns, console_rows, format);
        frame_tables_init();
        const auto all = std::make_unique<show>();
        create_spine(*all);
        if (!start_up(*all) || winbase::stop_wished()) return 0;
        soundtrack sound; // goes before the console, whatever ends the run
        sound.mute = options.mute;
        start_track(sound, first_track);
        if (winbase::stop_wished()) return 0;
        video_clock_start();
        play({.console = console, .surface = surface}, *all, sound);
    } catch (const ptc::DynamicError& error) {
        error.report();
    }
    return 0;
}
