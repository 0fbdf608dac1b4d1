#include "morvane/scene/loader_3ds/reader.h"

#include <bit>
#include <cstdarg>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/chunk_names.h"
#include "morvane/scene/loader_3ds/walkers.h"
#include "morvane/scene/moscene.h"

namespace {

constexpr std::int32_t header_size = 6;
// Room to pass the end of the data, so that `cut_short` can tell.
constexpr std::int32_t size_limit = std::numeric_limits<std::int32_t>::max() - 1;

std::int32_t limited(std::int64_t count) {
    return static_cast<std::int32_t>(std::min(count, std::int64_t{size_limit}));
}

// The length of an open file, which then stands at its start again; negative if that can't be had.
std::int64_t length_of(std::FILE* file) {
    if (fseeko(file, 0, SEEK_END) != 0) return -1;
    const std::int64_t length = ftello(file);
    return fseeko(file, 0, SEEK_SET) == 0 ? length : -1;
}

} // namespace

float little_float(const std::uint8_t* bytes) {
    return std::bit_cast<float>(little_u32(bytes));
}

vector3d little_vector(const std::uint8_t* bytes) {
    return {.x = little_float(bytes), .y = little_float(bytes + 4), .z = little_float(bytes + 8)};
}

sceneloader_3ds::~sceneloader_3ds() {
    if (file != nullptr) std::fclose(file);
}

void sceneloader_3ds::start(moscene& target, sources new_source) {
    if (file != nullptr) std::fclose(file);
    data = nullptr;
    file = nullptr;
    offset = 0;
    size = 0;
    header_waits = false;
    meshes.clear();
    cameras.clear();
    lights.clear();
    materials.clear();
    source = new_source;
    scene = &target;
}

bool sceneloader_3ds::load_file(moscene& target, const std::string& path) {
    log_message("bool sceneloader_3ds::load_file()", log_trace, 0);
    start(target, from_file);
    std::error_code ignored; // neither a folder nor what waits for a writer
    if (std::filesystem::is_regular_file(path, ignored)) file = std::fopen(path.c_str(), "rb");
    const std::int64_t length = file == nullptr ? -1 : length_of(file);
    if (length < 0) {
        log_message("Unable to load scene file", log_error, 1);
        return false;
    }
    size = limited(length);
    return read_scene();
}

bool sceneloader_3ds::load_packed(moscene&, const std::string&, const std::string&) {
    return true;
}

bool sceneloader_3ds::load_stream(moscene& target, const std::uint8_t* block) {
    if (block == nullptr) return load_stream(target, std::span<const std::uint8_t>{});
    const bool is_scene = little_u16(block) == chunk_main;
    const std::uint32_t length = is_scene ? little_u32(block + 2) : header_size;
    return load_stream(target, std::span(block, std::max<std::size_t>(length, header_size)));
}

bool sceneloader_3ds::load_stream(moscene& target, std::span<const std::uint8_t> block) {
    log_message("bool sceneloader_3ds::load_stream()", log_trace, 0);
    start(target, from_memory);
    data = block.data();
    size = limited(static_cast<std::int64_t>(block.size()));
    return read_scene();
}

bool sceneloader_3ds::read_scene() {
    node_counter = 0;
    nodes.clear();
    tree_was_empty = scene->first_node == nullptr;
    if (!read_header() || chunk_id != chunk_main) {
        log_message("File is not in autodesk 3dstudio format!", log_error, 1);
        return false;
    }
    total = static_cast<std::int32_t>(chunk_length);
    log_known();
    if (read_header()) walk_main(*this);
    return true;
}

void sceneloader_3ds::advance(std::int64_t count) {
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    offset = static_cast<std::int32_t>(std::min(offset + count, highest));
}

// All or nothing.
bool sceneloader_3ds::read_bytes(std::span<std::uint8_t> bytes) {
    bool whole = bytes.size() <= static_cast<std::size_t>(bytes_left());
    if (whole && source == from_memory)
        std::memcpy(bytes.data(), data + offset, bytes.size());
    else if (whole)
        whole = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    advance(static_cast<std::int64_t>(bytes.size()));
    return whole;
}

