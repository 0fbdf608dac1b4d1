// The whole run: console, start-up, the movements in a chain, the end.
#pragma once

struct show_options;

// Plays the show from the data tree in place, as `options` say, and returns the exit code of the process, 0
// on every path that comes back. What the console raises ends the run here, after it has reported itself.
int run_show(const show_options& options);
