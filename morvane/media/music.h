// The player of the show's music: one track at a time.
#pragma once

#include <cstdint>

// Plays through the sound layer of platform/sound/bass.h. Nothing here stops the show: a failure ends in a
// message box at most, and what the layer refuses stays silent.
class music {
  public:
    std::uint32_t handle = 0; // of the track in the layer; 0: none, or it was refused
    const char* extension =
        nullptr;                // behind the last '.' of the path given to `load`, in the caller's string
    bool recognised = false;    // some extension was known; stays true for the object's life
    std::int32_t kind = -1;     // of the track: -1 none yet, 0 a module, 1 a stream
    bool device_missed = false; // it couldn't be opened, and that has been told

    music() = default;
    ~music(); // as `free`
    music(const music&) = delete;
    music& operator=(const music&) = delete;

    // Opens the default device at 44100 Hz. 1, also after the message that the layer has another version, for
    // then the device stays closed; -1 if it can't be opened, the first time after a message.
    int init();

    // Loads a track by the extension of `path`: MOD, S3M, XM and IT as modules that loop, MP3 and OGG as
    // streams, in any case. 0 if the layer refuses the file, with no message; otherwise 1, which includes an
    // unknown extension. That gives a message as long as no extension was ever known.
    int load(const char* path);

    // Starts the track, round and round. Always 1.
    int play();

    // Stops the sound and frees all tracks and the device: for another track, `init` and `load` again.
    void free();

    // Shows `text`, cut to 199 characters, in a box and waits until it is closed.
    void report(const char* text);
};

// Whether two extensions are the same, upper and lower case alike. Null is like none.
bool extension_equal(const char* a, const char* b);
