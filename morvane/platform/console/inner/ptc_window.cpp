// The window of the console, on SDL.
#include "morvane/platform/console/inner/ptc_window.h"

#include <SDL.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <thread>
#include <vector>

#include "morvane/platform/console/ptc.h"

namespace ptc {

static_assert(key_code::enter == SDLK_RETURN && key_code::escape == SDLK_ESCAPE && Key::space == SDLK_SPACE);
static_assert(key_code::f11 == SDLK_F11 && key_code::keypad_enter == SDLK_KP_ENTER);
static_assert(key_code::caps_lock == SDLK_CAPSLOCK && key_code::num_lock == SDLK_NUMLOCKCLEAR);
static_assert(key_code::first_modifier == SDLK_LCTRL && key_code::last_modifier == SDLK_RGUI);
static_assert(key_code::mode_switch == SDLK_MODE);

namespace {

// Nanoseconds; a running show repairs the window by its next picture.
constexpr std::int64_t repair_interval = 100'000'000;

// Real time: what is shown to a person doesn't follow the clock that a recorder moves.
std::int64_t now_in_nanoseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

void sleep_until(std::int64_t nanoseconds) {
    const std::chrono::nanoseconds since_epoch(nanoseconds);
    std::this_thread::sleep_until(std::chrono::steady_clock::time_point(since_epoch));
}

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

[[noreturn]] void fail(const std::string& reason) {
    throw DynamicError(DynamicError::Kind::display, "cannot open a window: " + reason);
}

// Why there is no video driver, from what the environment says.
std::string missing_display() {
    const std::string_view driver = environment("SDL_VIDEODRIVER");
    if (!driver.empty()) return "no video driver \"" + std::string(driver) + "\" (" + SDL_GetError() + ")";
    const std::string_view wayland = environment("WAYLAND_DISPLAY");
    const std::string_view x11 = environment("DISPLAY");
    if (wayland.empty() && x11.empty())
        return "there is no display (DISPLAY and WAYLAND_DISPLAY are not set)";
    return "no display answers at \"" + std::string(x11.empty() ? wayland : x11) + "\"";
}

#ifdef SIGHUP
// The window library hears of a termination; a hang-up is one.
void pass_on(int) {
    std::raise(SIGTERM);
}
#endif

} // namespace

bool display_present() {
    const std::string_view driver = environment("SDL_VIDEODRIVER");
    if (!driver.empty()) return driver != "dummy" && driver != "offscreen" && driver != "evdev";
#ifdef __linux__
    return !environment("DISPLAY").empty() || !environment("WAYLAND_DISPLAY").empty();
#else
    return true;
#endif
}

std::string display_drivers(bool x11, bool wayland) {
    std::string drivers;
    if (x11) drivers += "x11,";
    if (wayland) drivers += "wayland,";
    return drivers + "KMSDRM";
}

video_library::video_library() {
#ifdef __linux__
    // Left to itself SDL falls back to a driver that draws where nobody looks, and asks servers that aren't
    // there.
    if (environment("SDL_VIDEODRIVER").empty()) {
        const std::string drivers =
            display_drivers(!environment("DISPLAY").empty(), !environment("WAYLAND_DISPLAY").empty());
        SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, drivers.c_str(), SDL_HINT_OVERRIDE);
    }
#endif
    SDL_SetHint(SDL_HINT_APP_NAME, "Morvane");
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) fail(missing_display());
#ifdef SIGHUP
    const auto former = std::signal(SIGHUP, pass_on);
    if (former != SIG_DFL) std::signal(SIGHUP, former); // ignored, by nohup say: that stays
#endif
}

