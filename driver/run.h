// The whole run: console, start-up, the movements in a chain, the end.
#pragma once

// Plays the show in a window and returns the exit code of the process, 0 on every path that comes back. What
// the console raises ends the run here, after it has reported itself.
int run_show();
