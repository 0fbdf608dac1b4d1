#include "tools/record/recording.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "morvane/base/numbers.h"
#include "tools/kit/interrupts.h"
#include "tools/kit/output_file.h"
#include "tools/kit/progress.h"
#include "tools/record/contact_sheet.h"
#include "tools/record/film_writer.h"
#include "tools/record/picture_file.h"

namespace {

// Whether `problem` is empty; says it if not.
bool good(const std::string& problem) {
    if (!problem.empty()) std::fprintf(stderr, "morvane-record: %s\n", problem.c_str());
    return problem.empty();
}

// Each of the three below takes the frames that it needs of those that pass. `take` returns an empty text or
// what went wrong, with the name of the file; the functions that return a bool complain themselves, also
// about what an interruption cut, which is no failure of theirs.

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
        if (next_ == first_) {
            good(with_name(options_.film, "interrupted before its first picture"));
            return true;
        }
        if (!good(with_name(options_.film, writer_.finish()))) return false;
        const double seconds = static_cast<double>(next_ - first_) / source_.fps;
        std::printf("%s: ", options_.film.c_str());
        if (next_ < end_)
            std::printf("cut by the interruption, %.2f of %.2f seconds of film", seconds,
                        static_cast<double>(end_ - first_) / source_.fps);
        else
            std::printf("%.2f seconds of film", seconds);
        std::printf(", %lld frames\n", static_cast<long long>(next_ - first_));
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
        if (done_ < count_) {
            good(with_name(options_.sheet, "interrupted before its last picture"));
            return true;
        }
        if (!good(with_name(options_.sheet, write_picture(options_.sheet, sheet_.sheet())))) return false;
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

enum class passed { whole, cut, failed };

// Draws the frames from `begin` to before `end`, and all take what they need.
passed pass(const frame_source& source, jobs& all, std::int64_t begin, std::int64_t end, const char* work) {
    if (begin >= end) return passed::whole;
    const bool terminal = isatty(STDOUT_FILENO) == 1;
    progress shown(stdout, terminal, work, end - begin);
    std::int64_t frame = begin;
    for (; frame < end && interrupted() == 0; ++frame) {
        std::string news;
        const std::string problem = take(all, frame, source.draw(frame), news);
        if (!news.empty() || !problem.empty()) shown.clear();
        std::fputs(news.c_str(), stdout);
        if (!good(problem)) return passed::failed;
        if (terminal || all.film) shown.done(frame + 1 - begin);
    }
    shown.clear();
    return frame < end ? passed::cut : passed::whole;
}

} // namespace

int record(const record_options& options, const frame_source& source) {
    jobs all{.film = {}, .stills = stills_job(options, source), .sheet = {}};
    if (!options.film.empty()) all.film.emplace(options, source);
    if (!options.sheet.empty()) all.sheet.emplace(options, source);
    catch_interrupts();
    if (all.film && !all.film->open()) return interrupted() == 0 ? 1 : interrupted_exit_code();

    const std::int64_t before = all.film ? all.film->first() : 0;
    const std::int64_t end =
        std::max({all.film ? all.film->end() : 0, all.stills.end(), all.sheet ? all.sheet->end() : 0});
    passed drawn = pass(source, all, 0, before, "drawing");
    if (drawn == passed::whole) drawn = pass(source, all, before, end, all.film ? "filming" : "drawing");
    if (drawn == passed::failed) return 1;
    // What could be made is kept, whatever became of the rest.
    const bool film = !all.film || all.film->finish();
    const bool sheet = !all.sheet || all.sheet->finish();
    if (!all.stills.whole()) good("interrupted before the last still");
    if (!film || !sheet) return 1;
    return drawn == passed::cut ? interrupted_exit_code() : 0;
}

int check_outputs(const record_options& options) {
    const std::vector<std::string> paths = outputs(options);
    for (std::size_t i = 0; i < paths.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (output_file::same(paths[k], paths[i])) {
                good(with_name(paths[i], "two outputs can't have one name"));
                return 2;
            }
    for (const std::string& path : paths)
        if (!good(with_name(path, output_file(path).obstacle()))) return 1;
    return 0;
}
