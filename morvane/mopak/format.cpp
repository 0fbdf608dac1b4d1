#include "morvane/mopak/format.h"

#include <algorithm>
#include <cstring>

#include "morvane/base/log.h"

namespace {

// Goes through the fields of a record in the order of the file.
class byte_writer {
  public:
    explicit byte_writer(std::span<std::uint8_t> all) : rest(all) {}
    void text(std::span<const char> field) {
        std::memcpy(rest.data(), field.data(), field.size());
        rest = rest.subspan(field.size());
    }
    void byte(std::uint8_t value) {
        rest[0] = value;
        rest = rest.subspan(1);
    }
    void number(std::int32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            byte(static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> shift & 0xffU));
    }

  private:
    std::span<std::uint8_t> rest;
};

class byte_reader {
  public:
    explicit byte_reader(std::span<const std::uint8_t> all) : rest(all) {}
    bool text(std::span<char> field) {
        std::memcpy(field.data(), rest.data(), field.size());
        rest = rest.subspan(field.size());
        if (std::ranges::find(field, '\0') != field.end()) return true;
        field.back() = '\0';
        return false;
    }
    std::uint8_t byte() {
        const std::uint8_t value = rest[0];
        rest = rest.subspan(1);
        return value;
    }
    std::int32_t number() {
        std::uint32_t value = 0;
        for (int shift = 0; shift < 32; shift += 8)
            value |= std::uint32_t{byte()} << shift;
        return static_cast<std::int32_t>(value);
    }

  private:
    std::span<const std::uint8_t> rest;
};

} // namespace

mopak_header::mopak_header() {
    log_message("mopak_header::mopak_header()", log_trace, 0);
}

mopak_header::~mopak_header() {
    log_message("mopak_header::~mopak_header()", log_trace, 0);
}

mopak_file::mopak_file() {
    log_message("mopak_file::mopak_file()", log_trace, 0);
}

mopak_file::~mopak_file() {
    log_message("mopak_file::~mopak_file()", log_trace, 0);
}

std::array<std::uint8_t, mopak_header_size> header_to_bytes(const mopak_header& header) {
    std::array<std::uint8_t, mopak_header_size> bytes;
    byte_writer out(bytes);
    out.text(header.info);
    out.byte(header.padding);
    out.number(header.version_major);
    out.number(header.version_minor);
    out.number(header.total_size);
    out.number(header.file_count);
    out.number(header.toc_offset);
    return bytes;
}

void record_to_bytes(const mopak_file& file, std::span<std::uint8_t, mopak_record_size> bytes) {
    byte_writer out(bytes);
    out.text(file.name);
    out.number(file.raw_size);
    out.number(file.packed_size);
    out.number(file.offset);
}

bool header_from_bytes(std::span<const std::uint8_t, mopak_header_size> bytes, mopak_header& header) {
    byte_reader in(bytes);
    const bool ended = in.text(header.info);
    header.padding = in.byte();
    header.version_major = in.number();
    header.version_minor = in.number();
    header.total_size = in.number();
    header.file_count = in.number();
    header.toc_offset = in.number();
    return ended;
}

bool record_from_bytes(std::span<const std::uint8_t, mopak_record_size> bytes, mopak_file& file) {
    byte_reader in(bytes);
    const bool ended = in.text(file.name);
    file.raw_size = in.number();
    file.packed_size = in.number();
    file.offset = in.number();
    return ended;
}

bool mopak_text_fits(std::string_view text, std::size_t room) {
    return text.size() < room && text.find('\0') == std::string_view::npos;
}

void mopak_text_copy(std::string_view text, std::span<char> field) {
    std::ranges::fill(field, '\0');
    text.copy(field.data(), field.size() - 1);
}
