#include "show/frame_loop.h"

#include "morvane/platform/console/ptc.h"
#include "morvane/platform/time/winbase.h"
#include "show/frame_clock.h"
#include "show/show.h"
#include "show/sync_log.h"

namespace {

void draw_frame(const stage& on, show& all, const movement& what) {
    all.screen.pixels = on.surface.lock();
    what.draw(all, show_time);
    gtex_present(all.screen, all.canvas);
    on.surface.unlock();
    on.surface.copy(on.console);
    on.console.update();
}

void stop(ptc::Console& console) {
    clock_end_ms = winbase::clock();
    sync_log_write("sync.txt");
    console.close();
}

// Reads every waiting key, in order. True when one of them stopped the run.
bool poll_keys(ptc::Console& console, const movement& what) {
    while (console.key() == 1) {
        const ptc::Key key = console.read();
        if (key.code() == ptc::Key::escape) {
            if (what.before_stop != nullptr) what.before_stop();
            stop(console);
            return true;
        }
        if (key.code() == ptc::Key::space) mark_add();
    }
    return false;
}

} // namespace

movement_end run_movement(const stage& on, show& all, const movement& what) {
    for (;;) {
        if (on.console.key() == 1) return movement_end::left;
        if (show_time >= what.end_time) return movement_end::left;
        draw_frame(on, all, what);
        clock_tick();
        if (poll_keys(on.console, what)) return movement_end::stopped;
    }
}
