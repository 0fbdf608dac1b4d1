// The message box.
#include "platform/winbase.h"

#include <SDL.h>

#include <cstdio>

#include "platform/ptc.h"

namespace winbase {

namespace {

Uint32 icon_of(std::uint32_t type) {
    constexpr std::uint32_t icon_bits = 0xf0;
    if ((type & icon_bits) == 0x10) return SDL_MESSAGEBOX_ERROR;
    if ((type & icon_bits) == 0x30) return SDL_MESSAGEBOX_WARNING;
    return SDL_MESSAGEBOX_INFORMATION;
}

} // namespace

int MessageBoxA(void*, const char* text, const char* caption, std::uint32_t type) {
    const char* shown_text = text == nullptr ? "" : text;
    const char* shown_caption = caption == nullptr ? "Error" : caption; // the system's own default
    const bool shown = ptc::display_present() &&
                       SDL_ShowSimpleMessageBox(icon_of(type), shown_caption, shown_text, nullptr) == 0;
    if (!shown) std::fprintf(stderr, "%s: %s\n", shown_caption, shown_text);
    return 1;
}

} // namespace winbase
