// Pixels in memory: copying between surfaces and consoles, locking, clearing.
#include <algorithm>
#include <cstring>
#include <new>

#include "morvane/platform/console/inner/ptc_objects.h"

namespace ptc {

namespace {

constexpr std::int64_t most_bytes = std::int64_t{1} << 30;

[[noreturn]] void refuse(const std::string& message) {
    throw DynamicError(DynamicError::Kind::request, message);
}

void require_unlocked(const library::surface& surface) {
    if (surface.locked) refuse("the pixels are locked");
}

// One axis of a copy: destination pixels `first` to `last` - 1 are written, pixel d from
// `source` + (d - `origin`) * `source_extent` / `extent`.
struct copied_range {
    int first;
    int last;
    std::int64_t origin;
    std::int64_t extent;
    std::int64_t source;
    std::int64_t source_extent;

    std::size_t source_of(int at) const {
        return static_cast<std::size_t>(source + (at - origin) * source_extent / extent);
    }
};

copied_range cut(int source, int source_end, int destination, int destination_end, int clip, int clip_end) {
    return {.first = std::max(destination, clip),
            .last = std::min(destination_end, clip_end),
            .origin = destination,
            .extent = std::int64_t{destination_end} - destination,
            .source = source,
            .source_extent = std::int64_t{source_end} - source};
}

// Rows of the same width: whole runs, from that end which keeps an overlapping source whole.
void copy_straight(const library::surface& from, library::surface& to, copied_range columns,
                   copied_range rows) {
    const auto count = static_cast<std::size_t>(columns.last - columns.first);
    const auto column = static_cast<std::size_t>(columns.first);
    const bool downwards = &from == &to && rows.origin > rows.source;
    for (int i = rows.first; i < rows.last; ++i) {
        const int y = downwards ? rows.last - 1 - (i - rows.first) : i;
        const std::uint32_t* read = from.pixels.data() +
                                    rows.source_of(y) * static_cast<std::size_t>(from.width) +
                                    columns.source_of(columns.first);
        std::uint32_t* write =
            to.pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(to.width) + column;
        std::memmove(write, read, count * sizeof *write);
    }
}

void copy_stretched(const library::surface& from, library::surface& to, copied_range columns,
                    copied_range rows) {
    for (int y = rows.first; y < rows.last; ++y) {
        const std::uint32_t* read =
            from.pixels.data() + rows.source_of(y) * static_cast<std::size_t>(from.width);
        std::uint32_t* write =
            to.pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(to.width);
        for (int x = columns.first; x < columns.last; ++x) {
            write[x] = read[columns.source_of(x)];
        }
    }
}

} // namespace

namespace library {

surface black_surface(int width, int height, const Format& format) {
    const bool rgb = format.r() == 0xff0000U && format.g() == 0xff00U && format.b() == 0xffU;
    const bool free_top_byte = format.a() == 0 || format.a() == 0xff000000U;
    if (format.bits() != 32 || !rgb || !free_top_byte) {
        refuse("this pixel format can't be shown, only 32 bits with the masks 0xff0000, 0xff00 and 0xff");
    }
    const std::string size_text = std::to_string(width) + "x" + std::to_string(height);
    if (width <= 0 || height <= 0 || std::int64_t{width} * height > most_bytes / 4) {
        refuse("there are no pictures of " + size_text);
    }
    surface black{.pixels = {}, .width = width, .height = height};
    try {
        black.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    } catch (const std::bad_alloc&) {
        refuse("no memory for a picture of " + size_text);
    }
    return black;
}

} // namespace library

void BaseSurface::copy(BaseSurface& target) {
    copy(target, area(), area());
}

void BaseSurface::copy(BaseSurface& target, const Area& source, const Area& destination) {
    library::surface& from = handle();
    library::surface& to = target.handle();
    require_unlocked(from);
    require_unlocked(to);
    if (source.width() == 0 || source.height() == 0) return;
    if (source.left() < 0 || source.top() < 0 || source.right() > from.width ||
        source.bottom() > from.height) {
        refuse("a copy reads outside its source");
    }
    const Area& clip = target.clip();
    const copied_range columns = cut(source.left(), source.right(), destination.left(), destination.right(),
                                     clip.left(), clip.right());
    const copied_range rows = cut(source.top(), source.bottom(), destination.top(), destination.bottom(),
                                  clip.top(), clip.bottom());
    if (columns.first >= columns.last || rows.first >= rows.last) return;
    if (columns.extent == columns.source_extent && rows.extent == rows.source_extent) {
        copy_straight(from, to, columns, rows);
    } else if (&from == &to) {
        refuse("a copy within one surface can't stretch");
    } else {
        copy_stretched(from, to, columns, rows);
    }
}

std::uint32_t* BaseSurface::lock() {
    library::surface& pixels = handle();
    require_unlocked(pixels);
    pixels.locked = true;
    return pixels.pixels.data();
}

void BaseSurface::unlock() {
    library::surface& pixels = handle();
    if (!pixels.locked) refuse("the pixels are not locked");
    pixels.locked = false;
}

void BaseSurface::clear(std::uint32_t colour) {
    library::surface& pixels = handle();
    require_unlocked(pixels);
    const Area& part = clip();
    const auto left = static_cast<std::size_t>(part.left());
    for (int y = part.top(); y < part.bottom(); ++y) {
        const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(pixels.width);
        std::fill_n(pixels.pixels.data() + row + left, part.width(), colour);
    }
}

int BaseSurface::width() {
    return handle().width;
}
int BaseSurface::height() {
    return handle().height;
}
int BaseSurface::pitch() {
    return handle().width * 4;
}

Area intersection(const Area& a, const Area& b) {
    const int left = std::max(a.left(), b.left());
    const int top = std::max(a.top(), b.top());
    const int right = std::min(a.right(), b.right());
    const int bottom = std::min(a.bottom(), b.bottom());
    return left < right && top < bottom ? Area(left, top, right, bottom) : Area();
}

Surface::Surface(int width, int height, const Format& format)
    : surface_(std::make_unique<library::surface>(library::black_surface(width, height, format))),
      area_(0, 0, width, height), clip_(area_), format_(format) {}

Surface::~Surface() = default;

void Surface::clip(const Area& part) {
    clip_ = intersection(part, area_);
}

} // namespace ptc
