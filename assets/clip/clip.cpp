// The making of the clip: two workers carry the stream on by some frames, each its half of the threads, then
// paint and encode these frames, each every other one.
#include "assets/clip/clip.h"

#include <algorithm>
#include <array>
#include <barrier>
#include <functional>
#include <memory>
#include <span>
#include <thread>
#include <vector>

#include "assets/clip/clip_scene.h"
#include "assets/forms/avi_writer.h"

namespace assets {
namespace {

using namespace clip;

constexpr int workers = 2;
constexpr int batch = 6; // frames between two meetings of the workers
constexpr int quality = 3;

struct studio {
    stream flow{clip_frames, clip_rate};
    meteor body;
    night_sky sky;
    std::array<stream::snapshot, batch> beads;
    std::vector<file_bytes> frames{static_cast<std::size_t>(clip_frames)};
    std::barrier<> meeting{workers};
};

void work(studio& all, int me) {
    constexpr int share = stream::threads / workers;
    const auto own_painter = std::make_unique<painter>(all.flow, all.body, all.sky);
    jpeg_encoder encoder(clip_width, clip_height, quality);
    std::vector<std::uint8_t> bytes;
    const int first = me * share;
    for (int frame = -stream::warm_up; frame < 0; ++frame)
        all.flow.advance(first, first + share, frame, all.beads[0]);
    for (int start = 0; start < clip_frames; start += batch) {
        const int count = std::min(batch, clip_frames - start);
        for (int k = 0; k < count; ++k)
            all.flow.advance(first, first + share, start + k, all.beads[static_cast<std::size_t>(k)]);
        all.meeting.arrive_and_wait();
        for (int k = me; k < count; k += workers) {
            own_painter->paint(start + k, all.beads[static_cast<std::size_t>(k)], bytes);
            all.frames[static_cast<std::size_t>(start + k)] = encoder.encode(bytes);
        }
        all.meeting.arrive_and_wait();
    }
}

} // namespace

file_bytes clip_file() {
    const auto all = std::make_unique<studio>();
    for (stream::snapshot& beads : all->beads)
        beads.resize(std::size_t{stream::threads} * stream::beads);
    {
        std::vector<std::jthread> helpers;
        for (int me = 1; me < workers; ++me)
            helpers.emplace_back(work, std::ref(*all), me);
        work(*all, 0);
    }
    for (const file_bytes& frame : all->frames)
        if (frame.empty()) return {};
    return avi_file(clip_width, clip_height, clip_rate, all->frames);
}

} // namespace assets
