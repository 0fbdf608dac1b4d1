#include "morvane/platform/clip/avifile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
}

#include "morvane/base/program.h"
#include "morvane/platform/clip/inner/avi_bitmap.h"
#include "morvane/platform/clip/inner/avi_frames.h"
#include "morvane/platform/clip/inner/avi_packets.h"

namespace avi {

struct stream {
    packet_reader packets;
    std::uint32_t holds = 1; // the caller's and those of frame accesses
};

struct get_frame {
    get_frame(stream* from, std::int32_t width, std::int32_t height) : of(from), shown(width, height) {}

    stream* of;
    frame_reader frames;
    bitmap shown;
    std::uint64_t shown_serial = 0; // of the frame that `shown` holds
};

namespace {

constexpr std::size_t largest_block = std::size_t{1} << 28; // bytes that the library takes at once

int open_on(stream& target, const char* path, std::int32_t which) {
    const int error = target.packets.open(path, which);
    if (error < 0) return error;
    const AVCodecParameters& parameters = target.packets.parameters();
    const bool fits = parameters.width > 0 && parameters.height > 0 && parameters.width <= largest_side &&
                      parameters.height <= largest_side &&
                      std::int64_t{parameters.width} * parameters.height <= largest_frame;
    return fits ? 0 : AVERROR_PATCHWELCOME;
}

void report(const char* path, int error) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> reason{};
    const char* text = reason.data();
    if (error == AVERROR_PATCHWELCOME)
        text = "the frame size is none that can be shown";
    else if (error == AVERROR_INVALIDDATA)
        text = "it holds no clip";
    else if (error == AVERROR_STREAM_NOT_FOUND)
        text = "it holds no such stream";
    else
        av_strerror(error, reason.data(), reason.size());
    program::complain(path, text);
}

} // namespace
} // namespace avi

void AVIFileInit() {
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(avi::largest_block);
}

void AVIFileExit() {}

std::int32_t AVIStreamOpenFromFileA(avi::stream** stream, const char* path, std::uint32_t type,
                                    std::int32_t which, std::uint32_t mode, const void* handler) {
    if (stream == nullptr) return avi::bad_argument;
    *stream = nullptr;
    if (path == nullptr || type != avi::type_video || which < 0 || mode != 0 || handler != nullptr)
        return avi::bad_argument;
    auto opened = std::make_unique<avi::stream>();
    if (const int error = avi::open_on(*opened, path, which); error < 0) {
        if (error != AVERROR(ENOENT)) avi::report(path, error);
        return avi::not_readable;
    }
    *stream = opened.release();
    return avi::ok;
}

std::int32_t AVIStreamInfoA(avi::stream* stream, avi::stream_info* info, std::int32_t size) {
    if (stream == nullptr || info == nullptr || size <= 0) return avi::bad_argument;
    const AVCodecParameters& parameters = stream->packets.parameters();
    avi::stream_info told{};
    told.type = avi::type_video;
    told.handler = parameters.codec_tag;
    told.scale = static_cast<std::uint32_t>(stream->packets.time().scale);
    told.rate = static_cast<std::uint32_t>(stream->packets.time().rate);
    told.length = static_cast<std::uint32_t>(stream->packets.frame_count());
    for (const auto& entry : stream->packets.entries())
        told.suggested_buffer_size =
            std::max(told.suggested_buffer_size, static_cast<std::uint32_t>(entry.size));
    told.frame = {.left = 0, .top = 0, .right = parameters.width, .bottom = parameters.height};
    std::snprintf(told.name, sizeof told.name, "%s", avcodec_get_name(parameters.codec_id));
    std::memcpy(info, &told, std::min(static_cast<std::size_t>(size), sizeof told));
    return avi::ok;
}

std::int32_t AVIStreamLength(avi::stream* stream) {
    return stream == nullptr ? 0 : stream->packets.frame_count();
}

std::int32_t AVIStreamSampleToTime(avi::stream* stream, std::int32_t sample) {
    if (stream == nullptr) return 0;
    const avi::frame_time time_of_one = stream->packets.time();
    if (time_of_one.scale <= 0 || time_of_one.rate <= 0) return 0;
    const std::int64_t time =
        av_rescale_rnd(sample, std::int64_t{1000} * time_of_one.scale, time_of_one.rate, AV_ROUND_ZERO);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(time, INT32_MIN, INT32_MAX));
}

avi::get_frame* AVIStreamGetFrameOpen(avi::stream* stream, const avi::bitmap_header* wanted) {
    if (stream == nullptr || wanted != nullptr) return nullptr;
    const AVCodecParameters& parameters = stream->packets.parameters();
    auto access = std::make_unique<avi::get_frame>(stream, parameters.width, parameters.height);
    if (!access->frames.open(stream->packets)) return nullptr;
    ++stream->holds;
    return access.release();
}

const avi::bitmap_header* AVIStreamGetFrame(avi::get_frame* access, std::int32_t position) {
    if (access == nullptr || position < 0 || position >= access->of->packets.frame_count()) return nullptr;
    const avi::found_frame found = access->frames.at(position);
    if (found.frame == nullptr) return nullptr;
    if (found.serial != access->shown_serial) access->shown.take(*found.frame);
    access->shown_serial = found.serial;
    return access->shown.packed();
}

std::int32_t AVIStreamGetFrameClose(avi::get_frame* access) {
    if (access == nullptr) return avi::bad_argument;
    avi::stream* of = access->of;
    delete access; // it reads from the stream to its end
    AVIStreamRelease(of);
    return avi::ok;
}

std::uint32_t AVIStreamRelease(avi::stream* stream) {
    if (stream == nullptr) return 0;
    const std::uint32_t left = --stream->holds;
    if (left == 0) delete stream;
    return left;
}