std::uint8_t sceneloader_3ds::read_u8() {
    std::array<std::uint8_t, 1> bytes{};
    return read_bytes(bytes) ? bytes[0] : std::uint8_t{0};
}

std::uint16_t sceneloader_3ds::read_u16() {
    std::array<std::uint8_t, 2> bytes{};
    return read_bytes(bytes) ? little_u16(bytes.data()) : std::uint16_t{0};
}

std::uint32_t sceneloader_3ds::read_u32() {
    std::array<std::uint8_t, 4> bytes{};
    return read_bytes(bytes) ? little_u32(bytes.data()) : 0;
}

std::int32_t sceneloader_3ds::read_i32() {
    return static_cast<std::int32_t>(read_u32());
}

float sceneloader_3ds::read_float() {
    return std::bit_cast<float>(read_u32());
}

void sceneloader_3ds::read_float_over(float& value) {
    std::array<std::uint8_t, 4> bytes{};
    if (read_bytes(bytes)) value = little_float(bytes.data());
}

vector3d sceneloader_3ds::read_vector() {
    vector3d all; // one after the other: a list of arguments would leave the order open
    all.x = read_float();
    all.y = read_float();
    all.z = read_float();
    return all;
}

void sceneloader_3ds::read_string() {
    name.fill('\0');
    const std::int32_t begin = offset;
    std::uint8_t character = 0;
    while (bytes_left() > 0 && (character = read_u8()) != 0) {
        const auto place = static_cast<std::size_t>(offset - begin - 1);
        if (place < name.size() - 1) name[place] = static_cast<char>(character);
    }
    name_length = offset - begin;
    log_text(log_debug, "Named object: %s", name.data());
}

bool sceneloader_3ds::read_header() {
    if (header_waits) {
        header_waits = false;
        return true;
    }
    if (bytes_left() < header_size) {
        advance(header_size);
        return false;
    }
    parent_id = chunk_id;
    parent_length = chunk_length;
    chunk_id = read_u16();
    chunk_length = read_u32();
    return true;
}

bool sceneloader_3ds::next_header(std::int64_t end) {
    const std::int32_t here = header_waits ? offset - header_size : offset;
    return here < total && here + std::int64_t{header_size} < end && read_header();
}

void sceneloader_3ds::skip(std::int64_t count) {
    if (count <= 0) return;
    if (source == from_file) fseeko(file, count, SEEK_CUR); // behind the end, too, where nothing is read
    advance(count);
}

void sceneloader_3ds::skip_body() {
    skip(std::int64_t{chunk_length} - header_size);
}

std::int32_t sceneloader_3ds::records_left(std::int32_t count, std::size_t record_size) const {
    const std::int32_t most = bytes_left() / static_cast<std::int32_t>(record_size);
    if (count > most)
        log_text(log_warning, "Chunk 0x%X counts %i entries, and the data end after %i", chunk_id, count,
                 most);
    return std::min(count, most);
}

void sceneloader_3ds::log_text(std::uint32_t level, const char* format, ...) {
    if (!log_wanted(level)) return;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message.data(), message.size(), format, arguments);
    va_end(arguments);
    log_message(message.data(), level, 0);
}

void sceneloader_3ds::log_known() const {
    if (!log_wanted(log_note)) return; // spares the search for the name
    const char* known = chunk_name_find(chunk_id);
    log_text(log_note, "Known chunk %s (0x%X) with length %ld at ofs %i",
             known != nullptr ? known : "CHUNK3DS_UNKNOWN", chunk_id, static_cast<long>(chunk_length),
             offset);
}

void sceneloader_3ds::log_unknown() const {
    log_text(log_note, "Unknown chunk id 0x%X with length %ld at ofs %i", chunk_id,
             static_cast<long>(chunk_length), offset);
}
