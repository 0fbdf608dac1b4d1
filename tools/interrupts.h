// Ctrl-C and its like as a question instead of an end.
#pragma once

// From here on the signals that ask the process to end are only noted, and a closed pipe or a file that grows
// beyond its limit is an error of the write that meets it.
void catch_interrupts();

// The number of such a signal that has come, the last one's; 0: none.
int interrupted();
