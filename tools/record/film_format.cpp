#include "tools/record/film_format.h"

#include <algorithm>
#include <cctype>

#include "tools/kit/ffmpeg_kit.h"

namespace {

// Quality is constant and the rate what it takes: the opening is noise, of which a fixed rate would leave
// blocks, and the rest of the show needs little.
constexpr encoder_choice h264{"libx264", {{{"preset", "veryfast"}, {"crf", "21"}}}};
constexpr encoder_choice mpeg4{"mpeg4", {{{"flags", "+qscale"}, {"global_quality", "590"}}}};
constexpr encoder_choice xvid{mpeg4.name, mpeg4.settings, "XVID"};
constexpr encoder_choice vp9{"libvpx-vp9",
                             {{{"crf", "34"},
                               {"b", "0"},
                               {"deadline", "realtime"},
                               {"cpu-used", "7"},
                               {"row-mt", "1"},
                               {"tile-columns", "2"}}}};
constexpr encoder_choice vp8{
    "libvpx", {{{"crf", "10"}, {"b", "40000000"}, {"deadline", "realtime"}, {"cpu-used", "8"}}}};
constexpr encoder_choice aac{"aac", {{{"b", "192000"}}}};
constexpr encoder_choice opus{"libopus", {{{"b", "160000"}}}};
constexpr encoder_choice mp3{"libmp3lame", {{{"b", "192000"}}}};
constexpr encoder_choice pcm{"pcm_s16le"};

constexpr film_format formats[] = {
    {".mp4", "mp4", {h264, mpeg4}, {aac}, 44100, sound_start::by_times, true},
    {".mkv", "matroska", {h264, mpeg4}, {aac}, 44100, sound_start::by_times, false},
    {".webm", "webm", {vp9, vp8}, {opus}, 48000, sound_start::by_head, false},
    // Old players of this container know nothing of frames out of their order.
    {".avi", "avi", {xvid}, {mp3, pcm}, 44100, sound_start::unknown, true},
};

bool equal(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == b;
}

} // namespace

std::span<const film_format> film_formats() {
    return formats;
}

bool has_extension(std::string_view path, std::string_view extension) {
    return path.size() > extension.size() &&
           std::ranges::equal(path.substr(path.size() - extension.size()), extension, equal);
}

const film_format* film_format_of(std::string_view path) {
    for (const film_format& each : formats)
        if (has_extension(path, each.extension)) return &each;
    return nullptr;
}

found_encoder find_encoder(std::span<const encoder_choice> choices) {
    for (const encoder_choice& each : choices) {
        if (each.name == nullptr) break;
        if (const AVCodec* codec = avcodec_find_encoder_by_name(each.name); codec != nullptr)
            return {codec, &each};
    }
    return {};
}

int open_encoder(AVCodecContext& context, const found_encoder& found) {
    AVDictionary* settings = nullptr;
    for (const encoder_setting& each : found.choice->settings)
        if (each.name != nullptr) av_dict_set(&settings, each.name, each.value, 0);
    if (const char* tag = found.choice->tag; tag != nullptr)
        context.codec_tag = MKTAG(static_cast<unsigned>(tag[0]), static_cast<unsigned>(tag[1]),
                                  static_cast<unsigned>(tag[2]), static_cast<unsigned>(tag[3]));
    const int code = avcodec_open2(&context, found.codec, &settings);
    av_dict_free(&settings);
    return code;
}
