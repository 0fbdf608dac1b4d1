#include "morvane/platform/clip/inner/avi_frames.h"

#include <algorithm>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "morvane/platform/clip/avifile.h"

namespace avi {
namespace {

constexpr std::size_t unknown = SIZE_MAX;
// What a call may decode: 14,000 frames of the show's size, and some seconds at the very worst.
constexpr std::int64_t pixels_a_call = std::int64_t{1} << 31;
constexpr std::size_t step_back = 16; // chunks to go further back when the first try found no frame

} // namespace

void decoder_closer::operator()(AVCodecContext* decoder) const {
    avcodec_free_context(&decoder);
}
void frame_closer::operator()(AVFrame* frame) const {
    av_frame_free(&frame);
}
void packet_closer::operator()(AVPacket* packet) const {
    av_packet_free(&packet);
}

bool frame_reader::open(packet_reader& packets) {
    packets_ = &packets;
    const AVCodecParameters& parameters = packets.parameters();
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr) return false;
    decoder_.reset(avcodec_alloc_context3(codec));
    packet_.reset(av_packet_alloc());
    hand_.frame.reset(av_frame_alloc());
    next_.frame.reset(av_frame_alloc());
    if (!decoder_ || !packet_ || !hand_.frame || !next_.frame) return false;
    if (avcodec_parameters_to_context(decoder_.get(), &parameters) < 0) return false;
    decoder_->thread_count = 1;
    decoder_->max_pixels = largest_frame;
    decoder_->pkt_timebase = {packets.time().scale, packets.time().rate};
    if (avcodec_open2(decoder_.get(), codec, nullptr) < 0) return false;

    const AVCodecDescriptor* about = avcodec_descriptor_get(parameters.codec_id);
    reorders_ = about == nullptr || (about->props & AV_CODEC_PROP_REORDER) != 0;
    if (reorders_) ranks_.assign(packets.entries().size(), unknown);
    return true;
}

found_frame frame_reader::at(std::int32_t slot) {
    const std::size_t rank = rank_at(slot);
    budget_ = pixels_a_call;
    if (within_reach(rank))
        decode_up_to(rank);
    else
        search(rank);
    if (!hand_.valid || hand_.rank > rank) return {};
    return {.frame = hand_.frame.get(), .serial = hand_.serial};
}

// The last rank that is shown from `slot` or before on; `slot` lies within the stream.
std::size_t frame_reader::rank_at(std::int32_t slot) const {
    const auto& entries = packets_->entries();
    const auto after = std::upper_bound(entries.begin(), entries.end(), slot,
                                        [](std::int32_t s, const auto& e) { return s < e.slot; });
    return after == entries.begin() ? 0 : static_cast<std::size_t>(after - entries.begin()) - 1;
}

// The last chunk from which the frame of this rank can be decoded.
std::size_t frame_reader::key_before(std::size_t rank) const {
    const auto& entries = packets_->entries();
    if (!reorders_) {
        while (rank > 0 && !entries[rank].key)
            --rank;
        return rank;
    }
    // A key frame may be shown some frames before or after the place where it lies.
    for (std::size_t number = entries.size(); number-- > 0;)
        if (entries[number].key && ranks_[number] != unknown && ranks_[number] <= rank) return number;
    return 0;
}

// Whether decoding on leads to the frame, and as fast as another way.
bool frame_reader::within_reach(std::size_t rank) const {
    if (next_.valid && hand_.valid && hand_.rank <= rank && rank < next_.rank) return true;
    const decoded& last = next_.valid ? next_ : hand_;
    if (!hand_.valid || rank < hand_.rank) return false;
    if (rank <= last.rank) return true;
    return key_before(rank) <= position_;
}

// Decodes from the nearest key frame; where damage leaves nothing to show, from further back.
void frame_reader::search(std::size_t rank) {
    hand_.valid = next_.valid = false;
    const std::size_t nearest = key_before(rank);
    const std::size_t further = key_before(rank - std::min(rank, step_back));
    std::size_t tried = unknown;
    for (const std::size_t start : {nearest, further, std::size_t{0}}) {
        if (start == tried || rank < nothing_below_) continue;
        start_from(start);
        decode_up_to(rank);
        if (hand_.valid) return;
        tried = start;
    }
    if (tried == 0) nothing_below_ = next_.valid ? next_.rank : packets_->entries().size();
}

void frame_reader::start_from(std::size_t number) {
    avcodec_flush_buffers(decoder_.get());
    hand_.valid = next_.valid = false;
    draining_ = false;
    position_ = number;
}

// Takes frames into the hand until `rank` is reached or the next one lies beyond it.
void frame_reader::decode_up_to(std::size_t rank) {
    while (!(hand_.valid && hand_.rank >= rank)) {
        if (!next_.valid && !decode_next()) return;
        if (next_.rank > rank) return;
        std::swap(hand_, next_);
        next_.valid = false;
    }
}

// Decodes the next frame in order of showing into `next_`. False at the end of the clip or the budget.
bool frame_reader::decode_next() {
    for (;;) {
        const int result = avcodec_receive_frame(decoder_.get(), next_.frame.get());
        if (result >= 0) {
            const std::int64_t sender = next_.frame->pts; // the number of its chunk, as it was sent
            const bool known = sender >= 0 && sender < std::ssize(packets_->entries());
            next_.rank = rank_of(known ? static_cast<std::size_t>(sender) : position_ - (position_ > 0));
            if (next_.rank >= packets_->entries().size()) continue;
            // Half a frame keeps its place and isn't shown.
            if (known && packets_->entries()[static_cast<std::size_t>(sender)].cut) continue;
            next_.serial = ++last_serial_;
            next_.valid = true;
            return true;
        }
        // Errors cost their frame; decoding goes on behind it.
        if (result == AVERROR_EOF || !send_next()) return false;
    }
}

bool frame_reader::send_next() {
    if (draining_ || budget_ <= 0) return false;
    budget_ -=
        std::clamp<std::int64_t>(std::int64_t{decoder_->width} * decoder_->height, 4096, largest_frame);
    if (position_ < packets_->entries().size() && packets_->read(*packet_, position_)) {
        packet_->pts = packet_->dts = static_cast<std::int64_t>(position_);
        ++position_;
        avcodec_send_packet(decoder_.get(), packet_.get());
        av_packet_unref(packet_.get());
        return true;
    }
    draining_ = true;
    return avcodec_send_packet(decoder_.get(), nullptr) >= 0;
}

// Where chunks are reordered, the frames themselves tell the order as they come out, from the first on.
std::size_t frame_reader::rank_of(std::size_t number) {
    if (!reorders_) return number;
    if (ranks_[number] == unknown) {
        if (decoder_->has_b_frames == 0) learnt_ = std::max(learnt_, number); // nothing is on its way
        ranks_[number] = learnt_++;
    }
    return ranks_[number];
}

} // namespace avi
