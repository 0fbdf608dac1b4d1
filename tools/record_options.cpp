#include "tools/record_options.h"

#include <charconv>
#include <cstdio>
#include <string_view>

const char* const record_usage =
    "Usage: morvane-record --still SECONDS FILE.png [--still SECONDS FILE.png]...\n"
    "Draws the show without a display, 60 frames a second from its start, and writes the picture that a "
    "viewer\n"
    "sees at that time, letterbox included. Reads the data tree in the working directory.\n"
    "\n"
    "  --still SECONDS FILE.png   one picture; may be given several times\n"
    "  --help                     print this text\n"
    "  --version                  print the version\n";

namespace {

bool read_seconds(std::string_view text, double length, double& seconds) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return problem == std::errc() && end == text.data() + text.size() && seconds >= 0 && seconds < length;
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

} // namespace

record_options read_record_options(std::span<const char* const> words, double length) {
    record_options options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (word == "--help") {
            options.help = true;
        } else if (word == "--version") {
            options.version = true;
        } else if (word == "--still") {
            if (words.size() - i < 3) {
                options.error = "--still takes a time in seconds and a file";
                return options;
            }
            still one{.path = words[i + 2]};
            if (!read_seconds(words[i + 1], length, one.seconds)) {
                options.error = "--still takes a time from 0 to below " + number(length) + " seconds, not '" +
                                words[i + 1] + "'";
                return options;
            }
            options.stills.push_back(one);
            i += 2;
        } else {
            options.error = "unknown option '" + std::string(word) + "'";
            return options;
        }
    }
    if (options.stills.empty() && !options.help && !options.version) options.error = "nothing to record";
    return options;
}
