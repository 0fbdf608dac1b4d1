#include "driver/run.h"

#include <memory>

#include "driver/chain.h"
#include "driver/frame_clock.h"
#include "driver/frame_loop.h"
#include "driver/show.h"
#include "media/music.h"
#include "platform/ptc.h"

namespace {

// The music starts just before the clock; from there on the clock alone drives the picture.
void start_music(music& track) {
    track.init();
    track.load("data/music/Ashwing1.mp3");
    track.play();
}

void play(const stage& on, show& all) {
    clock_start();
    for (const movement& each : movement_chain())
        if (run_movement(on, all, each) == movement_end::stopped) return;
    on.console.close();
}

} // namespace

int run_show() {
    try {
        const ptc::Format format(32, 0xff0000, 0xff00, 0xff, 0);
        ptc::Console console;
        // The window is on the screen while everything else loads.
        console.open(".", frame_columns, console_rows, format, 0);
        ptc::Surface surface(frame_columns, console_rows, format);
        frame_tables_init();
        const auto all = std::make_unique<show>();
        create_spine(*all);
        start_up(*all);
        music track; // goes before the console, whatever ends the run
        start_music(track);
        // Here the clip's own clock will be set.
        play({.console = console, .surface = surface}, *all);
    } catch (const ptc::DynamicError& error) {
        error.report();
    }
    return 0;
}
