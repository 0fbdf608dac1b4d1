#include "tools/recording.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "math/numbers.h"
#include "tools/contact_sheet.h"
#include "tools/film_writer.h"
#include "tools/interrupts.h"
#include "tools/picture_file.h"
#include "tools/progress.h"

namespace {

// Whether `problem` is empty; says it if not.
bool good(const std::string& problem) {
    if (!problem.empty()) std::fprintf(stderr, "morvane-record: %s\n", problem.c_str());
    return problem.empty();
}

// Each of the three below takes the frames that it needs of those that pass. `take` returns an empty text or
// what went wrong, with the name of the file; the functions that return a bool complain themselves.

std::string with_name(const std::string& path, const std::string& problem) {
    return problem.empty() ? problem : path + ": " + problem;
}

class film_job {
  public:
    film_job(const record_options& options, const frame_source& source)
        : options_(options), source_(source), first_(frame_at(source, options.from.value_or(source.start))),
          end_(frame_from(source, options.to.value_or(source.end))), next_(first_) {}

    std::int64_t first() const { return first_; }
    std::int64_t end() const { return end_; }

    bool open() {
        const double from = time_of(source_, first_), to = time_of(source_, end_);
        const std::vector<placed_track> none;
        const auto& tracks = options_.sound ? source_.tracks : none;
        for (const std::string& line : sound_track::trouble(tracks, from, to))
            good(line + "; the film is silent there");
        return good(with_name(options_.film, writer_.open({.path = options_.film,
                                                           .width = source_.width,
                                                           .height = source_.height,
                                                           .scale = options_.scale,
                                                           .fps = source_.fps,
                                                           .from = from,
                                                           .tracks = tracks})));
    }

    std::string take(std::int64_t frame, gtex picture) {
        if (frame < first_ || frame >= end_) return {};
        next_ = frame + 1;
        return with_name(options_.film, writer_.add(picture));
    }

    bool finish() {
        const bool empty = next_ == first_;
        if (!good(with_name(options_.film, empty ? "ended before its first picture" : writer_.finish())))
            return false;
        std::printf("%s: %s%.2f seconds of film, %lld frames\n", options_.film.c_str(),
                    next_ < end_ ? "ended early, " : "", static_cast<double>(next_ - first_) / source_.fps,
                    static_cast<long long>(next_ - first_));
        return true;
    }

  private:
    const record_options& options_;
    const frame_source& source_;
    std::int64_t first_, end_, next_;
    film_writer writer_;
};

class stills_job {
  public:
    stills_job(const record_options& options, const frame_source& source)
        : stills_(options.stills), source_(source) {
        std::ranges::stable_sort(stills_, {}, &still::seconds);
    }

    std::int64_t end() const { return stills_.empty() ? 0 : frame_at(source_, stills_.back().seconds) + 1; }

    // Adds a line to `news` for each still that there is now.
    std::string take(std::int64_t frame, gtex picture, std::string& news) {
        for (; done_ < stills_.size() && frame_at(source_, stills_[done_].seconds) == frame; ++done_) {
            const still& each = stills_[done_];
            if (std::string problem = write_picture(each.path, picture); !problem.empty())
                return with_name(each.path, problem);
            std::array<char, 64> time{};
            std::snprintf(time.data(), time.size(), "%.2f", each.seconds);
            news += each.path + ": the picture at " + time.data() + " seconds\n";
        }
        return {};
    }

    bool whole() const { return done_ == stills_.size(); }

  private:
    std::vector<still> stills_;
    const frame_source& source_;
    std::size_t done_ = 0;
};

class sheet_job {
  public:
    sheet_job(const record_options& options, const frame_source& source)
        : options_(options), source_(source), from_(options.from.value_or(source.start)),
          count_(pictures(options, source, from_)),
          sheet_(options.columns, count_, source.width, source.height, source.black_rows) {}

    std::int64_t end() const { return frame_at(source_, time_of_picture(count_ - 1)) + 1; }

    void take(std::int64_t frame, gtex picture) {
        for (; done_ < count_ && frame_at(source_, time_of_picture(done_)) == frame; ++done_)
            sheet_.add(picture, time_of_picture(done_));
    }

    bool finish() {
        const std::string problem =
            done_ < count_ ? "ended before its last picture" : write_picture(options_.sheet, sheet_.sheet());
        if (!good(with_name(options_.sheet, problem))) return false;
        std::printf("%s: %d pictures\n", options_.sheet.c_str(), static_cast<int>(count_));
        return true;
    }

  private:
    static std::int32_t pictures(const record_options& options, const frame_source& source, double from) {
        constexpr double slack = 1e-6;
        const double length = options.to.value_or(source.end) - from;
        return std::max(1, trunc_to_int(std::ceil(length / options.every - slack)));
    }
    double time_of_picture(std::int32_t number) const { return from_ + number * options_.every; }

    const record_options& options_;
    const frame_source& source_;
    double from_;
    std::int32_t count_, done_ = 0;
    contact_sheet sheet_;
};

struct jobs {
    std::optional<film_job> film;
    stills_job stills;
    std::optional<sheet_job> sheet;
};

// Hands a picture to all.
std::string take(jobs& all, std::int64_t frame, gtex picture, std::string& news) {
    if (all.sheet) all.sheet->take(frame, picture);
    std::string problem = all.film ? all.film->take(frame, picture) : "";
    return problem.empty() ? all.stills.take(frame, picture, news) : problem;
}

// Draws the frames from `begin` to before `end`, and all take what they need.
bool pass(const frame_source& source, jobs& all, std::int64_t begin, std::int64_t end, const char* work) {
    if (begin >= end) return true;
    const bool terminal = isatty(STDOUT_FILENO) == 1;
    progress shown(stdout, terminal, work, end - begin);
    for (std::int64_t frame = begin; frame < end && interrupted() == 0; ++frame) {
        std::string news;
        const std::string problem = take(all, frame, source.draw(frame), news);
        if (!news.empty() || !problem.empty()) shown.clear();
        std::fputs(news.c_str(), stdout);
        if (!good(problem)) return false;
        if (terminal || all.film) shown.done(frame + 1 - begin);
    }
    shown.clear();
    return true;
}

} // namespace

int record(const record_options& options, const frame_source& source) {
    jobs all{.film = {}, .stills = stills_job(options, source), .sheet = {}};
    if (!options.film.empty()) all.film.emplace(options, source);
    if (!options.sheet.empty()) all.sheet.emplace(options, source);
    catch_interrupts();
    if (all.film && !all.film->open()) return 1;

    const std::int64_t before = all.film ? all.film->first() : 0;
    const std::int64_t end =
        std::max({all.film ? all.film->end() : 0, all.stills.end(), all.sheet ? all.sheet->end() : 0});
    if (!pass(source, all, 0, before, "drawing") ||
        !pass(source, all, before, end, all.film ? "filming" : "drawing"))
        return 1;
    // What could be made is kept, whatever became of the rest.
    const bool film = !all.film || all.film->finish();
    const bool sheet = !all.sheet || all.sheet->finish();
    const bool stills = good(all.stills.whole() ? "" : "ended before the last still");
    return film && sheet && stills ? 0 : 1;
}
