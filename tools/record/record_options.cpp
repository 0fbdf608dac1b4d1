#include "tools/record/record_options.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "tools/record/film_format.h"
#include "tools/record/metaballs_source.h"
#include "tools/record/picture_file.h"

const char* const record_usage =
    "Usage: morvane-record [FILE] [OPTION]...\n"
    "Draws the show without a display, every frame at its exact time, and makes of it a film, pictures or a\n"
    "contact sheet, or all of these at once.\n"
    "\n"
    "  FILE                       film the show: .mp4 and .mkv (H.264, AAC), .webm (VP9, Opus) or\n"
    "                             .avi (MPEG-4, MP3). Ctrl-C cuts the film, which can be played all the "
    "same\n"
    "                             (exit code 130; 143 by SIGTERM). A device or a pipe, as a film's name, "
    "takes\n"
    "                             .mkv and .webm\n"
    "  --scale N                  enlarge the 512x384 picture by a whole factor, 1 to 8 (2). An odd one "
    "loses\n"
    "                             sharpness of colour\n"
    "  --no-sound                 leave out the music\n"
    "  --still SECONDS FILE.png   the picture that a viewer sees at that time; may be given several times\n"
    "  --sheet FILE.png           a contact sheet, the time under each picture\n"
    "  --every SECONDS            from picture to picture of the sheet (5)\n"
    "  --columns N                pictures in a row of the sheet, 1 to 50 (6)\n"
    "  --hashes FILE              a file of hashes, to compare later drawings with: a line for each frame "
    "and\n"
    "                             for each second of sound. Of the show, then of each closing movement for\n"
    "                             20 seconds, then of 12 metaballs for 20 seconds; with --to, --movement or\n"
    "                             --metaballs of that alone\n"
    "  --compare FILE             draw again what such a file tells of and print which frames and seconds "
    "of\n"
    "                             sound differ. Exit code 0: none, 1: some do, 2: it could not be compared\n"
    "  --from SECONDS             where film and sheet begin (the start of the show)\n"
    "  --to SECONDS               where they end (the end of the show)\n"
    "  --fps N                    frames a second, 1 to 240 (60)\n"
    "  --movement N               instead of the timed show the closing movement 3, 4, 5 or 6. Its times "
    "begin\n"
    "                             where those of the show end\n"
    "  --metaballs N              instead of the show the metaball surface of 1 to 50 balls\n"
    "  --seconds N                length of a closing movement or of the metaballs, up to 3600 (10)\n"
    "  --data DIR                 the data tree: the folder that holds 3d/ and part1/ (data/ of the working\n"
    "                             directory, or beside or above the program)\n"
    "  --help                     print this text\n"
    "  --version                  print the version\n";

namespace {

constexpr double most_pictures = 1000; // of a sheet

std::string quoted(std::string_view word) {
    std::string text = "'";
    text.append(word);
    return text += "'";
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

template<class value_type>
bool read_number(std::string_view text, value_type lowest, value_type highest, value_type& value) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    return problem == std::errc() && end == text.data() + text.size() && value >= lowest && value <= highest;
}

// The words, taken one by one.
class reader {
  public:
    reader(std::span<const char* const> words, record_options& options) : words_(words), options_(options) {}

    // Until all is read or something is wrong.
    void read() {
        while (!words_.empty() && options_.error.empty()) {
            const std::string_view word = take();
            if (!flag(word) && !valued(word) && !named(word)) rest(word);
        }
    }

    bool given(std::string_view option) const {
        for (const std::string_view each : seen_)
            if (each == option) return true;
        return false;
    }

  private:
    std::string_view take() {
        const std::string_view word = words_.front();
        words_ = words_.subspan(1);
        return word;
    }

    void fail(std::string text) {
        if (options_.error.empty()) options_.error = std::move(text);
    }

    bool flag(std::string_view word) {
        if (word == "--help") return options_.help = true;
        if (word == "--version") return options_.version = true;
        if (word != "--no-sound") return false;
        options_.sound = false;
        seen_.push_back(word);
        return true;
    }

    // Options with one number.
    bool valued(std::string_view word) {
        if (word == "--scale")
            whole(word, 1, 8, options_.scale);
        else if (word == "--columns")
            whole(word, 1, 50, options_.columns);
        else if (word == "--fps")
            whole(word, 1, most_fps, options_.fps);
        else if (word == "--movement")
            whole(word, 3, 6, options_.movement);
        else if (word == "--metaballs")
            whole(word, 1, most_metaballs, options_.metaballs);
        else if (word == "--every")
            seconds(word, 0.001, options_.every);
        else if (word == "--seconds")
            seconds(word, 0.001, options_.seconds);
        else if (word == "--from")
            seconds(word, 0, options_.from.emplace());
        else if (word == "--to")
            seconds(word, 0, options_.to.emplace());
        else
            return false;
        seen_.push_back(word);
        return true;
    }

    void whole(std::string_view option, std::int32_t lowest, std::int32_t highest, std::int32_t& value) {
        const std::string_view text = words_.empty() ? std::string_view() : take();
        if (read_number(text, lowest, highest, value)) return;
        fail(std::string(option) + " takes a whole number from " + std::to_string(lowest) + " to " +
             std::to_string(highest) + ", not " + quoted(text));
    }

