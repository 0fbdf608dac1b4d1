#include "tools/record/hash_file.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <optional>
#include <utility>

#include "show/data_files.h"
#include "tools/kit/interrupts.h"
#include "tools/kit/output_file.h"
#include "tools/record/hash_lines.h"

namespace {

constexpr const char* header = "morvane-hashes 1";
constexpr double each_seconds = 20;
constexpr std::int32_t each_balls = 12;
constexpr int trouble = 2;
constexpr std::size_t write_size = 1 << 16;

int complain(const std::string& path, const std::string& problem, int code) {
    std::fprintf(stderr, "morvane-record: %s: %s\n", path.c_str(), problem.c_str());
    return code;
}

// The frames of `part`, or nothing if what it is drawn from isn't there, which has been told then.
std::optional<frame_source> checked_source(const hashed_part& part) {
    if (part.kind != part_kind::metaballs && !needed_files_there()) {
        report_missing_files();
        return {};
    }
    frame_source source = source_of(part);
    const auto lines = sound_track::trouble(source.tracks, source.start, source.end);
    for (const std::string& line : lines)
        std::fprintf(stderr, "morvane-record: %s\n", line.c_str());
    if (!lines.empty()) return {};
    return source;
}

// How many lines of a kind there were and how many of them differ, and the run of differing ones that has
// not been told yet.
struct tally {
    const char* name;
    std::int64_t count = 0, different = 0;
    hash_line first{}, last{}; // of the run
    bool running = false;
};

std::string number_and_time(const hash_line& line) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%lld (%.3f s)", static_cast<long long>(line.number),
                  line.seconds);
    return text.data();
}

void end_run(tally& lines, std::string& report) {
    if (!lines.running) return;
    lines.running = false;
    report += "  " + std::string(lines.name) + " " + number_and_time(lines.first);
    if (lines.last.number > lines.first.number) report += " to " + number_and_time(lines.last);
    report += "\n";
}

void count_line(tally& lines, const hash_line& line, bool same, std::string& report) {
    ++lines.count;
    if (same) return end_run(lines, report);
    ++lines.different;
    if (!lines.running) lines.first = line;
    lines.running = true;
    lines.last = line;
}

class comparison {
  public:
    comparison(const std::string& path, const std::string& data_folder)
        : path_(path), data_folder_(data_folder), file_(path) {}

    int run() {
        if (!file_ || !next_line()) return complain(path_, "it can't be read", trouble);
        if (line_ != header) return complain(path_, "it isn't a file of hashes of this version", trouble);
        while (next_line() && line_.starts_with("part "))
            if (const int code = compare_part(line_.substr(5)); code != 0) return code;
        if (number_ < 3 || line_ != "end") return odd_line();
        return tell_sum();
    }

  private:
    bool next_line() {
        ++number_;
        line_.clear();
        return static_cast<bool>(std::getline(file_, line_));
    }

    int odd_line() {
        return complain(
            path_, "line " + std::to_string(number_) + " isn't what follows there; it isn't whole", trouble);
    }

    // 0, or the exit code that ends it all.
    int compare_part(const std::string& text) {
        const std::optional<hashed_part> part = read_part(text);
        if (!part) return odd_line();
        if (part->kind != part_kind::metaballs && !find_data(data_folder_)) return trouble;
        const std::optional<frame_source> source = checked_source(*part);
        if (!source) return trouble;
        tally frames{.name = "frames"}, sounds{.name = "seconds of sound"};
        bool fits = true;
        draw_hash_lines(*source, "comparing", [&](const hash_line& line) {
            const std::string start = line.place + " ";
            fits =
                next_line() && line_.starts_with(start) && line_.size() == start.size() + line.hashes.size();
            if (fits) take(text, line.frame ? frames : sounds, line);
            return fits;
        });
        end_run(frames, report_);
        end_run(sounds, report_);
        if (!report_.empty()) std::printf("part %s differs:\n%s", text.c_str(), report_.c_str());
        report_.clear();
        if (!fits) return odd_line();
        if (interrupted() != 0)
            return complain(path_, "interrupted, not compared to its end", interrupted_exit_code());
        add(frames, all_frames_);
        add(sounds, all_sounds_);
        return 0;
    }

    void take(const std::string& part, tally& lines, const hash_line& line) {
        const bool same = std::string_view(line_).substr(line.place.size() + 1) == line.hashes;
        if (!same && first_.empty()) first_ = "part " + part + ", " + line.place + " s";
        count_line(lines, line, same, report_);
    }

    static void add(const tally& part, tally& sum) {
        sum.count += part.count;
        sum.different += part.different;
    }

    int tell_sum() {
        const bool same = all_frames_.different + all_sounds_.different == 0;
        std::printf("%s: %lld of %lld frames and %lld of %lld seconds of sound differ%s%s\n", path_.c_str(),
                    static_cast<long long>(all_frames_.different), static_cast<long long>(all_frames_.count),
                    static_cast<long long>(all_sounds_.different), static_cast<long long>(all_sounds_.count),
                    same ? "" : "; the first: ", first_.c_str());
        return same ? 0 : 1;
    }

    std::string path_, data_folder_;
    std::ifstream file_;
    std::string line_;
    long number_ = 0;    // of the line
    std::string first_;  // differing line, with its part
    std::string report_; // runs of this part that differ

    tally all_frames_{.name = ""}, all_sounds_{.name = ""};
};

} // namespace

std::vector<hashed_part> every_part(std::int32_t fps) {
    return {{.kind = part_kind::run, .fps = fps, .seconds = each_seconds},
            {.kind = part_kind::metaballs, .number = each_balls, .fps = fps, .seconds = each_seconds}};
}

int write_hashes(const std::string& path, const std::vector<hashed_part>& parts) {
    catch_interrupts();
    output_file output(path);
    std::string problem = output.open(), text = std::string(header) + "\n";
    std::int64_t frames = 0, sounds = 0;
    for (const hashed_part& part : parts) {
        if (!problem.empty()) break;
        const std::optional<frame_source> source = checked_source(part);
        if (!source) return 1;
        text += "part " + part_text(part) + "\n";
        draw_hash_lines(*source, "hashing", [&](const hash_line& line) {
            ++(line.frame ? frames : sounds);
            text += line.place + " " + line.hashes + "\n";
            if (text.size() >= write_size) problem = output.write(std::exchange(text, {}));
            return problem.empty();
        });
        if (interrupted() != 0) return complain(path, "interrupted, not whole", interrupted_exit_code());
    }
    if (problem.empty()) problem = output.write(text + "end\n");
    if (problem.empty()) problem = output.finish();
    if (!problem.empty()) return complain(path, problem, interrupted() == 0 ? 1 : interrupted_exit_code());
    if (!output.direct())
        std::printf("%s: hashes of %lld frames and %lld seconds of sound\n", path.c_str(),
                    static_cast<long long>(frames), static_cast<long long>(sounds));
    return 0;
}

int compare_hashes(const std::string& path, const std::string& data_folder) {
    catch_interrupts();
    return comparison(path, data_folder).run();
}
