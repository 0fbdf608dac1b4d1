// Sound: one device, tracks that it plays by itself.
//
// The calls take and give plain 32-bit numbers; 0 is failure. A track's handle is never 0, and no two tracks
// of a run share one. All calls come from one thread; the sound runs in a thread of the layer's own.
//
// Behind the calls stands a table of functions, the mixer by default. Put in another with `set_sound_layer`
// (the tests put in one that writes down what is called).
#pragma once

#include <cstdint>

namespace bass {

inline constexpr std::uint32_t version = 0x50001; // what BASS_GetVersion answers
inline constexpr std::int32_t default_device = -1;
inline constexpr std::uint32_t flag_loop = 4; // play from the end on to the start; other flag bits do nothing

// What a sync calls back; the layer knows no sync that does.
using sync_function = void (*)(std::uint32_t sync, std::uint32_t channel, std::uint32_t data, void* user);

// One function for each call below, with its meaning. None of them is null.
struct sound_layer {
    std::uint32_t (*get_version)();
    std::uint32_t (*init)(std::int32_t device, std::uint32_t frequency, std::uint32_t flags, void* window);
    std::uint32_t (*start)();
    std::uint32_t (*music_load)(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                                std::uint32_t flags);
    std::uint32_t (*stream_create_file)(bool memory, const void* file, std::uint32_t offset,
                                        std::uint32_t length, std::uint32_t flags);
    std::uint32_t (*channel_set_sync)(std::uint32_t handle, std::uint32_t type, std::uint32_t parameter,
                                      sync_function callback, void* user);
    std::uint32_t (*music_play)(std::uint32_t handle);
    std::uint32_t (*stream_play)(std::uint32_t handle, bool flush, std::uint32_t flags);
    std::uint32_t (*free)();
};

// Makes `layer` the one behind the calls; null brings back the mixer. The caller keeps `layer` alive as long
// as it is in place, and has freed the device of the one before.
void set_sound_layer(const sound_layer* layer);

} // namespace bass

std::uint32_t BASS_GetVersion();

// Opens the device: `default_device`, `frequency` from 8000 to 192000 Hz, stereo, 16 bits. `flags` and
// `window` are not needed and ignored. 1, or 0 if there is no such device, it can't be opened, or it is open
// already.
std::uint32_t BASS_Init(std::int32_t device, std::uint32_t frequency, std::uint32_t flags, void* window);

// Starts the output, which is silence until a track is played. 1, or 0 without an open device.
std::uint32_t BASS_Start();

// Loads a module (MOD, S3M, XM, IT), told by its content: the `length` bytes from `offset` on, 0 for all to
// the end. `file` is a path, or with `memory` the bytes themselves, which are copied and whose `length` must
// be given. With `flag_loop` it will play round and round. The handle, or 0 without an open device or if the
// bytes aren't such a module.
std::uint32_t BASS_MusicLoad(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                             std::uint32_t flags);

// The same for an MP3 or OGG stream. It loops if here or on playing `flag_loop` is given.
std::uint32_t BASS_StreamCreateFile(bool memory, const void* file, std::uint32_t offset, std::uint32_t length,
                                    std::uint32_t flags);

// A sync on a loaded track, of any type. The layer never calls `callback`. A number that isn't 0, or 0 if
// there is no such track.
std::uint32_t BASS_ChannelSetSync(std::uint32_t handle, std::uint32_t type, std::uint32_t parameter,
                                  bass::sync_function callback, void* user);

// Plays a module, or a stream, from its start; what sounded before stops. Without `flush` a stream that
// sounds already goes on instead. 1, or 0 if `handle` isn't a track of the kind or the decoder gives up on
// it.
std::uint32_t BASS_MusicPlay(std::uint32_t handle);
std::uint32_t BASS_StreamPlay(std::uint32_t handle, bool flush, std::uint32_t flags);

// Fades out what sounds, over 15 ms of the machine's time, then frees all tracks and the device. Harmless
// when nothing is open. 1, or 0 if nothing was.
std::uint32_t BASS_Free();
