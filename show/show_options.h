// What the command line of the show may say.
#pragma once

#include <span>
#include <string>

struct show_options {
    std::string data; // the folder of the data tree; empty: it is looked for
    bool full_screen = false;
    bool mute = false;
    bool help = false;
    bool version = false;
    std::string error; // what is wrong with the words; empty if nothing is
};

extern const char* const show_usage;

// Reads the words behind the program's name. Of --windowed and --fullscreen the last one counts; behind
// --help and --version nothing is looked at.
show_options read_show_options(std::span<const char* const> words);
