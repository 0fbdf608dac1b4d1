// Files that go when a signal ends the program.
#pragma once

#include <string>

// Registers the file `name` in the folder open as `folder`, which stays open until the file is forgotten.
// Gives a number for `forget_doomed`, or -1 if no more than four can be kept: the file stays behind then. The
// first call takes over the signals that end a program, without those that are ignored.
int doom_file(int folder, const std::string& name);

// To be called before the file is removed or gets another name: from then on the name may be somebody else's.
void forget_doomed(int number);
