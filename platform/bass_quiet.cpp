#include "platform/bass_quiet.h"

#ifdef __linux__

#include <dlfcn.h>

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
