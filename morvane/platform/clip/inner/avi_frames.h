// Decoding of a clip, frame by frame or from a key frame on. Inside of platform/clip/avifile.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "morvane/platform/clip/inner/avi_packets.h"

struct AVCodecContext;
struct AVFrame;

namespace avi {

struct decoder_closer {
    void operator()(AVCodecContext* decoder) const;
};
struct frame_closer {
    void operator()(AVFrame* frame) const;
};
struct packet_closer {
    void operator()(AVPacket* packet) const;
};

struct found_frame {
    const AVFrame* frame = nullptr; // valid until the next call
    std::uint64_t serial = 0;       // another number for each frame that was decoded, from 1 on
};

// A frame's rank is its place in the order in which frames are shown; the frame of rank r is shown from slot
// `entries[r].slot` on.
class frame_reader {
  public:
    // `packets` outlives the reader. False if there is no decoder for the stream.
    bool open(packet_reader& packets);

    // What is shown at `slot`, which lies within the stream: the last frame from there or before that can be
    // decoded, or null. Decodes no more than a fixed amount a call; what that doesn't reach is left to the
    // next one.
    found_frame at(std::int32_t slot);

  private:
    struct decoded {
        std::unique_ptr<AVFrame, frame_closer> frame;
        std::uint64_t serial = 0;
        std::size_t rank = 0;
        bool valid = false;
    };

    std::size_t rank_at(std::int32_t slot) const;
    std::size_t key_before(std::size_t rank) const;
    bool within_reach(std::size_t rank) const;
    void search(std::size_t rank);
    void start_from(std::size_t number);
    void decode_up_to(std::size_t rank);
    bool decode_next();
    bool send_next();
    std::size_t rank_of(std::size_t number);

    packet_reader* packets_ = nullptr;
    std::unique_ptr<AVCodecContext, decoder_closer> decoder_;
    std::unique_ptr<AVPacket, packet_closer> packet_;
    decoded hand_; // the last frame asked for
    decoded next_; // what was decoded beyond it while looking for it

    std::uint64_t last_serial_ = 0;
    bool reorders_ = false;          // frames may come out in another order than their chunks lie in
    std::vector<std::size_t> ranks_; // by chunk, as learnt from decoding, where `reorders_`
    std::size_t learnt_ = 0;         // ranks below it are known
    std::size_t position_ = 0;       // chunk that is sent next
    std::size_t nothing_below_ = 0;  // no frame of a lower rank can be decoded
    bool draining_ = false;          // all chunks are sent
    std::int64_t budget_ = 0;        // pixels that this call may still decode
};

} // namespace avi
