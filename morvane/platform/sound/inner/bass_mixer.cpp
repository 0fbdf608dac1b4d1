// The sound layer on SDL2_mixer: the device, the tracks, and the way from a file to a sound.
#include "morvane/platform/sound/inner/bass_mixer.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "morvane/platform/sound/inner/bass_fade.h"
#include "morvane/platform/sound/inner/bass_formats.h"
#include "morvane/platform/sound/inner/bass_quiet.h"

namespace bass {

namespace {

constexpr int for_ever = -1, once = 1;

struct free_music {
    void operator()(Mix_Music* music) const { Mix_FreeMusic(music); }
};

struct track {
    std::uint32_t handle;
    sound_format format;
    bool loop;
    std::vector<std::uint8_t> bytes;              // the whole file: the sound thread never waits for a disk
    std::unique_ptr<Mix_Music, free_music> music; // reads `bytes`, so it goes first
};

// One device, the process's only one.
struct sound_device {
    bool open = false;
    std::vector<track> tracks;
    std::uint32_t last_handle = 0; // counts on over all devices of a run
    std::uint32_t last_sync = 0;
    std::uint32_t sounding = 0; // the handle that was played last
    fade_out fade;
    std::unique_ptr<quiet_sound_library> quiet; // as long as the device is open
};

sound_device device;

std::uint32_t next_number(std::uint32_t& last) {
    last++;
    last += last == 0; // 0 is failure
    return last;
}

track* find(std::uint32_t handle) {
    const auto found = std::ranges::find(device.tracks, handle, &track::handle);
    return found == device.tracks.end() ? nullptr : &*found;
}

std::uint32_t get_version() {
    return version;
}

// The device.

// The last station of every chunk on its way to the device.
void fade_chunk(void* fade, Uint8* bytes, int length) {
    const auto count = static_cast<std::size_t>(length) / sizeof(std::int16_t);
    static_cast<fade_out*>(fade)->apply({reinterpret_cast<std::int16_t*>(bytes), count});
}

// Real time, whatever clock the show runs on. The fade takes one chunk; a device that asks for none in a
// fifth of a second is dead.
void wait_for_fade() {
    using clock = std::chrono::steady_clock;
    const auto patience = clock::now() + std::chrono::milliseconds(200);
    device.fade.begin();
    while (!device.fade.over() && clock::now() < patience)
        SDL_Delay(1);
}

std::uint32_t free_all() {
    if (!device.open) return 0;
    if (Mix_PlayingMusic() != 0) wait_for_fade();
    Mix_HaltMusic();
    device.tracks.clear();
    Mix_CloseAudio(); // waits until the device has played what it was given
    Mix_Quit();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    device.quiet.reset();
    device.sounding = 0;
    device.open = false;
    return 1;
}

// `exit` in the middle of the show: the sound thread stops before the memory goes that it reads.
void free_at_exit() {
    free_all();
}

std::uint32_t init(std::int32_t number, std::uint32_t frequency, std::uint32_t, void*) {
    constexpr int channels = 2, chunk = 1024; // frames: 23 ms at 44100 Hz
    if (device.open || number != default_device || frequency < 8000 || frequency > 192000) return 0;

    auto quiet = std::make_unique<quiet_sound_library>();
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return 0;
    if (Mix_OpenAudioDevice(static_cast<int>(frequency), AUDIO_S16SYS, channels, chunk, nullptr, 0) != 0) {
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        return 0;
    }
    device.open = true;
    device.quiet = std::move(quiet);
    device.fade.reset(frequency);
    Mix_SetPostMix(fade_chunk, &device.fade);
    [[maybe_unused]] static const int registered = std::atexit(free_at_exit);
    return 1;
}

std::uint32_t start() {
    return device.open ? 1 : 0; // the mixer's device runs from its opening
}

// Tracks.

std::vector<std::uint8_t> read_file(const char* path) {
    constexpr std::uintmax_t largest = 1U << 30;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return {};
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > largest) return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    std::ifstream stream(path, std::ios::binary);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

// Bytes `offset` to `offset` + `length`, or to the end if `length` is 0; none if they aren't all there.
std::vector<std::uint8_t> read_part(bool memory, const void* file, std::uint32_t offset,
                                    std::uint32_t length) {
    if (file == nullptr) return {};
    if (memory) {
        const auto* first = static_cast<const std::uint8_t*>(file) + offset;
        return {first, first + length};
    }
    std::vector<std::uint8_t> bytes = read_file(static_cast<const char*>(file));
    if (offset > bytes.size() || length > bytes.size() - offset) return {};
    if (length != 0) bytes.resize(std::size_t{offset} + length);
    bytes.erase(bytes.begin(), bytes.begin() + offset);
    return bytes;
}

Mix_MusicType decoder_of(sound_format format) {
    switch (format) {
    case sound_format::module:
        return MUS_MOD;
    case sound_format::mp3:
        return MUS_MP3;
    case sound_format::ogg:
        return MUS_OGG;
    case sound_format::none:
        break;
    }
    return MUS_NONE;
}

std::uint32_t add_track(std::vector<std::uint8_t> bytes, sound_format format, std::uint32_t flags) {
    // The decoder of MP3 gets the frames alone: it gives up on some of what may stand in front of them.
    const auto sound = std::span(bytes).subspan(format == sound_format::mp3 ? mp3_start(bytes) : 0);
    SDL_RWops* reader = SDL_RWFromConstMem(sound.data(), static_cast<int>(sound.size()));
    Mix_Music* music = Mix_LoadMUSType_RW(reader, decoder_of(format), SDL_TRUE);
    if (music == nullptr) return 0;
    device.tracks.push_back({.handle = next_number(device.last_handle),
                             .format = format,
                             .loop = (flags & flag_loop) != 0,
                             .bytes = std::move(bytes), // the memory stays where it is
                             .music = std::unique_ptr<Mix_Music, free_music>(music)});
    return device.tracks.back().handle;
}

std::uint32_t music_load(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                         std::uint32_t flags) {
    if (!device.open) return 0;
    std::vector<std::uint8_t> bytes = read_part(memory, file, offset, length);
    const sound_format format = format_of(bytes);
    return format == sound_format::module ? add_track(std::move(bytes), format, flags) : 0;
}

std::uint32_t stream_create_file(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                                 std::uint32_t flags) {
    if (!device.open) return 0;
    std::vector<std::uint8_t> bytes = read_part(memory, file, offset, length);
    const sound_format format = format_of(bytes);
    const bool stream = format == sound_format::mp3 || format == sound_format::ogg;
    return stream ? add_track(std::move(bytes), format, flags) : 0;
}

std::uint32_t channel_set_sync(std::uint32_t handle, std::uint32_t, std::uint32_t, sync_function, void*) {
    return find(handle) == nullptr ? 0 : next_number(device.last_sync);
}

// Playing.

std::uint32_t play(const track& played, bool loop) {
    if (Mix_PlayMusic(played.music.get(), loop ? for_ever : once) != 0) return 0;
    device.sounding = played.handle;
    return 1;
}

std::uint32_t music_play(std::uint32_t handle) {
    const track* played = find(handle);
    if (played == nullptr || played->format != sound_format::module) return 0;
    return play(*played, played->loop);
}

std::uint32_t stream_play(std::uint32_t handle, bool flush, std::uint32_t flags) {
    const track* played = find(handle);
    if (played == nullptr || played->format == sound_format::module) return 0;
    if (!flush && device.sounding == handle && Mix_PlayingMusic() != 0) return 1;
    return play(*played, played->loop || (flags & flag_loop) != 0);
}

} // namespace

const sound_layer mixer_layer{
    .get_version = get_version,
    .init = init,
    .start = start,
    .music_load = music_load,
    .stream_create_file = stream_create_file,
    .channel_set_sync = channel_set_sync,
    .music_play = music_play,
    .stream_play = stream_play,
    .free = free_all,
};

} // namespace bass
