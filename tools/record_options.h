// The command line of morvane-record.
#pragma once

#include <span>
#include <string>
#include <vector>

struct still {
    double seconds = 0;
    std::string path;
};

struct record_options {
    std::vector<still> stills;
    bool help = false;
    bool version = false;
    std::string error; // what is wrong with the words, empty if nothing is
};

// Reads the words behind the program's name. `length` is the show's, in seconds: a still lies before it.
record_options read_record_options(std::span<const char* const> words, double length);

extern const char* const record_usage;
