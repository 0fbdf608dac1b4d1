// The framebuffer console: one picture on the display, and the keyboard.
//
// The classes are thin and hold opaque handles to the objects of the layer. Pixels are words 0x00RRGGBB in
// rows without padding, top row first; the top byte is ignored. Whatever can't be done raises a
// `DynamicError`. One thread uses all of it.
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <string>

namespace ptc {

// What the handles stand for; nobody outside the layer looks inside.
namespace library {
struct format;
struct area;
struct palette;
struct mode;
struct key;
struct surface;
struct console;
struct error;
} // namespace library

// A handle that owns its object, which starts with its defaults. A copy has an object of its own.
template<typename Object>
class owned {
  public:
    owned();
    owned(const owned& other);
    owned& operator=(const owned& other);
    ~owned();
    Object* operator->() const { return object_; }
    Object& operator*() const { return *object_; }

  private:
    Object* object_;
};

// The one exception of the system.
class DynamicError : public std::exception {
  public:
    enum class Kind {
        display, // there is no display, or it can't show the picture
        request, // the caller asks for what can't be
        closed,  // the console was closed before: how a run ends
    };
    DynamicError(Kind kind, const std::string& message);

    Kind kind() const noexcept;
    const char* what() const noexcept override;

    // Tells the user: one line "morvane: ..." on standard error, and nothing for an error of the kind
    // `closed`.
    void report() const noexcept;

  private:
    std::shared_ptr<const library::error> error_;
};

// A pixel format. All formats can be described; surfaces and consoles take the one of 32 bits with the masks
// 0xff0000, 0xff00 and 0xff.
class Format {
  public:
    Format() = default;        // none: 0 bits
    explicit Format(int bits); // indexed colour; 8 bits
    // Direct colour of 8, 16, 24 or 32 bits. The masks must not overlap and must fit into the bits.
    Format(int bits, std::uint32_t red, std::uint32_t green, std::uint32_t blue, std::uint32_t alpha = 0);

    int bits() const;
    int bytes() const; // a pixel
    bool direct() const;
    bool indexed() const;
    std::uint32_t r() const; // masks
    std::uint32_t g() const;
    std::uint32_t b() const;
    std::uint32_t a() const;
    bool operator==(const Format& other) const;

  private:
    owned<library::format> format_;
};

// A rectangle; `right` and `bottom` lie outside. One whose sides are swapped is empty and has the size 0.
class Area {
  public:
    Area() = default; // (0, 0, 0, 0)
    Area(int left, int top, int right, int bottom);

    int left() const;
    int top() const;
    int right() const;
    int bottom() const;
    int width() const; // at most INT_MAX
    int height() const;
    bool operator==(const Area& other) const;

  private:
    owned<library::area> area_;
};

// 256 colours 0x00RRGGBB, black at first. Stays with its surface and colours nothing in direct colour.
class Palette {
  public:
    Palette() = default;
    explicit Palette(std::span<const std::uint32_t> colours); // the first 256 of them; the rest stays black

    std::uint32_t* lock(); // the 256 colours, to be changed
    void unlock();
    std::span<const std::uint32_t, 256> data() const;
    bool operator==(const Palette& other) const;

  private:
    owned<library::palette> palette_;
};

// A size and format that the display offers.
class Mode {
  public:
    Mode() = default; // not valid
    Mode(int width, int height, const Format& format);

    bool valid() const;
    int width() const;
    int height() const;
    const Format& format() const { return format_; }
    bool operator==(const Mode& other) const;

  private:
    owned<library::mode> mode_;
    Format format_;
};

// A key press. The code is the character that the key types with no modifier held (letters are small), or a
// number above 2^30 for a key that types none.
class Key {
  public:
    static constexpr int enter = 13;
    static constexpr int escape = 27;
    static constexpr int space = 32;

    Key() = default; // code 0
    explicit Key(int code, bool alt = false, bool shift = false, bool control = false);

    int code() const;
    bool alt() const; // what was held at the press
    bool shift() const;
    bool control() const;
    bool operator==(const Key& other) const;

  private:
    owned<library::key> key_;
};

// What has pixels: the base of `Surface` and `Console`, either of which can be the target of `copy`.
class BaseSurface {
  public:
    BaseSurface() = default;
    BaseSurface(const BaseSurface&) = delete;
    BaseSurface& operator=(const BaseSurface&) = delete;
    virtual ~BaseSurface() = default;

    // Copies all pixels to the top left corner of `target`, as far as its clip area lets them.
    virtual void copy(BaseSurface& target);

    // Copies the pixels of `source` to those of `destination`, by the nearest pixel where the sizes differ.
    // `source` lies within this surface; `destination` may be anywhere and is cut at the target's clip area.
    // Within one surface the areas may overlap if they have the same size. An empty area copies nothing.
    virtual void copy(BaseSurface& target, const Area& source, const Area& destination);

