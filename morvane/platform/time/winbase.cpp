// The message box, where the program lies, and the random numbers.
#include "morvane/platform/time/winbase.h"

#include <SDL.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#ifdef __linux__
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "morvane/base/random.h"
#include "morvane/platform/console/ptc.h"

namespace winbase {

namespace {

constexpr const char* box_word = "--message-box"; // then the icon, the caption and the text

bool boxes_apart = false; // in a process of their own
bool stop_wish = false;

Uint32 icon_of(std::uint32_t type) {
    constexpr std::uint32_t icon_bits = 0xf0;
    if ((type & icon_bits) == 0x10) return SDL_MESSAGEBOX_ERROR;
    if ((type & icon_bits) == 0x30) return SDL_MESSAGEBOX_WARNING;
    return SDL_MESSAGEBOX_INFORMATION;
}

bool show_box(Uint32 icon, const char* caption, const char* text) {
    return SDL_ShowSimpleMessageBox(icon, caption, text, nullptr) == 0;
}

#ifdef __linux__

// The box as a process, with whatever that starts, in a group of its own: an interrupt of the terminal's
// reaches this program only. Below 0 if it can't be started.
pid_t start_box(Uint32 icon, const char* caption, const char* text) {
    posix_spawnattr_t attributes;
    if (posix_spawnattr_init(&attributes) != 0) return -1;
    sigset_t own;
    sigemptyset(&own);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&own, signal);
    posix_spawnattr_setsigdefault(&attributes, &own);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    std::string words[] = {"morvane", box_word, std::to_string(icon), caption, text};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(),
                         words[3].data(), words[4].data(), nullptr};
    pid_t process = -1;
    if (posix_spawn(&process, "/proc/self/exe", nullptr, &attributes, arguments, environ) != 0) process = -1;
    posix_spawnattr_destroy(&attributes);
    return process;
}

// Looks after the window until the box is closed, or ends it with the wish to stop, which stays in the queue
// of the window's events. False if there was no box.
bool show_box_apart(Uint32 icon, const char* caption, const char* text) {
    constexpr Uint32 pause_ms = 20;
    const pid_t process = start_box(icon, caption, text);
    if (process < 0) return false;
    int status = 0;
    while (waitpid(process, &status, WNOHANG) == 0) {
        SDL_PumpEvents();
        stop_wish = SDL_HasEvent(SDL_QUIT) == SDL_TRUE;
        if (stop_wish) {
            kill(-process, SIGKILL);
            waitpid(process, &status, 0);
            return true;
        }
        SDL_Delay(pause_ms);
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

#else

bool show_box_apart(Uint32 icon, const char* caption, const char* text) {
    return show_box(icon, caption, text);
}

#endif

} // namespace

std::string program_folder() {
    const std::unique_ptr<char, decltype(&SDL_free)> path(SDL_GetBasePath(), SDL_free);
    std::string folder = path ? path.get() : "";
    if (folder.size() > 1) folder.pop_back(); // the slash
    return folder;
}

int MessageBoxA(void*, const char* text, const char* caption, std::uint32_t type) {
    if (stop_wish) return 1;
    const char* shown_text = text == nullptr ? "" : text;
    const char* shown_caption = caption == nullptr ? "Error" : caption; // the system's own default
    const auto show = boxes_apart && SDL_WasInit(SDL_INIT_VIDEO) != 0 ? show_box_apart : show_box;
    const bool shown = ptc::display_present() && show(icon_of(type), shown_caption, shown_text);
    if (!shown) std::fprintf(stderr, "%s: %s\n", shown_caption, shown_text);
    return 1;
}

std::optional<int> box_process(int count, char** words) {
    boxes_apart = true;
    if (count != 5 || std::string_view(words[1]) != box_word) return std::nullopt;
    const auto icon = static_cast<Uint32>(std::strtoul(words[2], nullptr, 10));
    return show_box(icon, words[3], words[4]) ? 0 : 1;
}

bool stop_wished() {
    return stop_wish;
}

int rand() {
    return random_next();
}

void srand(std::uint32_t seed) {
    random_seed(seed);
}

} // namespace winbase
