// The command line of morvane-record.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

inline constexpr double most_seconds = 3600;
inline constexpr std::int32_t most_fps = 240;

struct still {
    double seconds = 0;
    std::string path;
};

struct record_options {
    // What is filmed.
    int movement = 0;           // a closing movement, 3 to 6; 0 for the timed show
    std::int32_t metaballs = 0; // their number; 0: the show
    double seconds = 10;        // length of what has no length of its own
    std::int32_t fps = 60;
    std::string data; // the folder of the data tree; empty: it is looked for

    // What is made of it, any of these at once.
    std::string film; // empty: none
    std::int32_t scale = 2;
    bool sound = true;
    std::vector<still> stills;
    std::string sheet; // empty: none
    double every = 5;  // seconds from picture to picture of the sheet
    std::int32_t columns = 6;

    // Or, alone, a file of hashes that is written or compared with; empty: none.
    std::string hashes, compare;

    // The stretch of film and sheet; by default all. Hashes of the timed show have an end.
    std::optional<double> from, to;

    bool help = false;
    bool version = false;
    std::string error; // what is wrong with the words, empty if nothing is
};

// The time that the frames of what is filmed cover, in seconds.
struct time_range {
    double start = 0, end = 0;
};
time_range range_of(const record_options& options, double show_length);

// Reads the words behind the program's name. `show_length` is that of the timed show, in seconds. In the
// result without an error all times lie in the range, `from` before `to`, and all numbers within their
// bounds.
record_options read_record_options(std::span<const char* const> words, double show_length);

// The paths of all files that are to be made.
std::vector<std::string> outputs(const record_options& options);

extern const char* const record_usage;
