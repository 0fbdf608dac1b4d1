// The console layer's small values: handles, formats, areas, palettes, modes, keys and errors.
#include "morvane/platform/console/ptc.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdio>

#include "morvane/platform/console/inner/ptc_objects.h"

namespace ptc {

template<typename Object>
owned<Object>::owned() : object_(new Object) {}
template<typename Object>
owned<Object>::owned(const owned& other) : object_(new Object(*other.object_)) {}
template<typename Object>
owned<Object>& owned<Object>::operator=(const owned& other) {
    if (this != &other) *object_ = *other.object_;
    return *this;
}
template<typename Object>
owned<Object>::~owned() {
    delete object_;
}

template class owned<library::format>;
template class owned<library::area>;
template class owned<library::palette>;
template class owned<library::mode>;
template class owned<library::key>;

DynamicError::DynamicError(Kind kind, const std::string& message)
    : error_(std::make_shared<library::error>(library::error{kind, message})) {}

DynamicError::Kind DynamicError::kind() const noexcept {
    return error_->kind;
}

const char* DynamicError::what() const noexcept {
    return error_->message.c_str();
}

void DynamicError::report() const noexcept {
    if (error_->kind != Kind::closed) std::fprintf(stderr, "morvane: %s\n", what());
}

Format::Format(int bits) {
    if (bits != 8) {
        throw DynamicError(DynamicError::Kind::request,
                           "a format of " + std::to_string(bits) + " bits can't be indexed, only one of 8");
    }
    format_->bits = bits;
}

Format::Format(int bits, std::uint32_t red, std::uint32_t green, std::uint32_t blue, std::uint32_t alpha) {
    if (bits != 8 && bits != 16 && bits != 24 && bits != 32) {
        throw DynamicError(DynamicError::Kind::request,
                           "there is no format of " + std::to_string(bits) + " bits");
    }
    const std::uint32_t all = red | green | blue | alpha;
    const int separate =
        std::popcount(red) + std::popcount(green) + std::popcount(blue) + std::popcount(alpha);
    if (static_cast<int>(std::bit_width(all)) > bits || std::popcount(all) != separate) {
        throw DynamicError(DynamicError::Kind::request,
                           "the masks of a format overlap or pass its " + std::to_string(bits) + " bits");
    }
    *format_ = {.bits = bits, .red = red, .green = green, .blue = blue, .alpha = alpha};
}

int Format::bits() const {
    return format_->bits;
}
int Format::bytes() const {
    return format_->bits / 8;
}
bool Format::direct() const {
    return (format_->red | format_->green | format_->blue | format_->alpha) != 0;
}
bool Format::indexed() const {
    return format_->bits != 0 && !direct();
}
std::uint32_t Format::r() const {
    return format_->red;
}
std::uint32_t Format::g() const {
    return format_->green;
}
std::uint32_t Format::b() const {
    return format_->blue;
}
std::uint32_t Format::a() const {
    return format_->alpha;
}
bool Format::operator==(const Format& other) const {
    return *format_ == *other.format_;
}

namespace {
// The extent of a side; 0 where its ends are swapped.
int extent(int from, int to) {
    const std::int64_t long_side = std::int64_t{to} - from;
    return static_cast<int>(std::clamp<std::int64_t>(long_side, 0, INT_MAX));
}
} // namespace

Area::Area(int left, int top, int right, int bottom) {
    *area_ = {left, top, right, bottom};
}
int Area::left() const {
    return area_->left;
}
int Area::top() const {
    return area_->top;
}
int Area::right() const {
    return area_->right;
}
int Area::bottom() const {
    return area_->bottom;
}
int Area::width() const {
    return extent(area_->left, area_->right);
}
int Area::height() const {
    return extent(area_->top, area_->bottom);
}
bool Area::operator==(const Area& other) const {
    return *area_ == *other.area_;
}

Palette::Palette(std::span<const std::uint32_t> colours) {
    std::copy_n(colours.begin(), std::min<std::size_t>(colours.size(), 256), palette_->colours.begin());
}
std::uint32_t* Palette::lock() {
    return palette_->colours.data();
}
void Palette::unlock() {}
std::span<const std::uint32_t, 256> Palette::data() const {
    return palette_->colours;
}
bool Palette::operator==(const Palette& other) const {
    return palette_->colours == other.palette_->colours;
}

Mode::Mode(int width, int height, const Format& format) : format_(format) {
    *mode_ = {width, height};
}
bool Mode::valid() const {
    return mode_->width > 0 && mode_->height > 0;
}
int Mode::width() const {
    return mode_->width;
}
int Mode::height() const {
    return mode_->height;
}
bool Mode::operator==(const Mode& other) const {
    return *mode_ == *other.mode_ && format_ == other.format_;
}

Key::Key(int code, bool alt, bool shift, bool control) {
    *key_ = {code, alt, shift, control};
}
int Key::code() const {
    return key_->code;
}
bool Key::alt() const {
    return key_->alt;
}
bool Key::shift() const {
    return key_->shift;
}
bool Key::control() const {
    return key_->control;
}
bool Key::operator==(const Key& other) const {
    return *key_ == *other.key_;
}

} // namespace ptc
