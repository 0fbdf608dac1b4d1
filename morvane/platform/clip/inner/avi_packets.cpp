#include "morvane/platform/clip/inner/avi_packets.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <system_error>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace avi {
namespace {

constexpr std::int64_t least_chunk = 8; // bytes that a chunk takes in the file, be it empty
constexpr std::size_t near_chunks = 16; // so many are read over rather than sought
// A clip's palettes take four times the bytes of its file at most; what changes beyond is not followed.
constexpr std::int64_t bytes_a_palette = 256;

// The video stream number `which`, and no work for the others. Null if there is none.
AVStream* pick_stream(AVFormatContext& container, std::int32_t which) {
    AVStream* picked = nullptr;
    for (unsigned i = 0; i < container.nb_streams; ++i) {
        AVStream* stream = container.streams[i];
        const bool wanted = stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && which-- == 0;
        if (wanted) picked = stream;
        stream->discard = wanted ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    return picked;
}

} // namespace

void container_closer::operator()(AVFormatContext* container) const {
    avformat_close_input(&container);
}
void parameters_closer::operator()(AVCodecParameters* parameters) const {
    avcodec_parameters_free(&parameters);
}

int packet_reader::open(const std::string& path, std::int32_t which) {
    url_ = "file:" + path; // never another protocol, whatever the path looks like
    which_ = which;
    // A pipe or a device would have no end.
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored) && !std::filesystem::is_regular_file(path, ignored))
        return AVERROR_INVALIDDATA;
    if (const int error = open_container(); error < 0) return error;
    if (const int error = keep_parameters(); error < 0) return error;
    if (const int error = list_entries(); error < 0) return error;
    return entries_.empty() ? AVERROR_INVALIDDATA : 0;
}

// Also the way back to the first chunk where no seek leads there.
int packet_reader::open_container() {
    stream_ = nullptr;
    container_.reset();
    AVFormatContext* container = avformat_alloc_context();
    if (container == nullptr) return AVERROR(ENOMEM);
    container->flags |= AVFMT_FLAG_NOPARSE | AVFMT_FLAG_NOFILLIN; // a chunk is a frame, damaged or not
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    av_dict_set(&options, "format_whitelist", "avi", 0);
    const int error = avformat_open_input(&container, url_.c_str(), av_find_input_format("avi"), &options);
    av_dict_free(&options);
    if (error < 0) return error;
    container_.reset(container);
    stream_ = pick_stream(*container, which_);
    next_ = 0;
    return stream_ == nullptr ? AVERROR_STREAM_NOT_FOUND : 0;
}

int packet_reader::keep_parameters() {
    parameters_.reset(avcodec_parameters_alloc());
    if (!parameters_) return AVERROR(ENOMEM);
    time_ = {.scale = stream_->time_base.num, .rate = stream_->time_base.den};
    return avcodec_parameters_copy(parameters_.get(), stream_->codecpar);
}

// A chunk's time stamp counts the frames before it, those that the file leaves out included. Where it makes
// no sense, the chunk is the next frame.
int packet_reader::list_entries() {
    const std::unique_ptr<AVPacket, void (*)(AVPacket*)> packet(av_packet_alloc(),
                                                                [](AVPacket* p) { av_packet_free(&p); });
    if (!packet) return AVERROR(ENOMEM);
    const std::int64_t file_size = avio_size(container_->pb);
    const std::int64_t most = std::min<std::int64_t>(file_size / least_chunk, INT32_MAX - 1);
    // An index may name the same bytes over and over: they are read so many times at most.
    constexpr std::int64_t repeats = 4;
    std::int64_t bytes_left = std::min(file_size, INT64_MAX / repeats) * repeats;
    most_palettes_ = static_cast<std::size_t>(std::max<std::int64_t>(file_size, 0) / bytes_a_palette) + 1;
    bool stamped = false;
    while (std::ssize(entries_) < most && bytes_left > 0 &&
           av_read_frame(container_.get(), packet.get()) >= 0) {
        bytes_left -= std::max<std::int64_t>(packet->size, least_chunk);
        if (packet->stream_index == stream_->index) {
            std::int64_t slot = frame_count_;
            if (packet->dts != AV_NOPTS_VALUE) {
                if (!stamped) first_stamp_ = packet->dts - slot;
                stamped = true;
                const std::int64_t told = packet->dts - first_stamp_;
                if (told > slot && told < most) slot = told;
            }
            keep_palette(*packet);
            // An empty chunk repeats the frame before it.
            if (packet->size > 0) {
                entries_.push_back({.position = packet->pos,
                                    .size = packet->size,
                                    .slot = static_cast<std::int32_t>(slot),
                                    .key = (packet->flags & AV_PKT_FLAG_KEY) != 0,
                                    .cut = (packet->flags & AV_PKT_FLAG_CORRUPT) != 0});
            }
            if (!entries_.empty()) frame_count_ = static_cast<std::int32_t>(slot) + 1;
        }
        av_packet_unref(packet.get());
    }
    next_ = entries_.size();
    if (!entries_.empty() && frame_count_ < most)
        frame_count_ += static_cast<std::int32_t>(std::min(indexed_beyond(file_size), most - frame_count_));
    trust_keys();
    return 0;
}

