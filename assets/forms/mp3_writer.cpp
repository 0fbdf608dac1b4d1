#include "assets/forms/mp3_writer.h"

#include <lame/lame.h>

#include <memory>

namespace assets::sound {
namespace {

constexpr int chunk_frames = 8192;
constexpr int quality = 2; // of the search for the best coding, 0 best to 9 fastest
constexpr float vbr_quality = 2.0F;
constexpr std::size_t tag_room = 4096;
// What one chunk can come to at most, by the encoder's own rule of thumb.
constexpr std::size_t chunk_room = chunk_frames * 5 / 4 + 7200;

struct closer {
    void operator()(lame_t encoder) const { lame_close(encoder); }
};
using encoder_owner = std::unique_ptr<lame_global_flags, closer>;

encoder_owner open_encoder() {
    encoder_owner encoder(lame_init());
    if (!encoder) return nullptr;
    lame_set_in_samplerate(encoder.get(), sample_rate);
    lame_set_out_samplerate(encoder.get(), sample_rate);
    lame_set_num_channels(encoder.get(), 2);
    lame_set_mode(encoder.get(), JOINT_STEREO);
    lame_set_quality(encoder.get(), quality);
    lame_set_VBR(encoder.get(), vbr_mtrh);
    lame_set_VBR_quality(encoder.get(), vbr_quality);
    lame_set_bWriteVbrTag(encoder.get(), 1);
    if (lame_init_params(encoder.get()) < 0) return nullptr;
    return encoder;
}

// Appends the `written` bytes that stand behind `used`; a negative number is an error.
bool keep(file_bytes& file, std::size_t used, int written) {
    if (written < 0) return false;
    file.resize(used + static_cast<std::size_t>(written));
    return true;
}

} // namespace

file_bytes mp3_file(const stereo& sound) {
    const encoder_owner encoder = open_encoder();
    if (!encoder) return {};
    file_bytes file;
    for (int at = 0; at < sound.frames(); at += chunk_frames) {
        const int count = std::min(chunk_frames, sound.frames() - at);
        const std::size_t used = file.size();
        file.resize(used + chunk_room);
        const int written =
            lame_encode_buffer_ieee_float(encoder.get(), sound.left.data() + at, sound.right.data() + at,
                                          count, file.data() + used, static_cast<int>(chunk_room));
        if (!keep(file, used, written)) return {};
    }
    const std::size_t used = file.size();
    file.resize(used + chunk_room);
    if (!keep(file, used, lame_encode_flush(encoder.get(), file.data() + used, static_cast<int>(chunk_room))))
        return {};
    // The encoder left an empty frame at the head for the tag, whose content it knows only now.
    file_bytes tag(tag_room);
    const std::size_t tag_size = lame_get_lametag_frame(encoder.get(), tag.data(), tag.size());
    if (tag_size > tag.size() || tag_size > file.size()) return {};
    std::copy(tag.begin(), tag.begin() + static_cast<std::ptrdiff_t>(tag_size), file.begin());
    return file;
}

} // namespace assets::sound