    // The first of height() rows of width() pixels. The address holds until `unlock`; in between the surface
    // can't be locked again, copied or cleared.
    virtual std::uint32_t* lock();
    virtual void unlock();

    virtual void clear(std::uint32_t colour = 0); // all pixels within the clip area

    virtual int width();  // pixels
    virtual int height(); // rows
    virtual int pitch();  // bytes from row to row

    virtual const Area& area() = 0;
    virtual const Area& clip() = 0;          // what `copy` and `clear` may write; all of the area at first
    virtual void clip(const Area& part) = 0; // is cut at the area
    virtual const Format& format() = 0;
    virtual const Palette& palette() = 0;
    virtual void palette(const Palette& palette) = 0;

    virtual library::surface& handle() = 0; // the pixels
};

// Pixels in memory, black at first.
class Surface : public BaseSurface {
  public:
    // `width` and `height` are positive, the pixels take at most 1 GiB.
    Surface(int width, int height, const Format& format);
    ~Surface() override;

    const Area& area() override { return area_; }
    const Area& clip() override { return clip_; }
    void clip(const Area& part) override;
    const Format& format() override { return format_; }
    const Palette& palette() override { return palette_; }
    void palette(const Palette& palette) override { palette_ = palette; }
    library::surface& handle() override { return *surface_; }

  private:
    std::unique_ptr<library::surface> surface_;
    Area area_;
    Area clip_;
    Format format_;
    Palette palette_;
};

// The display and the keyboard. Its pixels are a buffer in memory, which `update` brings to the display.
//
// All operations are virtual, so that a recorder or a test can put in a console of its own: override `open`
// (and in it call `open_off_screen`), `update` to get hold of each picture, and `key` and `read` to hand in
// keys, or leave those and queue the presses with `press`.
//
// Before `open` and after `close` every operation but these two raises `DynamicError`, after `close` of the
// kind `closed`, which reports nothing.
class Console : public BaseSurface {
  public:
    Console();
    ~Console() override; // closes

    // Opens a window of a size that suits the desktop and shows a black picture of `width` by `height` pixels
    // in it. `pages` is a wish of 0 or more and is met by any display. An open console is closed first.
    virtual void open(const char* title, int width, int height, const Format& format, int pages = 0);

    // Whether windows opened from now on begin in full screen.
    virtual void full_screen(bool wanted);

    // The same with no window: `update` shows nothing and takes no time, and no key comes but from `press`.
    virtual void open_off_screen(const char* title, int width, int height, const Format& format);

    // The display is gone. Closing twice does nothing.
    virtual void close();

    // Shows the buffer, at most 60 times a second: waits for the display or the clock if called more often.
    virtual void update();
    virtual void update(const Area& changed); // the same; shows all of it
    virtual void flush(); // all that was asked for is done already, so these two do nothing
    virtual void finish();

    // 1 if a key press is waiting, else 0. Never blocks. Closing the window, an interrupt, a hang-up and
    // a termination signal count as a press of Escape; F11 and Alt+Enter switch between window and full
    // screen and are no presses, nor are modifiers by themselves and repeats of a key held down.
    //
    // In a window every picture has its look at the keys: after `open`, and after a `key` that found nothing,
    // the answer is 0 until the next `update`, and what comes meanwhile waits. Before the first `update` only
    // Escape counts: other keys that go down while a program starts are meant for something else.
    virtual int key();

    // The oldest waiting press, removed from the queue. With none it waits for one; off screen, where none
    // can come, it raises.
    virtual Key read();

    // Queues a press as though it came from the keyboard. Up to 64 presses wait; those beyond are dropped,
    // but Escape takes the place of the last.
    virtual void press(const Key& key);

    // What the display offers, at most 256 modes, largest first; asks the display anew at each call.
    virtual std::span<const Mode> modes();

    virtual const char* title();
    virtual const char* name(); // what the pictures are shown by
    virtual int pages();

    const Area& area() override;
    const Area& clip() override;
    void clip(const Area& part) override;
    const Format& format() override;
    const Palette& palette() override;
    void palette(const Palette& palette) override;
    library::surface& handle() override;

  private:
    void require_open() const;
    void close_if_open();
    void settle(library::surface buffer, const char* title, const Format& format);

    std::unique_ptr<library::console> console_;
    Area area_;
    Area clip_;
    Format format_;
    Palette palette_;
    std::array<Mode, 256> modes_;
};

// Whether somebody could see a window: true where the environment names a display server or a video driver
// that shows pictures. Cheap, asks nobody.
bool display_present();

} // namespace ptc
