// Counts what a piece of code takes from the heap, by whatever road: new, malloc, or a C library's own calls.
#pragma once

// Heap blocks taken since the program began.
long allocations_so_far();
