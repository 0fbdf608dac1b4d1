#include "tools/record/show_source.h"

#include <algorithm>
#include <memory>

#include "show/data_files.h"
#include "show/score/score.h"
#include "tools/record/off_screen_show.h"

namespace {

constexpr std::int32_t display_fps = 60;
constexpr double hand_over = 0.2; // seconds from a movement's end to the next one's music

frame_source console_source(std::int32_t fps) {
    return {.width = frame_columns, .height = console_rows, .black_rows = letterbox_rows, .fps = fps};
}

// One track for each timed movement.
std::vector<placed_track> music_of_the_show() {
    constexpr const char* paths[] = {first_track, second_track};
    std::vector<placed_track> tracks;
    double start = 0;
    const std::size_t count = std::min(std::size(paths), timed_movements().size());
    for (std::size_t i = 0; i < count; ++i) {
        const double end = timed_movements()[i].end_time;
        tracks.push_back({.path = data_path(paths[i]), .start = start, .end = end});
        start = end + hand_over;
    }
    return tracks;
}

} // namespace

std::int32_t drawn_frames_each(std::int32_t fps) {
    return std::max(1, (display_fps + fps / 2) / fps);
}

frame_source timed_show(std::int32_t fps) {
    return whole_run(0, fps);
}

frame_source whole_run(double seconds, std::int32_t fps) {
    const std::int32_t drawn = drawn_frames_each(fps);
    const auto all = std::make_shared<off_screen_show>(fps * drawn);
    all->let_closing_movements_follow(seconds);
    frame_source source = console_source(fps);
    source.end = off_screen_show::length() + seconds * static_cast<double>(closing_movements().size());
    source.canvas = all->canvas();
    source.tracks = music_of_the_show();
    source.draw = [all, drawn](std::int64_t frame) {
        all->draw_up_to(frame * drawn);
        return all->picture();
    };
    return source;
}

frame_source closing_show(int number, double seconds, std::int32_t fps) {
    const std::int32_t drawn = drawn_frames_each(fps);
    const auto all = std::make_shared<off_screen_show>(fps * drawn);
    frame_source source = console_source(fps);
    const std::int64_t lead = frame_from(source, off_screen_show::length());
    source.lead = lead;
    source.start = off_screen_show::length();
    source.end = source.start + seconds;
    source.canvas = all->canvas();
    source.draw = [all, drawn, lead, number](std::int64_t frame) {
        if (frame == lead) all->enter_closing(number);
        if (frame < lead)
            all->draw_up_to(frame * drawn);
        else
            all->draw_closing_up_to((frame - lead) * drawn);
        return all->picture();
    };
    return source;
}
