#include "morvane/platform/sound/inner/bass_quiet.h"

#ifdef __linux__

#include <dlfcn.h>

// The mixer's decoder of MP3 writes a line on standard error for each damaged frame, from the sound thread,
// and the mixer hands on no switch for it. So the mixer gets its decoders from here, made by the decoder's
// library and told to be quiet: a program's own function goes before that of a library it was linked with.
// The constants are those of the library's interface.
extern "C" void* mpg123_new(const char* decoder, int* error);

void* mpg123_new(const char* decoder, int* error) {
    constexpr int add_flags = 2;
    constexpr long quiet = 0x20;
    using maker = void* (*)(const char*, int*);
    using setter = int (*)(void*, int, long, double);
    const auto make = reinterpret_cast<maker>(dlsym(RTLD_NEXT, "mpg123_new"));
    const auto set = reinterpret_cast<setter>(dlsym(RTLD_NEXT, "mpg123_param"));
    void* handle = make != nullptr ? make(decoder, error) : nullptr;
    if (handle != nullptr && set != nullptr) set(handle, add_flags, quiet, 0);
    return handle;
}

namespace bass {

namespace {

using error_handler = void (*)(const char* file, int line, const char* function, int error,
                               const char* format, ...);

void say_nothing(const char*, int, const char*, int, const char*, ...) {}

// The library is there if SDL has brought it along, and then only is there anything to quieten: so it is
// looked up rather than linked. Null gives back its own handler.
void set_handler(error_handler handler) {
    using setter = int (*)(error_handler);
    const auto set = reinterpret_cast<setter>(dlsym(RTLD_DEFAULT, "snd_lib_error_set_handler"));
    if (set != nullptr) set(handler);
}

} // namespace

quiet_sound_library::quiet_sound_library() {
    set_handler(say_nothing);
}

quiet_sound_library::~quiet_sound_library() {
    set_handler(nullptr);
}

} // namespace bass

#else

bass::quiet_sound_library::quiet_sound_library() {}
bass::quiet_sound_library::~quiet_sound_library() {}

#endif