// Frames behind those that were read of which the index tells, though the file ends before them.
std::int64_t packet_reader::indexed_beyond(std::int64_t file_size) const {
    std::int64_t count = 0;
    for (int i = avformat_index_get_entries_count(stream_); i-- > 0;) {
        const AVIndexEntry* told = avformat_index_get_entry(stream_, i);
        if (told == nullptr || told->timestamp - first_stamp_ < frame_count_) break;
        if (told->pos >= file_size - least_chunk) ++count;
    }
    return count;
}

// The library hands a palette out once, with the first chunk behind it, whatever is read later.
void packet_reader::keep_palette(const AVPacket& packet) {
    std::size_t size = 0;
    const std::uint8_t* colours = av_packet_get_side_data(&packet, AV_PKT_DATA_PALETTE, &size);
    palette now{.first = entries_.size(), .colours = {}};
    if (colours == nullptr || size != now.colours.size()) return;
    std::memcpy(now.colours.data(), colours, size);
    if (!palettes_.empty() && palettes_.back().first == now.first) palettes_.pop_back();
    if (palettes_.size() < most_palettes_) palettes_.push_back(now);
}

bool packet_reader::give_palette(AVPacket& packet, std::size_t number) const {
    const auto after = std::upper_bound(palettes_.begin(), palettes_.end(), number,
                                        [](std::size_t n, const palette& p) { return n < p.first; });
    if (after == palettes_.begin()) return true;
    const auto& colours = std::prev(after)->colours;
    std::size_t size = 0;
    std::uint8_t* room = av_packet_get_side_data(&packet, AV_PKT_DATA_PALETTE, &size);
    if (room == nullptr) {
        size = colours.size();
        room = av_packet_new_side_data(&packet, AV_PKT_DATA_PALETTE, size);
    }
    if (room == nullptr || size != colours.size()) return false;
    std::memcpy(room, colours.data(), size);
    return true;
}

// Without the file's index the library takes every chunk for a key frame, which is true of some codecs only.
void packet_reader::trust_keys() {
    const AVCodecDescriptor* about = avcodec_descriptor_get(parameters().codec_id);
    const bool intra = about != nullptr && (about->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
    const bool all = std::all_of(entries_.begin(), entries_.end(), [](const entry& e) { return e.key; });
    for (entry& e : entries_)
        e.key = intra || (e.key && !all);
    if (!entries_.empty()) entries_.front().key = true;
}

bool packet_reader::read(AVPacket& packet, std::size_t number) {
    return read_chunk(packet, number) && give_palette(packet, number);
}

bool packet_reader::read_chunk(AVPacket& packet, std::size_t number) {
    if (number >= entries_.size()) return false;
    const bool near = next_ <= number && number - next_ <= near_chunks;
    if (near ? skip_to(packet, number) : seek(packet, number)) return true;
    // No way on: from the start of the file there is one.
    return open_container() >= 0 && skip_to(packet, number);
}

// The stream's next chunk that isn't empty.
bool packet_reader::next_packet(AVPacket& packet) {
    av_packet_unref(&packet);
    while (av_read_frame(container_.get(), &packet) >= 0) {
        if (packet.stream_index == stream_->index && packet.size > 0) {
            ++next_;
            return true;
        }
        av_packet_unref(&packet);
    }
    return false;
}

bool packet_reader::skip_to(AVPacket& packet, std::size_t number) {
    if (stream_ == nullptr) return false;
    while (next_ <= number)
        if (!next_packet(packet)) return false;
    return next_ == number + 1;
}

// The library's own seek is believed only if the place of the chunk that it leads to is known.
bool packet_reader::seek(AVPacket& packet, std::size_t number) {
    if (stream_ == nullptr) return false;
    const std::int64_t stamp = first_stamp_ + entries_[number].slot;
    if (av_seek_frame(container_.get(), stream_->index, stamp, AVSEEK_FLAG_BACKWARD) < 0) return false;
    if (!next_packet(packet)) return false;
    const auto last = entries_.begin() + static_cast<std::ptrdiff_t>(number) + 1;
    const auto known = std::find_if(entries_.begin(), last, [&](const entry& e) {
        return e.position == packet.pos && e.size == packet.size;
    });
    if (known == last) return false;
    next_ = static_cast<std::size_t>(known - entries_.begin()) + 1;
    return skip_to(packet, number);
}

} // namespace avi
