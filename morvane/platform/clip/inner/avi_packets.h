// The chunks of a clip's video stream, by number. Inside of platform/clip/avifile.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct AVCodecParameters;
struct AVFormatContext;
struct AVPacket;
struct AVStream;

namespace avi {

struct container_closer {
    void operator()(AVFormatContext* container) const;
};
struct parameters_closer {
    void operator()(AVCodecParameters* parameters) const;
};

// A frame lasts `scale` / `rate` seconds.
struct frame_time {
    std::int32_t scale = 0;
    std::int32_t rate = 0;
};

class packet_reader {
  public:
    // One chunk that holds a frame.
    struct entry {
        std::int64_t position; // in the file
        std::int32_t size;
        std::int32_t slot; // number of the frame that it is shown as; rises from entry to entry
        bool key;          // decoding can start here
        bool cut;          // the file ends before it does
    };

    // Opens stream `which` of the videos in the file and lists its chunks. 0, or the library's error, which
    // is below 0.
    int open(const std::string& path, std::int32_t which);

    const std::vector<entry>& entries() const { return entries_; }
    std::int32_t frame_count() const { return frame_count_; }
    const AVCodecParameters& parameters() const { return *parameters_; }
    frame_time time() const { return time_; }

    // Reads chunk `number` into `packet`, whose old content goes, and the palette in force with it, if the
    // clip has one. In the order of the file this is one read; else it seeks. False beyond the end of the
    // list or if the file doesn't give it.
    bool read(AVPacket& packet, std::size_t number);

  private:
    // Colours of a clip with indices for pixels, as the library hands them to decoders.
    struct palette {
        std::size_t first; // number of the chunk from which on it holds
        std::array<std::uint8_t, 1024> colours;
    };

    int open_container();
    int keep_parameters();
    int list_entries();
    void trust_keys();
    void keep_palette(const AVPacket& packet);
    bool give_palette(AVPacket& packet, std::size_t number) const;
    std::int64_t indexed_beyond(std::int64_t file_size) const;
    bool read_chunk(AVPacket& packet, std::size_t number);
    bool next_packet(AVPacket& packet);
    bool seek(AVPacket& packet, std::size_t number);
    bool skip_to(AVPacket& packet, std::size_t number);

    std::string url_;
    std::int32_t which_ = 0;
    std::unique_ptr<AVFormatContext, container_closer> container_;
    AVStream* stream_ = nullptr; // of `container_`; null if the file has gone bad meanwhile
    std::unique_ptr<AVCodecParameters, parameters_closer> parameters_; // as they were at first
    frame_time time_;
    std::vector<entry> entries_;
    std::vector<palette> palettes_; // `first` rises
    std::size_t most_palettes_ = 0;
    std::int32_t frame_count_ = 0;
    std::int64_t first_stamp_ = 0; // the library's time stamp of slot 0
    std::size_t next_ = 0;         // number of the chunk that comes next in the file
};

} // namespace avi
