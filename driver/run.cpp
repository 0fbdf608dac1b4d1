#include "driver/run.h"

#include "driver/chain.h"
#include "driver/frame_clock.h"
#include "driver/frame_loop.h"
#include "driver/show.h"
#include "platform/ptc.h"

namespace {

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
        console.open(".", frame_columns, console_rows, format,
                     0); // on the screen while everything else loads
        ptc::Surface surface(frame_columns, console_rows, format);
        frame_tables_init();
        show all;
        create_spine(all);
        start_up(all);
        play({.console = console, .surface = surface}, all);
    } catch (const ptc::DynamicError& error) {
        error.report();
    }
    return 0;
}
