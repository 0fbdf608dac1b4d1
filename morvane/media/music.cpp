#include "morvane/media/music.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <cstring>

#include "morvane/platform/sound/bass.h"
#include "morvane/platform/time/winbase.h"

namespace {

enum track_kind : std::int32_t { module = 0, stream = 1 };

struct format {
    const char* extension;
    track_kind kind;
};

constexpr std::array<format, 6> formats{{
    {"MOD", module},
    {"S3M", module},
    {"XM", module},
    {"IT", module},
    {"MP3", stream},
    {"OGG", stream},
}};

char upper(char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

} // namespace

bool extension_equal(const char* a, const char* b) {
    if (a == nullptr || b == nullptr) return false;
    for (; *a != '\0' && *b != '\0'; a++, b++)
        if (upper(*a) != upper(*b)) return false;
    return *a == *b; // both at their end
}

music::~music() {
    free();
}

int music::init() {
    constexpr std::uint32_t frequency = 44100, flags = 16;
    if (BASS_GetVersion() != bass::version) {
        report("BASS version 1.5 was not loaded");
        return 1;
    }
    if (BASS_Init(bass::default_device, frequency, flags, nullptr) == 0) {
        if (!device_missed) report("Can't initialize device");
        device_missed = true;
        return -1;
    }
    BASS_Start();
    return 1;
}

int music::load(const char* path) {
    constexpr std::uint32_t module_flags = bass::flag_loop | 1, end_of_stream = 2;
    const char* dot = path == nullptr ? nullptr : std::strrchr(path, '.');
    extension = dot == nullptr ? nullptr : dot + 1;

    for (const format& row : formats) {
        if (!extension_equal(row.extension, extension)) continue;
        recognised = true;
        handle = row.kind == module ? BASS_MusicLoad(false, path, 0, 0, module_flags)
                                    : BASS_StreamCreateFile(false, path, 0, 0, 0);
        if (handle == 0) return 0;
        if (row.kind == stream) BASS_ChannelSetSync(handle, end_of_stream, 0, nullptr, nullptr);
        kind = row.kind;
    }
    if (!recognised) report("Music format extension not found!");
    return 1;
}

int music::play() {
    if (kind == module) BASS_MusicPlay(handle);
    if (kind == stream) BASS_StreamPlay(handle, false, bass::flag_loop);
    return 1;
}

void music::free() {
    BASS_Free();
}

void music::report(const char* text) {
    std::array<char, 200> buffer;
    std::snprintf(buffer.data(), buffer.size(), "%s", text == nullptr ? "" : text);
    winbase::MessageBoxA(nullptr, buffer.data(), "Morvane Demosystem: Error", 0);
}
