// The kinds of film that can be written, told by the extension of the file's name, and what is in them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

struct AVCodec;
struct AVCodecContext;

// One setting of an encoder, as the libraries name it.
struct encoder_setting {
    const char* name = nullptr;
    const char* value = nullptr;
};

struct encoder_choice {
    const char* name = nullptr; // as the libraries name the encoder; null ends a list
    std::array<encoder_setting, 6> settings{};
    const char* tag = nullptr; // four letters by which players know the codec, null for the container's own
};

// An encoder puts some samples of its own before the first. How players know of them:
enum class sound_start {
    by_times, // by times before that of the first picture
    by_head,  // by a number in the head of the file, which they take from all times
    unknown,  // not at all: they play them
};

struct film_format {
    const char* extension;               // with its dot
    const char* container;               // as the libraries name it
    std::array<encoder_choice, 2> video; // the first that is there is taken
    std::array<encoder_choice, 2> audio;
    std::int32_t audio_rate; // samples a second
    sound_start start;
    bool seeks; // its head is written last
};

std::span<const film_format> film_formats();

// Whether `path` ends with `extension`, which is in lower case, and has something before it.
bool has_extension(std::string_view path, std::string_view extension);

// The format of a film called `path`, by its extension in upper or lower case; null if there is none.
const film_format* film_format_of(std::string_view path);

// The first encoder of `choices` that the installed libraries have, and its row; both null if there is none.
struct found_encoder {
    const AVCodec* codec = nullptr;
    const encoder_choice* choice = nullptr;
};
found_encoder find_encoder(std::span<const encoder_choice> choices);

// Opens `context`, which was made for `found.codec`, with the settings of its row. Returns 0 or above, or an
// error number of the libraries.
int open_encoder(AVCodecContext& context, const found_encoder& found);
