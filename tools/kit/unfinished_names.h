// The names of files that are not whole yet, where a signal's handler finds them. Any thread may call these.
#pragma once

#include <string>

// Notes `path`, made absolute. Returns its place in the list, -1 if the list is full or the path too long;
// the file stays then if the process ends by a signal.
int note_unfinished(const std::string& path);

// Forgets it: the file has got its name or is gone. -1 is nothing.
void forget_unfinished(int place);

// Removes all files that are noted. Calls nothing that a handler may not call.
void remove_unfinished();
