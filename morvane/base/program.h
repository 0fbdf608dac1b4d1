// What every program does first, and the form in which it tells of a failure. Links nothing.
#pragma once

#include <string_view>

namespace program {

// Keeps `name`, which must live on, for `complain`, and opens the null device on whatever of standard input,
// output and error is closed: a file or a connection that came to lie there would get what is printed. The
// first call of each `main`.
void start(const char* name);

// One line on standard error, "NAME: SUBJECT: REASON"; the subject of a failed file is its path. Until
// `start` the name is "morvane".
void complain(std::string_view subject, std::string_view reason);

} // namespace program