    void seconds(std::string_view option, double lowest, double& value) {
        const std::string_view text = words_.empty() ? std::string_view() : take();
        if (read_number(text, lowest, most_seconds, value)) return;
        fail(std::string(option) + " takes a time in seconds, not " + quoted(text));
    }

    // Options with a file.
    bool named(std::string_view word) {
        if (word == "--still") {
            if (words_.size() < 2) {
                fail("--still takes a time in seconds and a file");
                return true;
            }
            still& one = options_.stills.emplace_back();
            seconds(word, 0, one.seconds);
            one.path = take();
            check_picture(one.path);
            return true;
        }
        if (file(word, "--sheet", options_.sheet)) {
            check_picture(options_.sheet);
            return true;
        }
        return file(word, "--hashes", options_.hashes) || file(word, "--data", options_.data) ||
               file(word, "--compare", options_.compare);
    }

    bool file(std::string_view word, std::string_view option, std::string& path) {
        if (word != option) return false;
        seen_.push_back(word);
        if (words_.empty() || *words_.front() == 0)
            fail(std::string(option) + (option == "--data" ? " takes a folder" : " takes a file"));
        else
            path = take();
        return true;
    }

    void check_picture(const std::string& path) {
        if (!is_picture_path(path)) fail(quoted(path) + " is no picture: its name ends in .png");
    }

    void rest(std::string_view word) {
        if (word.starts_with("-"))
            fail("unknown option " + quoted(word));
        else if (film_format_of(word) == nullptr)
            fail(quoted(word) + " is no film: its name ends in .mp4, .mkv, .webm or .avi");
        else if (!options_.film.empty())
            fail("one film at a time");
        else
            options_.film = word;
    }

    std::span<const char* const> words_;
    record_options& options_;
    std::vector<std::string_view> seen_;
};

// An option that would do nothing is a mistake of the hand.
std::string pointless(const record_options& options, const reader& words) {
    struct need {
        const char* option;
        bool met;
        const char* what;
    };
    const bool film = !options.film.empty(), sheet = !options.sheet.empty();
    const bool hashes = !options.hashes.empty(), compare = !options.compare.empty();
    const bool timed = options.movement == 0 && options.metaballs == 0;
    if (hashes + compare + (film || sheet || !options.stills.empty()) > 1)
        return "--hashes and --compare go alone";
    const std::array needs{
        need{"--scale", film, "a film"},
        need{"--no-sound", film, "a film"},
        need{"--every", sheet, "--sheet"},
        need{"--columns", sheet, "--sheet"},
        need{"--from", film || sheet, "a film or --sheet"},
        need{"--to", film || sheet || (hashes && timed), "a film, --sheet or --hashes of the timed show"},
        need{"--fps", !compare, "all but --compare, whose file tells them"},
        need{"--movement", !compare, "all but --compare, whose file tells it"},
        need{"--metaballs", !compare, "all but --compare, whose file tells them"},
        need{"--seconds", options.movement != 0 || options.metaballs != 0, "--movement or --metaballs"},
        need{"--data", options.metaballs == 0, "the show, not with --metaballs"},
        need{"--movement", options.metaballs == 0, "the show, not with --metaballs"},
    };
    for (const need& each : needs)
        if (!each.met && words.given(each.option))
            return std::string(each.option) + " goes with " + each.what;
    return {};
}

// Whether the times lie where there are frames; empty, or what is wrong.
std::string misplaced(const record_options& options, const time_range& range) {
    const auto outside = [&](double seconds) { return !(seconds >= range.start && seconds < range.end); };
    const std::string room =
        " takes a time from " + number(range.start) + " to below " + number(range.end) + " seconds, not ";
    for (const still& each : options.stills)
        if (outside(each.seconds)) return "--still" + room + number(each.seconds);
    if (options.from && outside(*options.from)) return "--from" + room + number(*options.from);
    const double from = options.from.value_or(range.start), to = options.to.value_or(range.end);
    if (!(to > from && to <= range.end))
        return "--to takes a time from above " + number(from) + " to " + number(range.end) +
               " seconds, not " + number(to);
    if (!options.sheet.empty() && (to - from) / options.every > most_pictures)
        return "--every " + number(options.every) + " makes more than 1000 pictures";
    return {};
}

} // namespace

time_range range_of(const record_options& options, double show_length) {
    if (options.metaballs != 0) return {.start = 0, .end = options.seconds};
    if (options.movement != 0) return {.start = show_length, .end = show_length + options.seconds};
    return {.start = 0, .end = show_length};
}

std::vector<std::string> outputs(const record_options& options) {
    std::vector<std::string> paths;
    for (const std::string& each : {options.film, options.sheet, options.hashes})
        if (!each.empty()) paths.push_back(each);
    for (const still& each : options.stills)
        paths.push_back(each.path);
    return paths;
}

record_options read_record_options(std::span<const char* const> words, double show_length) {
    record_options options;
    reader all(words, options);
    all.read();
    if (!options.error.empty() || options.help || options.version) return options;
    if (options.film.empty() && options.stills.empty() && options.sheet.empty() && options.hashes.empty() &&
        options.compare.empty())
        options.error = "nothing to record";
    if (options.error.empty()) options.error = pointless(options, all);
    if (options.error.empty()) options.error = misplaced(options, range_of(options, show_length));
    return options;
}
