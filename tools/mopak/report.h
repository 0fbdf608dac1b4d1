// What mopak tells on the terminal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A name from an archive may hold anything: control characters, with which a terminal could be steered,
// become
// '?'.
std::string printable(std::string_view name);

// "mopak: SUBJECT: TEXT" on standard error.
void report(std::string_view subject, std::string_view text);

// A message of the archive's own for people: no exclamation mark, the system's reason behind it. Reads errno.
std::string in_words(const char* message);

// "97.5%", and "-" of nothing.
std::string percent(std::int64_t part, std::int64_t whole);

// "1 file", "24 files".
std::string count_of(std::int64_t count, std::string_view noun);