video_library::~video_library() {
#ifdef SIGHUP
    const auto present = std::signal(SIGHUP, SIG_DFL);
    if (present != pass_on) std::signal(SIGHUP, present);
#endif
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

void release::operator()(SDL_Window* window) const {
    SDL_DestroyWindow(window);
}
void release::operator()(SDL_Renderer* renderer) const {
    SDL_DestroyRenderer(renderer);
}
void release::operator()(SDL_Texture* texture) const {
    SDL_DestroyTexture(texture);
}

window::window(const char* title, size picture, bool starts_full_screen) : picture_(picture) {
    SDL_Rect desktop{0, 0, picture.width, picture.height};
    SDL_GetDisplayUsableBounds(0, &desktop);
    const size start = starting_size(picture, {desktop.w, desktop.h});
    window_.reset(SDL_CreateWindow(title, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, start.width,
                                   start.height, SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI));
    if (!window_) fail(SDL_GetError());
    create_renderer();
    create_texture();
    SDL_DisableScreenSaver();
    SDL_StopTextInput(); // keys are keys here, no input method composes with them
    SDL_EventState(SDL_MOUSEMOTION, SDL_IGNORE);
    if (starts_full_screen) toggle_full_screen();
    draw();
}

void window::create_renderer() {
    constexpr std::array<Uint32, 3> by_preference{SDL_RENDERER_ACCELERATED | SDL_RENDERER_PRESENTVSYNC,
                                                  SDL_RENDERER_ACCELERATED, SDL_RENDERER_SOFTWARE};
    for (const Uint32 flags : by_preference) {
        renderer_.reset(SDL_CreateRenderer(window_.get(), -1, flags));
        if (!renderer_) continue;
        SDL_RendererInfo info{};
        SDL_GetRendererInfo(renderer_.get(), &info);
        scales_on_processor_ = (info.flags & SDL_RENDERER_SOFTWARE) != 0;
        return;
    }
    fail(SDL_GetError());
}

void window::create_texture() {
    texture_.reset(SDL_CreateTexture(renderer_.get(), SDL_PIXELFORMAT_RGB888, SDL_TEXTUREACCESS_STREAMING,
                                     picture_.width, picture_.height));
    if (!texture_) fail(SDL_GetError());
    SDL_SetTextureBlendMode(texture_.get(), SDL_BLENDMODE_NONE);
    const std::vector<std::uint32_t> black(static_cast<std::size_t>(picture_.width) *
                                           static_cast<std::size_t>(picture_.height));
    SDL_UpdateTexture(texture_.get(), nullptr, black.data(), picture_.width * 4);
}

void window::show(const std::uint32_t* pixels) {
    SDL_UpdateTexture(texture_.get(), nullptr, pixels, picture_.width * 4);
    const std::int64_t now = now_in_nanoseconds();
    const std::int64_t at = pacer_.show_at(now);
    if (at > now) sleep_until(at);
    shown_ = true;
    asked_in_vain_ = false;
    draw();
}

void window::draw() {
    drawn_at_ = now_in_nanoseconds();
    damaged_ = false;
    if ((SDL_GetWindowFlags(window_.get()) & SDL_WINDOW_MINIMIZED) != 0) return;
    size output = picture_;
    SDL_GetRendererOutputSize(renderer_.get(), &output.width, &output.height);
    const bool may_scale_smoothly =
        full_screen() && !scales_on_processor_; // 14 ms a picture there at 1440x1080
    const placement place = fit_picture(picture_, output, may_scale_smoothly);
    const SDL_Rect rectangle{place.left, place.top, place.width, place.height};
    SDL_SetTextureScaleMode(texture_.get(), place.smooth ? SDL_ScaleModeLinear : SDL_ScaleModeNearest);
    SDL_SetRenderDrawColor(renderer_.get(), 0, 0, 0, SDL_ALPHA_OPAQUE);
    SDL_RenderClear(renderer_.get());
    SDL_RenderCopy(renderer_.get(), texture_.get(), nullptr, &rectangle);
    SDL_RenderPresent(renderer_.get());
}

bool window::key_waits(key_queue& keys) {
    if (asked_in_vain_) return false;
    poll(keys);
    asked_in_vain_ = keys.empty();
    return !asked_in_vain_;
}

void window::poll(key_queue& keys) {
    take_events(keys);
    if (damaged_ && now_in_nanoseconds() - drawn_at_ >= repair_interval) draw();
}

void window::take_events(key_queue& keys) {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        if (event.type == SDL_KEYDOWN) {
            const int held = event.key.keysym.mod;
            const library::key key{.code = event.key.keysym.sym,
                                   .alt = (held & KMOD_ALT) != 0,
                                   .shift = (held & KMOD_SHIFT) != 0,
                                   .control = (held & KMOD_CTRL) != 0};
            const key_meaning meaning = meaning_of(key, event.key.repeat != 0, shown_);
            if (meaning == key_meaning::press) keys.push(key);
            if (meaning == key_meaning::toggle_full_screen) toggle_full_screen();
        } else if (event.type == SDL_QUIT) { // the close button, an interrupt, a termination signal
            keys.push({.code = key_code::escape});
        } else if (event.type == SDL_WINDOWEVENT || event.type == SDL_RENDER_TARGETS_RESET) {
            damaged_ = true;
        } else if (event.type == SDL_RENDER_DEVICE_RESET) {
            create_texture();
            damaged_ = true;
        }
    }
}

void window::wait() {
    shown_ = true; // whoever waits for a key is past loading
    SDL_WaitEventTimeout(nullptr, 20);
}

bool window::full_screen() const {
    return (SDL_GetWindowFlags(window_.get()) & SDL_WINDOW_FULLSCREEN_DESKTOP) ==
           SDL_WINDOW_FULLSCREEN_DESKTOP;
}

void window::toggle_full_screen() {
    const bool enter = !full_screen();
    if (SDL_SetWindowFullscreen(window_.get(), enter ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0) != 0) return;
    SDL_ShowCursor(enter ? SDL_DISABLE : SDL_ENABLE);
    damaged_ = true;
}

const char* window::driver_name() const {
    return SDL_GetCurrentVideoDriver();
}

std::size_t list_display_sizes(std::span<size> sizes) {
    std::size_t count = 0;
    const int offered = SDL_GetNumDisplayModes(0);
    for (int i = 0; i < offered && count < sizes.size(); ++i) {
        SDL_DisplayMode mode;
        if (SDL_GetDisplayMode(0, i, &mode) != 0) continue;
        const size next{mode.w, mode.h};
        const bool told = count > 0 && sizes[count - 1] == next; // once for each refresh rate
        if (!told) sizes[count++] = next;
    }
    return count;
}

} // namespace ptc
