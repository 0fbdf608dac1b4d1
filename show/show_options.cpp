#include "show/show_options.h"

#include <cstddef>
#include <string_view>

const char* const show_usage =
    "Usage: morvane [OPTION]...\n"
    "Plays the show. Escape ends it, Space sets a time mark, F11 is full screen and back.\n"
    "\n"
    "  --data DIR     the data tree: the folder that holds 3d/ and part1/ (data/ of the working directory, "
    "or\n"
    "                 beside or above the program)\n"
    "  --windowed     begin in a window, as it does anyway\n"
    "  --fullscreen   begin in full screen\n"
    "  --mute         no music\n"
    "  --help         print this text\n"
    "  --version      print the version\n";

show_options read_show_options(std::span<const char* const> words) {
    show_options options;
    for (std::size_t i = 0; i < words.size() && !options.help && !options.version; ++i) {
        const std::string_view word = words[i];
        if (word == "--help") {
            options.help = true;
        } else if (word == "--version") {
            options.version = true;
        } else if (word == "--windowed" || word == "--fullscreen") {
            options.full_screen = word == "--fullscreen";
        } else if (word == "--mute") {
            options.mute = true;
        } else if (word == "--data") {
            if (i + 1 < words.size()) options.data = words[++i];
            if (options.data.empty()) options.error = "--data takes a folder";
        } else {
            options.error = "unknown option '" + std::string(word) + "'";
        }
        if (!options.error.empty()) break;
    }
    return options;
}
